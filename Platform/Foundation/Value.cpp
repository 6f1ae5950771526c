#include <Foundation/Class.h>
#include <Foundation/NSObject.h>
#include <Foundation/Value.h>

namespace RVCore {

namespace {

std::optional<double> amount(const Value& value)
{
    if (value.integer())
        return static_cast<double>(*value.integer());
    if (value.floatingPoint())
        return *value.floatingPoint();
    return std::nullopt;
}

} // namespace

std::string Value::kind() const
{
    if (isNothing())
        return "nothing";
    if (boolean())
        return "Boolean";
    if (integer())
        return "integer";
    if (floatingPoint())
        return "number";
    if (text())
        return "text";
    if (selector())
        return "selector";
    if (object())
        return (*object())->classObject().name();
    if (callback())
        return "callback";
    if (array())
        return "array";
    if (dictionary())
        return "dictionary";
    return std::string(box()->typeName());
}

std::string Value::description() const
{
    if (boolean())
        return *boolean() ? "true" : "false";
    if (integer())
        return std::to_string(*integer());
    if (floatingPoint())
        return numberText(*floatingPoint());
    if (text())
        return "\"" + *text() + "\"";
    if (selector())
        return selector()->name();
    if (object())
        return (*object())->description();
    if (box())
        return box()->description();
    if (array()) {
        std::string list;
        for (const Value& element : *array())
            list += (list.empty() ? "" : ", ") + element.description();
        return "[" + list + "]";
    }
    if (dictionary()) {
        std::string list;
        for (const auto& [key, element] : *dictionary())
            list += (list.empty() ? "" : ", ") + key + ": " + element.description();
        return "{" + list + "}";
    }
    return kind(); // nothing and callbacks have no more to say
}

bool Value::operator==(const Value& other) const
{
    if (integer() && other.integer())
        return *integer() == *other.integer();
    if (const auto left = amount(*this), right = amount(other); left && right)
        return *left == *right;
    if (object() && other.object())
        return (*object())->isEqual(**other.object());
    if (box() && other.box())
        return box()->equals(*other.box());
    if (array() && other.array())
        return *array() == *other.array();
    if (dictionary() && other.dictionary())
        return *dictionary() == *other.dictionary();
    return m_storage == other.m_storage;
}

} // namespace RVCore
