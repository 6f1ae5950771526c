#pragma once

#include <Foundation/Class.h>
#include <Foundation/Stop.h>

#include <tuple>

namespace RVCore {

namespace Messaging {

// Raises for an argument of the wrong kind: names class, selector, position (from 1) and what was expected.
[[noreturn]] void raiseWrongArgument(std::string_view className, Selector selector, std::size_t position,
                                     const std::string& expected, const Value& got);
void checkArgumentCount(std::string_view className, Selector selector, std::size_t expected, std::size_t got);

// How one parameter of an operation is kept while the operation runs, and how it is handed over.
template <class Parameter> struct ArgumentKeeper {
    using Kept = std::decay_t<Parameter>;
    static Kept& pass(Kept& kept) { return kept; }
};
template <class Parameter>
    requires std::same_as<std::remove_cvref_t<Parameter>, std::string_view>
struct ArgumentKeeper<Parameter> {
    using Kept = std::string;
    static std::string_view pass(const Kept& kept) { return kept; }
};
template <class Parameter>
    requires std::derived_from<std::remove_cvref_t<Parameter>, NSObject>
struct ArgumentKeeper<Parameter> {
    using Kept = std::shared_ptr<std::remove_cvref_t<Parameter>>;
    static std::remove_cvref_t<Parameter>& pass(Kept& kept) { return *kept; }
};

template <class Parameter>
typename ArgumentKeeper<Parameter>::Kept unwrap(std::string_view className, Selector selector, std::size_t position,
                                                const Value& value)
{
    using Keeper = ArgumentKeeper<Parameter>;
    auto content = ValueConversion<typename Keeper::Kept>::unwrap(value);
    bool present = content.has_value();
    if constexpr (std::derived_from<std::remove_cvref_t<Parameter>, NSObject>)
        present = present && *content; // an operation that takes a reference has no use for nothing
    if (!present)
        raiseWrongArgument(className, selector, position, ValueConversion<typename Keeper::Kept>::expected(), value);
    return std::move(*content);
}

template <class Result, class Call, class Arguments> Value callAndWrap(Call&& call, Arguments& arguments)
{
    if constexpr (std::is_void_v<Result>) {
        std::apply(call, arguments);
        return Value();
    } else {
        return ValueConversion<std::decay_t<Result>>::wrap(std::apply(call, arguments));
    }
}

// Wraps an operation (receiver first) into one that takes values.
template <class Receiver, class Result, class... Parameters, class Operation, std::size_t... I>
auto wrapOperation(std::string className, Selector selector, Operation operation, std::index_sequence<I...>)
{
    return [className = std::move(className), selector,
            operation = std::move(operation)](auto& receiver, std::span<const Value> values) -> Value {
        checkArgumentCount(className, selector, sizeof...(Parameters), values.size());
        std::tuple<typename ArgumentKeeper<Parameters>::Kept...> kept{
            unwrap<Parameters>(className, selector, I + 1, values[I])...};
        auto& self = static_cast<Receiver&>(receiver);
        auto call = [&](auto&... arguments) -> Result {
            return std::invoke(operation, self, ArgumentKeeper<Parameters>::pass(arguments)...);
        };
        return callAndWrap<Result>(call, kept);
    };
}

// The shape of an operation: a function or closure whose first parameter is the receiver.
template <class Operation> struct Shape : Shape<decltype(&Operation::operator())> {};
template <class F, class R, class Self, class... P> struct Shape<R (F::*)(Self, P...) const> {
    using Receiver = std::remove_reference_t<Self>;
    template <class Operation> static auto wrap(std::string name, Selector selector, Operation operation)
    {
        return wrapOperation<Receiver, R, P...>(std::move(name), selector, std::move(operation),
                                                std::index_sequence_for<P...>());
    }
    static constexpr std::size_t argumentCount = sizeof...(P);
};
template <class R, class Self, class... P> struct Shape<R (*)(Self, P...)> {
    using Receiver = std::remove_reference_t<Self>;
    template <class Operation> static auto wrap(std::string name, Selector selector, Operation operation)
    {
        return wrapOperation<Receiver, R, P...>(std::move(name), selector, operation,
                                                std::index_sequence_for<P...>());
    }
    static constexpr std::size_t argumentCount = sizeof...(P);
};

// A member function of T or of one of its bases; it is called on T so that protected overrides do not matter.
template <class T, class Operation> struct MemberShape;
template <class T, class Base, class R, class... P> struct MemberShape<T, R (Base::*)(P...)> {
    template <class Operation> static auto wrap(std::string name, Selector selector, Operation operation)
    {
        return wrapOperation<T, R, P...>(std::move(name), selector, operation, std::index_sequence_for<P...>());
    }
    static constexpr std::size_t argumentCount = sizeof...(P);
};
template <class T, class Base, class R, class... P>
struct MemberShape<T, R (Base::*)(P...) const> : MemberShape<T, R (Base::*)(P...)> {};

template <class T, class Operation> auto shapeOf()
{
    if constexpr (std::is_member_function_pointer_v<Operation>)
        return MemberShape<T, Operation>();
    else
        return Shape<Operation>();
}

} // namespace Messaging

// Publishes operations of T under selectors. An operation is a member function, or a function or closure that
// takes the receiver first; its arguments and result travel as Values (ValueConversion.h). A method must take as
// many arguments as its selector has colons; anything else stops the program.
template <class T> class Publisher {
    // Without a class of its own, T's methods would reach objects of its superclass that are no T.
    static_assert(std::same_as<typename T::ClassOwner, T>, "T must declare RVCORE_CLASS(T)");

public:
    Publisher(Class& target, std::string category) : m_class(target), m_category(std::move(category)) {}

    template <class Operation> void method(Selector selector, Operation operation)
    {
        using S = decltype(Messaging::shapeOf<T, Operation>());
        checkShape(selector, S::argumentCount);
        m_class.addMethod({selector, m_category, S::wrap(m_class.name(), selector, std::move(operation))});
    }

    // A method that answers with its receiver, so that alloc and an initialiser can be chained by name.
    template <class Operation> void initializer(Selector selector, Operation operation)
    {
        using S = Messaging::Shape<Operation>;
        checkShape(selector, S::argumentCount);
        auto call = S::wrap(m_class.name(), selector, std::move(operation));
        m_class.addMethod(
            {selector, m_category, [call = std::move(call)](auto& receiver, std::span<const Value> values) -> Value {
                 call(receiver, values);
                 return Value(receiver.shared_from_this());
             }});
    }

    template <class Getter> void readOnlyProperty(std::string_view name, Getter getter)
    {
        method(Selector(name), std::move(getter));
    }

    // `name` and `setName:`.
    template <class Getter, class Setter> void property(std::string_view name, Getter getter, Setter setter)
    {
        method(Selector(name), std::move(getter));
        method(Selector::setterFor(name), std::move(setter));
    }

    // The operation takes `const Class&`, the class that the message was sent to, first.
    template <class Operation> void classMethod(Selector selector, Operation operation)
    {
        using S = Messaging::Shape<Operation>;
        checkShape(selector, S::argumentCount);
        m_class.addClassMethod({selector, m_category, S::wrap(m_class.name(), selector, std::move(operation))});
    }

private:
    void checkShape(Selector selector, std::size_t argumentCount) const
    {
        if (selector.argumentCount() != argumentCount)
            fatalError(m_class.name() + " publishes " + selector.name() + " with " + std::to_string(argumentCount) +
                       " arguments");
    }

    Class& m_class;
    std::string m_category;
};

} // namespace RVCore
