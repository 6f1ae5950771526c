#pragma once

#include <Foundation/NSObject.h>

#include <array>

namespace RVCore {

// Sends the message `selector` with arguments that are already values. Raises NSInvalidArgumentException for a
// selector that the receiver's class does not answer, for too few or too many arguments and for one of the wrong
// kind; the message names class, selector, position and what was expected.
Value sendValues(NSObject& receiver, Selector selector, std::span<const Value> arguments);
Value sendValues(const Class& receiver, Selector selector, std::span<const Value> arguments);

// A C++ value as a Value: everything that Value or ValueConversion knows, and closures taking values.
template <class T> Value toValue(T&& content)
{
    if constexpr (std::constructible_from<Value, T&&>)
        return Value(std::forward<T>(content));
    else
        return ValueConversion<std::decay_t<T>>::wrap(std::forward<T>(content));
}

// Sends a message by name, to an object or to a class: send(view, "setFrame:", rect).as<…>().
template <class... Arguments> Value send(NSObject& receiver, Selector selector, Arguments&&... arguments)
{
    const std::array<Value, sizeof...(Arguments)> values{toValue(std::forward<Arguments>(arguments))...};
    return sendValues(receiver, selector, values);
}
template <class... Arguments> Value send(const Class& receiver, Selector selector, Arguments&&... arguments)
{
    const std::array<Value, sizeof...(Arguments)> values{toValue(std::forward<Arguments>(arguments))...};
    return sendValues(receiver, selector, values);
}
// An absent receiver takes every message and answers nothing; one that is there lives until the method returns.
template <std::derived_from<NSObject> T, class... Arguments>
Value send(const std::shared_ptr<T>& receiver, Selector selector, Arguments&&... arguments)
{
    // The method may let go of the pointer that we were given.
    const std::shared_ptr<T> kept = receiver; // NOLINT(performance-unnecessary-copy-initialization)
    return kept ? send(static_cast<NSObject&>(*kept), selector, std::forward<Arguments>(arguments)...) : Value();
}

} // namespace RVCore
