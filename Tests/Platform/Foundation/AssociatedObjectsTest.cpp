#include "Threads.h"

#include <Foundation/AssociatedObjects.h>
#include <Foundation/NSArray.h>

#include <gtest/gtest.h>

namespace RVCore::AssociatedObjectsTests {

namespace {

const AssociationKey firstKey{"first"}, secondKey{"second"};

// Tells when it goes.
class Farewell : public NSObject {
    RVCORE_CLASS(Farewell)

public:
    using NSObject::init;
    void init(std::function<void()> onEnd) { m_onEnd = std::move(onEnd); }
    ~Farewell() override
    {
        if (m_onEnd)
            m_onEnd();
    }

private:
    std::function<void()> m_onEnd;
};

Class& Farewell::staticClass()
{
    static Class& theClass = defineClass<Farewell>("Farewell", NSObject::staticClass(), [](auto&) {});
    return theClass;
}

} // namespace

TEST(AssociatedObjectsTest, ThereIsNothingAtFirst)
{
    EXPECT_TRUE(associatedObject(*make<NSObject>(), firstKey).isNothing());
}

TEST(AssociatedObjectsTest, EachOwnerAndKeyHasAContentOfItsOwn)
{
    const auto one = make<NSObject>(), other = make<NSObject>();
    setAssociatedObject(*one, firstKey, 1);
    setAssociatedObject(*one, secondKey, 2);
    setAssociatedObject(*other, firstKey, 3);
    EXPECT_EQ(associatedObject(*one, firstKey), Value(1));
    EXPECT_EQ(associatedObject(*one, secondKey), Value(2));
    EXPECT_EQ(associatedObject(*other, firstKey), Value(3));
    EXPECT_TRUE(associatedObject(*other, secondKey).isNothing());
}

TEST(AssociatedObjectsTest, AKeyIsItsAddressNotItsText)
{
    const AssociationKey sameText{"first"};
    const auto owner = make<NSObject>();
    setAssociatedObject(*owner, firstKey, 1);
    EXPECT_TRUE(associatedObject(*owner, sameText).isNothing());
}

TEST(AssociatedObjectsTest, TheContentIsRetainedUntilItIsReplaced)
{
    const auto owner = make<NSObject>();
    auto content = make<NSObject>();
    const std::weak_ptr<NSObject> trace = content;
    setAssociatedObject(*owner, firstKey, std::exchange(content, nullptr));
    EXPECT_FALSE(trace.expired());
    setAssociatedObject(*owner, firstKey, 2);
    EXPECT_TRUE(trace.expired());
    EXPECT_EQ(associatedObject(*owner, firstKey), Value(2));
}

TEST(AssociatedObjectsTest, AssigningNothingRemoves)
{
    const auto owner = make<NSObject>();
    auto content = make<NSObject>();
    const std::weak_ptr<NSObject> trace = content;
    setAssociatedObject(*owner, firstKey, std::exchange(content, nullptr));
    setAssociatedObject(*owner, secondKey, 2);
    setAssociatedObject(*owner, firstKey, nullptr);
    EXPECT_TRUE(trace.expired());
    EXPECT_TRUE(associatedObject(*owner, firstKey).isNothing());
    EXPECT_EQ(associatedObject(*owner, secondKey), Value(2));
    setAssociatedObject(*owner, secondKey, nullptr);
    setAssociatedObject(*owner, secondKey, nullptr);
    EXPECT_TRUE(associatedObject(*owner, secondKey).isNothing());
    setAssociatedObject(*owner, secondKey, 3);
    EXPECT_EQ(associatedObject(*owner, secondKey), Value(3));
}

TEST(AssociatedObjectsTest, RemovingAllLeavesOtherOwnersAlone)
{
    const auto owner = make<NSObject>(), other = make<NSObject>();
    setAssociatedObject(*owner, firstKey, 1);
    setAssociatedObject(*owner, secondKey, 2);
    setAssociatedObject(*other, firstKey, 3);
    removeAssociatedObjects(*owner);
    EXPECT_TRUE(associatedObject(*owner, firstKey).isNothing());
    EXPECT_TRUE(associatedObject(*owner, secondKey).isNothing());
    EXPECT_EQ(associatedObject(*other, firstKey), Value(3));
}

TEST(AssociatedObjectsTest, TheContentGoesWithItsOwner)
{
    int farewells = 0;
    {
        const auto owner = make<NSObject>();
        setAssociatedObject(*owner, firstKey, make<Farewell>([&] { ++farewells; }));
        setAssociatedObject(*owner, secondKey, make<Farewell>([&] { ++farewells; }));
        EXPECT_EQ(farewells, 0);
    }
    EXPECT_EQ(farewells, 2);
}

TEST(AssociatedObjectsTest, ADestructorMayUseAssociationsItself)
{
    const auto owner = make<NSObject>(), witness = make<NSObject>();
    const auto farewell = [&] { setAssociatedObject(*witness, firstKey, "seen"); };
    // Would never return if the destructor ran with the lock held.
    setAssociatedObject(*owner, firstKey, make<Farewell>(farewell));
    setAssociatedObject(*owner, firstKey, 1);
    EXPECT_EQ(associatedObject(*witness, firstKey), Value("seen"));

    setAssociatedObject(*witness, firstKey, nullptr);
    setAssociatedObject(*owner, firstKey, make<Farewell>(farewell));
    setAssociatedObject(*owner, firstKey, nullptr);
    EXPECT_EQ(associatedObject(*witness, firstKey), Value("seen"));

    setAssociatedObject(*witness, firstKey, nullptr);
    setAssociatedObject(*owner, firstKey, make<Farewell>(farewell));
    removeAssociatedObjects(*owner);
    EXPECT_EQ(associatedObject(*witness, firstKey), Value("seen"));
}

TEST(AssociatedObjectsTest, WhatADyingOwnerIsGivenGoesWithItToo)
{
    int farewells = 0;
    auto owner = make<NSObject>();
    NSObject& dying = *owner;
    setAssociatedObject(dying, firstKey, make<Farewell>([&] {
                            setAssociatedObject(dying, secondKey, make<Farewell>([&] { ++farewells; }));
                        }));
    owner.reset();
    EXPECT_EQ(farewells, 1) << "otherwise the next object at this address would inherit it";
}

TEST(AssociatedObjectsTest, AContentThatIsReadStaysWhileItIsHeld)
{
    const auto owner = make<NSObject>();
    setAssociatedObject(*owner, firstKey, Value::Array{1, 2});
    const Value read = associatedObject(*owner, firstKey);
    setAssociatedObject(*owner, firstKey, nullptr);
    EXPECT_EQ(read, Value(Value::Array{1, 2}));
}

TEST(AssociatedObjectsTest, IsSafeOnAnyThread)
{
    const auto common = make<NSObject>();
    onThreads(4, [&](int thread) {
        for (int i = 0; i < 300; ++i) {
            const auto own = make<NSObject>();
            setAssociatedObject(*own, firstKey, thread);
            setAssociatedObject(*common, i % 2 ? firstKey : secondKey, make<NSObject>());
            if (i % 7 == 0)
                setAssociatedObject(*common, firstKey, nullptr);
            ASSERT_EQ(associatedObject(*own, firstKey), Value(thread));
            const Value seen = associatedObject(*common, secondKey);
            ASSERT_TRUE(seen.isNothing() || seen.object());
        }
    });
    EXPECT_TRUE(associatedObject(*common, secondKey).object());
}

} // namespace RVCore::AssociatedObjectsTests
