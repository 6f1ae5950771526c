#include <Backend/Backend.h>
#include <Contacts/Icons.h>

#include <numbers>

namespace Contacts {

using namespace RVCore;

namespace {

constexpr CGSize iconSize{16, 16};
constexpr CGFloat line = 2; // thickness
constexpr CGSize arrowSize{12, 12};

CGColor ink()
{
    return Backend::shared().controlLook().textColor(NSApplication::shared().effectiveAppearance());
}

void bar(Canvas& canvas, const CGRect& rect)
{
    canvas.fill({rect, line / 2}, ink());
}

// Two strokes that meet at a point below, 45 degrees each.
void drawChevron(Canvas& canvas, CGPoint tip, CGFloat length, CGFloat thickness, const CGColor& color)
{
    for (const double direction : {-1.0, 1.0}) {
        const CanvasState state(canvas);
        canvas.concatenate(CGAffineTransform::translation(tip.x, tip.y));
        canvas.concatenate(CGAffineTransform::rotation(direction * std::numbers::pi / 4));
        canvas.fill({{-thickness / 2, -length, thickness, length + thickness / 2}, thickness / 2}, color);
    }
}

void drawAdd(Canvas& canvas)
{
    bar(canvas, {2, 7, 12, line});
    bar(canvas, {7, 2, line, 12});
}

void drawRemove(Canvas& canvas)
{
    bar(canvas, {2, 7, 12, line});
}

// An arrow into a tray.
void drawSave(Canvas& canvas)
{
    bar(canvas, {7, 1, line, 9});
    drawChevron(canvas, {8, 10}, 5, line, ink());
    bar(canvas, {1, 13, 14, line});
    bar(canvas, {1, 10, line, 5});
    bar(canvas, {13, 10, line, 5});
}

// Three sliders.
void drawPreferences(Canvas& canvas)
{
    const CGFloat knobs[] = {9, 3, 7};
    for (int i = 0; i < 3; ++i) {
        const CGFloat y = 2 + 5 * i;
        bar(canvas, {1, y, 14, line});
        canvas.fill({{knobs[i], y - 1.5, 5, 5}, 2.5}, ink());
    }
}

void drawHelp(Canvas& canvas)
{
    canvas.strokeInside({{0, 0, iconSize.width, iconSize.height}, iconSize.width / 2}, 1.5, ink());
    TextDescription text;
    text.text = "?";
    text.font = boldSystemFontOfSize(11)->fontDescription();
    text.color = ink();
    text.alignment = NSTextAlignment::center;
    canvas.drawText(text, {0, 1, iconSize.width, iconSize.height - 1});
}

// The drawing is made for the icon's own size.
void drawIcon(Canvas& canvas, const CGRect& rect, Icon icon)
{
    const CanvasState state(canvas);
    canvas.concatenate(CGAffineTransform::translation(rect.minX(), rect.minY()));
    canvas.concatenate(
        CGAffineTransform::scale(rect.size.width / iconSize.width, rect.size.height / iconSize.height));
    switch (icon) {
    case Icon::add:
        return drawAdd(canvas);
    case Icon::remove:
        return drawRemove(canvas);
    case Icon::save:
        return drawSave(canvas);
    case Icon::preferences:
        return drawPreferences(canvas);
    case Icon::help:
        return drawHelp(canvas);
    }
}

} // namespace

std::shared_ptr<NSImage> makeIcon(Icon icon)
{
    return make<NSImage>(iconSize, [icon](Canvas& canvas, const CGRect& rect) { drawIcon(canvas, rect, icon); });
}

void registerColorButtonArrow()
{
    registerImage("colorPicker-arrow", make<NSImage>(arrowSize, [](Canvas& canvas, const CGRect& rect) {
                      canvas.fill({rect, rect.size.width / 2}, CGColor{1, 1, 1, 0.8});
                      drawChevron(canvas, {rect.midX(), rect.minY() + 8}, 4, 1.5, CGColor{0, 0, 0, 1});
                  }));
}

} // namespace Contacts
