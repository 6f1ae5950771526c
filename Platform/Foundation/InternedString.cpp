#include <Foundation/InternedString.h>
#include <Foundation/Stop.h>

#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace RVCore {

namespace {

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};

struct TextTable {
    std::shared_mutex mutex;
    std::unordered_set<std::string, TextHash, std::equal_to<>> texts; // node based: addresses stay
};

// Never destroyed: names with static storage duration may outlive any order of destruction.
TextTable& textTable()
{
    static TextTable& table = *new TextTable;
    return table;
}

} // namespace

const std::string& interned(std::string_view text)
{
    TextTable& table = textTable();
    {
        std::shared_lock lock(table.mutex);
        if (auto found = table.texts.find(text); found != table.texts.end())
            return *found;
    }
    std::unique_lock lock(table.mutex);
    return *table.texts.emplace(text).first;
}

namespace {

struct NameTable {
    std::shared_mutex mutex;
    std::vector<const std::string*> texts{&interned("")}; // by number
    std::unordered_map<const std::string*, std::uint32_t> numbers{{texts.front(), 0}};
};

NameTable& nameTable()
{
    static NameTable& table = *new NameTable;
    return table;
}

} // namespace

ShortName::ShortName(std::string_view text)
{
    constexpr std::size_t most = std::size_t(1) << 24;
    const std::string& known = interned(text);
    NameTable& table = nameTable();
    {
        std::shared_lock lock(table.mutex);
        if (const auto found = table.numbers.find(&known); found != table.numbers.end()) {
            m_number = found->second;
            return;
        }
    }
    std::unique_lock lock(table.mutex);
    const auto [place, isNew] = table.numbers.try_emplace(&known, static_cast<std::uint32_t>(table.texts.size()));
    if (isNew) {
        if (table.texts.size() == most)
            fatalError("ShortName: there are more than 16,777,216 names");
        table.texts.push_back(&known);
    }
    m_number = place->second;
}

ShortName ShortName::numbered(std::uint32_t number)
{
    ShortName result;
    result.m_number = number;
    return result;
}

const std::string& ShortName::text() const
{
    NameTable& table = nameTable();
    std::shared_lock lock(table.mutex);
    return *table.texts[m_number];
}

} // namespace RVCore
