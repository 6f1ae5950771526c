#pragma once

#include <ostream>

namespace RVCore {

// A rectangle of whole pixels, y growing downward as the rows of a Bitmap do. It is empty when a side is not above 0.
// Coordinates and sides stay within ±2^29, so no sum of two of them overflows.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    // The first column and row behind the rectangle.
    int maxX() const { return x + width; }
    int maxY() const { return y + height; }
    bool isEmpty() const { return width <= 0 || height <= 0; }

    // Whether every pixel of the other one lies in this one; an empty one has none.
    bool contains(const PixelRect& other) const;
    // The common part; an empty rectangle at the origin when there is none.
    PixelRect intersection(const PixelRect& other) const;
    // The smallest rectangle around both; an empty one adds nothing.
    PixelRect unionWith(const PixelRect& other) const;
    // Every edge moved inward by this much (outward when negative).
    PixelRect insetBy(int dx, int dy) const { return {x + dx, y + dy, width - 2 * dx, height - 2 * dy}; }

    bool operator==(const PixelRect&) const = default;
};

// For printing in failed comparisons: "(1, 2) 3 × 4".
std::ostream& operator<<(std::ostream& stream, const PixelRect& rect);

} // namespace RVCore
