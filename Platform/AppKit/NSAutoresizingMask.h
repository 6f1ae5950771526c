#pragma once

#include <cstdint>

namespace RVCore {

// Which parts of a view's placement stretch with its superview when its mask is translated into constraints.
enum class NSAutoresizingMask : std::uint8_t {
    none = 0,
    minXMargin = 1,
    width = 2,
    maxXMargin = 4,
    minYMargin = 8,
    height = 16,
    maxYMargin = 32,
};
constexpr NSAutoresizingMask operator|(NSAutoresizingMask left, NSAutoresizingMask right)
{
    return static_cast<NSAutoresizingMask>(static_cast<int>(left) | static_cast<int>(right));
}
constexpr bool contains(NSAutoresizingMask mask, NSAutoresizingMask flag)
{
    return (static_cast<int>(mask) & static_cast<int>(flag)) == static_cast<int>(flag);
}

} // namespace RVCore
