#include <AppKit/NSResponder.h>

namespace RVCore {

Class& NSResponder::staticClass()
{
    static Class& theClass = defineClass<NSResponder>("NSResponder", NSObject::staticClass(), [](auto& publish) {
        publish.readOnlyProperty("acceptsFirstResponder", &NSResponder::acceptsFirstResponder);
    });
    return theClass;
}

} // namespace RVCore
