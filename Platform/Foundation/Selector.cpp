#include <Foundation/InternedString.h>
#include <Foundation/Selector.h>

#include <algorithm>

namespace RVCore {

Selector::Selector(std::string_view name) : m_name(&interned(name)) {}

std::size_t Selector::argumentCount() const
{
    return static_cast<std::size_t>(std::count(m_name->begin(), m_name->end(), ':'));
}

Selector Selector::setterFor(std::string_view property)
{
    std::string name = "set" + std::string(property) + ":";
    if (name[3] >= 'a' && name[3] <= 'z')
        name[3] = static_cast<char>(name[3] - 'a' + 'A');
    return Selector(name);
}

} // namespace RVCore
