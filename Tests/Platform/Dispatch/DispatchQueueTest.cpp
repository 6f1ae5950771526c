#include <Dispatch/DispatchQueue.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Platform/Foundation/Raised.h>

#include <stdexcept>
#include <thread>

namespace RVCore::DispatchQueueTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DispatchQueueTest : public testing::Test {
protected:
    ~DispatchQueueTest() override { queue.setWaker(nullptr); }

    std::function<void()> note(int number)
    {
        return [this, number] { ran.push_back(number); };
    }

    ManualDispatchClock clock;
    DispatchQueue& queue = DispatchQueue::main();
    std::vector<int> ran;
};

TEST_F(DispatchQueueTest, RunsInTheOrderOfAddingAndNotBeforeItIsServed)
{
    queue.async(note(1));
    queue.async(note(2));
    queue.async(note(3));
    EXPECT_THAT(ran, IsEmpty());
    EXPECT_EQ(queue.runDue(), 3);
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
    EXPECT_EQ(queue.runDue(), 0);
}

TEST_F(DispatchQueueTest, LaterTimesComeLaterAndEqualOnesInTheOrderOfAdding)
{
    queue.asyncAfter(DispatchTime::now() + 2, note(3));
    queue.asyncAfter(DispatchTime::now() + 1, note(1));
    queue.asyncAfter(DispatchTime::now() + 1, note(2));
    EXPECT_EQ(queue.nextDeadline(), DispatchTime::now() + 1);
    EXPECT_EQ(queue.dueCount(), 0);
    EXPECT_EQ(queue.runDue(), 0);
    clock.advance(5);
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
    EXPECT_FALSE(queue.nextDeadline());
}

TEST_F(DispatchQueueTest, ATimeThatHasPassedMeansNowAndOvertakesNobody)
{
    clock.advance(10);
    queue.async(note(1));
    queue.asyncAfter(DispatchTime(3), note(2));
    EXPECT_EQ(queue.dueCount(), 2);
    queue.runDue();
    EXPECT_THAT(ran, ElementsAre(1, 2));
}

TEST_F(DispatchQueueTest, WhatAClosureAddsWaitsForTheNextCall)
{
    queue.async([this] {
        ran.push_back(1);
        queue.async(note(3));
    });
    queue.async(note(2));
    EXPECT_EQ(queue.runDue(), 2);
    EXPECT_THAT(ran, ElementsAre(1, 2));
    EXPECT_EQ(queue.runDue(), 1);
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST_F(DispatchQueueTest, AnExceptionPassesAndTheRestWaits)
{
    queue.async([] { throw std::runtime_error("no"); });
    queue.async(note(2));
    EXPECT_THROW(queue.runDue(), std::runtime_error);
    EXPECT_THAT(ran, IsEmpty());
    EXPECT_EQ(queue.runDue(), 1);
    EXPECT_THAT(ran, ElementsAre(2));
}

TEST_F(DispatchQueueTest, AnAbsentClosureRaises)
{
    EXPECT_EQ(raised([&] { queue.async(nullptr); }),
              "NSInvalidArgumentException: DispatchQueue.async: there is no closure");
    EXPECT_FALSE(queue.nextDeadline());
}

TEST_F(DispatchQueueTest, WakesForWhatIsDueAndForAnEarlierTimeOnly)
{
    int wakes = 0;
    queue.setWaker([&] { ++wakes; });
    EXPECT_EQ(wakes, 0); // nothing waits
    queue.asyncAfter(DispatchTime::now() + 2, note(1));
    EXPECT_EQ(wakes, 1);
    queue.asyncAfter(DispatchTime::now() + 3, note(2));
    EXPECT_EQ(wakes, 1);
    queue.asyncAfter(DispatchTime::now() + 1, note(3));
    EXPECT_EQ(wakes, 2);
    queue.async(note(4));
    queue.async(note(5));
    EXPECT_EQ(wakes, 4);
    clock.advance(3);
    EXPECT_EQ(wakes, 4);
    EXPECT_THAT(ran, ElementsAre(4, 5, 3, 1, 2));
}

TEST_F(DispatchQueueTest, ANewWakerHearsOfWhatWaits)
{
    int wakes = 0;
    queue.async(note(1));
    queue.setWaker([&] { ++wakes; });
    EXPECT_EQ(wakes, 1);
    queue.runDue();
}

TEST_F(DispatchQueueTest, TakesClosuresFromManyThreadsAndLosesNone)
{
    constexpr int threadCount = 4, closureCount = 500;
    std::vector<std::vector<int>> order(threadCount);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([this, thread, &order] {
            for (int i = 0; i < closureCount; ++i)
                queue.async([thread, i, &order] { order[static_cast<std::size_t>(thread)].push_back(i); });
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(queue.runDue(), threadCount * closureCount);
    for (const auto& numbers : order) {
        EXPECT_EQ(numbers.size(), std::size_t(closureCount));
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
}

TEST_F(DispatchQueueTest, ATimeThatNeverComesIsRefused)
{
    EXPECT_THROW(queue.asyncAfter(DispatchTime(1e308) + 1e308, [] {}), NSException);
    EXPECT_EQ(queue.nextDeadline(), std::nullopt);
}

} // namespace
} // namespace RVCore::DispatchQueueTests
