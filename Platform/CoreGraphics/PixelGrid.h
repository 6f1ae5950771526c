#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cmath>

namespace RVCore {

// Where lengths and edges fall on a device's pixels. Everybody who paints, or says what was painted, goes by these.
// The products of decimal fractions miss whole numbers by a little, which `pixelTolerance` forgives.
inline constexpr CGFloat pixelTolerance = 1e-6;

// The pixel edge that a straight edge is moved to. Half way between two, rounding errors do not send edges that meet
// apart.
inline CGFloat nearestPixel(CGFloat edge)
{
    return std::floor(edge + 0.5 + pixelTolerance);
}
// How many pixels a picture's side of this many points takes; a part of one at the edge counts as one.
inline CGFloat pixelsAcross(CGFloat side, CGFloat scale)
{
    return std::ceil(side * scale - pixelTolerance);
}

} // namespace RVCore
