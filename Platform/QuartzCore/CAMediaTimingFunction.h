#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <Foundation/NSObject.h>

#include <array>
#include <memory>
#include <string_view>

namespace RVCore {

// The names of the curves that `CAMediaTimingFunction::functionWithName` knows.
inline constexpr std::string_view kCAMediaTimingFunctionLinear = "linear";
inline constexpr std::string_view kCAMediaTimingFunctionEaseIn = "easeIn";
inline constexpr std::string_view kCAMediaTimingFunctionEaseOut = "easeOut";
inline constexpr std::string_view kCAMediaTimingFunctionEaseInEaseOut = "easeInEaseOut";
inline constexpr std::string_view kCAMediaTimingFunctionDefault = "default";

// How far something has come when a part of its time is over: the cubic Bézier curve from (0, 0) to (1, 1) through
// two control points, with time along x and progress along y. It does not change.
//
//      1 ┤      c2 ───● end      Control points have their x between 0 and 1, so that time never goes back; their y
//        │        ·             may be anything finite, and then progress goes below 0 or above 1 on the way.
//        │      ·
//      0 ┤ ●─── c1
//        └─┴──────────┴
//          0          1  time
class CAMediaTimingFunction : public NSObject {
    RVCORE_CLASS(CAMediaTimingFunction)

public:
    // One of the five named curves, each of which exists once; any other name raises NSInvalidArgumentException.
    static std::shared_ptr<CAMediaTimingFunction> functionWithName(std::string_view name);

    void init() override {} // the linear one
    // Raises NSInvalidArgumentException for an x outside of 0 to 1 and for what is not finite.
    using NSObject::init;
    void init(double c1x, double c1y, double c2x, double c2y);

    // The curve's points: 0 and 3 are its ends, 1 and 2 its control points; any other raises NSRangeException.
    CGPoint controlPoint(int index) const;
    // The progress at this part of the time, to 1e-9: 0 up to time 0, 1 from time 1 on. (Where the curve runs
    // straight up, a time's last digit decides more than that.) What is not a number raises
    // NSInvalidArgumentException.
    double value(double time) const;

    bool isEqual(const NSObject& other) const override; // by its control points
    std::size_t hash() const override;

private:
    double parameterAt(double time) const;

    CGPoint m_c1{0, 0};
    CGPoint m_c2{1, 1};
};

} // namespace RVCore
