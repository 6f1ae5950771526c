#include <AppKit/NSViewController.h>
#include <Platform/Foundation/Raised.h>
#include <Sources/Views/TestViews.h>

#include <gmock/gmock.h>

namespace RVCore::NSPopoverRVCoreTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class PlainDelegate : public NSObject, public NSPopoverDelegate {};

// Writes down what is set on it, in order, and what it is asked to show.
class LoggedPopover : public NSPopover {
    RVCORE_CLASS(LoggedPopover)

public:
    void setBehavior(NSPopoverBehavior behavior) override
    {
        log.push_back("behavior = " + std::to_string(static_cast<int>(behavior)));
        NSPopover::setBehavior(behavior);
    }
    void setDelegate(const std::weak_ptr<NSPopoverDelegate>& delegate) override
    {
        log.push_back(delegate.expired() ? "delegate = none" : "delegate");
        NSPopover::setDelegate(delegate);
    }
    void setContentViewController(const std::shared_ptr<NSViewController>& controller) override
    {
        const NSView& holder = *controller->view();
        log.push_back("contentViewController of " + std::to_string(holder.subviews().size()) + " view, " +
                      std::to_string(holder.constraints().size()) + " constraints");
        NSPopover::setContentViewController(controller);
    }
    void showRelativeToRect(const CGRect& rect, NSView& view, NSRectEdge edge) override
    {
        log.push_back("show at " + describe(rect) + " of " + view.identifier() + " edge " +
                      std::to_string(static_cast<int>(edge)));
    }

    std::vector<std::string> log;
};

Class& LoggedPopover::staticClass()
{
    static Class& theClass = defineClass<LoggedPopover>("LoggedPopover", NSPopover::staticClass(), [](auto&) {});
    return theClass;
}

const char* const pinnedContent = "contentViewController of 1 view, 4 constraints";

TEST(PopoverFactory, setsBehaviourDelegateAndContentInThisOrder)
{
    const auto delegate = make<PlainDelegate>();
    const auto view = make<SizedView>(CGSize{30, 40});
    const auto popover =
        makePopover<LoggedPopover>({.view = view, .behavior = NSPopoverBehavior::transient, .delegate = delegate});
    EXPECT_THAT(popover->log, ElementsAre("behavior = 1", "delegate", pinnedContent));
    EXPECT_EQ(popover->delegate(), delegate);
}

TEST(PopoverFactory, byNameSetsTheSameInTheSameOrder)
{
    const auto delegate = make<PlainDelegate>();
    const auto made = [](const Value& behavior, const Value& asDelegate) {
        return std::dynamic_pointer_cast<LoggedPopover>(send(LoggedPopover::staticClass().alloc(),
                                                             "initWithView:behavior:delegate:", make<NSView>(),
                                                             behavior, asDelegate)
                                                            .as<ObjectRef>());
    };
    EXPECT_THAT(made(1, delegate)->log, ElementsAre("behavior = 1", "delegate", pinnedContent));
    EXPECT_THAT(made(0, Value())->log, ElementsAre("behavior = 0", "delegate = none", pinnedContent));
}

TEST(PopoverFactory, isSemitransientWithoutADelegateUnlessToldOtherwise)
{
    const auto popover = makePopover<LoggedPopover>({.view = make<NSView>()});
    EXPECT_THAT(popover->log, ElementsAre("behavior = 2", "delegate = none", pinnedContent));
}

TEST(PopoverFactory, putsTheViewIntoAPlainOnePinnedToAllFourEdges)
{
    const auto view = make<SizedView>(CGSize{30, 40});
    const auto popover = makePopover({.view = view});
    const auto& holder = popover->contentViewController()->view();
    EXPECT_THAT(holder->subviews(), ElementsAre(view));
    EXPECT_EQ(holder->constraints().size(), 4U);
    EXPECT_EQ(holder->fittingSize(), (CGSize{30, 40})) << "the view decides the size";
    holder->setFrameSize({100, 80});
    holder->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame(), CGRect(0, 0, 100, 80));
}

TEST(PopoverFactory, isShownAtTheAnchorsBoundsMovedByTheOffset)
{
    const auto popover = makePopover<LoggedPopover>({.view = make<NSView>()});
    popover->log.clear();
    const auto anchor = make<NSView>(CGRect(100, 100, 40, 20));
    anchor->setIdentifier("anchor");
    anchor->setBoundsOrigin({7, 9});
    show(*popover, *anchor, NSRectEdge::maxX, {5, -3});
    show(*popover, *anchor, NSRectEdge::minY);
    EXPECT_THAT(popover->log, ElementsAre("show at " + describe(CGRect(12, 6, 40, 20)) + " of anchor edge 2",
                                          "show at " + describe(CGRect(7, 9, 40, 20)) + " of anchor edge 1"));
}

TEST(PopoverFactory, isPublished)
{
    const auto view = make<NSView>();
    const auto delegate = make<PlainDelegate>();
    const auto popover = std::dynamic_pointer_cast<NSPopover>(
        send(NSPopover::staticClass().alloc(), "initWithView:behavior:delegate:", view, 1, delegate).as<ObjectRef>());
    ASSERT_TRUE(popover);
    EXPECT_EQ(popover->behavior(), NSPopoverBehavior::transient);
    EXPECT_EQ(popover->delegate(), delegate);
    EXPECT_THAT(raised([&] {
                    send(popover, "showWithRelativeToView:preferredEdge:offset:", view, 3, CGPoint{1, 2});
                }),
                HasSubstr("is in no visible window"));
}

TEST(PopoverFactory, withoutAViewRaises)
{
    EXPECT_THAT(raised([] { makePopover({.view = nullptr}); }), HasSubstr("there is no view"));
    EXPECT_THAT(raised([] {
                    send(NSPopover::staticClass().alloc(), "initWithView:behavior:delegate:", make<NSView>(), 1,
                         make<NSView>());
                }),
                HasSubstr("is no delegate of popovers"));
}

} // namespace
} // namespace RVCore::NSPopoverRVCoreTests
