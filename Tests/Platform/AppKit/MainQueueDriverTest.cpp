#include "WindowTesting.h"

#include <AppKit/MainQueueDriver.h>
#include <Dispatch/DispatchQueue.h>

#include <stdexcept>
#include <thread>

namespace RVCore::MainQueueDriverTests {
namespace {

using testing::ElementsAre;

// The desktop's loop and the real clock.
class MainQueueDriverTest : public testing::Test {
protected:
    MainQueueDriverTest()
    {
        auto owned = std::make_unique<HeadlessBackend>();
        desktop = owned.get();
        Backend::install(std::move(owned));
        connectMainQueue();
        ManualDispatchClock().advance(3600); // what other tests have left on the queue is done
    }
    ~MainQueueDriverTest() override { Backend::install(nullptr); }

    std::function<void()> note(int number)
    {
        return [this, number] { ran.push_back(number); };
    }
    std::function<void()> stop()
    {
        return [this] { desktop->stop(); };
    }

    HeadlessBackend* desktop = nullptr;
    DispatchQueue& queue = DispatchQueue::main();
    std::vector<int> ran;
};

TEST_F(MainQueueDriverTest, WorkWakesTheDesktopsLoop)
{
    queue.async(note(1));
    queue.async(note(2));
    EXPECT_TRUE(ran.empty());
    while (desktop->runPending()) {
    }
    EXPECT_THAT(ran, ElementsAre(1, 2));
}

TEST_F(MainQueueDriverTest, WithNothingToDoNobodyIsWoken)
{
    queue.async(note(1));
    while (desktop->runPending()) {
    }
    EXPECT_FALSE(queue.nextDeadline());
    EXPECT_FALSE(desktop->runPending());
    EXPECT_FALSE(desktop->hasWakeUp());
}

TEST_F(MainQueueDriverTest, TimesInTheFutureAreTheDesktopsOneWakeUp)
{
    queue.asyncAfter(DispatchTime::now() + 0.003, note(2));
    queue.asyncAfter(DispatchTime::now() + 0.001, note(1));
    queue.asyncAfter(DispatchTime::now() + 0.005, [this] {
        ran.push_back(3);
        queue.asyncAfter(DispatchTime::now() + 0.001, stop());
    });
    desktop->run();
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
    EXPECT_FALSE(desktop->hasWakeUp());
}

TEST_F(MainQueueDriverTest, OtherThreadsMayAdd)
{
    std::thread other([this] {
        queue.async(note(1));
        queue.asyncAfter(DispatchTime::now() + 0.001, stop());
    });
    desktop->run();
    other.join();
    EXPECT_THAT(ran, ElementsAre(1));
}

TEST_F(MainQueueDriverTest, ARunInsideAClosureServesTheOthers)
{
    queue.async([this] {
        ran.push_back(1);
        desktop->run();
        ran.push_back(4);
        queue.async(stop());
    });
    queue.async(note(2));
    queue.asyncAfter(DispatchTime::now() + 0.001, [this] {
        ran.push_back(3);
        desktop->stop();
    });
    desktop->run();
    EXPECT_THAT(ran, ElementsAre(1, 2, 3, 4));
}

TEST_F(MainQueueDriverTest, AnExceptionLeavesTheRestToTheNextRun)
{
    queue.async([] { throw std::runtime_error("no"); });
    queue.async(note(1));
    queue.async(stop());
    EXPECT_THROW(desktop->run(), std::runtime_error);
    desktop->run();
    EXPECT_THAT(ran, ElementsAre(1));
}

TEST_F(MainQueueDriverTest, AClockThatStandsStillSetsNoWakeUp)
{
    ManualDispatchClock clock;
    queue.asyncAfter(DispatchTime::now() + 5, note(2));
    queue.async(note(1));
    while (desktop->runPending()) {
    }
    EXPECT_THAT(ran, ElementsAre(1));
    EXPECT_FALSE(desktop->hasWakeUp());
    clock.advance(5);
    EXPECT_THAT(ran, ElementsAre(1, 2));
}

TEST_F(MainQueueDriverTest, TheApplicationsRunServesTheQueue)
{
    const auto window = make<NSWindow>();
    window->orderFront();
    queue.async(note(1));
    Backend::install(std::make_unique<HeadlessBackend>()); // takes what was to wake it along
    queue.asyncAfter(DispatchTime::now() + 0.001, [] { NSApplication::shared().terminate(); });
    NSApplication::shared().run();
    EXPECT_THAT(ran, ElementsAre(1));
    window->close();
}

} // namespace
} // namespace RVCore::MainQueueDriverTests
