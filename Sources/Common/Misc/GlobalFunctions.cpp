#include <Common/Misc/GlobalFunctions.h>
#include <ConstraintLibrary/ConstraintLibrary.h>
#include <Foundation/Message.h>
#include <Foundation/NSArray.h>
#include <Foundation/Random.h>
#include <Foundation/Stop.h>

#include <cmath>
#include <utility>

namespace RVCore {

LayoutConstraints autoCreateConstraints(const ConstraintCreation& creation, const std::function<void()>& closure)
{
    const Selector create =
        creation.installConstraints ? "autoCreateAndInstallConstraints:" : "autoCreateConstraintsWithoutInstalling:";
    LayoutConstraints result;
    const std::function<void()> run = [&] {
        autoSetPriority(creation.priority.value_or(RVLayoutPriorityRequired), [&] {
            const Value created = send(NSLayoutConstraint::staticClass(), create, closure);
            if (!created.isNothing())
                result = created.as<LayoutConstraints>();
        });
    };
    if (creation.identifier.empty())
        run();
    else
        send(NSLayoutConstraint::staticClass(), "autoSetIdentifier:forConstraints:", creation.identifier, run);
    return result;
}

LayoutConstraints autoCreateConstraints(const std::function<void()>& closure)
{
    return autoCreateConstraints(ConstraintCreation(), closure);
}

void autoSetPriority(float priority, const std::function<void()>& closure)
{
    send(NSLayoutConstraint::staticClass(), "autoSetPriority:forConstraints:", priority, closure);
}

void autoInstallConstraints(const LayoutConstraints& constraints)
{
    send(makeArray(constraints), "autoInstallConstraints");
}

void autoRemoveConstraints(LayoutConstraints constraints)
{
    send(makeArray(std::move(constraints)), "autoRemoveConstraints");
}

void autoIdentifyConstraints(const LayoutConstraints& constraints, const std::string& identifier)
{
    send(makeArray(constraints), "autoIdentifyConstraints:", identifier);
}

void notSupportedError()
{
    fatalError("Not Supported", "Sources/Common/Misc/GlobalFunctions", 12);
}

namespace {

// The value in a narrower type; one that does not fit stops the program.
template <class To, class From> To narrowed(From value)
{
    if (!std::in_range<To>(value))
        fatalError("Arithmetic overflow: " + std::to_string(value) + " does not fit in " +
                   std::to_string(sizeof(To) * 8) + " bits");
    return static_cast<To>(value);
}

// Both 32-bit types: in 64 bits, neither difference nor sum can overflow.
template <class T> T randomIn32Bits(const RandomRange<T>& range)
{
    const std::int64_t difference = std::int64_t{range.upper} - std::int64_t{range.lower};
    if (difference < 0)
        fatalError("Arithmetic overflow: the upper bound " + std::to_string(range.upper) +
                   " of a random number is below the lower bound " + std::to_string(range.lower));
    return narrowed<T>(std::int64_t{range.lower} + arc4randomUniform(static_cast<std::uint32_t>(difference)));
}

// The bound of the draws behind floating-point numbers; a draw is below it.
constexpr std::uint32_t drawBound = std::numeric_limits<std::uint32_t>::max();

} // namespace

template <> std::uint32_t random(const RandomRange<std::uint32_t>& range)
{
    return randomIn32Bits(range);
}

template <> std::int32_t random(const RandomRange<std::int32_t>& range)
{
    return randomIn32Bits(range);
}

template <> std::uint64_t random(const RandomRange<std::uint64_t>& range)
{
    return randomIn32Bits<std::uint32_t>(
        {.lower = narrowed<std::uint32_t>(range.lower), .upper = narrowed<std::uint32_t>(range.upper)});
}

template <> std::int64_t random(const RandomRange<std::int64_t>& range)
{
    return randomIn32Bits<std::int32_t>(
        {.lower = narrowed<std::int32_t>(range.lower), .upper = narrowed<std::int32_t>(range.upper)});
}

// The draw is rounded to single precision before it is scaled, which makes 1.0 possible.
template <> float random()
{
    return std::ldexp(static_cast<float>(arc4randomUniform(drawBound)), -32);
}

template <> double random()
{
    return static_cast<double>(arc4randomUniform(drawBound)) / static_cast<double>(drawBound);
}

} // namespace RVCore
