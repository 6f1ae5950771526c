#pragma once

#include <AppKit/Forward.h>
#include <CoreGraphics/CGAffineTransform.h>

#include <optional>
#include <vector>

namespace RVCore {

// Where a view is painted on the canvas of its superview, whose vertical axis points down from the superview's
// visible top left corner: where its top left corner lies, and, for a layer, the transform about the anchor point.
CGAffineTransform placementInSuperview(const NSView& view);

// A point of the superview's coordinates (a root's: the window's) in the view's own, as it is painted; nothing where
// the view is not.
std::optional<CGPoint> pointInside(const NSView& view, CGPoint pointInSuperview);

// From the lowest to the topmost: by their layers' z positions, equal ones in order.
std::vector<NSView*> subviewsInPaintingOrder(const NSView& view);

} // namespace RVCore
