#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <string_view>

namespace RVCore {

// What sides and places of windows can be.

// Rounded up to whole points from 1 to 32,767.
CGFloat desktopSide(CGFloat side);
CGSize desktopSize(CGSize size);

// These raise NSInvalidArgumentException for the operation.

// The size for a desktop. Raises unless it is finite and at least 1 × 1.
CGSize requiredDesktopSize(std::string_view operation, CGSize size);
// Raise for what is not finite, for an origin that is too far away, and for sides that are negative.
void requireWindowOrigin(std::string_view operation, std::string_view name, CGPoint origin);
void requireWindowRect(std::string_view operation, std::string_view name, const CGRect& rect);

} // namespace RVCore
