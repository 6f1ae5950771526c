#pragma once

#include <Foundation/NSException.h>
#include <Foundation/Value.h>

#include <cmath>
#include <concepts>
#include <limits>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace RVCore {

// How a C++ type travels as a Value. `unwrap` gives nothing when the value is of another kind or out of range;
// `expected` says in words what would have been right.
template <class T> struct ValueConversion;

// "integer from <smallest> to <largest>"
std::string integerRangeText(std::int64_t smallest, std::uint64_t largest);

template <> struct ValueConversion<Value> {
    static std::string expected() { return "any value"; }
    static Value wrap(Value value) { return value; }
    static std::optional<Value> unwrap(const Value& value) { return value; }
};

template <> struct ValueConversion<bool> {
    static std::string expected() { return "Boolean"; }
    static Value wrap(bool value) { return Value(value); }
    static std::optional<bool> unwrap(const Value& value)
    {
        return value.boolean() ? std::optional(*value.boolean()) : std::nullopt;
    }
};

template <class T>
    requires(std::integral<T> && !std::same_as<T, bool>)
struct ValueConversion<T> {
    static std::string expected()
    {
        return integerRangeText(std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
    }
    static Value wrap(T value) { return Value(value); }
    static std::optional<T> unwrap(const Value& value)
    {
        if (!value.integer() || !std::in_range<T>(*value.integer()))
            return std::nullopt;
        return static_cast<T>(*value.integer());
    }
};

template <class T>
    requires(std::same_as<T, double> || std::same_as<T, float>)
struct ValueConversion<T> {
    static std::string expected() { return "number"; }
    static Value wrap(T value) { return Value(value); }
    static std::optional<T> unwrap(const Value& value)
    {
        if (value.integer())
            return static_cast<T>(*value.integer());
        if (!value.floatingPoint())
            return std::nullopt;
        const double number = *value.floatingPoint();
        if (std::isfinite(number) && std::abs(number) > double(std::numeric_limits<T>::max()))
            return std::nullopt; // a T has no such number
        return static_cast<T>(number);
    }
};

// Enumerations travel as their number.
template <class T>
    requires std::is_enum_v<T>
struct ValueConversion<T> {
    using Number = std::underlying_type_t<T>;
    static std::string expected() { return ValueConversion<Number>::expected(); }
    static Value wrap(T value) { return Value(static_cast<Number>(value)); }
    static std::optional<T> unwrap(const Value& value)
    {
        const auto number = ValueConversion<Number>::unwrap(value);
        return number ? std::optional(static_cast<T>(*number)) : std::nullopt;
    }
};

template <> struct ValueConversion<std::string> {
    static std::string expected() { return "text"; }
    static Value wrap(std::string value) { return Value(std::move(value)); }
    static std::optional<std::string> unwrap(const Value& value)
    {
        return value.text() ? std::optional(*value.text()) : std::nullopt;
    }
};

template <> struct ValueConversion<Selector> {
    static std::string expected() { return "selector"; }
    static Value wrap(Selector value) { return Value(value); }
    static std::optional<Selector> unwrap(const Value& value)
    {
        return value.selector() ? std::optional(*value.selector()) : std::nullopt;
    }
};

template <Boxable T> struct ValueConversion<T> {
    static std::string expected() { return std::string(ValueBoxTraits<T>::name); }
    static Value wrap(const T& value) { return Value(value); }
    static std::optional<T> unwrap(const Value& value)
    {
        return value.boxed<T>() ? std::optional(*value.boxed<T>()) : std::nullopt;
    }
};

// Objects: nothing stands for an absent object.
template <class T>
    requires std::derived_from<T, NSObject>
struct ValueConversion<std::shared_ptr<T>> {
    static std::string expected() { return objectClassName<T>() + " or nothing"; }
    static Value wrap(std::shared_ptr<T> value) { return Value(std::move(value)); }
    static std::optional<std::shared_ptr<T>> unwrap(const Value& value)
    {
        if (value.isNothing())
            return std::shared_ptr<T>();
        if (!value.object())
            return std::nullopt;
        auto object = cast(*value.object());
        return object ? std::optional(std::move(object)) : std::nullopt;
    }

private:
    // Nothing derives from a final class, so its objects are told by their class, which is much quicker. A template,
    // since NSObject is not complete here.
    template <class Object> static std::shared_ptr<T> cast(const Object& object)
    {
        if constexpr (std::is_final_v<T>)
            return &object->classObject() == &T::staticClass() ? std::static_pointer_cast<T>(object) : nullptr;
        else
            return std::dynamic_pointer_cast<T>(object);
    }
    template <class U> static std::string objectClassName() { return U::staticClass().name(); }
};

template <class T> struct ValueConversion<std::optional<T>> {
    static std::string expected() { return ValueConversion<T>::expected() + " or nothing"; }
    static Value wrap(const std::optional<T>& value) { return value ? ValueConversion<T>::wrap(*value) : Value(); }
    static std::optional<std::optional<T>> unwrap(const Value& value)
    {
        if (value.isNothing())
            return std::optional<T>();
        auto content = ValueConversion<T>::unwrap(value);
        if (!content)
            return std::nullopt;
        return std::optional<std::optional<T>>(std::in_place, std::move(*content));
    }
};

template <class T>
    requires(!std::same_as<T, Value>)
struct ValueConversion<std::vector<T>> {
    static std::string expected() { return "array of " + ValueConversion<T>::expected(); }
    static Value wrap(std::vector<T> values)
    {
        Value::Array array;
        array.reserve(values.size());
        for (auto&& value : values)
            array.push_back(ValueConversion<T>::wrap(std::move(value)));
        return Value(std::move(array));
    }
    static std::optional<std::vector<T>> unwrap(const Value& value)
    {
        if (!value.array())
            return std::nullopt;
        std::vector<T> result;
        result.reserve(value.array()->size());
        for (const Value& element : *value.array()) {
            auto content = ValueConversion<T>::unwrap(element);
            if (!content)
                return std::nullopt;
            result.push_back(std::move(*content));
        }
        return result;
    }
};

template <> struct ValueConversion<Value::Array> {
    static std::string expected() { return "array"; }
    static Value wrap(Value::Array value) { return Value(std::move(value)); }
    static std::optional<Value::Array> unwrap(const Value& value)
    {
        return value.array() ? std::optional(*value.array()) : std::nullopt;
    }
};

template <> struct ValueConversion<Value::Dictionary> {
    static std::string expected() { return "dictionary"; }
    static Value wrap(Value::Dictionary value) { return Value(std::move(value)); }
    static std::optional<Value::Dictionary> unwrap(const Value& value)
    {
        return value.dictionary() ? std::optional(*value.dictionary()) : std::nullopt;
    }
};

template <class T> T Value::as() const
{
    auto content = ValueConversion<T>::unwrap(*this);
    if (!content)
        raiseInvalidArgument("Value.as", "expected " + ValueConversion<T>::expected() + ", got " + kind());
    return std::move(*content);
}

} // namespace RVCore

#include <Foundation/CallbackConversion.h>
