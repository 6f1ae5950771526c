#include <Dispatch/DispatchQueue.h>
#include <Extensions/NSWindow+RVCore.h>
#include <Foundation/Message.h>
#include <Platform/AppKit/ViewTesting.h>
#include <Platform/AppKit/WindowTesting.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>

namespace RVCore::NSWindowRVCoreTests {
namespace {

using testing::HasSubstr;
using Mask = NSWindowStyleMask;

// A subclass with a style of its own for what is made without one.
class BareWindow : public NSWindow {
    RVCORE_CLASS(BareWindow)
};

Class& BareWindow::staticClass()
{
    static Class& theClass = defineClass<BareWindow>("BareWindow", NSWindow::staticClass(), [](auto& publish) {
        publish.classMethod("defaultStyleMask", [](const Class&) { return Mask::borderless; });
    });
    return theClass;
}

// A subclass that keeps its bottom edge instead, and writes down how its frame is set.
class RisingWindow : public NSWindow {
    RVCORE_CLASS(RisingWindow)

public:
    void setFrame(const CGRect& frame, NSWindowFrameChange change) override
    {
        changes.push_back(change);
        NSWindow::setFrame(frame, change);
    }
    std::vector<NSWindowFrameChange> changes;
};

Class& RisingWindow::staticClass()
{
    static Class& theClass = defineClass<RisingWindow>("RisingWindow", NSWindow::staticClass(), [](auto& publish) {
        publish.method("frameForSize:",
                       [](RisingWindow& self, CGSize size) { return CGRect(self.frame().origin, size); });
    });
    return theClass;
}

class NSWindowRVCore : public WindowTest {
protected:
    std::shared_ptr<NSWindow> window = makeAt({100, 100, 400, 300});
};

// --- Making

TEST_F(NSWindowRVCore, TheDefaultStyleIsTitledClosableMiniaturizableTexturedAndUnifiedAndNotResizable)
{
    EXPECT_EQ(static_cast<int>(defaultStyleMask()), 4359);
    EXPECT_FALSE(contains(defaultStyleMask(), Mask::resizable));
    EXPECT_EQ(send(NSWindow::staticClass(), "defaultStyleMask").as<int>(), 4359);
}

TEST_F(NSWindowRVCore, AWindowIsMadeEmptyInTheDefaultStyle)
{
    for (const auto& made : {newDefaultWindow(), makeWindow()}) {
        EXPECT_EQ(made->styleMask(), defaultStyleMask());
        EXPECT_EQ(made->contentSize(), CGSize());
        EXPECT_EQ(made->frame().origin, CGPoint());
        EXPECT_FALSE(made->isVisible());
    }
}

TEST_F(NSWindowRVCore, AStyleThatIsGivenIsTaken)
{
    EXPECT_EQ(newDefaultWindow(Mask::titled)->styleMask(), Mask::titled);
    EXPECT_EQ(makeWindow(Mask::borderless)->styleMask(), Mask::borderless);
    EXPECT_THAT(raised([] { makeWindow(static_cast<Mask>(64)); }), HasSubstr("bits that no style has: 64"));
}

TEST_F(NSWindowRVCore, AnInitializerMakesTheClassThatItIsCalledOn)
{
    const std::shared_ptr<RisingWindow> made = makeWindow<RisingWindow>();
    EXPECT_EQ(made->styleMask(), defaultStyleMask());
}

TEST_F(NSWindowRVCore, ASubclassSuppliesItsOwnDefaultStyle)
{
    EXPECT_EQ(makeWindow<BareWindow>()->styleMask(), Mask::borderless);
    EXPECT_EQ(newDefaultWindow<BareWindow>()->styleMask(), Mask::borderless);
    EXPECT_EQ(makeWindow<BareWindow>(Mask::titled)->styleMask(), Mask::titled);
    EXPECT_EQ(makeWindow()->styleMask(), defaultStyleMask());
}

TEST_F(NSWindowRVCore, AWindowThatIsMadeTakesTheSizeOfItsContent)
{
    const auto made = makeWindow();
    hold(*made->contentView(), Attribute::width, {.constant = 250});
    hold(*made->contentView(), Attribute::height, {.constant = 120});
    made->makeKeyAndOrderFront();
    EXPECT_EQ(made->contentSize(), (CGSize{250, 120}));
}

// --- frameForSize

TEST_F(NSWindowRVCore, AFrameForASizeKeepsTheLeftAndTheTopEdge)
{
    EXPECT_EQ(frameForSize(*window, {500, 200}), CGRect(100, 200, 500, 200));
    EXPECT_EQ(frameForSize(*window, {500, 200}).maxY(), 400);
    EXPECT_EQ(frameForSize(*window, {10, 600}), CGRect(100, -200, 10, 600));
    EXPECT_EQ(window->frame(), CGRect(100, 100, 400, 300)); // nothing moves
}

// --- resizeToNewContentSize

TEST_F(NSWindowRVCore, ResizingKeepsTheTopEdgeAndTheHeightOfTheTitleBar)
{
    ASSERT_EQ(window->contentView()->frame().size.height, 278);
    resizeToNewContentSize(*window, {600, 400});
    clock.advance(1);
    EXPECT_EQ(window->frame(), CGRect(100, 400 - 422, 600, 422));
    EXPECT_EQ(window->contentSize(), (CGSize{600, 400}));
}

TEST_F(NSWindowRVCore, TheWidthIsTakenAsItStandsWithoutTheBorder)
{
    window->orderFront();
    screenOf(*window).setMargins({.top = 22, .left = 5, .right = 5});
    resizeToNewContentSize(*window, {600, 400});
    clock.advance(1);
    EXPECT_EQ(window->frame().size, (CGSize{600, 422}));
    EXPECT_EQ(window->contentSize(), (CGSize{590, 400}));
}

TEST_F(NSWindowRVCore, TheResizeIsAnimatedWhateverIsAsked)
{
    for (const bool animated : {true, false}) {
        const auto rising = makeWindow<RisingWindow>();
        resizeToNewContentSize(*rising, {600, 400}, {.animated = animated});
        ASSERT_EQ(rising->changes.size(), 1U);
        EXPECT_TRUE(rising->changes[0].animate);
        EXPECT_TRUE(rising->changes[0].display);
        EXPECT_TRUE(rising->isAnimatingFrame());
        EXPECT_EQ(rising->contentSize(), CGSize());
        clock.advance(1);
        EXPECT_EQ(rising->contentSize(), (CGSize{600, 400}));
    }
}

TEST_F(NSWindowRVCore, ASubclassesFrameForSizeIsUsed)
{
    const auto rising = makeWindow<RisingWindow>();
    rising->setFrame({0, 50, 100, 122}, {});
    resizeToNewContentSize(*rising, {100, 200});
    clock.advance(1);
    EXPECT_EQ(rising->frame(), CGRect(0, 50, 100, 222));
}

TEST_F(NSWindowRVCore, OnDoneRunsOnTheMainQueueWhenTheTimeOfTheResizeIsOver)
{
    int doneCount = 0;
    CGRect seen;
    resizeToNewContentSize(*window, {550, 278}, {.onDone = [&] {
        ++doneCount;
        seen = window->frame();
    }});
    clock.advance(0.19);
    EXPECT_EQ(doneCount, 0);
    clock.advance(0.01);
    EXPECT_EQ(doneCount, 1);
    EXPECT_EQ(seen, CGRect(100, 100, 550, 300));
    clock.advance(5);
    EXPECT_EQ(doneCount, 1);
}

TEST_F(NSWindowRVCore, OnDoneDoesNotWaitForTheRealEnd)
{
    int doneCount = 0;
    resizeToNewContentSize(*window, {550, 278}, {.onDone = [&] { ++doneCount; }});
    window->setFrameOrigin({0, 0}); // ends the resize
    EXPECT_EQ(doneCount, 0);
    clock.advance(0.2);
    EXPECT_EQ(doneCount, 1);
}

TEST_F(NSWindowRVCore, OnDoneOfAResizeThatChangesNothingComesLaterToo)
{
    int doneCount = 0;
    resizeToNewContentSize(*window, {400, 278}, {.onDone = [&] { ++doneCount; }});
    EXPECT_EQ(doneCount, 0);
    clock.advance(0);
    EXPECT_EQ(doneCount, 1);
}

TEST_F(NSWindowRVCore, WithoutOnDoneNothingIsLeftInTheQueueAfterTheResize)
{
    resizeToNewContentSize(*window, {550, 278});
    clock.advance(0.2);
    EXPECT_FALSE(DispatchQueue::main().nextDeadline());
}

TEST_F(NSWindowRVCore, SizesThatAreNoneRaiseAndScheduleNothing)
{
    const auto resized = [&](CGSize size) {
        return raised([&] { resizeToNewContentSize(*window, size, {.onDone = [] {}}); });
    };
    EXPECT_THAT(resized({-1, 100}), HasSubstr("frame.size must not be negative"));
    EXPECT_THAT(resized({HUGE_VAL, 100}), HasSubstr("must be finite"));
    EXPECT_FALSE(DispatchQueue::main().nextDeadline());
    EXPECT_EQ(resized({0, 0}), "nothing");
    clock.advance(5);
    EXPECT_EQ(window->contentSize(), (CGSize{1, 1}));
}

// --- By name

TEST_F(NSWindowRVCore, IsReachedByName)
{
    const auto made = [](const Value& value) { return value.as<std::shared_ptr<NSWindow>>(); };
    EXPECT_EQ(made(send(NSWindow::staticClass(), "newDefaultWindowWithStyleMask:", 9))->styleMask(),
              Mask::titled | Mask::resizable);
    EXPECT_EQ(made(send(BareWindow::staticClass(), "newDefaultWindowWithStyleMask:", nullptr))->styleMask(),
              Mask::borderless);
    const auto bare = made(send(made(send(BareWindow::staticClass(), "alloc")), "initWithStyleMask:", nullptr));
    EXPECT_EQ(&bare->classObject(), &BareWindow::staticClass());
    EXPECT_EQ(bare->styleMask(), Mask::borderless);
    EXPECT_EQ(made(send(made(send(NSWindow::staticClass(), "alloc")), "initWithStyleMask:", 1))->styleMask(),
              Mask::titled);
    EXPECT_EQ(send(window, "frameForSize:", CGSize{500, 200}).as<CGRect>(), CGRect(100, 200, 500, 200));
    int doneCount = 0;
    send(window, "resizeToNewContentSize:animated:onDone:", CGSize{600, 400}, false,
         std::function<void()>([&] { ++doneCount; }));
    send(window, "resizeToNewContentSize:animated:onDone:", CGSize{600, 400}, true, nullptr);
    clock.advance(1);
    EXPECT_EQ(window->contentSize(), (CGSize{600, 400}));
    EXPECT_EQ(doneCount, 1);
}

} // namespace
} // namespace RVCore::NSWindowRVCoreTests
