#pragma once

#include <Foundation/Value.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace RVCore {

// One published operation of a class.
struct Method {
    Selector selector;
    // The category that published it; empty for the class's own.
    std::string category;
    std::function<Value(NSObject& receiver, std::span<const Value> arguments)> call;
};

// One published operation of a class itself. The receiver is the class that the message was sent to, which may
// be a subclass of the one that published it.
struct ClassMethod {
    Selector selector;
    std::string category;
    std::function<Value(const Class& receiver, std::span<const Value> arguments)> call;
};

// What the run time knows of a class: its name, its superclass and the methods published under selectors. A
// method is looked up from an object's class upward, so a subclass's method takes the place of an inherited one;
// one published later under the same selector in the same class takes the place of the earlier one. Classes live
// as long as the program. Looking up and publishing are safe on any thread.
class Class {
public:
    using Allocator = std::shared_ptr<NSObject> (*)();

    // Makes the class known under a name, which must be new. `superclass` is null for a root; `allocator` is null
    // for a class that has no instances of its own.
    static Class& define(std::string name, const Class* superclass, Allocator allocator);
    // The class of that name, complete with its methods; null when the program has none. Not for use while a class
    // is being defined.
    static const Class* named(std::string_view name);
    // Every class of the program, in the order of their names.
    static std::vector<const Class*> all();

    ~Class();
    Class(const Class&) = delete;
    Class& operator=(const Class&) = delete;

    const std::string& name() const;
    const Class* superclass() const;
    bool isSubclassOf(const Class& other) const; // true for the class itself

    // A new instance whose initialiser has not run yet; raises NSInvalidArgumentException for a class that has none.
    std::shared_ptr<NSObject> alloc() const;

    void addMethod(Method method);
    void addClassMethod(ClassMethod method);
    // The method that an instance (or the class) answers the selector with; null when there is none.
    const Method* method(Selector selector) const;
    const ClassMethod* classMethod(Selector selector) const;
    // The selectors published by this class itself, sorted by name.
    std::vector<Selector> selectors() const;
    std::vector<Selector> classSelectors() const;

private:
    struct Data;
    explicit Class(std::unique_ptr<Data> data);
    std::unique_ptr<Data> m_data;
};

// Makes a class known to Class::named before anything has used it: a static one stands in every class that says
// RVCORE_CLASS. It only notes the function, so the order in which statics are initialised does not matter.
class ClassRegistration {
public:
    explicit ClassRegistration(Class& (*define)());

private:
    friend class Class;
    static void defineAll();

    Class& (*m_define)();
    ClassRegistration* m_next;
};

} // namespace RVCore
