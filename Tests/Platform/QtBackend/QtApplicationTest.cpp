#include <Platform/Backend/RecordingClient.h>

#include <QApplication>
#include <QtBackend/QtBackend.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace RVCore::QtApplicationTests {
namespace {

using testing::ExitedWithCode;

// Each case is a program of its own, from the first use of the backend to the end of the last static object. It ends
// with status 0 if what it says holds.
class QtApplicationDeathTest : public testing::Test {
protected:
    QtApplicationDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

bool canMeasure()
{
    return Backend::shared().measureText({.text = "Hello"}, 0).size.width > 0;
}

void programWithoutDisplay()
{
    for (const char* variable : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        unsetenv(variable);
    const bool hasDisplay = Backend::shared().hasDisplay();
    std::exit(!hasDisplay && canMeasure() && QApplication::platformName() == "offscreen" ? 0 : 1);
}

TEST_F(QtApplicationDeathTest, WithoutAnyDisplayItWorksOffScreen)
{
    EXPECT_EXIT(programWithoutDisplay(), ExitedWithCode(0), "");
}

void programWhoseUserChoseThePlatform()
{
    setenv("QT_QPA_PLATFORM", "minimal", 1);
    Backend::shared();
    std::exit(QApplication::platformName() == "minimal" ? 0 : 1);
}

TEST_F(QtApplicationDeathTest, ThePlatformThatTheUserChoseIsUsed)
{
    EXPECT_EXIT(programWhoseUserChoseThePlatform(), ExitedWithCode(0), "");
}

void programWithAnApplicationOfItsOwn()
{
    int count = 1;
    char name[] = "own";
    char* arguments[] = {name, nullptr};
    auto application = std::make_unique<QApplication>(count, arguments);
    const bool isShared = canMeasure() && qApp == application.get();
    Backend::install(nullptr);
    application.reset();
    std::exit(isShared && !qApp ? 0 : 1);
}

TEST_F(QtApplicationDeathTest, TheProgramsOwnApplicationIsUsedAndLeftToIt)
{
    EXPECT_EXIT(programWithAnApplicationOfItsOwn(), ExitedWithCode(0), "");
}

void programThatEndsWithItsWindowsOpen()
{
    static RecordingClient client;
    static std::unique_ptr<WindowBackend> oldest; // ends after everything of Qt's
    oldest = Backend::shared().makeWindow(client, {100, 50});
    static const auto youngest = Backend::shared().makeWindow(client, {100, 50});
    client.onPaint = [] { Backend::shared().stop(); };
    oldest->setVisible(true);
    youngest->setVisible(true);
    Backend::shared().run();
    std::exit(0);
}

TEST_F(QtApplicationDeathTest, AProgramMayEndWithItsWindowsOpen)
{
    EXPECT_EXIT(programThatEndsWithItsWindowsOpen(), ExitedWithCode(0), "");
}

void programThatEndsWhileItPaints()
{
    static RecordingClient client;
    static const auto window = Backend::shared().makeWindow(client, {100, 50});
    client.onPaint = [] { std::exit(0); };
    window->setVisible(true);
    Backend::shared().run();
}

TEST_F(QtApplicationDeathTest, AProgramMayEndWhileItPaints)
{
    EXPECT_EXIT(programThatEndsWhileItPaints(), ExitedWithCode(0), "");
}

} // namespace
} // namespace RVCore::QtApplicationTests
