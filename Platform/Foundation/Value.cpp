#include <Foundation/Class.h>
#include <Foundation/NSObject.h>
#include <Foundation/Value.h>

#include <cmath>

namespace RVCore {

namespace {

// Exactly, not after rounding the integer: otherwise two different integers could equal the same number.
bool sameAmount(std::int64_t integer, double number)
{
    constexpr double limit = 9223372036854775808.0; // 2 to the 63rd
    return number >= -limit && number < limit && number == std::floor(number) &&
           static_cast<std::int64_t>(number) == integer;
}

} // namespace

void Value::raiseTooLarge(std::uint64_t amount)
{
    throw NSException(NSRangeException, "Value: " + std::to_string(amount) + " is beyond the integers it can carry");
}

std::string integerRangeText(std::int64_t smallest, std::uint64_t largest)
{
    return "integer from " + std::to_string(smallest) + " to " + std::to_string(largest);
}

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
    if (integer() && other.floatingPoint())
        return sameAmount(*integer(), *other.floatingPoint());
    if (floatingPoint() && other.integer())
        return sameAmount(*other.integer(), *floatingPoint());
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
