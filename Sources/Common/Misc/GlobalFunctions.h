#pragma once

#include <AppKit/NSLayoutConstraint.h>
#include <ConstraintLibrary/Forward.h>
#include <CoreGraphics/CGGeometry.h>

#include <concepts>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>

namespace RVCore {

// Layout priorities. The medium level is no midpoint of the others.
inline constexpr float RVLayoutPriorityRequired = 1000;
inline constexpr float RVLayoutPriorityDefaultHigh = 750;
inline constexpr float RVLayoutPriorityDefaultMedium = 700;
inline constexpr float RVLayoutPriorityDefaultLow = 250;

// The value of an absent intrinsic width or height.
inline constexpr CGFloat RVViewNoIntrinsicMetric = -1.0;

struct ConstraintCreation {
    bool installConstraints = true;
    std::optional<float> priority = std::nullopt; // RVLayoutPriorityRequired when absent
    std::string identifier = {}; // the role of what is created; empty for what blocks around it or operations say
};

// Runs a closure of constraint-building calls and returns every constraint created while it ran, in order. The blocks
// of the constraint library (ConstraintBlocks.h) do the work and are reached by their selectors.
//     autoCreateConstraints({.priority = 749}, [&] { autoPinEdge(…); });
LayoutConstraints autoCreateConstraints(const ConstraintCreation& creation, const std::function<void()>& closure);
LayoutConstraints autoCreateConstraints(const std::function<void()>& closure);

// Runs the closure so that every constraint created in it gets the priority, in (0, 1000].
void autoSetPriority(float priority, const std::function<void()>& closure);

// Send autoInstallConstraints, autoRemoveConstraints and autoIdentifyConstraints: to the constraints as a list.
void autoInstallConstraints(const LayoutConstraints& constraints);
void autoRemoveConstraints(LayoutConstraints constraints);
void autoIdentifyConstraints(const LayoutConstraints& constraints, const std::string& identifier);

// Stops the program with "Not Supported": what unarchiving a class without archives comes to.
[[noreturn]] void notSupportedError();

template <class T>
concept RandomInteger = std::same_as<T, std::uint32_t> || std::same_as<T, std::int32_t> ||
                        std::same_as<T, std::uint64_t> || std::same_as<T, std::int64_t>;

template <RandomInteger T> struct RandomRange {
    T lower = std::numeric_limits<T>::min();
    T upper = std::numeric_limits<T>::max(); // never the result, unless it is `lower`, too
};

// A uniform integer in [lower, upper); `lower` when the bounds are equal. An upper bound below the lower one stops
// the program. The 64-bit types draw from 32 bits: bounds that do not fit in 32 bits stop the program, the defaults
// among them.
//     random<std::uint32_t>({.lower = 1, .upper = 7})
template <RandomInteger T> T random(const RandomRange<T>& range = {});
template <> std::uint32_t random(const RandomRange<std::uint32_t>& range);
template <> std::int32_t random(const RandomRange<std::int32_t>& range);
template <> std::uint64_t random(const RandomRange<std::uint64_t>& range);
template <> std::int64_t random(const RandomRange<std::int64_t>& range);

// A uniform number: a float in [0, 1] (1.0 because the 127 largest draws round up to 2^32), a double in [0, 1).
template <std::floating_point T>
    requires(std::same_as<T, float> || std::same_as<T, double>)
T random();
template <> float random();
template <> double random();

struct SymmetricInsets {
    CGFloat horizontal = 0; // left and right
    CGFloat vertical = 0;   // top and bottom
};

//     makeEdgeInsets({.horizontal = 8, .vertical = 2})
constexpr EdgeInsets makeEdgeInsets(const SymmetricInsets& insets)
{
    return {.top = insets.vertical, .left = insets.horizontal, .bottom = insets.vertical, .right = insets.horizontal};
}

} // namespace RVCore
