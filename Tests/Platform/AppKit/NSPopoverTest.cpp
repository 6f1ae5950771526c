#include "ViewTesting.h"
#include "WindowTesting.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSPopover.h>
#include <AppKit/NSViewController.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>
#include <cstdlib>

namespace RVCore::NSPopoverTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RecordingPopoverDelegate : public NSPopoverDelegate {
public:
    bool popoverShouldClose(NSPopover&) override
    {
        calls.emplace_back("should close");
        return agrees;
    }
    void popoverWillShow(NSPopover&) override
    {
        calls.emplace_back("will show");
        if (onShow)
            std::exchange(onShow, nullptr)();
    }
    void popoverDidClose(NSPopover&) override { calls.emplace_back("did close"); }

    bool agrees = true;
    std::vector<std::string> calls;
    std::function<void()> onShow;
};

// Writes down what it is told.
class RecordingController : public NSViewController {
public:
    void viewWillAppear() override { calls.emplace_back("will appear"); }
    void viewDidAppear() override { calls.emplace_back("did appear"); }
    void viewWillDisappear() override { calls.emplace_back("will disappear"); }
    void viewDidDisappear() override { calls.emplace_back("did disappear"); }

    std::vector<std::string> take() { return std::exchange(calls, {}); }
    std::vector<std::string> calls;
};

class NSPopoverTest : public WindowTest {
protected:
    NSPopoverTest()
    {
        window->setFrame({400, 300, 300, 222}); // with a title bar of 22 points
        window->contentView()->addSubview(anchor);
        window->makeKeyAndOrderFront();
        width = hold(*content, Attribute::width, {.constant = 118});
        hold(*content, Attribute::height, {.constant = 58});
        controller->setView(content);
        popover->setContentViewController(controller);
    }
    ~NSPopoverTest() override { popover->close(); }

    void show(NSRectEdge edge = NSRectEdge::maxY) { popover->showRelativeToRect({}, *anchor, edge); }
    // As the user would, through the desktop: a press, or a key, there.
    void press(const NSWindow& where, CGPoint location)
    {
        screenOf(where).userInput({.kind = InputKind::buttonPressed, .location = location});
        if (where.isVisible())
            screenOf(where).userInput({.kind = InputKind::buttonReleased, .location = location});
    }
    void type(const NSWindow& where, const std::string& key)
    {
        InputEvent event{.kind = InputKind::keyPressed};
        event.characters = event.charactersIgnoringModifiers = key;
        screenOf(where).userInput(event);
    }

    std::shared_ptr<NSWindow> window = makeAt({400, 300, 300, 222});
    std::shared_ptr<NSView> anchor = make<NSView>(CGRect(100, 50, 40, 20)); // from the content's bottom left corner
    std::shared_ptr<NSView> content = make<NSView>();
    std::shared_ptr<NSLayoutConstraint> width;
    std::shared_ptr<NSViewController> controller = make<NSViewController>();
    std::shared_ptr<NSPopover> popover = make<NSPopover>();
    std::shared_ptr<RecordingPopoverDelegate> delegate = std::make_shared<RecordingPopoverDelegate>();
};

TEST_F(NSPopoverTest, standsAtItsAnchorAsLargeAsItsContent)
{
    show();
    ASSERT_TRUE(popover->isShown());
    // The anchor's top edge is at 370 on the screen, its middle at 520.
    EXPECT_EQ(popover->window()->frame(), CGRect(460, 370, 120, 69));
    EXPECT_EQ(content->frame().size, (CGSize{118, 58}));
    EXPECT_EQ(popover->window()->parentWindow(), window.get());
    EXPECT_TRUE(popover->window()->isKeyWindow());
}

TEST_F(NSPopoverTest, theEdgeIsThatOfTheViewsOwnCoordinates)
{
    const auto flipped = make<FlippedView>(anchor->frame());
    window->contentView()->addSubview(flipped);
    popover->showRelativeToRect({}, *flipped, NSRectEdge::maxY);
    EXPECT_EQ(popover->window()->frame().maxY(), 350) << "below it";
    popover->showRelativeToRect({}, *flipped, NSRectEdge::minY);
    EXPECT_EQ(popover->window()->frame().minY(), 370) << "above it";
}

TEST_F(NSPopoverTest, standsAtARectangleOfTheView)
{
    popover->showRelativeToRect({0, 0, 10, 10}, *anchor, NSRectEdge::minY);
    EXPECT_EQ(popover->window()->frame(), CGRect(445, 281, 120, 69));
}

TEST_F(NSPopoverTest, takesAnotherEdgeWhereTheScreenEnds)
{
    window->setFrameOrigin({400, 760});
    show();
    EXPECT_EQ(popover->window()->frame().maxY(), 810) << "below, for there is no room above";
}

TEST_F(NSPopoverTest, followsItsAnchorAndItsWindow)
{
    show();
    const auto shown = popover->window();
    anchor->setFrameOrigin({120, 60});
    desktop->flushFrames();
    EXPECT_EQ(shown->frame().origin, (CGPoint{480, 380}));
    window->setFrameOrigin({410, 310});
    EXPECT_EQ(shown->frame().origin, (CGPoint{490, 390}));
}

TEST_F(NSPopoverTest, growsWithItsContent)
{
    show();
    width->setConstant(198);
    content->setNeedsDisplay(true);
    desktop->flushFrames();
    EXPECT_EQ(popover->window()->frame(), CGRect(420, 370, 200, 69)) << "still at the middle of its anchor";
}

TEST_F(NSPopoverTest, closesWithItsAnchor)
{
    popover->setDelegate(delegate);
    show();
    anchor->setHidden(true);
    desktop->flushFrames();
    EXPECT_FALSE(popover->isShown());
    anchor->setHidden(false);
    show();
    anchor->removeFromSuperview();
    desktop->flushFrames();
    EXPECT_FALSE(popover->isShown());
    EXPECT_THAT(delegate->calls, ElementsAre("will show", "did close", "will show", "did close"));
}

TEST_F(NSPopoverTest, closesWithItsWindow)
{
    popover->setDelegate(delegate);
    show();
    window->close();
    EXPECT_FALSE(popover->isShown());
    EXPECT_EQ(popover->window(), nullptr);
    EXPECT_THAT(delegate->calls, ElementsAre("will show", "did close"));
    EXPECT_THAT(application.windows(), IsEmpty());
}

TEST_F(NSPopoverTest, escapeClosesItIfItsDelegateAgrees)
{
    popover->setDelegate(delegate);
    show();
    delegate->agrees = false;
    type(*popover->window(), NSKey::escape);
    EXPECT_TRUE(popover->isShown());
    delegate->agrees = true;
    type(*popover->window(), NSKey::escape);
    EXPECT_FALSE(popover->isShown());
    EXPECT_TRUE(window->isKeyWindow());
}

TEST_F(NSPopoverTest, anApplicationDefinedOneStaysUntilItIsClosed)
{
    show();
    press(*window, {10, 10});
    type(*window, "x");
    EXPECT_TRUE(popover->isShown());
    popover->close();
    popover->close();
    EXPECT_FALSE(popover->isShown());
}

TEST_F(NSPopoverTest, aSemitransientOneClosesWhenTheUserPressesOrTypesElsewhere)
{
    popover->setBehavior(NSPopoverBehavior::semitransient);
    show();
    press(*popover->window(), {10, 10});
    type(*popover->window(), "x");
    screenOf(*window).userInput({.kind = InputKind::scrolled, .location = {10, 10}, .scroll = {0, 5}});
    EXPECT_TRUE(popover->isShown());
    press(*window, {10, 10});
    EXPECT_FALSE(popover->isShown());
    show();
    type(*window, "x");
    EXPECT_FALSE(popover->isShown());
}

TEST_F(NSPopoverTest, aTransientOneClosesWhenTheUserScrollsElsewhereToo)
{
    popover->setBehavior(NSPopoverBehavior::transient);
    show();
    screenOf(*window).userInput({.kind = InputKind::pointerMoved, .location = {10, 10}});
    EXPECT_TRUE(popover->isShown());
    screenOf(*window).userInput({.kind = InputKind::scrolled, .location = {10, 10}, .scroll = {0, 5}});
    EXPECT_FALSE(popover->isShown());
}

TEST_F(NSPopoverTest, aPressOnTheAnchorIsTheAnchorsToAnswer)
{
    popover->setBehavior(NSPopoverBehavior::transient);
    show();
    press(*window, {110, 140}); // of a content 200 points high
    EXPECT_TRUE(popover->isShown());
}

TEST_F(NSPopoverTest, canBeShownAgainAndElsewhere)
{
    show();
    popover->close();
    show(NSRectEdge::maxX);
    EXPECT_EQ(popover->window()->frame().minX(), 540);
    const auto other = makeAt({800, 300, 100, 122});
    other->makeKeyAndOrderFront();
    popover->showRelativeToRect({}, *other->contentView(), NSRectEdge::maxY);
    EXPECT_EQ(popover->window()->parentWindow(), other.get());
    EXPECT_THAT(window->childWindows(), IsEmpty());
}

TEST_F(NSPopoverTest, isGoneWithItsOwner)
{
    show();
    const std::weak_ptr<NSWindow> shown = popover->window();
    popover = make<NSPopover>();
    EXPECT_TRUE(shown.expired());
    EXPECT_THAT(window->childWindows(), IsEmpty());
}

TEST_F(NSPopoverTest, closesWhenItsWindowIsOrderedOutAndCanBeShownAgain)
{
    popover->setDelegate(delegate);
    show();
    window->orderOut();
    EXPECT_FALSE(popover->isShown());
    EXPECT_THAT(delegate->calls, ElementsAre("will show", "did close"));
    window->makeKeyAndOrderFront();
    show();
    EXPECT_TRUE(popover->window()->isVisible());
}

TEST_F(NSPopoverTest, closesWhenItsWindowIsMiniaturized)
{
    const auto other = makeAt({800, 300, 100, 122});
    other->orderBack();
    show();
    window->miniaturize();
    EXPECT_FALSE(popover->isShown());
    EXPECT_EQ(application.keyWindow(), other.get());
}

TEST_F(NSPopoverTest, closesWhenItsOwnWindowIsOrderedOut)
{
    show();
    popover->window()->orderOut();
    EXPECT_FALSE(popover->isShown());
}

TEST_F(NSPopoverTest, isNotShownWhenItsDelegateTakesAwayWhatItNeeds)
{
    popover->setDelegate(delegate);
    delegate->onShow = [&] { anchor->removeFromSuperview(); };
    show();
    EXPECT_FALSE(popover->isShown());
    window->contentView()->addSubview(anchor);
    delegate->onShow = [&] { popover->setContentViewController(nullptr); };
    show();
    EXPECT_FALSE(popover->isShown());
    popover->setContentViewController(controller);
    delegate->onShow = [&] { window->orderOut(); };
    show();
    EXPECT_FALSE(popover->isShown());
    EXPECT_THAT(window->childWindows(), IsEmpty());
}

TEST_F(NSPopoverTest, aDelegateMayShowItItself)
{
    popover->setDelegate(delegate);
    delegate->onShow = [&] { show(NSRectEdge::minY); };
    show();
    EXPECT_TRUE(popover->isShown());
    EXPECT_EQ(window->childWindows().size(), 1U);
    popover->close();
    EXPECT_THAT(window->childWindows(), IsEmpty());
    EXPECT_THAT(application.windows(), ElementsAre(window));
}

TEST_F(NSPopoverTest, theContentMayBeTakenAwayWhileItCloses)
{
    const auto ofWindow = std::make_shared<RecordingDelegate>();
    window->setDelegate(ofWindow);
    show();
    ofWindow->onCall = [&](const std::string& call) {
        if (call == "became key")
            popover->setContentViewController(nullptr);
    };
    popover->close();
    EXPECT_FALSE(popover->isShown());
    EXPECT_EQ(content->superview(), nullptr);
}

TEST_F(NSPopoverTest, theContentMayCloseItWhenAskedForItsSize)
{
    class ClosingView : public NSView {
    public:
        CGSize intrinsicContentSize() const override
        {
            if (popover)
                popover->close();
            return {30, 20};
        }
        NSPopover* popover = nullptr;
    };
    const auto view = make<ClosingView>();
    controller->setView(view);
    show();
    ASSERT_TRUE(popover->isShown());
    view->popover = popover.get();
    view->invalidateIntrinsicContentSize();
    desktop->flushFrames();
    EXPECT_FALSE(popover->isShown());
    view->popover = nullptr;
}

TEST_F(NSPopoverTest, anEmptyRectangleIsAPlaceOfItsOwn)
{
    popover->showRelativeToRect({10, 5, 0, 0}, *anchor, NSRectEdge::maxY);
    EXPECT_EQ(popover->window()->frame(), CGRect(450, 355, 120, 69));
}

TEST_F(NSPopoverTest, itsControllerHearsThatItsViewAppearsAndDisappears)
{
    const auto recording = make<RecordingController>();
    recording->setView(make<NSView>());
    popover->setContentViewController(recording);
    show();
    EXPECT_THAT(recording->take(), ElementsAre("will appear", "did appear"));
    show();
    EXPECT_THAT(recording->take(), IsEmpty()) << "it was there";
    popover->close();
    EXPECT_THAT(recording->take(), ElementsAre("will disappear", "did disappear"));
    show();
    recording->take();
    window->close();
    EXPECT_THAT(recording->take(), ElementsAre("will disappear", "did disappear"));
}

TEST_F(NSPopoverTest, whereTheContentNeedsNothingItsControllersPreferenceCounts)
{
    const auto plain = make<NSViewController>();
    plain->setView(make<NSView>(CGRect(0, 0, 10, 10)));
    plain->setPreferredContentSize({98, 48});
    popover->setContentViewController(plain);
    show();
    EXPECT_EQ(popover->window()->frame().size, (CGSize{100, 59}));
}

TEST_F(NSPopoverTest, theDelegateIsReadAndWrittenByName)
{
    class Delegate : public NSObject, public NSPopoverDelegate {};
    const auto object = make<Delegate>();
    send(popover, "setDelegate:", object);
    EXPECT_EQ(popover->delegate(), object);
    EXPECT_EQ(send(popover, "delegate").as<ObjectRef>(), object);
    EXPECT_THAT(raised([&] { send(popover, "setDelegate:", content); }), HasSubstr("is no NSPopoverDelegate"));
    send(popover, "setDelegate:", Value());
    EXPECT_EQ(popover->delegate(), nullptr);
}

TEST_F(NSPopoverTest, drawsABoxWithAnArrowAndItsContent)
{
    show();
    desktop->flushFrames();
    EXPECT_FALSE(screenOf(*popover->window()).style().isOpaque);
    EXPECT_FALSE(screenOf(*popover->window()).style().isTitled);
    EXPECT_GE(screenOf(*popover->window()).frameCount(), 1U);
}

TEST_F(NSPopoverTest, whatCannotBeShownRaises)
{
    const auto bare = make<NSPopover>();
    EXPECT_THAT(raised([&] { bare->showRelativeToRect({}, *anchor, NSRectEdge::maxY); }),
                HasSubstr("no content view controller"));
    const auto loose = make<NSView>();
    EXPECT_THAT(raised([&] { popover->showRelativeToRect({}, *loose, NSRectEdge::maxY); }),
                HasSubstr("is in no visible window"));
    EXPECT_THAT(raised([&] {
                    popover->showRelativeToRect({std::nan(""), 0, 1, 1}, *anchor, NSRectEdge::maxY);
                }),
                HasSubstr("rect.x"));
    EXPECT_THAT(raised([&] { popover->showRelativeToRect({}, *anchor, static_cast<NSRectEdge>(7)); }),
                HasSubstr("there is no edge 7"));
    EXPECT_THAT(raised([&] { popover->setBehavior(static_cast<NSPopoverBehavior>(3)); }),
                HasSubstr("there is no behaviour 3"));
    EXPECT_FALSE(popover->isShown());
}

std::shared_ptr<NSPopover> popoverThatOutlivesTheApplication;

using NSPopoverDeathTest = NSPopoverTest;

TEST_F(NSPopoverDeathTest, aProgramMayEndWhileOneIsShown)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            show();
            popoverThatOutlivesTheApplication = popover;
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace RVCore::NSPopoverTests
