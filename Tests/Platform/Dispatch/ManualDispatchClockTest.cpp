#include <Dispatch/DispatchQueue.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>
#include <stdexcept>

namespace RVCore::ManualDispatchClockTests {
namespace {

using testing::ElementsAre;

class ManualDispatchClockTest : public testing::Test {
protected:
    // Notes when it runs, `delay` seconds from now.
    void schedule(double delay)
    {
        queue.asyncAfter(DispatchTime::now() + delay, [this] { times.push_back(clock.seconds()); });
    }

    ManualDispatchClock clock;
    DispatchQueue& queue = DispatchQueue::main();
    std::vector<double> times;
};

TEST_F(ManualDispatchClockTest, StandsStillUntilItIsMoved)
{
    EXPECT_EQ(clock.seconds(), 0);
    EXPECT_EQ(clock.seconds(), 0);
    clock.advance(1.5);
    EXPECT_EQ(clock.seconds(), 1.5);
    clock.advance(0);
    EXPECT_EQ(clock.seconds(), 1.5);
}

TEST_F(ManualDispatchClockTest, RunsEachClosureAtItsTime)
{
    schedule(2);
    schedule(1);
    schedule(3);
    clock.advance(2);
    EXPECT_THAT(times, ElementsAre(1, 2));
    clock.advance(1);
    EXPECT_THAT(times, ElementsAre(1, 2, 3));
}

TEST_F(ManualDispatchClockTest, RunsWhatAClosureAddsWithinTheSameStep)
{
    queue.asyncAfter(DispatchTime::now() + 1, [this] { schedule(0.5); });
    clock.advance(1);
    EXPECT_THAT(times, ElementsAre());
    clock.advance(1);
    EXPECT_THAT(times, ElementsAre(1.5));
    EXPECT_EQ(clock.seconds(), 2);
}

TEST_F(ManualDispatchClockTest, AnExceptionLeavesItAtTheTimeOfItsClosure)
{
    queue.asyncAfter(DispatchTime::now() + 1, [] { throw std::runtime_error("no"); });
    schedule(2);
    EXPECT_THROW(clock.advance(3), std::runtime_error);
    EXPECT_EQ(clock.seconds(), 1);
    clock.advance(1);
    EXPECT_THAT(times, ElementsAre(2));
}

TEST_F(ManualDispatchClockTest, TheDateMovesAlongAndCanBeSet)
{
    clock.setSecondsSince1970(1e9);
    clock.advance(2.5);
    EXPECT_EQ(clock.secondsSince1970(), 1e9 + 2.5);
    EXPECT_EQ(clock.seconds(), 2.5);
    clock.setSecondsSince1970(-5);
    EXPECT_EQ(clock.secondsSince1970(), -5);
    EXPECT_EQ(clock.seconds(), 2.5);
}

TEST_F(ManualDispatchClockTest, RefusesWhatIsNoStep)
{
    EXPECT_EQ(raised([&] { clock.advance(-1); }),
              "NSInvalidArgumentException: ManualDispatchClock.advance: time does not go back, got -1");
    EXPECT_EQ(raised([&] { clock.advance(std::nan("")); }),
              "NSInvalidArgumentException: ManualDispatchClock.advance: seconds must be finite, got nan");
    EXPECT_EQ(raised([&] { clock.setSecondsSince1970(HUGE_VAL); }),
              "NSInvalidArgumentException: ManualDispatchClock.setSecondsSince1970: seconds must be finite, got inf");
    EXPECT_EQ(clock.seconds(), 0);
}

TEST_F(ManualDispatchClockTest, IsMovedOnByWhoWaitsOnTheMainThread)
{
    schedule(0.5);
    EXPECT_TRUE(DispatchClock::shared().moveOn(1));
    EXPECT_EQ(clock.seconds(), 1);
    EXPECT_THAT(times, ElementsAre(0.5));
}

TEST(DispatchClockOfTheSystem, IsNotMovedOn)
{
    EXPECT_FALSE(DispatchClock::shared().moveOn(1));
}

TEST(ManualDispatchClock, WhatWaitsKeepsItsDistanceWhenTheClockIsReplaced)
{
    std::vector<int> ran;
    ManualDispatchClock outer;
    outer.advance(100);
    DispatchQueue::main().asyncAfter(DispatchTime::now() + 2, [&] { ran.push_back(1); });
    ManualDispatchClock inner;
    inner.advance(1.5);
    EXPECT_THAT(ran, ElementsAre());
    inner.advance(0.5);
    EXPECT_THAT(ran, ElementsAre(1));
}

} // namespace
} // namespace RVCore::ManualDispatchClockTests
