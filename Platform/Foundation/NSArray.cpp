#include <Foundation/NSArray.h>
#include <Foundation/NSCoder.h>

namespace RVCore {

Class& NSArray::staticClass()
{
    static Class& theClass = defineClass<NSArray>("NSArray", NSObject::staticClass(), [](auto& publish) {
        publish.initializer("initWithArray:",
                            [](NSArray& self, const Value::Array& elements) { self.init(elements); });
        publish.readOnlyProperty("count", &NSArray::count);
        publish.method("objectAtIndex:", [](NSArray& self, std::size_t index) {
            if (index >= self.count())
                throw NSException(NSRangeException, "NSArray.objectAtIndex:: index " + std::to_string(index) +
                                                        " is beyond the count " + std::to_string(self.count()));
            return self.elements()[index];
        });
    });
    return theClass;
}

void NSArray::init(NSCoder& coder)
{
    m_elements = coder.decode<Value::Array>("elements");
}

void NSArray::encode(NSCoder& coder) const
{
    coder.encode("elements", m_elements);
}

bool NSArray::isEqual(const NSObject& other) const
{
    const auto* list = dynamic_cast<const NSArray*>(&other);
    return list && list->m_elements == m_elements;
}

} // namespace RVCore
