#include <Foundation/Selector.h>

#include <algorithm>
#include <mutex>
#include <shared_mutex>
#include <unordered_set>

namespace RVCore {

namespace {

struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};

struct NameTable {
    std::shared_mutex mutex;
    std::unordered_set<std::string, NameHash, std::equal_to<>> names; // node based: addresses stay
};

// Never destroyed: selectors with static storage duration may outlive any order of destruction.
NameTable& nameTable()
{
    static NameTable& table = *new NameTable;
    return table;
}

const std::string* intern(std::string_view name)
{
    NameTable& table = nameTable();
    {
        std::shared_lock lock(table.mutex);
        if (auto found = table.names.find(name); found != table.names.end())
            return &*found;
    }
    std::unique_lock lock(table.mutex);
    return &*table.names.emplace(name).first;
}

} // namespace

Selector::Selector(std::string_view name) : m_name(intern(name)) {}

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
