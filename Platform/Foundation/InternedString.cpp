#include <Foundation/InternedString.h>

#include <mutex>
#include <shared_mutex>
#include <unordered_set>

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

} // namespace RVCore
