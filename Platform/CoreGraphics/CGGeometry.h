#pragma once

#include <Foundation/Value.h>

#include <ostream>

namespace RVCore {

// Lengths and coordinates are in points.
using CGFloat = double;

struct CGPoint {
    CGFloat x = 0;
    CGFloat y = 0;
    bool operator==(const CGPoint&) const = default;
};

struct CGSize {
    CGFloat width = 0;
    CGFloat height = 0;
    bool operator==(const CGSize&) const = default;
};

struct CGRect {
    CGPoint origin;
    CGSize size;

    constexpr CGRect() = default;
    constexpr CGRect(CGPoint theOrigin, CGSize theSize) : origin(theOrigin), size(theSize) {}
    constexpr CGRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) : origin{x, y}, size{width, height} {}

    CGFloat minX() const { return origin.x; }
    CGFloat minY() const { return origin.y; }
    CGFloat midX() const { return origin.x + size.width / 2; }
    CGFloat midY() const { return origin.y + size.height / 2; }
    CGFloat maxX() const { return origin.x + size.width; }
    CGFloat maxY() const { return origin.y + size.height; }
    bool isEmpty() const { return size.width <= 0 || size.height <= 0; }

    // The left and top edges belong to the rectangle, the right and bottom ones do not.
    bool contains(CGPoint point) const
    {
        return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
    }
    // The common part; an empty rectangle at the origin when there is none.
    CGRect intersection(const CGRect& other) const;
    // The smallest rectangle around both; an empty one adds nothing.
    CGRect unionWith(const CGRect& other) const;
    // Every edge moved inward by this much (outward when negative).
    CGRect insetBy(CGFloat dx, CGFloat dy) const
    {
        return {minX() + dx, minY() + dy, size.width - 2 * dx, size.height - 2 * dy};
    }

    bool operator==(const CGRect&) const = default;
};

// Distances from the edges of a rectangle, inward.
struct EdgeInsets {
    CGFloat top = 0;
    CGFloat left = 0;
    CGFloat bottom = 0;
    CGFloat right = 0;
    bool operator==(const EdgeInsets&) const = default;
};

// Raise NSInvalidArgumentException naming the operation and the value unless every component is finite.
void requireFinite(std::string_view operation, std::string_view name, const CGPoint& point);
void requireFinite(std::string_view operation, std::string_view name, const CGSize& size);
void requireFinite(std::string_view operation, std::string_view name, const CGRect& rect);
void requireFinite(std::string_view operation, std::string_view name, const EdgeInsets& insets);
// The same also for a side below 0.
void requireNotNegative(std::string_view operation, std::string_view name, const CGSize& size);

template <> struct ValueBoxTraits<CGPoint> {
    static constexpr std::string_view name = "CGPoint";
    static std::string describe(const CGPoint& point); // "(10, 20)"
};
template <> struct ValueBoxTraits<CGSize> {
    static constexpr std::string_view name = "CGSize";
    static std::string describe(const CGSize& size); // "30 × 40"
};
template <> struct ValueBoxTraits<CGRect> {
    static constexpr std::string_view name = "CGRect";
    static std::string describe(const CGRect& rect); // "(10, 20) 30 × 40"
};
template <> struct ValueBoxTraits<EdgeInsets> {
    static constexpr std::string_view name = "EdgeInsets";
    static std::string describe(const EdgeInsets& insets); // "top 2, left 8, bottom 2, right 8"
};

// A geometry value as text, as in ValueBoxTraits.
template <Boxable T> std::string describe(const T& value)
{
    return ValueBoxTraits<T>::describe(value);
}

// For printing in failed comparisons.
template <Boxable T> std::ostream& operator<<(std::ostream& stream, const T& value)
{
    return stream << describe(value);
}

} // namespace RVCore
