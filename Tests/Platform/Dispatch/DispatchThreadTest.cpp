#include <Dispatch/DispatchQueue.h>
#include <Dispatch/DispatchThread.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Platform/Foundation/Raised.h>

#include <atomic>
#include <future>
#include <mutex>

namespace RVCore::DispatchThreadTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Threads that note when they have their turns, on a clock that is moved.
class DispatchThreadTest : public testing::Test {
protected:
    // Every `interval` seconds, this many times.
    std::unique_ptr<DispatchThread> makeThread(const std::string& name, double interval, int count)
    {
        return std::make_unique<DispatchThread>([this, name, interval, count](DispatchThread& self) {
            DispatchTime next = DispatchTime(0);
            for (int turn = 0; turn < count; ++turn) {
                next = next + interval;
                const auto now = self.waitUntil(next);
                if (!now) {
                    note(name + " cancelled");
                    return;
                }
                note(name + " " + numberText(now->seconds()));
            }
        });
    }
    void note(const std::string& text)
    {
        const std::lock_guard lock(mutex);
        notes.push_back(text);
    }
    std::vector<std::string> take()
    {
        const std::lock_guard lock(mutex);
        return std::exchange(notes, {});
    }

    ManualDispatchClock clock;
    std::mutex mutex;
    std::vector<std::string> notes;
};

TEST_F(DispatchThreadTest, HasItsTurnsAsTheClockIsMoved)
{
    const auto thread = makeThread("a", 1, 3);
    EXPECT_THAT(take(), IsEmpty());
    clock.advance(1);
    EXPECT_THAT(take(), ElementsAre("a 1"));
    clock.advance(0.9);
    EXPECT_THAT(take(), IsEmpty());
    clock.advance(5);
    EXPECT_THAT(take(), ElementsAre("a 2", "a 3"));
}

TEST_F(DispatchThreadTest, TwoHaveTheirTurnsInTheOrderOfTheirTimesAndNeverTogether)
{
    const auto b = makeThread("b", 2, 2);
    const auto a = makeThread("a", 1, 4);
    clock.advance(4);
    EXPECT_THAT(take(), ElementsAre("a 1", "b 2", "a 2", "a 3", "b 4", "a 4"));
}

TEST_F(DispatchThreadTest, TurnsAndClosuresOfTheMainQueueTakeTheirPlacesTurnsFirst)
{
    const auto thread = makeThread("a", 1, 2);
    for (const double time : {1.0, 1.5, 2.0})
        DispatchQueue::main().asyncAfter(DispatchTime(time), [this, time] { note("main " + numberText(time)); });
    clock.advance(2);
    EXPECT_THAT(take(), ElementsAre("a 1", "main 1", "main 1.5", "a 2", "main 2"));
}

TEST_F(DispatchThreadTest, WhatATurnPostsToTheMainQueueIsRunWithinTheSameStep)
{
    const DispatchThread thread([this](DispatchThread& self) {
        if (self.waitUntil(DispatchTime(1)))
            DispatchQueue::main().async([this] { note("told at " + numberText(clock.seconds())); });
    });
    clock.advance(3);
    EXPECT_THAT(take(), ElementsAre("told at 1"));
}

TEST_F(DispatchThreadTest, ATimeThatHasPassedIsNotWaitedFor)
{
    clock.advance(5);
    const DispatchThread thread(
        [this](DispatchThread& self) { note("now " + numberText(self.waitUntil(DispatchTime(3))->seconds())); });
    clock.advance(0);
    EXPECT_THAT(take(), ElementsAre("now 5"));
}

TEST_F(DispatchThreadTest, CancellingEndsTheWait)
{
    auto thread = makeThread("a", 1, 9);
    clock.advance(1);
    thread->cancel();
    clock.advance(1);
    EXPECT_THAT(take(), ElementsAre("a 1", "a cancelled"));
}

TEST_F(DispatchThreadTest, EndingCancelsAndWaits)
{
    makeThread("a", 1, 9).reset();
    EXPECT_THAT(take(), ElementsAre("a cancelled"));
    clock.advance(3);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(DispatchThreadTest, KnowsWhetherItIsTheCaller)
{
    std::atomic<bool> isCurrent = false;
    const DispatchThread thread([&](DispatchThread& self) { isCurrent = self.isCurrent(); });
    clock.advance(0);
    EXPECT_TRUE(isCurrent);
    EXPECT_FALSE(thread.isCurrent());
}

TEST_F(DispatchThreadTest, ReplacingTheClockKeepsTheDistanceToTheTurn)
{
    clock.advance(100);
    const DispatchThread thread(
        [this](DispatchThread& self) { note(numberText(self.waitUntil(DispatchTime(102))->seconds())); });
    ManualDispatchClock another;
    another.advance(1.5);
    EXPECT_THAT(take(), IsEmpty());
    another.advance(0.5);
    EXPECT_THAT(take(), ElementsAre("2"));
}

TEST(DispatchThread, OnARunningClockTheTurnComesByItself)
{
    std::promise<double> late;
    const DispatchTime due = DispatchTime::now() + 0.01;
    const DispatchThread thread([&](DispatchThread& self) { late.set_value(*self.waitUntil(due) - due); });
    EXPECT_GE(late.get_future().get(), 0);
}

TEST(DispatchThread, OnARunningClockAWaitOfYearsEndsWhenItIsCancelled)
{
    std::promise<bool> result;
    DispatchThread thread(
        [&](DispatchThread& self) { result.set_value(self.waitUntil(DispatchTime::now() + 1e12).has_value()); });
    thread.cancel();
    EXPECT_FALSE(result.get_future().get());
}

TEST(DispatchThread, NoWorkRaises)
{
    EXPECT_THAT(raised([] { const DispatchThread thread(nullptr); }), HasSubstr("there is no work"));
}

} // namespace
} // namespace RVCore::DispatchThreadTests
