#pragma once

#include <CoreGraphics/Canvas.h>

#include <QRect>

#include <optional>

class QTransform;

namespace RVCore {

// Edges that do not lie on a pixel's are moved to the nearest one as things are drawn, so that they are sharp at
// every scale; edges that meet are moved alike and leave no seam.

// Where a rectangle lies on a device whose pixels its edges are moved to; nothing where it does not lie straight and
// upright.
std::optional<QRect> snappedToDevice(const QTransform& toDevice, const CGRect& rect);

// The shape with its edges on the device's pixels, in its own coordinates still, at least a pixel wide and high. One
// that does not lie straight, an empty one and a circle, which has no straight edges, are left as they are.
RoundedRect alignedToDevice(const QTransform& toDevice, const RoundedRect& shape);

// How thick a line of this width, more than 0, is across and upright: whole pixels, at least one, as lengths in its
// own coordinates. Where these do not lie straight, the width itself.
CGSize lineAlignedToDevice(const QTransform& toDevice, CGFloat width);

} // namespace RVCore
