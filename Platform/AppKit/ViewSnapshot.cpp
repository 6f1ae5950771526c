#include <AppKit/NSView.h>
#include <AppKit/ViewSnapshot.h>
#include <Backend/Backend.h>

#include <QuartzCore/CALayer.h>

#include <algorithm>

namespace RVCore {

namespace {

constexpr CGColor black{0, 0, 0, 1};

// The view's place on the canvas of its superview, whose vertical axis points down from the superview's visible top
// left corner: where its top left corner lies, and, for a layer, the transform about the anchor point.
CGAffineTransform placement(const NSView& view)
{
    const CGRect& frame = view.frame();
    const NSView* superview = view.superview();
    const CGRect outer = superview ? superview->bounds() : CGRect();
    const bool isMirrored = superview && !superview->isFlipped();
    const auto onCanvas = [&](CGPoint point) {
        return CGPoint{point.x - outer.minX(), isMirrored ? outer.maxY() - point.y : point.y - outer.minY()};
    };
    const CALayer* layer = view.layer().get();
    if (!layer) {
        const CGPoint corner = onCanvas({frame.minX(), isMirrored ? frame.maxY() : frame.minY()});
        return CGAffineTransform::translation(corner.x, corner.y);
    }
    CGAffineTransform transform = layer->affineTransform();
    CGPoint anchor{layer->anchorPoint().x * frame.size.width, layer->anchorPoint().y * frame.size.height};
    if (isMirrored) { // the layer's numbers are in upward coordinates, the canvas's run downward
        transform.b = -transform.b;
        transform.c = -transform.c;
        transform.ty = -transform.ty;
        anchor.y = frame.size.height - anchor.y;
    }
    const CGPoint position = onCanvas(layer->position());
    return CGAffineTransform::translation(-anchor.x, -anchor.y)
        .concatenating(transform)
        .concatenating(CGAffineTransform::translation(position.x, position.y));
}

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
        auto subviews = view.subviews();
        std::stable_sort(subviews.begin(), subviews.end(), [](const auto& below, const auto& above) {
            const auto height = [](const NSView& v) { return v.layer() ? v.layer()->zPosition() : 0; };
            return height(*below) < height(*above);
        });
        for (const auto& subview : subviews)
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
    canvas.concatenate(placement(view));
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
