#pragma once

#include <AppKit/Forward.h>
#include <CoreGraphics/CGAffineTransform.h>

#include <vector>

namespace RVCore {

// Where a view is painted on the canvas of its superview, whose vertical axis points down from the superview's
// visible top left corner: where its top left corner lies, and, for a layer, the transform about the anchor point.
CGAffineTransform placementInSuperview(const NSView& view);

// From the lowest to the topmost: by their layers' z positions, equal ones in order.
std::vector<NSView*> subviewsInPaintingOrder(const NSView& view);

} // namespace RVCore
