#include <AppKit/NSCursor.h>

namespace RVCore {

Class& NSCursor::staticClass()
{
    static Class& theClass = defineClass<NSCursor>("NSCursor", NSObject::staticClass(), [](auto& publish) {
        publish.readOnlyProperty("shape", &NSCursor::shape);
    });
    return theClass;
}

bool NSCursor::isEqual(const NSObject& other) const
{
    const auto* cursor = dynamic_cast<const NSCursor*>(&other);
    return cursor && cursor->m_shape == m_shape;
}

} // namespace RVCore
