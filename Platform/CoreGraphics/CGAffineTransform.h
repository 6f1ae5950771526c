#pragma once

#include <CoreGraphics/CGGeometry.h>

namespace RVCore {

// Maps (x, y) to (a·x + c·y + tx, b·x + d·y + ty). The default is the identity.
struct CGAffineTransform {
    CGFloat a = 1;
    CGFloat b = 0;
    CGFloat c = 0;
    CGFloat d = 1;
    CGFloat tx = 0;
    CGFloat ty = 0;

    static CGAffineTransform translation(CGFloat tx, CGFloat ty) { return {1, 0, 0, 1, tx, ty}; }
    static CGAffineTransform scale(CGFloat sx, CGFloat sy) { return {sx, 0, 0, sy, 0, 0}; }
    // `angle` in radians, from the x axis towards the y axis.
    static CGAffineTransform rotation(CGFloat angle);

    bool isIdentity() const { return *this == CGAffineTransform(); }
    // This transform first, then the other one.
    CGAffineTransform concatenating(const CGAffineTransform& next) const;
    // The transform back; the transform itself when it has no inverse (determinant 0).
    CGAffineTransform inverted() const;
    CGPoint apply(CGPoint point) const { return {a * point.x + c * point.y + tx, b * point.x + d * point.y + ty}; }
    // The bounding box of the mapped rectangle.
    CGRect apply(const CGRect& rect) const;

    bool operator==(const CGAffineTransform&) const = default;
};

void requireFinite(std::string_view operation, std::string_view name, const CGAffineTransform& transform);

template <> struct ValueBoxTraits<CGAffineTransform> {
    static constexpr std::string_view name = "CGAffineTransform";
    static std::string describe(const CGAffineTransform& transform); // "[a, b, c, d, tx, ty]"
};

} // namespace RVCore
