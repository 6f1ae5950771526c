#include <Backend/Backend.h>
#include <FolderSizes/Icons.h>

#include <numbers>

namespace FolderSizes {

using namespace RVCore;

namespace {

constexpr CGSize iconSize{16, 16};
constexpr CGFloat line = 2; // thickness

CGColor ink()
{
    return Backend::shared().controlLook().textColor(NSApplication::shared().effectiveAppearance());
}

// Two strokes that meet at a point, each turned away by 45 degrees from where the angle points.
void drawArrowHead(Canvas& canvas, CGPoint tip, CGFloat length, double angle)
{
    for (const double direction : {-1.0, 1.0}) {
        const CanvasState state(canvas);
        canvas.concatenate(CGAffineTransform::translation(tip.x, tip.y));
        canvas.concatenate(CGAffineTransform::rotation(angle + direction * std::numbers::pi / 4));
        canvas.fill({{-line / 2, -line / 2, line, length + line / 2}, line / 2}, ink());
    }
}

// An arrow up to a lid.
void drawEnclosingFolder(Canvas& canvas)
{
    canvas.fill({{1, 1, 14, line}, line / 2}, ink());
    canvas.fill({{7, 5, line, 10}, line / 2}, ink());
    drawArrowHead(canvas, {8, 6}, 5.5, 0);
}

// Three quarters of a ring, and the arrow that it becomes at its upper end.
void drawReadAgain(Canvas& canvas)
{
    const RoundedRect ring{{2, 2, 12, 12}, 6};
    for (const CGRect& part : {CGRect{0, 0, 8, 16}, CGRect{8, 8, 8, 8}}) {
        const CanvasState state(canvas);
        canvas.clip({part});
        canvas.strokeInside(ring, line, ink());
    }
    drawArrowHead(canvas, {11.5, 3}, 4.5, std::numbers::pi / 2);
}

// The drawing is made for the icon's own size.
void drawIcon(Canvas& canvas, const CGRect& rect, Icon icon)
{
    const CanvasState state(canvas);
    canvas.concatenate(CGAffineTransform::translation(rect.minX(), rect.minY()));
    canvas.concatenate(
        CGAffineTransform::scale(rect.size.width / iconSize.width, rect.size.height / iconSize.height));
    if (icon == Icon::enclosingFolder)
        drawEnclosingFolder(canvas);
    else
        drawReadAgain(canvas);
}

} // namespace

std::shared_ptr<NSImage> makeIcon(Icon icon)
{
    return make<NSImage>(iconSize, [icon](Canvas& canvas, const CGRect& rect) { drawIcon(canvas, rect, icon); });
}

} // namespace FolderSizes
