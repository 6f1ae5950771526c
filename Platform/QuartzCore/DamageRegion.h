#pragma once

#include <CoreGraphics/PixelRect.h>

#include <array>
#include <cstddef>
#include <span>

namespace RVCore {

// The pixels that have to be painted again, as a few rectangles that do not overlap. Where many small ones would be
// exact, it covers more. Allocates nothing.
class DamageRegion {
public:
    static constexpr std::size_t largestCount = 6;

    bool isEmpty() const { return m_count == 0; }
    std::span<const PixelRect> rects() const { return {m_rects.data(), m_count}; }
    PixelRect bounds() const; // around all of them

    void clear() { m_count = 0; }
    void add(PixelRect rect); // an empty one adds nothing
    void add(const DamageRegion& other);
    // Leaves what lies inside the rectangle.
    void clip(const PixelRect& rect);
    // Every rectangle grown by this many pixels on each side.
    DamageRegion grownBy(int pixels) const;

private:
    std::array<PixelRect, largestCount> m_rects;
    std::size_t m_count = 0;
};

} // namespace RVCore
