#include <Foundation/KeyPath.h>

namespace RVCore {

namespace {

[[noreturn]] void raiseUnknownKey(const NSObject& object, std::string_view key, std::string_view path)
{
    throw NSException(NSUnknownKeyException, object.classObject().name() + " has no key \"" + std::string(key) +
                                                 "\" (in the path \"" + std::string(path) + "\")");
}

// A key names a property; "setAlpha:" and the like are no keys although objects answer them.
bool isProperty(std::string_view key)
{
    return !key.empty() && key.find(':') == std::string_view::npos;
}

Selector getter(const NSObject& object, std::string_view key, std::string_view path)
{
    if (isProperty(key)) {
        if (const Selector plain(key); object.respondsToSelector(plain))
            return plain;
        const std::string setter = Selector::setterFor(key).name();
        const Selector truth("is" + setter.substr(3, setter.size() - 4));
        if (object.respondsToSelector(truth))
            return truth;
    }
    raiseUnknownKey(object, key, path);
}

Value elementNamed(const Value::Array& elements, std::string_view name, std::string_view path)
{
    const Selector nameSelector("name");
    for (const Value& element : elements) {
        if (element.object() && (*element.object())->respondsToSelector(nameSelector) &&
            send(*element.object(), nameSelector) == Value(name))
            return element;
    }
    throw NSException(NSUnknownKeyException, "no element of the array is named \"" + std::string(name) +
                                                 "\" (in the path \"" + std::string(path) + "\")");
}

// One step along the path, from an object or an array.
Value step(const Value& holder, std::string_view key, std::string_view path)
{
    if (holder.array())
        return elementNamed(*holder.array(), key, path);
    const ObjectRef& object = *holder.object();
    return send(object, getter(*object, key, path));
}

const Selector& writeSelector()
{
    static const Selector selector("setValue:forKeyPath:");
    return selector;
}

bool writesForItself(const NSObject& object)
{
    return object.respondsToSelector(writeSelector());
}

enum class Purpose { reading, writing };

// What holds the last key (an object or an array), and that key; to write, also what writes the rest for itself.
std::pair<Value, std::string_view> lastHolder(NSObject& object, std::string_view path, Purpose purpose)
{
    Value holder = object.shared_from_this();
    std::string_view rest = path;
    for (std::size_t dot = rest.find('.'); dot != std::string_view::npos; dot = rest.find('.')) {
        const std::string_view key = rest.substr(0, dot);
        Value next = step(holder, key, path);
        if (!next.object() && !next.array())
            throw NSException(NSUnknownKeyException, "the path \"" + std::string(path) + "\" ends at \"" +
                                                         std::string(key) + "\" of " + holder.kind() + ", which is " +
                                                         next.kind());
        holder = std::move(next);
        rest.remove_prefix(dot + 1);
        if (purpose == Purpose::writing && holder.object() && writesForItself(**holder.object()))
            break;
    }
    return {std::move(holder), rest};
}

} // namespace

Value valueForKeyPath(NSObject& object, std::string_view path)
{
    const auto [holder, key] = lastHolder(object, path, Purpose::reading);
    return step(holder, key, path);
}

void setValueForKeyPath(NSObject& object, std::string_view path, const Value& value)
{
    if (writesForItself(object))
        send(object, writeSelector(), value, path);
    else
        setValueAlongKeyPath(object, path, value);
}

void setValueAlongKeyPath(NSObject& object, std::string_view path, const Value& value)
{
    const auto [holder, key] = lastHolder(object, path, Purpose::writing);
    if (holder.array())
        throw NSException(NSUnknownKeyException, "the path \"" + std::string(path) +
                                                     "\" ends at an element of an array, which is not a property");
    const ObjectRef& target = *holder.object();
    if (target.get() != &object && writesForItself(*target)) {
        send(target, writeSelector(), value, key);
        return;
    }
    if (!isProperty(key) || !target->respondsToSelector(Selector::setterFor(key)))
        raiseUnknownKey(*target, key, path);
    send(target, Selector::setterFor(key), value);
}

} // namespace RVCore
