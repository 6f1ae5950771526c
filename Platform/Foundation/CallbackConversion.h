#pragma once

#include <Foundation/ValueConversion.h>

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace RVCore {

// Callbacks: any function of convertible arguments. Nothing stands for an absent one.
template <class R, class... Arguments> struct ValueConversion<std::function<R(Arguments...)>> {
    using Function = std::function<R(Arguments...)>;
    static std::string expected() { return "callback or nothing"; }
    static Value wrap(Function function)
    {
        if (!function)
            return Value();
        return Value(Value::Callback([function = std::move(function)](std::span<const Value> values) {
            if (values.size() != sizeof...(Arguments))
                raiseInvalidArgument("callback", "takes " + std::to_string(sizeof...(Arguments)) +
                                                     " arguments, got " + std::to_string(values.size()));
            return call(function, values, std::index_sequence_for<Arguments...>());
        }));
    }
    static std::optional<Function> unwrap(const Value& value)
    {
        if (value.isNothing())
            return Function();
        if (!value.callback())
            return std::nullopt;
        return Function([callback = *value.callback()](Arguments... arguments) -> R {
            const std::array<Value, sizeof...(Arguments)> values{
                ValueConversion<std::decay_t<Arguments>>::wrap(arguments)...};
            const Value result = callback(values);
            if constexpr (!std::is_void_v<R>)
                return result.template as<R>();
        });
    }

private:
    template <std::size_t... I>
    static Value call(const Function& function, [[maybe_unused]] std::span<const Value> values,
                      std::index_sequence<I...>)
    {
        if constexpr (std::is_void_v<R>) {
            function(values[I].template as<std::decay_t<Arguments>>()...);
            return Value();
        } else {
            return ValueConversion<R>::wrap(function(values[I].template as<std::decay_t<Arguments>>()...));
        }
    }
};

// The general callback itself.
template <> struct ValueConversion<Value::Callback> {
    static std::string expected() { return "callback or nothing"; }
    static Value wrap(Value::Callback value) { return value ? Value(std::move(value)) : Value(); }
    static std::optional<Value::Callback> unwrap(const Value& value)
    {
        if (value.isNothing())
            return Value::Callback();
        return value.callback() ? std::optional(*value.callback()) : std::nullopt;
    }
};

} // namespace RVCore
