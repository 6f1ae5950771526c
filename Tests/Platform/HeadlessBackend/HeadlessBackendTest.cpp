#include <HeadlessBackend/HeadlessBackend.h>
#include <Platform/Backend/RecordingClient.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <thread>

namespace RVCore::HeadlessBackendTests {
namespace {

using testing::ElementsAre;

TEST(HeadlessBackend, IsWhatAProgramGetsThatLinksNothingElse)
{
    EXPECT_NE(dynamic_cast<HeadlessBackend*>(&Backend::shared()), nullptr);
}

TEST(HeadlessBackend, HasNoDisplay)
{
    EXPECT_FALSE(HeadlessBackend().hasDisplay());
}

TEST(HeadlessBackend, MeasuresByItsFixedRules)
{
    HeadlessBackend backend;
    const TextMetrics metrics = backend.measureText({.text = "Hello", .font = {.size = 10}}, 0);
    EXPECT_EQ(metrics.size, (CGSize{25, 13}));
    EXPECT_EQ(metrics.firstBaseline, 10);
}

TEST(HeadlessBackend, WritesNoPictures)
{
    HeadlessBackend backend;
    EXPECT_EQ(raised([&] {
                  backend.writePicture("a.png", {1, 1}, 1, [](Canvas&) {});
              }),
              "NSInvalidArgumentException: Backend.writePicture: cannot write a.png: there is no painter without a "
              "desktop backend; link RVCore::QtBackend");
}

TEST(HeadlessBackend, ListsItsWindowsInOrderOfCreation)
{
    HeadlessBackend backend;
    RecordingClient first, second, stranger;
    const auto firstWindow = backend.makeWindow(first, {10, 10});
    auto secondWindow = backend.makeWindow(second, {20, 20});
    EXPECT_THAT(backend.windows(), ElementsAre(firstWindow.get(), secondWindow.get()));
    EXPECT_EQ(backend.windowOf(second), secondWindow.get());
    EXPECT_EQ(backend.windowOf(stranger), nullptr);
    secondWindow.reset();
    EXPECT_THAT(backend.windows(), ElementsAre(firstWindow.get()));
    EXPECT_EQ(backend.windowOf(second), nullptr);
}

TEST(HeadlessBackend, AFrameMayCloseAnotherWindow)
{
    HeadlessBackend backend;
    RecordingClient first, second;
    const auto firstWindow = backend.makeWindow(first, {10, 10});
    auto secondWindow = backend.makeWindow(second, {10, 10});
    firstWindow->setVisible(true);
    secondWindow->setVisible(true);
    first.onPaint = [&] { secondWindow.reset(); };
    EXPECT_EQ(backend.flushFrames(), 1);
    EXPECT_THAT(second.takeCalls(), testing::IsEmpty());
}

TEST(HeadlessBackend, RunsWhatWaitsAndNotWhatThatAdds)
{
    HeadlessBackend backend;
    std::vector<int> called;
    backend.callLater([&] {
        called.push_back(1);
        backend.callLater([&] { called.push_back(3); });
    });
    backend.callLater([&] { called.push_back(2); });
    EXPECT_TRUE(backend.runPending());
    EXPECT_THAT(called, ElementsAre(1, 2));
    EXPECT_TRUE(backend.runPending());
    EXPECT_THAT(called, ElementsAre(1, 2, 3));
    EXPECT_FALSE(backend.runPending());
}

TEST(HeadlessBackend, RunsUntilItIsStopped)
{
    HeadlessBackend backend;
    std::vector<int> called;
    backend.callLater([&] { called.push_back(1); });
    backend.callLater([&] { backend.stop(); });
    backend.callLater([&] { called.push_back(2); });
    backend.run();
    EXPECT_THAT(called, ElementsAre(1));
    backend.callLater([&] { backend.stop(); });
    backend.run();
    EXPECT_THAT(called, ElementsAre(1, 2)) << "kept for the next run";
}

TEST(HeadlessBackend, AStopWithoutARunIsForgotten)
{
    HeadlessBackend backend;
    backend.stop();
    bool wasCalled = false;
    backend.callLater([&] {
        wasCalled = true;
        backend.stop();
    });
    backend.run();
    EXPECT_TRUE(wasCalled);
}

TEST(HeadlessBackend, AStopEndsTheInnermostRun)
{
    HeadlessBackend backend;
    std::vector<std::string> called;
    backend.callLater([&] {
        backend.callLater([&] { backend.stop(); });
        backend.run();
        called.push_back("inner ended");
        backend.callLater([&] {
            called.push_back("outer goes on");
            backend.stop();
        });
    });
    backend.run();
    EXPECT_THAT(called, ElementsAre("inner ended", "outer goes on"));
}

TEST(HeadlessBackend, AnExceptionEndsTheRunAndTheNextOneIsAsGoodAsNew)
{
    HeadlessBackend backend;
    backend.callLater([] { throw std::runtime_error("no"); });
    EXPECT_THROW(backend.run(), std::runtime_error);
    backend.callLater([&] { backend.stop(); });
    backend.run();
    EXPECT_FALSE(backend.runPending());
}

TEST(HeadlessBackend, SleepsUntilAnotherThreadCalls)
{
    HeadlessBackend backend;
    std::thread::id calledOn;
    std::thread other([&] {
        backend.callLater([&] {
            calledOn = std::this_thread::get_id();
            backend.stop();
        });
    });
    backend.run();
    other.join();
    EXPECT_EQ(calledOn, std::this_thread::get_id());
}

TEST(HeadlessBackend, ARunPaintsFrames)
{
    HeadlessBackend backend;
    RecordingClient client;
    const auto window = backend.makeWindow(client, {10, 10});
    window->setVisible(true);
    int frames = 0;
    client.onPaint = [&] {
        if (++frames < 3)
            window->requestFrame();
        else
            backend.stop();
    };
    backend.callLater([] {});
    backend.run();
    EXPECT_EQ(frames, 3);
}

TEST(HeadlessBackend, WakesUpOnceAtTheTimeThatWasAskedForLast)
{
    HeadlessBackend backend;
    std::vector<int> called;
    backend.setWakeUp(0.001, [&] { called.push_back(1); });
    backend.setWakeUp(0.002, [&] {
        called.push_back(2);
        backend.setWakeUp(-1, [&] { backend.stop(); });
    });
    EXPECT_TRUE(backend.hasWakeUp());
    backend.run();
    EXPECT_THAT(called, ElementsAre(2));
    EXPECT_FALSE(backend.hasWakeUp());
    backend.setWakeUp(1e300, [] {});
    backend.setWakeUp(0, nullptr);
    EXPECT_FALSE(backend.hasWakeUp());
    EXPECT_EQ(raised([&] { backend.setWakeUp(HUGE_VAL, [] {}); }),
              "NSInvalidArgumentException: Backend.setWakeUp: seconds must be finite, got inf");
}

TEST(HeadlessBackend, HasOneScreenUnlessItIsGivenOthers)
{
    HeadlessBackend backend;
    const ScreenDescription usual{.frame = {0, 0, 1440, 900}, .visibleFrame = {0, 24, 1440, 876}};
    EXPECT_THAT(backend.screens(), ElementsAre(usual));
    backend.setScreens({usual, usual});
    EXPECT_EQ(backend.screens().size(), 2U);
}

} // namespace
} // namespace RVCore::HeadlessBackendTests
