#include <AppKit/NSView.h>
#include <AppKit/ViewPlacement.h>
#include <AppKit/ViewSnapshot.h>
#include <Backend/Backend.h>

#include <QuartzCore/CALayer.h>

namespace RVCore {

namespace {

constexpr CGColor black{0, 0, 0, 1};

// What is drawn during its life is blended in as a group.
class TransparencyLayer {
public:
    TransparencyLayer(Canvas& canvas, CGFloat alpha) : m_canvas(alpha < 1 ? &canvas : nullptr)
    {
        if (m_canvas)
            m_canvas->beginTransparencyLayer(alpha);
    }
    ~TransparencyLayer()
    {
        if (m_canvas)
            m_canvas->endTransparencyLayer();
    }
    TransparencyLayer(const TransparencyLayer&) = delete;
    TransparencyLayer& operator=(const TransparencyLayer&) = delete;

private:
    Canvas* m_canvas; // null when opaque
};

bool isVisible(const NSView& view)
{
    return !view.isHidden() && view.alphaValue() > 0;
}

void drawContent(NSView& view, Canvas& canvas)
{
    const CanvasState state(canvas);
    const CGRect bounds = view.bounds();
    if (view.isFlipped())
        canvas.concatenate(CGAffineTransform::translation(-bounds.minX(), -bounds.minY()));
    else
        canvas.concatenate({1, 0, 0, -1, -bounds.minX(), bounds.maxY()});
    view.draw(canvas, bounds);
}

void paintView(NSView& view, Canvas& canvas);

void paintContents(NSView& view, Canvas& canvas)
{
    const CALayer* layer = view.layer().get();
    const RoundedRect outline{{{}, view.frame().size}, layer ? layer->cornerRadius() : 0};
    {
        const CanvasState state(canvas);
        if (layer && layer->backgroundColor())
            canvas.fill(outline, *layer->backgroundColor());
        if (layer && layer->masksToBounds())
            canvas.clip(outline);
        drawContent(view, canvas);
        const auto kept = view.subviews(); // drawing may change the list
        for (NSView* subview : subviewsInPaintingOrder(view))
            paintView(*subview, canvas);
    }
    if (layer && layer->borderWidth() > 0)
        canvas.strokeInside(outline, layer->borderWidth(), layer->borderColor().value_or(black));
}

void paintView(NSView& view, Canvas& canvas)
{
    if (!isVisible(view))
        return;
    const CanvasState state(canvas);
    canvas.concatenate(placementInSuperview(view));
    const TransparencyLayer group(canvas, view.alphaValue());
    paintContents(view, canvas);
}

} // namespace

void paintViewTree(NSView& view, Canvas& canvas)
{
    if (!isVisible(view))
        return;
    const TransparencyLayer group(canvas, view.alphaValue());
    paintContents(view, canvas);
}

void writeViewPicture(NSView& view, const std::string& path, CGFloat scale, const CGColor& ground)
{
    view.layoutSubtreeIfNeeded();
    Backend::shared().writePicture(path, view.frame().size, scale, [&](Canvas& canvas) {
        canvas.fill({{{}, view.frame().size}, 0}, ground);
        paintViewTree(view, canvas);
    });
}

} // namespace RVCore
