#include "Offscreen.h"

#include <AppKit/NSButton.h>
#include <AppKit/NSTextField.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/WindowPainter.h>
#include <CoreImage/CIGaussianBlur.h>

#include <QtBackend/QtBitmap.h>
#include <QuartzCore/CALayer.h>
#include <gtest/gtest.h>

#include <random>

namespace RVCore::QtWindowPainterTests {
namespace {

// A window with labels, buttons and plates that change at random.
class ChangingWindow {
public:
    explicit ChangingWindow(unsigned seed) : m_random(seed)
    {
        m_window = make<NSWindow>(CGSize{200, 120});
        for (int i = 0; i < 10; ++i)
            add();
    }

    NSWindow& window() { return *m_window; }

    void change()
    {
        const auto& views = m_window->contentView()->subviews();
        if (views.size() < 4)
            return add();
        NSView& view = *views[below(views.size())];
        switch (below(9)) {
        case 0:
            view.setFrame(randomFrame());
            break;
        case 1:
            view.setAlphaValue(below(3) == 0 ? 1 : static_cast<CGFloat>(1 + below(9)) / 10);
            break;
        case 2:
            view.setHidden(!view.isHidden());
            break;
        case 3:
            view.removeFromSuperview();
            break;
        case 4:
            add();
            break;
        case 5:
            view.setWantsLayer(true);
            view.layer()->setAffineTransform(below(2) == 0
                                                 ? CGAffineTransform()
                                                 : CGAffineTransform::rotation(static_cast<CGFloat>(below(6)) / 2));
            break;
        case 6:
            view.setWantsLayer(true);
            view.layer()->setCornerRadius(static_cast<CGFloat>(below(12)));
            view.layer()->setMasksToBounds(below(2) == 0);
            view.layer()->setBorderWidth(static_cast<CGFloat>(below(3)));
            break;
        case 7: {
            const auto blur = make<CIGaussianBlur>();
            blur->setInputRadius(static_cast<CGFloat>(below(5)));
            view.setBackgroundFilters({blur});
            break;
        }
        default:
            if (auto* label = dynamic_cast<NSTextField*>(&view))
                label->setStringValue("text " + std::to_string(below(100)));
            else if (view.layer())
                view.layer()->setBackgroundColor(randomColor());
        }
    }

private:
    std::size_t below(std::size_t end) { return m_random() % end; }
    CGRect randomFrame()
    {
        const auto length = [&](std::size_t end) { return static_cast<CGFloat>(below(end * 3)) / 3; };
        return {length(180) - 10, length(110) - 10, 10 + length(80), 10 + length(30)};
    }
    CGColor randomColor()
    {
        const auto part = [&] { return static_cast<double>(below(256)) / 255; };
        return {part(), part(), part(), below(2) == 0 ? 1 : 0.6};
    }
    void add()
    {
        std::shared_ptr<NSView> view;
        switch (below(3)) {
        case 0: {
            const auto label = make<NSTextField>();
            label->setStringValue("A label, g");
            view = label;
            break;
        }
        case 1: {
            const auto button = make<NSButton>();
            button->setTitle("Press");
            view = button;
            break;
        }
        default:
            view = make<NSView>();
            view->setWantsLayer(true);
            view->layer()->setBackgroundColor(randomColor());
        }
        view->setFrame(randomFrame());
        NSView& content = *m_window->contentView();
        const auto& views = content.subviews();
        NSView& host = below(3) == 0 && !views.empty() ? *views[below(views.size())] : content;
        host.addSubview(view);
    }

    std::mt19937 m_random;
    std::shared_ptr<NSWindow> m_window;
};

TEST(QtWindowPainter, PaintingWhatChangedEndsWherePaintingEverythingDoes)
{
    for (const CGFloat scale : {1.0, 1.25, 2.0}) {
        for (unsigned seed = 1; seed <= 3; ++seed) {
            ChangingWindow scene(seed);
            WindowPainter kept;
            for (int step = 0; step < 60; ++step) {
                scene.change();
                scene.window().layoutIfNeeded();
                kept.paint(scene.window(), scale);
                WindowPainter fresh;
                fresh.paint(scene.window(), scale);
                // Turned edges are blended, and blurs rounded, a little differently in a part and in the whole.
                ASSERT_LE(largestDifference(toQImage(kept.pixels()), toQImage(fresh.pixels())), 8)
                    << "seed " << seed << ", step " << step << ", scale " << scale << "\n"
                    << fresh.composition().describe();
            }
        }
    }
}

TEST(QtWindowPainter, AFrameInWhichNothingChangedPaintsNothing)
{
    ChangingWindow scene(1);
    scene.window().layoutIfNeeded();
    WindowPainter painter;
    EXPECT_FALSE(painter.paint(scene.window(), 2).isEmpty());
    EXPECT_TRUE(painter.paint(scene.window(), 2).isEmpty());
}

TEST(QtWindowPainter, ABlurHasNoRimAtTheWindowsEdges)
{
    const auto window = make<NSWindow>(CGSize{60, 40});
    NSView& content = *window->contentView();
    content.setWantsLayer(true);
    content.layer()->setBackgroundColor(CGColor{0.2, 0.4, 0.6, 1});
    const auto cover = make<NSView>(CGRect(0, 0, 60, 40));
    const auto blur = make<CIGaussianBlur>();
    blur->setInputRadius(8);
    cover->setBackgroundFilters({blur});
    content.addSubview(cover);
    for (const CGFloat scale : {1.0, 1.5, 2.0}) {
        WindowPainter painter;
        painter.paint(*window, scale);
        const Bitmap& pixels = painter.pixels();
        const std::uint32_t inside = pixels.row(pixels.height() / 2)[static_cast<std::size_t>(pixels.width() / 2)];
        for (const int y : {0, pixels.height() - 1}) {
            EXPECT_EQ(pixels.row(y).front(), inside);
            EXPECT_EQ(pixels.row(y).back(), inside);
        }
    }
}

} // namespace
} // namespace RVCore::QtWindowPainterTests
