#pragma once

#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGColor.h>

#include <variant>

namespace RVCore {

// A value that can be on its way from one to another.
using AnimatableValue = std::variant<CGFloat, CGPoint, CGRect, CGAffineTransform, CGColor>;

// What lies between two values of the same kind at this progress: exactly `from` at 0 and `to` at 1, and beyond them
// in the same direction. Numbers go straight; a transform's turning, stretching, slanting and shift go each their own
// way, the turning by the shorter one. Values of different kinds give `to`.
AnimatableValue valueBetween(const AnimatableValue& from, const AnimatableValue& to, double progress);

} // namespace RVCore
