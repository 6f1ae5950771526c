#pragma once

#include <CoreImage/CIFilter.h>
#include <Dispatch/DispatchTime.h>

#include <QuartzCore/AnimatableValue.h>
#include <QuartzCore/CAMediaTimingFunction.h>

#include <string>
#include <string_view>

namespace RVCore {

// What of a layer can be on its way.
enum class LayerProperty : std::uint8_t {
    position,
    bounds,
    affineTransform,
    zPosition,
    opacity,
    backgroundColor,
    cornerRadius,
    borderWidth,
    borderColor,
    filterInput, // a number of one of the layer's filters
};

// "opacity"; as in key paths.
std::string_view keyOf(LayerProperty property);

// The way of one property of a layer: a pure function of the time, which nothing has to step.
struct LayerAnimation {
    LayerProperty property;
    std::shared_ptr<CIFilter> filter; // whose input it is; null for a property of the layer itself
    std::string input;                // "inputRadius"
    AnimatableValue from;
    AnimatableValue to;
    DispatchTime begin;
    double duration; // in seconds, above 0
    std::shared_ptr<const CAMediaTimingFunction> timingFunction;

    bool moves(LayerProperty other, const CIFilter* otherFilter, std::string_view otherInput) const
    {
        return property == other && filter.get() == otherFilter && input == otherInput;
    }
    DispatchTime end() const { return begin + duration; }
    // From its begin until just before its end. Time does not go back, so at a moment before the begin the program's
    // clock has been replaced, and what ran by the old one is over.
    bool isRunning(DispatchTime time) const { return time >= begin && time < end(); }
    // While it is running.
    AnimatableValue valueAt(DispatchTime time) const
    {
        return valueBetween(from, to, timingFunction->value((time - begin) / duration));
    }
};

} // namespace RVCore
