#include <AppKit/NSView.h>
#include <AppKit/ViewPlacement.h>

#include <QuartzCore/CALayer.h>

#include <algorithm>

namespace RVCore {

namespace {

CGFloat zPosition(const NSView* view)
{
    return view->layer() ? view->layer()->zPosition() : 0;
}

} // namespace

CGAffineTransform placementInSuperview(const NSView& view)
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

std::optional<CGPoint> pointInside(const NSView& view, CGPoint point)
{
    const NSView* superview = view.superview();
    const CGRect& frame = view.frame();
    // On the canvas, from the visible top left corner downward; first the superview's, then this view's.
    if (superview) {
        const CGRect outer = superview->bounds();
        const CGPoint onCanvas{point.x - outer.minX(),
                               superview->isFlipped() ? point.y - outer.minY() : outer.maxY() - point.y};
        const CGAffineTransform placement = placementInSuperview(view);
        if (placement.a * placement.d == placement.b * placement.c)
            return std::nullopt; // squeezed to nothing
        point = placement.inverted().apply(onCanvas);
    } else {
        point = {point.x - frame.minX(), frame.maxY() - point.y};
    }
    if (!CGRect({}, frame.size).contains(point))
        return std::nullopt;
    const CGRect inner = view.bounds();
    return CGPoint{point.x + inner.minX(), view.isFlipped() ? point.y + inner.minY() : inner.maxY() - point.y};
}

std::vector<NSView*> subviewsInPaintingOrder(const NSView& view)
{
    std::vector<NSView*> subviews;
    subviews.reserve(view.subviews().size());
    for (const auto& subview : view.subviews())
        subviews.push_back(subview.get());
    std::stable_sort(subviews.begin(), subviews.end(),
                     [](const NSView* below, const NSView* above) { return zPosition(below) < zPosition(above); });
    return subviews;
}

} // namespace RVCore
