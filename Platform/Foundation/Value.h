#pragma once

#include <Foundation/Forward.h>
#include <Foundation/Selector.h>

#include <concepts>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <span>
#include <string>
#include <typeinfo>
#include <utility>
#include <variant>
#include <vector>

namespace RVCore {

// A plain value type that a Value can carry, such as a rectangle, specialises this with
//     static constexpr std::string_view name;            // as it appears in messages, "CGRect"
//     static std::string describe(const T& value);
// and is comparable with ==.
template <class T> struct ValueBoxTraits;

template <class T>
concept Boxable = requires(const T& value) {
    {
        ValueBoxTraits<T>::describe(value)
    } -> std::convertible_to<std::string>;
    {
        ValueBoxTraits<T>::name
    } -> std::convertible_to<std::string_view>;
};

// Anything that a message can take or give: nothing, a Boolean, an integer, a floating-point number, text, a
// selector, a boxed plain value (geometry, insets), an object, a callback, an array or a dictionary. Copies are
// cheap; arrays, dictionaries and boxes are shared and never change. An absent object, text or callback is nothing;
// an integer above the largest signed 64-bit one raises NSRangeException.
class Value {
public:
    using Array = std::vector<Value>;
    using Dictionary = std::map<std::string, Value>;
    using Callback = std::function<Value(std::span<const Value>)>;

    class Box {
    public:
        virtual ~Box() = default;
        virtual const std::type_info& type() const = 0;
        virtual std::string_view typeName() const = 0;
        virtual std::string description() const = 0;
        virtual bool equals(const Box& other) const = 0;
    };

    Value() = default;
    Value(std::nullptr_t) {}
    template <std::same_as<bool> T> Value(T value) : m_storage(value) // a template: pointers must not become true
    {
    }
    template <class T>
        requires(std::integral<T> && !std::same_as<T, bool>)
    Value(T value) : m_storage(static_cast<std::int64_t>(value))
    {
        if constexpr (std::unsigned_integral<T> && sizeof(T) >= sizeof(std::int64_t)) {
            if (value > static_cast<T>(std::numeric_limits<std::int64_t>::max()))
                raiseTooLarge(value);
        }
    }
    template <class T>
        requires std::floating_point<T>
    Value(T value) : m_storage(static_cast<double>(value))
    {
    }
    Value(std::string text) : m_storage(std::move(text)) {}
    Value(std::string_view text) : m_storage(std::string(text)) {}
    Value(const char* text)
    {
        if (text)
            m_storage = std::string(text);
    }
    Value(Selector selector) : m_storage(selector) {}
    template <class T>
        requires std::convertible_to<T*, NSObject*>
    Value(std::shared_ptr<T> object)
    {
        if (object)
            m_storage = ObjectRef(std::move(object));
    }
    template <Boxable T> Value(const T& plain) : m_storage(std::make_shared<const TypedBox<T>>(plain)) {}
    Value(Callback callback)
    {
        if (callback)
            m_storage = std::make_shared<const Callback>(std::move(callback));
    }
    Value(Array array) : m_storage(std::make_shared<const Array>(std::move(array))) {}
    Value(Dictionary dictionary) : m_storage(std::make_shared<const Dictionary>(std::move(dictionary))) {}

    bool isNothing() const { return std::holds_alternative<std::monostate>(m_storage); }

    // The content when it is of exactly that kind, else null.
    const bool* boolean() const { return std::get_if<bool>(&m_storage); }
    const std::int64_t* integer() const { return std::get_if<std::int64_t>(&m_storage); }
    const double* floatingPoint() const { return std::get_if<double>(&m_storage); }
    const std::string* text() const { return std::get_if<std::string>(&m_storage); }
    const Selector* selector() const { return std::get_if<Selector>(&m_storage); }
    const ObjectRef* object() const { return std::get_if<ObjectRef>(&m_storage); }
    const Callback* callback() const { return shared<Callback>(); }
    const Array* array() const { return shared<Array>(); }
    const Dictionary* dictionary() const { return shared<Dictionary>(); }
    const Box* box() const { return shared<Box>(); }
    template <Boxable T> const T* boxed() const
    {
        const Box* content = box();
        return content && content->type() == typeid(T) ? &static_cast<const TypedBox<T>*>(content)->value : nullptr;
    }

    // The content as a T (see ValueConversion.h); raises NSInvalidArgumentException when it is something else.
    template <class T> T as() const;

    // The kind of the content in words, for messages: "nothing", "integer", "CGRect", "NSView".
    std::string kind() const;
    std::string description() const;

    // Integers and floating-point numbers of the same amount are equal; objects compare with isEqual; callbacks
    // by identity.
    bool operator==(const Value& other) const;

private:
    template <class T> class TypedBox final : public Box {
    public:
        explicit TypedBox(const T& plain) : value(plain) {}
        const std::type_info& type() const override { return typeid(T); }
        std::string_view typeName() const override { return ValueBoxTraits<T>::name; }
        std::string description() const override { return ValueBoxTraits<T>::describe(value); }
        bool equals(const Box& other) const override
        {
            return other.type() == typeid(T) && static_cast<const TypedBox&>(other).value == value;
        }
        T value;
    };

    [[noreturn]] static void raiseTooLarge(std::uint64_t amount);

    template <class T> const T* shared() const
    {
        const auto* pointer = std::get_if<std::shared_ptr<const T>>(&m_storage);
        return pointer ? pointer->get() : nullptr;
    }

    std::variant<std::monostate, bool, std::int64_t, double, std::string, Selector, ObjectRef,
                 std::shared_ptr<const Box>, std::shared_ptr<const Callback>, std::shared_ptr<const Array>,
                 std::shared_ptr<const Dictionary>>
        m_storage;
};

} // namespace RVCore

#include <Foundation/ValueConversion.h>
