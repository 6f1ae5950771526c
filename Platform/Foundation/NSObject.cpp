#include <Foundation/AssociatedObjects.h>
#include <Foundation/NSCoder.h>
#include <Foundation/NSObject.h>

#include <array>
#include <charconv>
#include <limits>

namespace RVCore {

Class& NSObject::staticClass()
{
    static Class& theClass = [&]() -> Class& {
        Class& root = Class::define("NSObject", nullptr, []() -> ObjectRef { return std::make_shared<NSObject>(); });
        Publisher<NSObject> publish(root, {});
        publish.initializer("init", [](NSObject& self) { self.init(); });
        publish.initializer("initWithCoder:", [](NSObject& self, NSCoder& coder) { self.init(coder); });
        publish.method("encodeWithCoder:", &NSObject::encode);
        publish.readOnlyProperty("description", &NSObject::description);
        publish.method("isEqual:",
                       [](NSObject& self, const ObjectRef& other) { return other && self.isEqual(*other); });
        publish.method("hash", [](const NSObject& self) {
            return self.hash() & std::size_t(std::numeric_limits<std::int64_t>::max()); // what a Value can carry
        });
        publish.method("respondsToSelector:", &NSObject::respondsToSelector);
        publish.classMethod("alloc", [](const Class& receiver) { return receiver.alloc(); });
        return root;
    }();
    return theClass;
}

NSObject::~NSObject()
{
    // What is released may, while it goes, associate something new with this object.
    while (m_hasAssociatedObjects)
        removeAssociatedObjects(*this);
}

void NSObject::init(NSCoder&)
{
    raiseInvalidArgument(classObject().name() + ".initWithCoder:", "this class cannot be unarchived");
}

void NSObject::encode(NSCoder&) const
{
    raiseInvalidArgument(classObject().name() + ".encodeWithCoder:", "this class cannot be archived");
}

std::string NSObject::description() const
{
    std::array<char, 16> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), reinterpret_cast<std::uintptr_t>(this), 16).ptr;
    return "<" + classObject().name() + ": 0x" + std::string(digits.data(), end) + ">";
}

} // namespace RVCore
