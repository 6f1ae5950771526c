#include "WindowTesting.h"

#include <AppKit/NSAnimationContext.h>
#include <AppKit/NSProgressIndicator.h>
#include <AppKit/NSViewAnimator.h>
#include <Dispatch/DispatchQueue.h>

#include <QuartzCore/CALayer.h>

#include <cmath>
#include <thread>

namespace RVCore::NSProgressIndicatorMotionTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// A window that is shown, with a wheel in it.
class NSProgressIndicatorMotion : public WindowTest {
protected:
    NSProgressIndicatorMotion()
    {
        wheel->setStyle(NSProgressIndicatorStyle::spinning);
        window->contentView()->addSubview(around);
        around->addSubview(wheel);
        window->orderFront();
        desktop->flushFrames();
    }
    ~NSProgressIndicatorMotion() override { application.setReducesMotion(std::nullopt); }

    // How many frames the window gets in a second on a display that has 64 of them.
    int framesOfASecond()
    {
        const std::size_t before = screenOf(*window).frameCount();
        for (int tick = 0; tick < 64; ++tick) {
            clock.advance(1.0 / 64);
            desktop->flushFrames();
        }
        return static_cast<int>(screenOf(*window).frameCount() - before);
    }
    // The number of the leading spoke, clockwise from the top.
    int leadingSpoke() const
    {
        const auto& spokes = wheel->layer()->sublayers().at(1)->sublayers();
        const auto leading =
            std::ranges::find_if(spokes, [](const auto& spoke) { return spoke->backgroundColor()->alpha == 1; });
        return static_cast<int>(leading - spokes.begin());
    }
    void turnIntoBar()
    {
        wheel->setStyle(NSProgressIndicatorStyle::bar);
        wheel->setFrameSize({100, 12});
        desktop->flushFrames();
    }
    // What is due comes, and nothing that was put off until then is left.
    bool isNothingScheduled()
    {
        clock.advance(1);
        desktop->flushFrames();
        return !DispatchQueue::main().nextDeadline();
    }

    std::shared_ptr<NSWindow> window = make<NSWindow>(CGSize{200, 200});
    std::shared_ptr<NSView> around = make<NSView>(CGRect(0, 0, 100, 100));
    std::shared_ptr<NSProgressIndicator> wheel = make<NSProgressIndicator>(CGRect(0, 0, 32, 32));
};

TEST_F(NSProgressIndicatorMotion, OneThatIsNotStartedSchedulesNothing)
{
    EXPECT_FALSE(wheel->isAnimating());
    EXPECT_EQ(framesOfASecond(), 0);
    EXPECT_TRUE(isNothingScheduled());
}

TEST_F(NSProgressIndicatorMotion, AWheelGoesOnByASpokeTwelveTimesASecond)
{
    wheel->startAnimation();
    EXPECT_EQ(leadingSpoke(), 0);
    desktop->flushFrames();
    clock.advance(0.01);
    for (int step = 1; step <= 25; ++step) {
        clock.advance(1.0 / 12);
        EXPECT_EQ(leadingSpoke(), step % 12);
    }
    desktop->flushFrames();
    EXPECT_EQ(framesOfASecond(), 12);
}

TEST_F(NSProgressIndicatorMotion, ABarGoesThereAndBackIn60StepsWithinTwoSeconds)
{
    turnIntoBar();
    wheel->startAnimation();
    desktop->flushFrames();
    EXPECT_EQ(framesOfASecond(), 30);
    EXPECT_NEAR(wheel->animationPhase(), 0.5, 1e-9);
    clock.advance(1);
    EXPECT_NEAR(std::remainder(wheel->animationPhase(), 1.0), 0, 1e-9);
}

TEST_F(NSProgressIndicatorMotion, WhereItStandsIsAFunctionOfTimeAndNotOfTheNumberOfSteps)
{
    wheel->startAnimation();
    clock.advance(0.1);
    around->setHidden(true);
    clock.advance(100.15); // without a step
    around->setHidden(false);
    desktop->flushFrames();
    EXPECT_EQ(leadingSpoke(), 3);
}

TEST_F(NSProgressIndicatorMotion, AFrameInBetweenDoesNotMakeItFaster)
{
    wheel->startAnimation();
    for (int frame = 0; frame < 100; ++frame) {
        clock.advance(0.01);
        window->contentView()->setNeedsDisplay(true);
        desktop->flushFrames();
    }
    EXPECT_EQ(leadingSpoke(), 0);
    EXPECT_EQ(DispatchQueue::main().dueCount(), 0);
    clock.advance(1.0 / 12);
    EXPECT_EQ(leadingSpoke(), 1);
}

TEST_F(NSProgressIndicatorMotion, StoppedItStaysWhereItIsAndSchedulesNothing)
{
    wheel->startAnimation();
    clock.advance(0.25);
    wheel->stopAnimation();
    desktop->flushFrames();
    EXPECT_EQ(framesOfASecond(), 0);
    EXPECT_EQ(leadingSpoke(), 3);
    EXPECT_TRUE(isNothingScheduled());
    wheel->startAnimation();
    EXPECT_EQ(leadingSpoke(), 3) << "and goes on from there";
    clock.advance(1.0 / 12);
    EXPECT_EQ(leadingSpoke(), 4);
}

// Shows what it is set to and runs nothing, so that what is due can be counted.
class StandingClock : public DispatchClock {
public:
    StandingClock() { install(this); }
    ~StandingClock() override { install(nullptr); }
    double seconds() const override { return time; }
    double secondsSince1970() const override { return time; }
    bool isRunning() const override { return false; }

    double time = 0;
};

TEST_F(NSProgressIndicatorMotion, StartingAndStoppingAgainAndAgainLeavesOneStepInTheQueue)
{
    clock.advance(1);
    StandingClock standing;
    for (int round = 0; round < 1000; ++round) {
        wheel->startAnimation();
        wheel->startAnimation();
        wheel->stopAnimation();
        wheel->stopAnimation();
    }
    wheel->startAnimation();
    standing.time = 1;
    EXPECT_EQ(DispatchQueue::main().runDue(), 1);
    standing.time = 2;
    wheel->stopAnimation();
    EXPECT_EQ(DispatchQueue::main().runDue(), 1);
    EXPECT_FALSE(DispatchQueue::main().nextDeadline());
}

TEST_F(NSProgressIndicatorMotion, OneThatKnowsHowFarItIsStandsStill)
{
    wheel->setIndeterminate(false);
    wheel->startAnimation();
    desktop->flushFrames();
    EXPECT_EQ(framesOfASecond(), 0);
    EXPECT_TRUE(isNothingScheduled());
    wheel->setIndeterminate(true);
    desktop->flushFrames();
    EXPECT_EQ(framesOfASecond(), 12);
}

TEST_F(NSProgressIndicatorMotion, OutOfSightItSchedulesNothingAndInSightItGoesOn)
{
    const std::pair<std::function<void()>, std::function<void()>> ways[] = {
        {[&] { wheel->setHidden(true); }, [&] { wheel->setHidden(false); }},
        {[&] { around->setHidden(true); }, [&] { around->setHidden(false); }},
        {[&] { around->setAlphaValue(0); }, [&] { around->setAlphaValue(1); }},
        {[&] { wheel->setAlphaValue(0); }, [&] { wheel->setAlphaValue(1); }},
        {[&] { wheel->layer()->setHidden(true); }, [&] { wheel->layer()->setHidden(false); }},
        {[&] { wheel->setFrameSize({}); },
         [&] {
             wheel->setFrameSize({32, 32});
         }},
        {[&] { wheel->removeFromSuperview(); }, [&] { around->addSubview(wheel); }},
        {[&] { around->removeFromSuperview(); }, [&] { window->contentView()->addSubview(around); }},
        {[&] { window->orderOut(); }, [&] { window->orderFront(); }},
        {[&] { window->miniaturize(); }, [&] { window->deminiaturize(); }},
        {[&] { screenOf(*window).userMinimize(true); }, [&] { screenOf(*window).userMinimize(false); }},
    };
    wheel->startAnimation();
    for (const auto& [hide, show] : ways) {
        const auto way = &hide - &ways[0].first;
        desktop->flushFrames();
        EXPECT_EQ(framesOfASecond(), 12) << way;
        hide();
        EXPECT_TRUE(isNothingScheduled()) << way;
        EXPECT_EQ(framesOfASecond(), 0) << way;
        show();
    }
    desktop->flushFrames();
    EXPECT_EQ(framesOfASecond(), 12);
}

TEST_F(NSProgressIndicatorMotion, OneThatIsStartedOutOfSightWaitsUntilItIsSeen)
{
    around->setHidden(true);
    wheel->startAnimation();
    EXPECT_TRUE(isNothingScheduled());
    around->setHidden(false);
    desktop->flushFrames();
    EXPECT_EQ(framesOfASecond(), 12);
}

TEST_F(NSProgressIndicatorMotion, ItTurnsAsLongAsAFadeLetsSomethingOfItBeSeen)
{
    wheel->startAnimation();
    NSAnimationContext::runAnimationGroup([&](NSAnimationContext& context) {
        context.setDuration(1);
        around->animator()->setAlphaValue(0);
    });
    clock.advance(0.75);
    EXPECT_EQ(leadingSpoke(), 9);
    clock.advance(0.5);
    EXPECT_TRUE(isNothingScheduled());
    NSAnimationContext::runAnimationGroup([&](NSAnimationContext& context) {
        context.setDuration(1);
        around->animator()->setAlphaValue(1);
    });
    desktop->flushFrames();
    clock.advance(1.0 / 64);
    desktop->flushFrames();
    EXPECT_TRUE(DispatchQueue::main().nextDeadline()) << "while it comes back";
}

TEST_F(NSProgressIndicatorMotion, WhereMovementMakesPeopleIllItIsSlowerAndDoesNotStop)
{
    application.setReducesMotion(true);
    wheel->startAnimation();
    desktop->flushFrames();
    EXPECT_EQ(framesOfASecond(), 3);
    EXPECT_EQ(leadingSpoke(), 3);
    wheel->stopAnimation();
    turnIntoBar();
    wheel->setAnimationPhase(0);
    wheel->startAnimation();
    clock.advance(1);
    EXPECT_NEAR(wheel->animationPhase(), 0.125, 1e-9);
}

TEST_F(NSProgressIndicatorMotion, OnAnotherWorkspaceItSchedulesNothingAndBackItGoesOn)
{
    wheel->startAnimation();
    desktop->flushFrames();
    desktop->windows().front()->setElsewhere(true);
    clock.advance(1);
    EXPECT_TRUE(isNothingScheduled());
    desktop->windows().front()->setElsewhere(false);
    desktop->flushFrames();
    EXPECT_FALSE(isNothingScheduled());
}

TEST_F(NSProgressIndicatorMotion, AnotherPaceStartsFromWhereItIs)
{
    wheel->startAnimation();
    desktop->flushFrames();
    clock.advance(0.5 + 1.0 / 64);
    desktop->flushFrames();
    EXPECT_EQ(leadingSpoke(), 6);
    application.setReducesMotion(true);
    clock.advance(1.0 / 12);
    desktop->flushFrames();
    EXPECT_EQ(leadingSpoke(), 7) << "the step that was on its way";
    clock.advance(1);
    desktop->flushFrames();
    EXPECT_EQ(leadingSpoke(), 10);
}

TEST_F(NSProgressIndicatorMotion, ColoursChangeAtOnceWhateverMotionIsInForce)
{
    NSAnimationContext::runAnimationGroup([&](NSAnimationContext& context) {
        context.setDuration(1);
        context.setAllowsImplicitAnimation(true);
        wheel->startAnimation();
        wheel->setAnimationPhase(0.5);
        wheel->setControlSize(NSControlSize::small);
    });
    EXPECT_FALSE(wheel->layer()->animationEnd());
}

TEST_F(NSProgressIndicatorMotion, OneThatDiesWhileItTurnsIsForgotten)
{
    wheel->startAnimation();
    const std::weak_ptr<NSProgressIndicator> watched = wheel;
    wheel->removeFromSuperview();
    wheel = nullptr;
    EXPECT_TRUE(watched.expired());
    EXPECT_TRUE(isNothingScheduled());
}

// --- The value

TEST_F(NSProgressIndicatorMotion, TheValueIsThereAtOnceAndSeenWithTheNextTurnOfTheMainQueue)
{
    turnIntoBar();
    wheel->setIndeterminate(false);
    desktop->flushFrames();
    wheel->setDoubleValue(50);
    EXPECT_EQ(wheel->doubleValue(), 50);
    EXPECT_FALSE(screenOf(*window).needsFrame());
    clock.advance(0);
    EXPECT_TRUE(screenOf(*window).needsFrame());
}

TEST_F(NSProgressIndicatorMotion, TenThousandValuesInASecondAreShownSixtyTimesAtMostTheLastOneIncluded)
{
    turnIntoBar();
    wheel->setIndeterminate(false);
    wheel->setMaxValue(10000);
    clock.advance(1);
    desktop->flushFrames();
    const std::size_t before = screenOf(*window).frameCount();
    for (int value = 1; value <= 10000; ++value) {
        wheel->setDoubleValue(value);
        EXPECT_EQ(wheel->doubleValue(), value);
        clock.advance(0.0001);
        desktop->flushFrames();
    }
    clock.advance(1);
    desktop->flushFrames();
    EXPECT_LE(screenOf(*window).frameCount() - before, 62U);
    EXPECT_THAT(screenOf(*window).lastFrame().text(), testing::HasSubstr("progress bar 1, in the background in"));
    EXPECT_TRUE(isNothingScheduled());
}

TEST_F(NSProgressIndicatorMotion, ValuesThatComeWhileTheMainThreadIsBusyFillTheQueueWithOneCall)
{
    wheel->setIndeterminate(false);
    clock.advance(1);
    ASSERT_FALSE(DispatchQueue::main().nextDeadline());
    std::thread([&] {
        for (int value = 0; value < 10000; ++value)
            wheel->setDoubleValue(value % 100);
    }).join();
    EXPECT_EQ(DispatchQueue::main().dueCount(), 1);
}

TEST_F(NSProgressIndicatorMotion, WritersReadersAndTheMainThreadDoNotMeet)
{
    wheel->setIndeterminate(false);
    std::thread writer([&] {
        for (int round = 0; round < 2000; ++round) {
            wheel->setDoubleValue(round % 100);
            EXPECT_LE(wheel->doubleValue(), 100);
        }
    });
    for (int round = 0; round < 200; ++round) {
        wheel->setMaxValue(50 + round % 50);
        EXPECT_GE(wheel->fraction(), 0);
        clock.advance(0.02);
        desktop->flushFrames();
    }
    writer.join();
    EXPECT_LE(wheel->doubleValue(), wheel->maxValue());
}

TEST_F(NSProgressIndicatorMotion, AssistiveTechnologyHearsOfWholePercents)
{
    wheel->setAccessibilityLabel("Copying");
    wheel->setIndeterminate(false);
    clock.advance(1);
    screenOf(*window).takeAccessibilityChanges();
    for (const double value : {24.6, 24.7, 25.0, 26.0}) {
        wheel->setDoubleValue(value);
        clock.advance(1);
    }
    EXPECT_THAT(screenOf(*window).takeAccessibilityChanges(),
                ElementsAre(Pair("Copying", AccessibleChange::value), Pair("Copying", AccessibleChange::value)));
}

TEST_F(NSProgressIndicatorMotion, AClockThatIsReplacedDoesNotHoldTheValueBack)
{
    wheel->setIndeterminate(false);
    clock.advance(1e6);
    wheel->setDoubleValue(1);
    clock.advance(1);
    ManualDispatchClock another;
    wheel->setDoubleValue(50);
    another.advance(0.1);
    EXPECT_EQ(wheel->layer()->sublayers()[1]->sublayers()[5]->backgroundColor()->alpha, 1);
}

} // namespace
} // namespace RVCore::NSProgressIndicatorMotionTests
