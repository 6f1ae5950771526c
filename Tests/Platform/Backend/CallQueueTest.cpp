#include <Backend/CallQueue.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

namespace RVCore::CallQueueTests {
namespace {

using testing::ElementsAre;

class CallQueueTest : public testing::Test {
protected:
    std::function<void()> note(int number)
    {
        return [this, number] { m_called.push_back(number); };
    }

    CallQueue m_queue;
    std::vector<int> m_called;
    bool m_isStopped = false;
};

TEST_F(CallQueueTest, CallsInOrder)
{
    m_queue.add(note(1));
    m_queue.add(note(2));
    m_queue.runTurn(m_isStopped);
    EXPECT_THAT(m_called, ElementsAre(1, 2));
    EXPECT_TRUE(m_queue.isEmpty());
}

TEST_F(CallQueueTest, TellsTheFirstToAddToWakeTheMainThread)
{
    EXPECT_TRUE(m_queue.add(note(1)));
    EXPECT_FALSE(m_queue.add(note(2)));
    m_queue.runTurn(m_isStopped);
    EXPECT_TRUE(m_queue.add(note(3)));
}

TEST_F(CallQueueTest, WhatACallAddsWaitsForTheNextTurn)
{
    m_queue.add([this] { m_queue.add(note(2)); });
    m_queue.runTurn(m_isStopped);
    EXPECT_THAT(m_called, ElementsAre());
    EXPECT_FALSE(m_queue.isEmpty());
    m_queue.runTurn(m_isStopped);
    EXPECT_THAT(m_called, ElementsAre(2));
}

TEST_F(CallQueueTest, AStopLeavesTheRestInTheQueue)
{
    m_queue.add([this] { m_isStopped = true; });
    m_queue.add(note(2));
    m_queue.runTurn(m_isStopped);
    EXPECT_THAT(m_called, ElementsAre());
    m_isStopped = false;
    m_queue.runTurn(m_isStopped);
    EXPECT_THAT(m_called, ElementsAre(2));
}

TEST_F(CallQueueTest, ANestedTurnCallsWhatTheOuterOneHasNotYet)
{
    m_queue.add([this] {
        m_queue.runTurn(m_isStopped);
        m_called.push_back(1);
    });
    m_queue.add(note(2));
    m_queue.runTurn(m_isStopped);
    EXPECT_THAT(m_called, ElementsAre(2, 1));
}

TEST_F(CallQueueTest, AnExceptionPassesAndItsClosureIsGone)
{
    m_queue.add([] { throw std::runtime_error("no"); });
    m_queue.add(note(2));
    EXPECT_THROW(m_queue.runTurn(m_isStopped), std::runtime_error);
    m_queue.runTurn(m_isStopped);
    EXPECT_THAT(m_called, ElementsAre(2));
}

TEST_F(CallQueueTest, AClosureEndsItsLifeBeforeTheNextOneIsCalled)
{
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watch = held;
    bool wasAlive = true;
    m_queue.add([kept = std::move(held)] {});
    m_queue.add([&] { wasAlive = !watch.expired(); });
    m_queue.runTurn(m_isStopped);
    EXPECT_FALSE(wasAlive);
}

TEST_F(CallQueueTest, WaitingEndsWhenAnotherThreadAdds)
{
    std::thread other([this] { m_queue.add(note(1)); });
    m_queue.wait();
    EXPECT_FALSE(m_queue.isEmpty());
    other.join();
}

TEST_F(CallQueueTest, WaitingEndsAtItsLimit)
{
    m_queue.wait(std::chrono::milliseconds(1));
    EXPECT_TRUE(m_queue.isEmpty());
}

TEST_F(CallQueueTest, NothingIsLostThatManyThreadsAdd)
{
    constexpr int threadCount = 4, perThread = 250;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([this] {
            for (int j = 0; j < perThread; ++j)
                m_queue.add(note(j));
        });
    }
    while (m_called.size() < threadCount * perThread) {
        m_queue.wait();
        m_queue.runTurn(m_isStopped);
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(m_called.size(), threadCount * perThread);
}

} // namespace
} // namespace RVCore::CallQueueTests
