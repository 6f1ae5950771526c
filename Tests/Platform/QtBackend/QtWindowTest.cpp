#include <AppKit/NSButton.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSException.h>
#include <Platform/Backend/RecordingClient.h>
#include <Platform/Foundation/Raised.h>

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPalette>
#include <QScreen>
#include <QtBackend/QtWindow.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace RVCore::QtWindowTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QtWindowTest : public testing::Test {
protected:
    QtWindow& window() { return dynamic_cast<QtWindow&>(*m_window); }
    QWindow& surface() { return window().surface(); }

    // Serves events until the client has painted.
    void runUntilPainted()
    {
        const auto before = std::exchange(m_client.onPaint, [] { Backend::shared().stop(); });
        Backend::shared().run();
        m_client.onPaint = before;
    }

    // Visible, painted, and with nothing left to do.
    void settle()
    {
        m_window->setVisible(true);
        runUntilPainted();
        QCoreApplication::processEvents();
        m_client.takeCalls();
    }

    bool isIdle()
    {
        QCoreApplication::processEvents();
        const QList<QTimer*> timers = surface().findChildren<QTimer*>();
        return m_client.takeCalls().empty() && !timers.isEmpty() &&
               std::none_of(timers.begin(), timers.end(), [](const QTimer* timer) { return timer->isActive(); });
    }

    QImage shown() { return surface().screen()->grabWindow(surface().winId()).toImage(); }

    RecordingClient m_client;
    std::unique_ptr<WindowBackend> m_window = Backend::shared().makeWindow(m_client, {100, 50});
};

TEST_F(QtWindowTest, StartsHiddenWithItsSize)
{
    EXPECT_FALSE(surface().isVisible());
    EXPECT_EQ(surface().size(), QSize(100, 50));
    EXPECT_EQ(m_window->backingScale(), 1);
    EXPECT_TRUE(isIdle());
}

TEST_F(QtWindowTest, ShowsItsTitle)
{
    m_window->setTitle("Größe 漢字");
    EXPECT_EQ(surface().title(), QString::fromUtf16(u"Größe 漢字"));
}

TEST_F(QtWindowTest, BecomingVisiblePreparesAndPaints)
{
    m_window->setVisible(true);
    runUntilPainted();
    const std::vector<std::string> calls = m_client.takeCalls();
    ASSERT_GE(calls.size(), 2U);
    EXPECT_EQ(calls[0], "prepare");
    EXPECT_EQ(calls[1], "paint");
}

TEST_F(QtWindowTest, ShowsWhatTheClientPaints)
{
    m_client.color = {0, 0.5, 1, 1};
    settle();
    const QImage picture = shown();
    EXPECT_EQ(picture.size(), QSize(100, 50));
    EXPECT_EQ(picture.pixel(0, 0), qRgb(0, 128, 255));
    EXPECT_EQ(picture.pixel(99, 49), qRgb(0, 128, 255));
}

TEST_F(QtWindowTest, WithNothingToDoNothingIsScheduled)
{
    settle();
    EXPECT_TRUE(isIdle());
}

TEST_F(QtWindowTest, AskingForAFrameTwiceGivesOne)
{
    settle();
    m_window->requestFrame();
    m_window->requestFrame();
    runUntilPainted();
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("prepare", "paint"));
    EXPECT_TRUE(isIdle());
}

TEST_F(QtWindowTest, WhatPreparingAsksForIsInTheSameFrame)
{
    settle();
    m_client.onPrepare = [this] { m_window->requestFrame(); };
    m_window->requestFrame();
    runUntilPainted();
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("prepare", "paint"));
    EXPECT_TRUE(isIdle());
}

TEST_F(QtWindowTest, WhatPaintingAsksForIsTheNextFrame)
{
    settle();
    int frames = 0;
    m_client.onPaint = [&] {
        if (++frames < 3)
            m_window->requestFrame();
        else
            Backend::shared().stop();
    };
    m_window->requestFrame();
    Backend::shared().run();
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("prepare", "paint", "prepare", "paint", "prepare", "paint"));
    EXPECT_TRUE(isIdle());
}

TEST_F(QtWindowTest, AHiddenWindowPaintsWhenItIsShown)
{
    m_window->requestFrame();
    EXPECT_TRUE(isIdle());
    settle();
    m_window->setVisible(false);
    m_window->requestFrame();
    EXPECT_TRUE(isIdle());
    m_window->setVisible(true);
    runUntilPainted();
}

TEST_F(QtWindowTest, TheDesktopsResizeIsLaidOutAndPaintedInOneFrame)
{
    settle();
    surface().resize(200, 80);
    runUntilPainted();
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("size 200 × 80", "prepare", "paint"));
    EXPECT_EQ(shown().size(), QSize(200, 80));
    EXPECT_EQ(shown().pixel(199, 79), qRgb(255, 0, 0));
    EXPECT_TRUE(isIdle());
}

TEST_F(QtWindowTest, TheProgramsOwnSizeIsNotToldBack)
{
    settle();
    m_window->setContentSize({300, 40});
    EXPECT_EQ(surface().size(), QSize(300, 40));
    runUntilPainted();
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("prepare", "paint"));
}

TEST_F(QtWindowTest, WhatTheDesktopMakesOfTheProgramsSizeIsTold)
{
    m_window->setContentSize({99.5, 40});
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("size 100 × 40"));
}

TEST_F(QtWindowTest, AMinimumAboveTheSizeEnlargesTheContent)
{
    settle();
    m_window->setMinimumContentSize({150, 20});
    EXPECT_EQ(surface().size(), QSize(150, 50));
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("size 150 × 50"));
    m_window->setContentSize({10, 10});
    EXPECT_EQ(surface().size(), QSize(150, 20));
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("size 150 × 20"));
    runUntilPainted();
}

TEST_F(QtWindowTest, SizesThatAreNotFiniteRaise)
{
    EXPECT_EQ(raised([this] {
                  m_window->setContentSize({std::nan(""), 1});
              }),
              "NSInvalidArgumentException: WindowBackend.setContentSize: size.width must be finite, got nan");
    EXPECT_EQ(raised([this] {
                  m_window->setMinimumContentSize({1, HUGE_VAL});
              }),
              "NSInvalidArgumentException: WindowBackend.setMinimumContentSize: size.height must be finite, got inf");
    EXPECT_EQ(raised([this] {
                  Backend::shared().makeWindow(m_client, {1, std::nan("")});
              }),
              "NSInvalidArgumentException: Backend.makeWindow: contentSize.height must be finite, got nan");
}

TEST_F(QtWindowTest, AUsersCloseIsAQuestionToTheClient)
{
    settle();
    surface().close();
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("close"));
    EXPECT_TRUE(surface().isVisible());
}

TEST_F(QtWindowTest, TheClientMayEndTheWindowInAnyCall)
{
    for (auto* call : {&m_client.onSizeChanged, &m_client.onClose, &m_client.onPrepare, &m_client.onPaint}) {
        m_window = Backend::shared().makeWindow(m_client, {100, 50});
        settle();
        *call = [this] { m_window.reset(); };
        if (call == &m_client.onClose)
            surface().close();
        else
            surface().resize(200, 80);
        while (m_window)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        *call = nullptr;
        QCoreApplication::processEvents();
    }
}

TEST_F(QtWindowTest, ANestedRunInsideACallPaintsNothingInBetween)
{
    settle();
    m_client.onPaint = [this] {
        m_client.onPaint = nullptr;
        m_window->requestFrame();
        Backend::shared().callLater([] { Backend::shared().stop(); });
        Backend::shared().run();
        m_client.takeCalls();
        Backend::shared().stop();
    };
    m_window->requestFrame();
    Backend::shared().run();
    EXPECT_THAT(m_client.takeCalls(), IsEmpty());
    runUntilPainted();
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("prepare", "paint"));
}

TEST_F(QtWindowTest, AMoveIsToldWithItsPlace)
{
    settle();
    m_client.states.clear();
    m_window->setOrigin({30, 40});
    QCoreApplication::processEvents();
    EXPECT_EQ(m_window->placement().origin, (CGPoint{30, 40}));
    EXPECT_THAT(m_client.states, testing::Contains("placement"));
    EXPECT_THROW(m_window->setOrigin({std::nan(""), 0}), NSException);
}

TEST_F(QtWindowTest, TheOneThatAsksForTheKeysGetsThem)
{
    RecordingClient otherClient;
    const auto other = Backend::shared().makeWindow(otherClient, {10, 10});
    settle();
    other->setVisible(true);
    m_window->activate();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_client.states.back(), "active");
    other->activate();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_client.states.back(), "inactive");
    EXPECT_EQ(otherClient.states.back(), "active");
}

TEST_F(QtWindowTest, IsMinimizedAndComesBack)
{
    settle();
    m_window->setMinimized(true);
    EXPECT_TRUE(surface().windowStates().testFlag(Qt::WindowMinimized));
    m_window->setMinimized(false);
    EXPECT_FALSE(surface().windowStates().testFlag(Qt::WindowMinimized));
}

TEST_F(QtWindowTest, AParentIsWhatItStaysInFrontOf)
{
    RecordingClient otherClient;
    auto other = Backend::shared().makeWindow(otherClient, {10, 10});
    other->setParent(m_window.get());
    EXPECT_EQ(dynamic_cast<QtWindow&>(*other).surface().transientParent(), &surface());
    other->setParent(nullptr);
    EXPECT_EQ(dynamic_cast<QtWindow&>(*other).surface().transientParent(), nullptr);
}

TEST_F(QtWindowTest, ItsStyleIsTheDesktops)
{
    m_window->setStyle({.isTitled = false});
    EXPECT_TRUE(surface().flags().testFlag(Qt::FramelessWindowHint));
}

TEST_F(QtWindowTest, ADesktopThatTurnsDarkOrLightIsPaintedAnew)
{
    settle();
    ASSERT_TRUE(isIdle());
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    QGuiApplication::setPalette(dark);
    const bool isIdleInTheDark = isIdle();
    QGuiApplication::setPalette(QPalette());
    EXPECT_FALSE(isIdleInTheDark);
}

TEST_F(QtWindowTest, WhatAnActionRaisesIsPrintedAndTheProgramGoesOn)
{
    const auto program = make<NSWindow>(CGSize{100, 50});
    program->setTitle("Program");
    const auto button = make<NSButton>(CGRect(0, 0, 100, 50));
    const auto target = make<NSView>();
    button->setTarget(target);
    button->setAction("fly:");
    program->contentView()->addSubview(button);
    program->makeKeyAndOrderFront();
    QWindow* shown = nullptr;
    for (QWindow* candidate : QGuiApplication::topLevelWindows()) {
        if (candidate->title() == "Program")
            shown = candidate;
    }
    ASSERT_TRUE(shown);
    testing::internal::CaptureStderr();
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, QPointF(50, 25), QPointF(50, 25), Qt::LeftButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(shown, &event);
    }
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("does not answer fly:"));
    program->close();
}

class QtWindowDeathTest : public QtWindowTest {
protected:
    QtWindowDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

TEST_F(QtWindowDeathTest, AnExceptionThatLeavesTheClientStopsTheProgramWithItsMessage)
{
    for (auto* call : {&m_client.onSizeChanged, &m_client.onClose, &m_client.onPrepare, &m_client.onPaint}) {
        EXPECT_DEATH(
            {
                settle();
                *call = [] { raiseInvalidArgument("NSView.setFrame", "too wide"); };
                if (call == &m_client.onClose)
                    surface().close();
                surface().resize(200, 80);
                Backend::shared().run();
            },
            "Fatal error: an exception left a callback: NSInvalidArgumentException: NSView.setFrame: too wide");
    }
}

} // namespace
} // namespace RVCore::QtWindowTests
