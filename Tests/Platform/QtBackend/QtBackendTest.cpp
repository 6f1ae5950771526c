#include <Foundation/NSException.h>

#include <QApplication>
#include <QProxyStyle>
#include <QtBackend/QtBackend.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <thread>
#include <vector>

namespace RVCore::QtBackendTests {
namespace {

using testing::ElementsAre;

TEST(QtBackend, IsPreferredToTheHeadlessOne)
{
    EXPECT_NE(dynamic_cast<QtBackend*>(&Backend::shared()), nullptr);
}

TEST(QtBackend, HasNoDisplayOffScreen)
{
    EXPECT_FALSE(Backend::shared().hasDisplay());
}

// As a desktop sets it up whose user has turned animations off.
class StillStyle : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override
    {
        return hint == SH_Widget_Animation_Duration ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

TEST(QtBackend, PrefersReducedMotionWhereTheStyleDoesNotAnimate)
{
    EXPECT_FALSE(Backend::shared().prefersReducedMotion());
    const QString usual = QApplication::style()->name();
    QApplication::setStyle(new StillStyle);
    EXPECT_TRUE(Backend::shared().prefersReducedMotion());
    QApplication::setStyle(usual);
    EXPECT_FALSE(Backend::shared().prefersReducedMotion());
}

TEST(QtBackend, CanBeReplacedAndMadeAgain)
{
    Backend::shared();
    Backend::install(nullptr);
    EXPECT_GT(Backend::shared().measureText({.text = "Hello"}, 0).size.width, 0);
}

TEST(QtBackend, RunsClosuresInOrderUntilItIsStopped)
{
    QtBackend backend;
    std::vector<int> called;
    backend.callLater([&] { called.push_back(1); });
    backend.callLater([&] { called.push_back(2); });
    backend.callLater([&] { backend.stop(); });
    backend.callLater([&] { called.push_back(3); });
    backend.run();
    EXPECT_THAT(called, ElementsAre(1, 2));
    backend.callLater([&] { backend.stop(); });
    backend.run();
    EXPECT_THAT(called, ElementsAre(1, 2, 3)) << "kept for the next run";
}

TEST(QtBackend, WhatAClosureAddsRunsAtTheNextTurn)
{
    QtBackend backend;
    std::vector<int> called;
    backend.callLater([&] {
        called.push_back(1);
        backend.callLater([&] {
            called.push_back(3);
            backend.stop();
        });
    });
    backend.callLater([&] { called.push_back(2); });
    backend.run();
    EXPECT_THAT(called, ElementsAre(1, 2, 3));
}

TEST(QtBackend, AStopWithoutARunIsForgotten)
{
    QtBackend backend;
    backend.stop();
    bool wasCalled = false;
    backend.callLater([&] {
        wasCalled = true;
        backend.stop();
    });
    backend.run();
    EXPECT_TRUE(wasCalled);
}

TEST(QtBackend, AStopEndsTheInnermostRun)
{
    QtBackend backend;
    std::vector<std::string> called;
    backend.callLater([&] {
        backend.callLater([&] { backend.stop(); });
        backend.run();
        called.push_back("inner ended");
    });
    backend.callLater([&] { called.push_back("the inner run goes on with the outer turn"); });
    backend.callLater([&] {
        backend.callLater([&] {
            called.push_back("outer goes on");
            backend.stop();
        });
    });
    backend.run();
    EXPECT_THAT(called, ElementsAre("the inner run goes on with the outer turn", "inner ended", "outer goes on"));
}

TEST(QtBackend, WakesUpWhenAnotherThreadCalls)
{
    QtBackend backend;
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

TEST(QtBackend, ClosuresAlsoRunInAnEventLoopOfTheProgramsOwn)
{
    QtBackend backend;
    bool wasCalled = false;
    backend.callLater([&] { wasCalled = true; });
    QCoreApplication::processEvents();
    EXPECT_TRUE(wasCalled);
}

TEST(QtBackendDeathTest, AnExceptionThatLeavesAClosureStopsTheProgramWithItsMessage)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            QtBackend backend;
            backend.callLater([] { raiseInvalidArgument("NSView.setFrame", "too wide"); });
            backend.run();
        },
        "Fatal error: an exception left a callback: NSInvalidArgumentException: NSView.setFrame: too wide");
    EXPECT_DEATH(
        {
            QtBackend backend;
            backend.callLater([] { throw 7; });
            backend.run();
        },
        "Fatal error: an exception of an unknown type left a callback");
}

TEST(QtBackend, WakesUpOnceAtTheTimeThatWasAskedForLast)
{
    QtBackend backend;
    std::vector<int> called;
    backend.setWakeUp(0.001, [&] { called.push_back(1); });
    backend.setWakeUp(0.002, [&] {
        called.push_back(2);
        backend.setWakeUp(1e300, [&] { called.push_back(3); });
        backend.setWakeUp(0.001, nullptr);
        backend.setWakeUp(-1, [&] { backend.stop(); });
    });
    backend.run();
    EXPECT_THAT(called, ElementsAre(2));
    EXPECT_THROW(backend.setWakeUp(std::nan(""), [] {}), NSException);
}

TEST(QtBackend, KnowsItsScreens)
{
    const std::vector<ScreenDescription> screens = Backend::shared().screens();
    ASSERT_FALSE(screens.empty());
    EXPECT_EQ(screens.front().frame.origin, CGPoint());
    EXPECT_FALSE(screens.front().frame.isEmpty());
    EXPECT_EQ(screens.front().frame.intersection(screens.front().visibleFrame), screens.front().visibleFrame);
    EXPECT_GE(screens.front().backingScale, 1);
}

} // namespace
} // namespace RVCore::QtBackendTests
