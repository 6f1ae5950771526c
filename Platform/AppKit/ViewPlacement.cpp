#include <AppKit/NSView.h>
#include <AppKit/PaintingOrder.h>
#include <AppKit/ViewPlacement.h>

#include <QuartzCore/LayerPresentation.h>

namespace RVCore {

CGAffineTransform placementIn(const CGRect& outer, bool isMirrored, const LayerGeometry& geometry)
{
    CGAffineTransform transform = geometry.transform;
    CGPoint anchor{geometry.anchorPoint.x * geometry.size.width, geometry.anchorPoint.y * geometry.size.height};
    if (isMirrored) { // the layer's numbers are in upward coordinates, the canvas's run downward
        transform.b = -transform.b;
        transform.c = -transform.c;
        transform.ty = -transform.ty;
        anchor.y = geometry.size.height - anchor.y;
    }
    const CGPoint position{geometry.position.x - outer.minX(),
                           isMirrored ? outer.maxY() - geometry.position.y : geometry.position.y - outer.minY()};
    return CGAffineTransform::translation(-anchor.x, -anchor.y)
        .concatenating(transform)
        .concatenating(CGAffineTransform::translation(position.x, position.y));
}

namespace {

CGAffineTransform placementOf(const NSView& view, const LayerGeometry& geometry)
{
    const NSView* superview = view.superview();
    return placementIn(superview ? superview->bounds() : CGRect(), superview && !superview->isFlipped(), geometry);
}

// A view without a layer, as if it had one that is anchored at its corner.
LayerGeometry geometryOf(const NSView& view)
{
    const CGRect& frame = view.frame();
    if (const CALayer* layer = view.layer().get())
        return {layer->position(), layer->anchorPoint(), layer->affineTransform(), frame.size};
    return {frame.origin, {}, {}, frame.size};
}

} // namespace

CGAffineTransform placementInSuperview(const NSView& view)
{
    return placementOf(view, geometryOf(view));
}

CGAffineTransform shownPlacementInSuperview(const NSView& view, DispatchTime time)
{
    const CALayer* layer = view.layer().get();
    if (!layer)
        return placementInSuperview(view);
    const LayerPresentation shown(*layer, time);
    const CGSize size = shown.bounds().size;
    const CGAffineTransform placement =
        placementOf(view, {shown.position(), layer->anchorPoint(), shown.affineTransform(), size});
    return stretched(view.frame().size, size).concatenating(placement);
}

CGAffineTransform stretched(CGSize size, CGSize shown)
{
    const auto factor = [](CGFloat from, CGFloat to) { return from == to || from <= 0 ? 1 : to / from; };
    return CGAffineTransform::scale(factor(size.width, shown.width), factor(size.height, shown.height));
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
    const auto zPosition = [](const NSView& subview) { return subview.layer() ? subview.layer()->zPosition() : 0; };
    std::vector<NSView*> subviews;
    subviews.reserve(view.subviews().size());
    appendInPaintingOrder(view.subviews(), zPosition, subviews);
    return subviews;
}

} // namespace RVCore
