#include <Foundation/KeyPath.h>

namespace RVCore {

namespace {

[[noreturn]] void raiseUnknownKey(const NSObject& object, std::string_view key, std::string_view path)
{
    throw NSException(NSUnknownKeyException, object.classObject().name() + " has no key \"" + std::string(key) +
                                                 "\" (in the path \"" + std::string(path) + "\")");
}

Selector getter(const NSObject& object, std::string_view key, std::string_view path)
{
    if (!key.empty()) {
        if (const Selector plain(key); object.respondsToSelector(plain))
            return plain;
        std::string setter = Selector::setterFor(key).name();
        const Selector truth("is" + setter.substr(3, setter.size() - 4));
        if (object.respondsToSelector(truth))
            return truth;
    }
    raiseUnknownKey(object, key, path);
}

// The object that holds the last key, and that key.
std::pair<ObjectRef, std::string_view> lastHolder(NSObject& object, std::string_view path)
{
    ObjectRef holder = object.shared_from_this();
    std::string_view rest = path;
    for (std::size_t dot = rest.find('.'); dot != std::string_view::npos; dot = rest.find('.')) {
        const std::string_view key = rest.substr(0, dot);
        const Value next = send(holder, getter(*holder, key, path));
        if (!next.object())
            throw NSException(NSUnknownKeyException, "the path \"" + std::string(path) + "\" ends at \"" +
                                                         std::string(key) + "\" of " +
                                                         holder->classObject().name() + ", which is " +
                                                         next.kind());
        holder = *next.object();
        rest.remove_prefix(dot + 1);
    }
    return {holder, rest};
}

} // namespace

Value valueForKeyPath(NSObject& object, std::string_view path)
{
    const auto [holder, key] = lastHolder(object, path);
    return send(holder, getter(*holder, key, path));
}

void setValueForKeyPath(NSObject& object, std::string_view path, const Value& value)
{
    const auto [holder, key] = lastHolder(object, path);
    if (key.empty() || !holder->respondsToSelector(Selector::setterFor(key)))
        raiseUnknownKey(*holder, key, path);
    send(holder, Selector::setterFor(key), value);
}

} // namespace RVCore
