#include <AppKit/NSApplication.h>
#include <AppKit/NSScreen.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>

#include <QGuiApplication>
#include <QProcess>
#include <QTimer>
#include <QtBackend/QtWindow.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

// Whole windows on a real X server with a window manager; see Tests/VirtualDisplay/with-virtual-display.

namespace RVCore::QtDisplayWindowsTests {
namespace {

using testing::ElementsAre;
using Mask = NSWindowStyleMask;

class QtDisplayWindows : public testing::Test {
protected:
    ~QtDisplayWindows() override
    {
        for (const auto& open : std::vector(NSApplication::shared().windows()))
            open->close();
    }

    // Serves the desktop until the condition holds or patience ends; returns whether it held.
    static bool runUntil(const std::function<bool()>& condition)
    {
        QTimer look;
        look.callOnTimeout([&] {
            if (condition())
                Backend::shared().stop();
        });
        look.start(5); // milliseconds
        QTimer end;
        end.setSingleShot(true);
        end.callOnTimeout([] { Backend::shared().stop(); });
        end.start(20000);
        Backend::shared().run();
        return condition();
    }

    static QWindow* surfaceOf(const NSWindow& window)
    {
        for (QWindow* candidate : QGuiApplication::topLevelWindows()) {
            if (candidate->title().toStdString() == window.title())
                return candidate;
        }
        return nullptr;
    }

    std::shared_ptr<NSWindow> show(const std::string& title, const CGRect& frame)
    {
        const auto window = make<NSWindow>(CGSize{50, 50});
        window->setTitle(title);
        window->setFrame(frame);
        window->makeKeyAndOrderFront();
        EXPECT_TRUE(runUntil([&] { return surfaceOf(*window) && surfaceOf(*window)->isExposed() && isAt(*window); }))
            << title;
        return window;
    }

    // Whether the desktop has the window's content where the window says it is, up to the border's width.
    static bool isAt(const NSWindow& window)
    {
        const CGRect content = window.contentRectForFrameRect(window.frame());
        const CGFloat screenHeight = NSScreen::mainScreen()->frame().size.height;
        const QRect actual = surfaceOf(window)->geometry();
        const int border = surfaceOf(window)->frameMargins().left();
        return std::abs(actual.x() - content.minX()) <= border &&
               std::abs(actual.y() - (screenHeight - content.maxY())) <= border &&
               actual.width() == content.size.width && actual.height() == content.size.height;
    }
};

TEST_F(QtDisplayWindows, AreWhereTheProgramPutsThem)
{
    const auto window = show("Placed", {200, 300, 320, 240});
    EXPECT_EQ(window->frame().minX(), 200);
    EXPECT_EQ(window->frame().maxY(), 540);
    window->setFrameOrigin({50, 60});
    EXPECT_TRUE(runUntil([&] { return isAt(*window); }));
    EXPECT_EQ(window->frame().origin, (CGPoint{50, 60}));
    window->setContentSize({400, 100});
    EXPECT_TRUE(runUntil([&] { return isAt(*window) && surfaceOf(*window)->width() == 400; }));
    EXPECT_EQ(window->screen()->frame(), CGRect(0, 0, 1280, 1024));
}

TEST_F(QtDisplayWindows, ArePlacedByTheDesktopWhereTheProgramDoesNot)
{
    const auto window = make<NSWindow>(CGSize{200, 100});
    window->setTitle("Free");
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(runUntil([&] { return surfaceOf(*window)->isExposed() && isAt(*window); }));
}

TEST_F(QtDisplayWindows, GoToTheirFrameAndEndExactlyThere)
{
    const auto window = show("Animated", {100, 100, 200, 222});
    const CGRect start = window->frame();
    const CGRect target(start.minX(), start.minY() - 75, start.size.width + 60, start.size.height + 75);
    window->setFrame(target, {.animate = true});
    int sizes = 0;
    struct Counter : NSWindowDelegate {
        explicit Counter(int& theCount) : count(theCount) {}
        void windowDidResize(NSWindow&) override { ++count; }
        int& count;
    };
    const auto counter = std::make_shared<Counter>(sizes);
    window->setDelegate(counter);
    EXPECT_TRUE(runUntil([&] { return !window->isAnimatingFrame() && isAt(*window); }));
    EXPECT_EQ(window->frame(), target);
    EXPECT_GE(sizes, 2);
}

TEST_F(QtDisplayWindows, ChildWindowsAreInFrontOfTheirParentAndMoveWithIt)
{
    const auto parent = show("Parent", {100, 300, 300, 300});
    const auto child = make<NSWindow>(CGSize{50, 50});
    child->setTitle("Child");
    child->setFrame({150, 350, 100, 100});
    parent->addChildWindow(child, NSWindowOrderingMode::above);
    child->orderFront();
    EXPECT_TRUE(runUntil([&] { return surfaceOf(*child)->isExposed() && isAt(*child); }));
    EXPECT_EQ(surfaceOf(*child)->transientParent(), surfaceOf(*parent));
    parent->makeKeyAndOrderFront();
    EXPECT_THAT(NSApplication::shared().orderedWindows(), ElementsAre(child, parent));
    parent->setFrameOrigin({160, 330});
    EXPECT_TRUE(runUntil([&] { return isAt(*parent) && isAt(*child); }));
    EXPECT_EQ(child->frame().origin, (CGPoint{210, 380}));
    child->close();
    EXPECT_TRUE(parent->childWindows().empty());
}

// This window manager brings no window back at its program's wish; the user does.
TEST_F(QtDisplayWindows, AreMinimizedByTheProgramAndBroughtBackByTheUser)
{
    const auto window = show("Minimized", {100, 100, 200, 200});
    window->miniaturize();
    EXPECT_TRUE(window->isMiniaturized());
    EXPECT_TRUE(runUntil([&] { return !surfaceOf(*window)->isExposed(); }));
    EXPECT_TRUE(window->isMiniaturized());
    QProcess user;
    user.start("xdotool", {"windowactivate", QString::number(surfaceOf(*window)->winId())});
    EXPECT_TRUE(runUntil([&] { return surfaceOf(*window)->isExposed() && !window->isMiniaturized(); }));
    EXPECT_TRUE(window->isVisible());
    user.waitForFinished();
}

TEST_F(QtDisplayWindows, TheDesktopSaysWhichOneHasTheKeys)
{
    const auto first = show("First", {100, 100, 200, 200});
    const auto second = show("Second", {400, 100, 200, 200});
    first->makeKeyAndOrderFront();
    EXPECT_TRUE(runUntil([&] { return surfaceOf(*first)->isActive(); }));
    EXPECT_EQ(NSApplication::shared().keyWindow(), first.get());
    EXPECT_TRUE(NSApplication::shared().isActive());
    surfaceOf(*second)->requestActivate(); // as the desktop does
    EXPECT_TRUE(runUntil([&] { return second->isKeyWindow(); }));
}

} // namespace
} // namespace RVCore::QtDisplayWindowsTests
