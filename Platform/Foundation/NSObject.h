#pragma once

#include <Foundation/Class.h>
#include <Foundation/Publisher.h>
#include <Foundation/RecyclingAllocator.h>

#include <atomic>
#include <memory>
#include <string>

// Declares what every class of the run time has; the source file defines `staticClass()` with `defineClass`.
// `ClassOwner` tells a class with a declaration of its own from one that inherits it.
#define RVCORE_CLASS(Type)                                                                                           \
public:                                                                                                              \
    using ClassOwner = Type;                                                                                         \
    static ::RVCore::Class& staticClass();                                                                           \
    const ::RVCore::Class& classObject() const override                                                              \
    {                                                                                                                \
        return staticClass();                                                                                        \
    }                                                                                                                \
                                                                                                                     \
private:                                                                                                             \
    inline static const ::RVCore::ClassRegistration classRegistration{&staticClass};

namespace RVCore {

// The root of everything that takes messages. Objects are held by shared pointers and made with `make<T>(…)`,
// which constructs first and then runs `init(…)` on the complete object, so an initialiser may call overridable
// operations and a subclass's override runs.
class NSObject : public std::enable_shared_from_this<NSObject> {
public:
    using ClassOwner = NSObject;
    static Class& staticClass();
    virtual const Class& classObject() const { return staticClass(); }

    NSObject() = default;
    virtual ~NSObject();
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;

    virtual void init() {}
    // Initialises from an archive. Raises NSInvalidArgumentException in classes that do not support archives.
    virtual void init(NSCoder& coder);
    virtual void encode(NSCoder& coder) const;

    // "<NSView: 0x…>"
    virtual std::string description() const;
    // Identity, unless a class defines equality of its own; equal objects have equal hashes.
    virtual bool isEqual(const NSObject& other) const { return this == &other; }
    virtual std::size_t hash() const { return std::hash<const void*>()(this); }

    bool isKindOfClass(const Class& other) const { return classObject().isSubclassOf(other); }
    bool respondsToSelector(Selector selector) const { return classObject().method(selector) != nullptr; }

private:
    friend struct AssociatedObjectsAccess;
    inline static const ClassRegistration classRegistration{&staticClass};
    std::atomic<bool> m_hasAssociatedObjects = false; // spares objects without any the look into the side table
};

// A new T, initialised with the arguments of one of its `init` operations.
template <std::derived_from<NSObject> T, class... Arguments> std::shared_ptr<T> make(Arguments&&... arguments)
{
    std::shared_ptr<T> object;
    if constexpr (requires { typename T::IsRecycled; })
        object = std::allocate_shared<T>(RecyclingAllocator<T>());
    else
        object = std::make_shared<T>();
    object->init(std::forward<Arguments>(arguments)...);
    return object;
}

// The shared pointer to an object that is held by one.
template <std::derived_from<NSObject> T> std::shared_ptr<T> shared(T& object)
{
    return std::static_pointer_cast<T>(const_cast<std::remove_const_t<T>&>(object).shared_from_this());
}

// Defines T's class under its name and publishes its operations: the body of every `staticClass()`.
//     static Class& theClass = defineClass<NSView>("NSView", NSResponder::staticClass(), [](auto& publish) {
//         publish.property("frame", &NSView::frame, &NSView::setFrame);
//     });
//     return theClass;
template <class T, class Publish>
Class& defineClass(std::string name, const Class& superclass, const Publish& publish)
{
    Class::Allocator allocator = nullptr;
    if constexpr (std::is_default_constructible_v<T>)
        allocator = []() -> std::shared_ptr<NSObject> { return std::make_shared<T>(); };
    Class& result = Class::define(std::move(name), &superclass, allocator);
    Publisher<T> publisher(result, {});
    publish(publisher);
    return result;
}

// Publishes a category: operations added to a class that somebody else owns.
template <class T, class Publish> bool addCategory(std::string name, const Publish& publish)
{
    Publisher<T> publisher(T::staticClass(), std::move(name));
    publish(publisher);
    return true;
}

// For dictionaries and sets whose keys are objects compared by isEqual and hash.
struct ObjectHash {
    std::size_t operator()(const ObjectRef& object) const { return object->hash(); }
};
struct ObjectEqual {
    bool operator()(const ObjectRef& left, const ObjectRef& right) const { return left->isEqual(*right); }
};

} // namespace RVCore
