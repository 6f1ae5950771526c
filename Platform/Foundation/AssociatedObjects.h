#pragma once

#include <Foundation/NSObject.h>

namespace RVCore {

// The identity of an association: the address of a static key object. The text is for printing only.
struct AssociationKey {
    const char* text;
};

// State kept beside an object that has no room for it. The content is retained, replaced by the next assignment,
// removed by assigning nothing, and released when the object dies. Safe on any thread; the content's destructor
// runs outside the lock.
void setAssociatedObject(NSObject& owner, const AssociationKey& key, Value content);
// Nothing when there is none.
Value associatedObject(const NSObject& owner, const AssociationKey& key);
// The object that is stored; null when there is none, or something else.
template <class T> std::shared_ptr<T> associatedObjectAs(const NSObject& owner, const AssociationKey& key)
{
    const Value stored = associatedObject(owner, key);
    return stored.object() ? std::dynamic_pointer_cast<T>(*stored.object()) : nullptr;
}
void removeAssociatedObjects(NSObject& owner);

} // namespace RVCore
