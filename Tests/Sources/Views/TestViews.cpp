#include <Sources/Views/TestViews.h>

namespace RVCore {

Class& SizedView::staticClass()
{
    static Class& theClass = defineClass<SizedView>("SizedView", NSView::staticClass(), [](auto&) {});
    return theClass;
}

Class& CountingGroupView::staticClass()
{
    static Class& theClass =
        defineClass<CountingGroupView>("CountingGroupView", RVGroupView::staticClass(), [](auto&) {});
    return theClass;
}

} // namespace RVCore
