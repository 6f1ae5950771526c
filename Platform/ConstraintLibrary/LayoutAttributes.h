#pragma once

#include <cstdint>

namespace RVCore {

// What the operations of this library are told about: the numbers are those of NSLayoutAttribute. Edges are absolute,
// the same whichever way text runs.
enum class LayoutEdge : std::int8_t { left = 1, right = 2, top = 3, bottom = 4 };

//            │ vertical axis: through the middle of the width (centre X); stands for the vertical orientation
//      ┌─────┼─────┐
//    ──┼─────┼─────┼── horizontal axis: through the middle of the height (centre Y); stands for the horizontal
//      └─────┼─────┘   orientation
enum class LayoutAxis : std::int8_t { vertical = 9, horizontal = 10 };

enum class LayoutDimension : std::int8_t { width = 7, height = 8 };

} // namespace RVCore
