#include "Raised.h"
#include "Threads.h"

#include <Foundation/Message.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::ClassTests {

namespace {

class Vehicle : public NSObject {
    RVCORE_CLASS(Vehicle)
};

Class& Vehicle::staticClass()
{
    static Class& theClass = defineClass<Vehicle>("Vehicle", NSObject::staticClass(), [](auto& publish) {
        publish.method("zip", [](const Vehicle&) { return 1; });
        publish.method("beep:", [](const Vehicle&, int) {});
        publish.classMethod("vehicle", [](const Class& receiver) { return receiver.alloc(); });
    });
    return theClass;
}

class Bicycle : public Vehicle {
    RVCORE_CLASS(Bicycle)
};

Class& Bicycle::staticClass()
{
    static Class& theClass = defineClass<Bicycle>("Bicycle", Vehicle::staticClass(), [](auto&) {});
    return theClass;
}

// Nothing in this program mentions its class but by name.
class OnlyNamed : public NSObject {
    RVCORE_CLASS(OnlyNamed)
};

Class& OnlyNamed::staticClass()
{
    static Class& theClass = defineClass<OnlyNamed>("OnlyNamed", NSObject::staticClass(), [](auto& publish) {
        publish.method("answer", [](const OnlyNamed&) { return 42; });
    });
    return theClass;
}

class Abstract : public NSObject {
    RVCORE_CLASS(Abstract)

public:
    virtual void work() = 0;
};

Class& Abstract::staticClass()
{
    static Class& theClass = defineClass<Abstract>("Abstract", NSObject::staticClass(), [](auto&) {});
    return theClass;
}

} // namespace

TEST(ClassTest, IsFoundByItsName)
{
    EXPECT_EQ(Class::named("Vehicle"), &Vehicle::staticClass());
    EXPECT_EQ(Class::named("NSObject"), &NSObject::staticClass());
    EXPECT_EQ(Class::named("vehicle"), nullptr);
    EXPECT_EQ(Class::named(""), nullptr);
}

TEST(ClassTest, IsKnownByNameBeforeAnythingHasUsedIt)
{
    const Class* found = Class::named("OnlyNamed");
    ASSERT_NE(found, nullptr);
    const auto object = send(*found, "alloc").as<ObjectRef>();
    EXPECT_EQ(send(object, "answer").as<int>(), 42);
}

TEST(ClassTest, AllAreListedInTheOrderOfTheirNames)
{
    std::vector<std::string> names;
    for (const Class* entry : Class::all())
        names.push_back(entry->name());
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_THAT(names, testing::IsSupersetOf({"Abstract", "Bicycle", "NSObject", "OnlyNamed", "Vehicle"}));
}

TEST(ClassTest, KnowsItsSuperclass)
{
    EXPECT_EQ(Bicycle::staticClass().superclass(), &Vehicle::staticClass());
    EXPECT_EQ(Vehicle::staticClass().superclass(), &NSObject::staticClass());
    EXPECT_EQ(NSObject::staticClass().superclass(), nullptr);
}

TEST(ClassTest, IsASubclassOfItselfAndOfEveryAncestor)
{
    const Class& bicycle = Bicycle::staticClass();
    EXPECT_TRUE(bicycle.isSubclassOf(bicycle));
    EXPECT_TRUE(bicycle.isSubclassOf(Vehicle::staticClass()));
    EXPECT_TRUE(bicycle.isSubclassOf(NSObject::staticClass()));
    EXPECT_FALSE(Vehicle::staticClass().isSubclassOf(bicycle));
    EXPECT_FALSE(bicycle.isSubclassOf(Abstract::staticClass()));
}

TEST(ClassDeathTest, ANameIsDefinedOnce)
{
    Vehicle::staticClass();
    EXPECT_DEATH(Class::define("Vehicle", nullptr, nullptr),
                 "Class\\.cpp:[0-9]+: Fatal error: class Vehicle is defined twice\n$");
}

TEST(ClassTest, AllocatesAnInstanceOfTheClassItself)
{
    const ObjectRef object = Bicycle::staticClass().alloc();
    EXPECT_EQ(&object->classObject(), &Bicycle::staticClass());
    EXPECT_NE(std::dynamic_pointer_cast<Bicycle>(object), nullptr);
}

TEST(ClassTest, AnAbstractClassHasNoInstances)
{
    EXPECT_EQ(raised([] { Abstract::staticClass().alloc(); }),
              "NSInvalidArgumentException: Class.alloc: Abstract has no instances of its own");
}

TEST(ClassTest, ListsItsOwnSelectorsSorted)
{
    EXPECT_EQ(Vehicle::staticClass().selectors(), (std::vector<Selector>{"beep:", "zip"}));
    EXPECT_EQ(Vehicle::staticClass().classSelectors(), (std::vector<Selector>{"vehicle"}));
    EXPECT_TRUE(Bicycle::staticClass().selectors().empty());
}

TEST(ClassTest, FindsInheritedMethodsAndNoOthers)
{
    EXPECT_EQ(Bicycle::staticClass().method("zip"), Vehicle::staticClass().method("zip"));
    EXPECT_NE(Bicycle::staticClass().method("zip"), nullptr);
    EXPECT_EQ(NSObject::staticClass().method("zip"), nullptr);
    EXPECT_EQ(Vehicle::staticClass().method("vehicle"), nullptr) << "a class-level method is not an instance's";
    EXPECT_NE(Bicycle::staticClass().classMethod("vehicle"), nullptr);
    EXPECT_EQ(Vehicle::staticClass().classMethod("zip"), nullptr);
}

TEST(ClassTest, AMethodSaysWhichCategoryItIsFrom)
{
    addCategory<Vehicle>("Repair", [](auto& publish) {
        publish.method("repair", [](const Vehicle&) { return std::string("done"); });
    });
    EXPECT_EQ(Bicycle::staticClass().method("repair")->category, "Repair");
    EXPECT_EQ(Bicycle::staticClass().method("zip")->category, "");
}

TEST(ClassTest, WhatIsPublishedLaterIsFoundAlthoughItWasMissedBefore)
{
    const auto bicycle = make<Bicycle>();
    EXPECT_FALSE(bicycle->respondsToSelector("lateMethod"));
    addCategory<Vehicle>("Late", [](auto& publish) { publish.method("lateMethod", [](const Vehicle&) {}); });
    EXPECT_TRUE(bicycle->respondsToSelector("lateMethod"));
}

TEST(ClassTest, LookingUpWhilePublishingIsSafeOnAnyThread)
{
    const auto bicycle = make<Bicycle>();
    onThreads(4, [&](int thread) {
        for (int i = 0; i < 200; ++i) {
            if (thread == 0) {
                addCategory<Vehicle>(
                    "Busy", [i](auto& publish) { publish.method("busyMethod", [i](const Vehicle&) { return i; }); });
            }
            EXPECT_EQ(send(bicycle, "zip").as<int>(), 1);
            if (bicycle->respondsToSelector("busyMethod")) {
                EXPECT_GE(send(bicycle, "busyMethod").as<int>(), 0);
            }
            EXPECT_EQ(Class::named("Bicycle"), &Bicycle::staticClass());
        }
    });
    EXPECT_EQ(send(bicycle, "busyMethod").as<int>(), 199);
}

} // namespace RVCore::ClassTests
