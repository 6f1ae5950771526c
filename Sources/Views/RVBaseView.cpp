#include <Views/RVBaseView.h>

namespace RVCore {

Class& RVBaseView::staticClass()
{
    static Class& theClass = defineClass<RVBaseView>("RVCore.RVBaseView", NSView::staticClass(), [](auto&) {});
    return theClass;
}

} // namespace RVCore
