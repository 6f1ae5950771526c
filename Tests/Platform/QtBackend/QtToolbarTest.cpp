#include <AppKit/NSApplication.h>
#include <AppKit/NSImage.h>
#include <AppKit/NSToolbar.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <CoreGraphics/Canvas.h>
#include <Platform/QtBackend/Offscreen.h>

#include <QAccessible>
#include <QGuiApplication>
#include <QScreen>
#include <QtBackend/QtAccessibility.h>
#include <QtBackend/QtWindow.h>
#include <gtest/gtest.h>

namespace RVCore::QtToolbarTests {
namespace {

// A window with a toolbar whose one item is a blue square, as the desktop's style and assistive technology have it.
class QtToolbarTest : public testing::Test {
protected:
    QtToolbarTest()
    {
        item->setLabel("Save");
        item->setImage(make<NSImage>(CGSize{20, 20}, [](Canvas& canvas, const CGRect& rect) {
            canvas.fill({rect, 0}, {0, 0, 1, 1});
        }));
        item->setOnAction([this] { ++count; });
        toolbar->insertItem(item, 0);
        window->setTitle("With a toolbar");
        window->setToolbar(toolbar);
        window->orderFront();
    }
    ~QtToolbarTest() override
    {
        NSApplication::shared().setAppearance(std::nullopt);
        window->close();
    }

    QtWindowSurface& surface()
    {
        for (QWindow* candidate : QGuiApplication::allWindows()) {
            if (candidate->title() == "With a toolbar")
                return dynamic_cast<QtWindowSurface&>(*candidate);
        }
        throw std::logic_error("the window has not been shown");
    }
    QImage shown()
    {
        surface().requestFrame();
        while (surface().findChild<QTimer*>() && surface().findChild<QTimer*>()->isActive())
            QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        return surface().screen()->grabWindow(surface().winId()).toImage();
    }

    std::shared_ptr<NSWindow> window = make<NSWindow>(CGSize{200, 100});
    std::shared_ptr<NSToolbar> toolbar = make<NSToolbar>();
    std::shared_ptr<NSToolbarItem> item = make<NSToolbarItem>("save");
    int count = 0;
};

TEST_F(QtToolbarTest, theDesktopsWindowIsHigherByTheToolbar)
{
    const int height = surface().height();
    EXPECT_GT(height, 120);
    EXPECT_LT(height, 160);
    toolbar->setVisible(false);
    EXPECT_EQ(surface().height(), 100);
    toolbar->setVisible(true);
    EXPECT_EQ(surface().height(), height);
    EXPECT_EQ(window->contentSize(), (CGSize{200, 100}));
}

TEST_F(QtToolbarTest, theBarIsPaintedAtTheTopWithItsItems)
{
    const int height = surface().height() - 100;
    const QImage light = shown();
    int blue = 0;
    for (int y = 0; y < light.height(); ++y) {
        for (int x = 0; x < light.width(); ++x) {
            if (light.pixel(x, y) == qRgb(0, 0, 255)) {
                ++blue;
                EXPECT_LT(y, height);
                EXPECT_LT(x, 60);
            }
        }
    }
    EXPECT_EQ(blue, 400);
    NSApplication::shared().setAppearance(Appearance::dark);
    const QImage dark = shown();
    EXPECT_GT(qGray(light.pixel(150, height / 2)), 200);
    EXPECT_LT(qGray(dark.pixel(150, height / 2)), 80);
}

TEST_F(QtToolbarTest, assistiveTechnologyFindsAndPressesTheItem)
{
    QAccessibleInterface* root = surface().accessibleRoot();
    ASSERT_EQ(root->childCount(), 1);
    QAccessibleInterface* bar = root->child(0);
    EXPECT_EQ(bar->role(), QAccessible::ToolBar);
    ASSERT_EQ(bar->childCount(), 1);
    QAccessibleInterface* save = bar->child(0);
    EXPECT_EQ(save->role(), QAccessible::Button);
    EXPECT_EQ(save->text(QAccessible::Name), "Save");
    save->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(count, 1);
    item->setEnabled(false);
    EXPECT_TRUE(save->state().disabled);
}

} // namespace
} // namespace RVCore::QtToolbarTests
