#include <Foundation/AssociatedObjects.h>

#include <mutex>
#include <unordered_map>

namespace RVCore {

struct AssociatedObjectsAccess {
    static void mark(NSObject& object, bool hasAny) { object.m_hasAssociatedObjects = hasAny; }
    static bool hasAny(const NSObject& object) { return object.m_hasAssociatedObjects; }
};

namespace {

using Associations = std::unordered_map<const AssociationKey*, Value>;

struct SideTable {
    std::mutex mutex;
    std::unordered_map<const NSObject*, Associations> entries;
};

SideTable& sideTable()
{
    static SideTable& table = *new SideTable;
    return table;
}

} // namespace

void setAssociatedObject(NSObject& owner, const AssociationKey& key, Value content)
{
    SideTable& table = sideTable();
    std::lock_guard lock(table.mutex); // `content` outlives it, and with it whatever was replaced
    if (content.isNothing()) {
        const auto entry = table.entries.find(&owner);
        if (entry == table.entries.end())
            return;
        if (const auto found = entry->second.find(&key); found != entry->second.end()) {
            std::swap(content, found->second);
            entry->second.erase(found);
        }
        if (entry->second.empty()) {
            table.entries.erase(entry);
            AssociatedObjectsAccess::mark(owner, false);
        }
        return;
    }
    AssociatedObjectsAccess::mark(owner, true);
    std::swap(content, table.entries[&owner][&key]);
}

Value associatedObject(const NSObject& owner, const AssociationKey& key)
{
    if (!AssociatedObjectsAccess::hasAny(owner))
        return Value();
    SideTable& table = sideTable();
    std::lock_guard lock(table.mutex);
    const auto entry = table.entries.find(&owner);
    if (entry == table.entries.end())
        return Value();
    const auto found = entry->second.find(&key);
    return found == entry->second.end() ? Value() : found->second;
}

void removeAssociatedObjects(NSObject& owner)
{
    Associations released;
    SideTable& table = sideTable();
    std::lock_guard lock(table.mutex);
    if (const auto entry = table.entries.find(&owner); entry != table.entries.end()) {
        released = std::move(entry->second);
        table.entries.erase(entry);
    }
    AssociatedObjectsAccess::mark(owner, false);
}

} // namespace RVCore
