#include "ViewTesting.h"
#include "WindowTesting.h"

#include <AppKit/NSScreen.h>
#include <Dispatch/DispatchQueue.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>
#include <set>

namespace RVCore::NSWindowFrameTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Mask = NSWindowStyleMask;

class NSWindowFrameTest : public WindowTest {
protected:
    std::shared_ptr<NSWindow> window = make<NSWindow>(CGRect(100, 100, 400, 278), Mask::titled | Mask::resizable);
};

// --- Making

TEST_F(NSWindowFrameTest, TheFrameHasATitleBarAboveTheContent)
{
    EXPECT_EQ(window->frame(), CGRect(100, 100, 400, 300));
    EXPECT_EQ(window->contentSize(), (CGSize{400, 278}));
    EXPECT_EQ(window->contentView()->frame(), CGRect(0, 0, 400, 278));
    EXPECT_EQ(window->frameRectForContentRect({10, 20, 30, 40}), CGRect(10, 20, 30, 62));
    EXPECT_EQ(window->contentRectForFrameRect({10, 20, 30, 62}), CGRect(10, 20, 30, 40));
    EXPECT_EQ(window->contentRectForFrameRect({10, 20, 30, 10}).size.height, 0);
}

TEST_F(NSWindowFrameTest, ABorderlessWindowIsAllContent)
{
    const auto plain = make<NSWindow>(CGRect(1, 2, 30, 40), Mask::borderless);
    EXPECT_EQ(plain->frame(), CGRect(1, 2, 30, 40));
    EXPECT_EQ(plain->frameRectForContentRect({1, 2, 3, 4}), CGRect(1, 2, 3, 4));
    EXPECT_FALSE(plain->isResizable());
}

TEST_F(NSWindowFrameTest, TheStyleReachesTheDesktop)
{
    EXPECT_EQ(static_cast<int>(make<NSWindow>(CGSize{1, 1})->styleMask()), 15);
    EXPECT_TRUE(window->isResizable());
    window->orderFront();
    const WindowStyle expected{.isClosable = false, .isMinimizable = false};
    EXPECT_EQ(screenOf(*window).style(), expected);
    const auto fixed = make<NSWindow>(CGRect(0, 0, 50, 50), Mask::titled | Mask::closable | Mask::miniaturizable);
    fixed->orderFront();
    screenOf(*fixed).userResize({80, 80});
    EXPECT_EQ(fixed->contentSize(), (CGSize{50, 50}));
}

TEST_F(NSWindowFrameTest, UnknownStyleBitsRaiseAndAreNamed)
{
    EXPECT_EQ(raised([] { make<NSWindow>(CGRect(), static_cast<Mask>(1 | 16 | 512)); }),
              "NSInvalidArgumentException: NSWindow.initWithContentRect:styleMask:backing:defer:: styleMask has bits "
              "that no style has: 528");
    EXPECT_EQ(raised([] { make<NSWindow>(CGRect(), static_cast<Mask>(15 | 256 | 4096 | 32768)); }), "nothing");
}

TEST_F(NSWindowFrameTest, RectanglesThatNoWindowCanHaveRaise)
{
    const auto made = [](const CGRect& rect) { return raised([&] { make<NSWindow>(rect, Mask::titled); }); };
    EXPECT_THAT(made({0, 0, -1, 5}), HasSubstr("contentRect.size must not be negative, got -1 × 5"));
    EXPECT_THAT(made({0, 0, 5, std::nan("")}), HasSubstr("contentRect.size.height must be finite"));
    EXPECT_THAT(made({HUGE_VAL, 0, 5, 5}), HasSubstr("contentRect.origin.x must be finite"));
    EXPECT_THAT(made({0, 2e6, 5, 5}), HasSubstr("within 1000000 points"));
    EXPECT_THAT(raised([] { make<NSWindow>(CGRect(), Mask::titled, static_cast<NSBackingStoreType>(1)); }),
                HasSubstr("backing must be buffered (2), got 1"));
}

TEST_F(NSWindowFrameTest, HugeSizesAreWhatADesktopCanCount)
{
    EXPECT_EQ(make<NSWindow>(CGRect(0, 0, 1e9, 10), Mask::borderless)->frame().size, (CGSize{32767, 10}));
    window->setFrame({0, 0, 1e12, 300});
    EXPECT_EQ(window->frame().size, (CGSize{32767, 300}));
}

TEST_F(NSWindowFrameTest, AnEmptyContentRectangleIsLegalAndTakesWhatTheContentNeeds)
{
    const auto empty = make<NSWindow>(CGRect(), Mask::titled);
    EXPECT_EQ(empty->contentSize(), CGSize());
    empty->layoutIfNeeded();
    EXPECT_EQ(empty->frame(), CGRect(0, 0, 0, 22)); // as long as nothing is needed
    const auto view = addTo(*empty->contentView());
    place(*view, {10, 10, 80, 30});
    hold(*view, Attribute::right, *empty->contentView(), Attribute::right, {.constant = -10});
    hold(*view, Attribute::bottom, *empty->contentView(), Attribute::bottom, {.constant = -10});
    empty->layoutIfNeeded();
    EXPECT_EQ(empty->contentSize(), (CGSize{100, 50}));
    empty->orderFront();
    EXPECT_EQ(screenOf(*empty).contentSize(), (CGSize{100, 50}));
}

TEST_F(NSWindowFrameTest, AnEmptyWindowThatIsShownHasOnePoint)
{
    const auto empty = make<NSWindow>(CGRect(), Mask::titled);
    empty->orderFront();
    EXPECT_EQ(empty->contentSize(), (CGSize{1, 1}));
    EXPECT_EQ(screenOf(*empty).contentSize(), (CGSize{1, 1}));
}

// --- Setting

TEST_F(NSWindowFrameTest, TheFrameReachesContentAndDesktop)
{
    window->orderFront();
    EXPECT_EQ(screenOf(*window).placement().origin, (CGPoint{100, 900 - 400})); // from the top of the screen
    window->setFrame({50, 60, 500, 222});
    EXPECT_EQ(window->frame(), CGRect(50, 60, 500, 222));
    EXPECT_EQ(window->contentSize(), (CGSize{500, 200}));
    EXPECT_EQ(screenOf(*window).contentSize(), (CGSize{500, 200}));
    EXPECT_EQ(screenOf(*window).placement().origin, (CGPoint{50, 900 - 282}));
}

TEST_F(NSWindowFrameTest, DisplayLaysTheContentOutAtOnce)
{
    const auto view = addTo<ProbeView>(*window->contentView());
    hold(*view, Attribute::width, *window->contentView(), Attribute::width);
    window->setFrame({0, 0, 300, 100}, {.display = false});
    EXPECT_EQ(view->frame().size.width, 0);
    window->setFrame({0, 0, 310, 100});
    EXPECT_EQ(view->frame().size.width, 310);
}

TEST_F(NSWindowFrameTest, AnOriginMovesAndDoesNotResize)
{
    window->setFrameOrigin({-20, 7.5});
    EXPECT_EQ(window->frame(), CGRect(-20, 7.5, 400, 300));
    window->orderFront();
    EXPECT_EQ(screenOf(*window).placement().origin, (CGPoint{-20, std::round(900 - 307.5)}));
    EXPECT_EQ(window->frame(), CGRect(-20, 7.5, 400, 300)); // the desktop's rounding is its own
}

TEST_F(NSWindowFrameTest, AnotherContentSizeKeepsTheTopEdge)
{
    window->setContentSize({200, 100});
    EXPECT_EQ(window->frame(), CGRect(100, 278, 200, 122));
    window->orderFront();
    screenOf(*window).userResize({250, 300});
    EXPECT_EQ(window->frame(), CGRect(100, 78, 250, 322));
    hold(*window->contentView(), Attribute::height, {.constant = 310});
    window->layoutIfNeeded();
    EXPECT_EQ(window->frame(), CGRect(100, 68, 250, 332));
    EXPECT_EQ(screenOf(*window).placement().origin, (CGPoint{100, 500}));
}

TEST_F(NSWindowFrameTest, FractionsOfSizesAreRoundedUpUnderTheSameTopEdge)
{
    window->setFrame({10, 10, 99.5, 100.25});
    EXPECT_EQ(window->frame(), CGRect(10, 110.25 - 101, 100, 101));
}

TEST_F(NSWindowFrameTest, FramesThatAreNoneRaiseAndChangeNothing)
{
    EXPECT_THAT(raised([&] { window->setFrame({0, 0, -5, 10}); }), HasSubstr("frame.size must not be negative"));
    EXPECT_THAT(raised([&] { window->setFrame({std::nan(""), 0, 5, 10}); }), HasSubstr("frame.origin.x"));
    EXPECT_THAT(raised([&] { window->setFrameOrigin({0, 1e7}); }), HasSubstr("origin must be within"));
    EXPECT_THAT(raised([&] { window->setContentMinSize({-1, 0}); }), HasSubstr("must not be negative"));
    EXPECT_THAT(raised([&] { window->setContentMaxSize({HUGE_VAL, 0}); }), HasSubstr("must be finite"));
    EXPECT_EQ(window->frame(), CGRect(100, 100, 400, 300));
}

TEST_F(NSWindowFrameTest, AFrameWithoutRoomForContentLeavesItOnePoint)
{
    window->setFrame({0, 0, 0, 0});
    EXPECT_EQ(window->contentSize(), (CGSize{1, 1}));
    EXPECT_EQ(window->frame(), CGRect(0, -23, 1, 23)); // below its top edge
}

TEST_F(NSWindowFrameTest, IsCenteredInWhatIsVisibleOfItsScreen)
{
    window->center();
    EXPECT_EQ(window->frame(), CGRect(520, 288, 400, 300)); // 24 points of panel at the top
}

// --- Limits

TEST_F(NSWindowFrameTest, LimitsHoldForProgramAndUser)
{
    window->orderFront();
    window->setContentMinSize({150, 120});
    window->setContentMaxSize({450, 300});
    window->setContentSize({10, 10});
    EXPECT_EQ(window->contentSize(), (CGSize{150, 120}));
    window->setFrame({0, 0, 1000, 1000});
    EXPECT_EQ(window->frame(), CGRect(0, 1000 - 322, 450, 322));
    screenOf(*window).userResize({10, 1000});
    EXPECT_EQ(window->contentSize(), (CGSize{150, 300}));
}

TEST_F(NSWindowFrameTest, ALimitThatIsSetHoldsForTheWindowAsItIs)
{
    window->setContentMaxSize({300, 100});
    EXPECT_EQ(window->frame(), CGRect(100, 278, 300, 122));
    window->setContentMinSize({350, 0}); // of two that contradict each other
    EXPECT_EQ(window->contentSize(), (CGSize{350, 100}));
}

TEST_F(NSWindowFrameTest, WhatTheContentNeedsStandsAboveTheLargestSize)
{
    window->setContentMaxSize({300, 300});
    hold(*window->contentView(), Attribute::width, {.constant = 500});
    window->orderFront();
    EXPECT_EQ(window->contentSize().width, 500);
    desktop->flushFrames();
    desktop->flushFrames();
    EXPECT_EQ(window->contentSize().width, 500);
    EXPECT_EQ(desktop->flushFrames(), 0);
}

// --- What the desktop does

TEST_F(NSWindowFrameTest, FollowsTheUser)
{
    window->orderFront();
    screenOf(*window).userMove({30, 40});
    EXPECT_EQ(window->frame(), CGRect(30, 900 - 40 - 300, 400, 300));
}

TEST_F(NSWindowFrameTest, AnotherFrameAroundTheContentLeavesContentAndTopLeftCorner)
{
    window->orderFront();
    screenOf(*window).setMargins({.top = 30, .left = 2, .bottom = 2, .right = 2});
    EXPECT_EQ(window->contentSize(), (CGSize{400, 278}));
    EXPECT_EQ(window->frame(), CGRect(100, 400 - 310, 404, 310));
    EXPECT_EQ(window->frameRectForContentRect({0, 0, 10, 10}), CGRect(-2, -2, 14, 42));
}

TEST_F(NSWindowFrameTest, AWindowThatNobodyPlacedIsLeftToTheDesktop)
{
    const auto free = make<NSWindow>(CGSize{100, 100});
    free->orderFront();
    EXPECT_EQ(screenOf(*free).placement().origin, CGPoint()); // not told
    free->setFrameOrigin({0, 0});
    EXPECT_EQ(screenOf(*free).placement().origin, (CGPoint{0, 900 - 122}));
}

TEST_F(NSWindowFrameTest, TellsItsDelegateOfChangesOnly)
{
    const auto delegate = std::make_shared<RecordingDelegate>();
    window->setDelegate(delegate);
    window->setFrame({100, 100, 400, 300});
    EXPECT_THAT(delegate->take(), IsEmpty());
    window->setFrame({100, 100, 410, 300});
    EXPECT_THAT(delegate->take(), ElementsAre("resized"));
    window->setFrameOrigin({0, 0});
    EXPECT_THAT(delegate->take(), ElementsAre("moved"));
    window->setContentSize({400, 200}); // downward: the top left corner stays
    EXPECT_THAT(delegate->take(), ElementsAre("resized"));
    window->setFrame({5, 5, 300, 300});
    EXPECT_THAT(delegate->take(), ElementsAre("resized", "moved"));
    window->orderFront();
    screenOf(*window).setBackingScale(2);
    EXPECT_THAT(delegate->take(), ElementsAre("backing"));
    EXPECT_EQ(window->backingScaleFactor(), 2);
}

TEST_F(NSWindowFrameTest, ADelegateIsNotHeld)
{
    auto delegate = std::make_shared<RecordingDelegate>();
    window->setDelegate(delegate);
    delegate.reset();
    EXPECT_EQ(window->delegate(), nullptr);
    window->setFrameOrigin({0, 0});
}

TEST_F(NSWindowFrameTest, ItsScreenIsTheOneThatMostOfItIsOn)
{
    desktop->setScreens({{.frame = {0, 0, 1000, 800}, .visibleFrame = {0, 0, 1000, 800}},
                         {.frame = {1000, 0, 1000, 600}, .visibleFrame = {1000, 0, 1000, 600}, .backingScale = 2}});
    window->setFrame({900, 500, 150, 100});
    EXPECT_EQ(window->screen()->frame(), CGRect(0, 0, 1000, 800));
    window->setFrame({960, 500, 150, 100});
    EXPECT_EQ(window->screen()->frame(), CGRect(1000, 200, 1000, 600));
    EXPECT_EQ(window->screen()->backingScaleFactor(), 2);
    window->setFrame({0, 5000, 150, 100});
    EXPECT_EQ(window->screen(), nullptr);
}

// --- Animated

TEST_F(NSWindowFrameTest, TheResizeTimeIsProportionalToTheLargestChange)
{
    EXPECT_DOUBLE_EQ(window->animationResizeTime({100, 100, 550, 300}), 0.2);
    EXPECT_DOUBLE_EQ(window->animationResizeTime({100, 175, 430, 300}), 0.1);
    EXPECT_DOUBLE_EQ(window->animationResizeTime({-200, 100, 400, 310}), 0.4);
    EXPECT_EQ(window->animationResizeTime(window->frame()), 0);
}

TEST_F(NSWindowFrameTest, AnAnimatedFrameIsOnItsWayForThatLongAndEndsExactlyThere)
{
    window->orderFront();
    window->setFrame({100, 100, 550, 300}, {.animate = true});
    EXPECT_TRUE(window->isAnimatingFrame());
    EXPECT_EQ(window->frame(), CGRect(100, 100, 400, 300));
    clock.advance(0.1);
    EXPECT_NEAR(window->frame().size.width, 475, 1);
    EXPECT_EQ(screenOf(*window).contentSize().width, window->frame().size.width);
    clock.advance(0.1);
    EXPECT_EQ(window->frame(), CGRect(100, 100, 550, 300));
    EXPECT_FALSE(window->isAnimatingFrame());
    EXPECT_EQ(screenOf(*window).contentSize(), (CGSize{550, 278}));
}

TEST_F(NSWindowFrameTest, WithReducedMotionAnAnimatedFrameIsThereAtOnce)
{
    desktop->setPrefersReducedMotion(true);
    window->setFrame({100, 100, 550, 300}, {.animate = true});
    EXPECT_EQ(window->frame(), CGRect(100, 100, 550, 300));
    EXPECT_FALSE(window->isAnimatingFrame());
    EXPECT_EQ(window->animationResizeTime({100, 100, 700, 300}), 0.2);
}

TEST_F(NSWindowFrameTest, OnTheWayEveryStepIsAFrameAndTheTopEdgeStandsStill)
{
    window->setFrame({100, 100.5, 400, 300});
    window->setFrame({100, 200.5, 400, 200}, {.animate = true});
    std::vector<CGFloat> heights;
    for (double time = 0; time < 0.2; time += 1.0 / 60) {
        clock.advance(1.0 / 60);
        EXPECT_EQ(window->frame().maxY(), 400.5);
        heights.push_back(window->frame().size.height);
    }
    EXPECT_TRUE(std::is_sorted(heights.rbegin(), heights.rend()));
    EXPECT_GE(std::set<CGFloat>(heights.begin(), heights.end()).size(), 7U);
    EXPECT_EQ(window->frame(), CGRect(100, 200.5, 400, 200));
}

TEST_F(NSWindowFrameTest, ItsEndIsBeforeAnythingThatWaitsForItsTime)
{
    const CGRect target(100, 100, 550, 300);
    window->setFrame(target, {.animate = true});
    CGRect seen;
    DispatchQueue::main().asyncAfter(DispatchTime::now() + window->animationResizeTime(target),
                                     [&] { seen = window->frame(); });
    clock.advance(1);
    EXPECT_EQ(seen, target);
}

TEST_F(NSWindowFrameTest, AnotherFrameTakesTheRunningOnesPlace)
{
    window->setFrame({100, 100, 550, 300}, {.animate = true});
    clock.advance(0.1);
    window->setFrame({100, 100, 400, 300}, {.animate = true});
    clock.advance(0.05);
    EXPECT_LT(window->frame().size.width, 475);
    clock.advance(1);
    EXPECT_EQ(window->frame(), CGRect(100, 100, 400, 300));

    const std::vector<std::function<void()>> others{[&] {
                                                        window->setFrame({1, 2, 300, 200});
                                                    },
                                                    [&] {
                                                        window->setFrameOrigin({1, 2});
                                                    },
                                                    [&] {
                                                        window->setContentSize({50, 60});
                                                    }};
    for (const auto& other : others) {
        window->setFrame({500, 100, 550, 300}, {.animate = true});
        clock.advance(0.05);
        other();
        EXPECT_FALSE(window->isAnimatingFrame());
        const CGRect there = window->frame();
        clock.advance(5);
        EXPECT_EQ(window->frame(), there);
    }
}

TEST_F(NSWindowFrameTest, NoWayTakesNoTimeAndLeavesNothingInTheQueue)
{
    window->setFrame(window->frame(), {.animate = true});
    EXPECT_FALSE(window->isAnimatingFrame());
    EXPECT_FALSE(DispatchQueue::main().nextDeadline());
    window->setFrame({100, 100, 550, 300}, {.animate = true});
    clock.advance(0.2);
    EXPECT_FALSE(DispatchQueue::main().nextDeadline());
}

TEST_F(NSWindowFrameTest, AWindowMayEndOnItsWay)
{
    window->setFrame({100, 100, 550, 300}, {.animate = true});
    window.reset();
    clock.advance(1);

    window = make<NSWindow>(CGRect(0, 0, 100, 100), Mask::titled);
    const auto delegate = std::make_shared<RecordingDelegate>();
    window->setDelegate(delegate);
    delegate->onCall = [&](const std::string&) { window.reset(); };
    window->setFrame({0, 0, 400, 100}, {.animate = true});
    clock.advance(1);
    EXPECT_EQ(window, nullptr);
}

// --- By name

TEST_F(NSWindowFrameTest, IsReachedByName)
{
    const auto named = send(send(NSWindow::staticClass(), "alloc").as<std::shared_ptr<NSWindow>>(),
                            "initWithContentRect:styleMask:backing:defer:", CGRect(1, 2, 30, 40), 1 | 8, 2, false)
                           .as<std::shared_ptr<NSWindow>>();
    EXPECT_EQ(send(named, "frame").as<CGRect>(), CGRect(1, 2, 30, 62));
    EXPECT_EQ(send(named, "styleMask").as<int>(), 9);
    EXPECT_TRUE(send(named, "isResizable").as<bool>());
    EXPECT_EQ(send(named, "frameRectForContentRect:", CGRect(0, 0, 5, 5)).as<CGRect>(), CGRect(0, 0, 5, 27));
    EXPECT_EQ(send(named, "contentRectForFrameRect:", CGRect(0, 0, 5, 27)).as<CGRect>(), CGRect(0, 0, 5, 5));
    send(named, "setFrame:display:", CGRect(0, 0, 50, 50), true);
    EXPECT_EQ(named->frame(), CGRect(0, 0, 50, 50));
    send(named, "setFrame:display:animate:", CGRect(0, 0, 200, 50), true, true);
    EXPECT_TRUE(send(named, "isAnimatingFrame").as<bool>());
    EXPECT_EQ(send(named, "animationResizeTime:", CGRect(0, 0, 200, 50)).as<double>(), 0.2);
    send(named, "setFrameOrigin:", CGPoint{3, 4});
    EXPECT_EQ(named->frame(), CGRect(3, 4, 50, 50));
    send(named, "setContentMinSize:", CGSize{5, 6});
    EXPECT_EQ(send(named, "contentMinSize").as<CGSize>(), (CGSize{5, 6}));
    send(named, "setContentMaxSize:", CGSize{70, 60});
    EXPECT_EQ(send(named, "contentMaxSize").as<CGSize>(), (CGSize{70, 60}));
    send(named, "center");
    EXPECT_EQ(send(send(named, "screen").as<std::shared_ptr<NSScreen>>(), "frame").as<CGRect>(),
              CGRect(0, 0, 1440, 900));
}

} // namespace
} // namespace RVCore::NSWindowFrameTests
