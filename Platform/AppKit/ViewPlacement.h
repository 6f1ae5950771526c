#pragma once

#include <AppKit/Forward.h>
#include <CoreGraphics/CGAffineTransform.h>
#include <Dispatch/DispatchTime.h>

#include <optional>
#include <vector>

namespace RVCore {

// Where a view is painted on the canvas of its superview, whose vertical axis points down from the superview's
// visible top left corner: where its top left corner lies, and, for a layer, the transform about the anchor point.
CGAffineTransform placementInSuperview(const NSView& view);
// The same while its layer is on its way: where that is at this moment, stretched from the view's size to the
// layer's.
CGAffineTransform shownPlacementInSuperview(const NSView& view, DispatchTime time);

// The numbers that say where a layer is, in the coordinates of what it is in.
struct LayerGeometry {
    CGPoint position;
    CGPoint anchorPoint;
    CGAffineTransform transform;
    CGSize size;
};
// Where the layer's top left corner and its axes lie on the canvas of what it is in, which shows `outer` of its
// coordinates; mirrored where those run upward.
CGAffineTransform placementIn(const CGRect& outer, bool isMirrored, const LayerGeometry& geometry);
// From a picture of this size to one of the size that is shown of it.
CGAffineTransform stretched(CGSize size, CGSize shown);

// A point of the superview's coordinates (a root's: the window's) in the view's own, as it is painted; nothing where
// the view is not.
std::optional<CGPoint> pointInside(const NSView& view, CGPoint pointInSuperview);

// From the lowest to the topmost: by their layers' z positions, equal ones in order.
std::vector<NSView*> subviewsInPaintingOrder(const NSView& view);

} // namespace RVCore
