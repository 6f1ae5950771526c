#include "Raised.h"

#include <Foundation/Message.h>
#include <Foundation/NSCoder.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

namespace RVCore::NSObjectTests {

namespace {

class Room : public NSObject {
    RVCORE_CLASS(Room)

public:
    using NSObject::init;
    void init() override { prepare(); }
    void init(int width, std::unique_ptr<int> door)
    {
        m_width = width + *door;
        prepare();
    }
    virtual void prepare() { m_log += "Room"; }
    const std::string& log() const { return m_log; }
    int width() const { return m_width; }

protected:
    std::string m_log;
    int m_width = 0;
};

Class& Room::staticClass()
{
    static Class& theClass = defineClass<Room>("Room", NSObject::staticClass(), [](auto&) {});
    return theClass;
}

class Kitchen : public Room {
    RVCORE_CLASS(Kitchen)

public:
    void prepare() override { m_log += weak_from_this().expired() ? "early" : "Kitchen"; }
};

Class& Kitchen::staticClass()
{
    static Class& theClass = defineClass<Kitchen>("Kitchen", Room::staticClass(), [](auto&) {});
    return theClass;
}

class Named : public NSObject {
    RVCORE_CLASS(Named)

public:
    using NSObject::init;
    void init(std::string name) { m_name = std::move(name); }
    bool isEqual(const NSObject& other) const override
    {
        const auto* named = dynamic_cast<const Named*>(&other);
        return named && named->m_name == m_name;
    }
    std::size_t hash() const override { return std::hash<std::string>()(m_name); }

private:
    std::string m_name;
};

Class& Named::staticClass()
{
    static Class& theClass = defineClass<Named>("Named", NSObject::staticClass(), [](auto&) {});
    return theClass;
}

class AllBits : public NSObject {
    RVCORE_CLASS(AllBits)

public:
    std::size_t hash() const override { return ~std::size_t(0); }
};

Class& AllBits::staticClass()
{
    static Class& theClass = defineClass<AllBits>("AllBits", NSObject::staticClass(), [](auto&) {});
    return theClass;
}

} // namespace

TEST(NSObjectTest, AnInitialiserCallsTheSubclasssOverrideOnAnObjectThatIsAlreadyHeld)
{
    EXPECT_EQ(make<Kitchen>()->log(), "Kitchen");
    EXPECT_EQ(make<Room>()->log(), "Room");
}

TEST(NSObjectTest, MakePassesItsArgumentsOnToTheInitialiser)
{
    const auto kitchen = make<Kitchen>(3, std::make_unique<int>(4));
    EXPECT_EQ(kitchen->width(), 7);
    EXPECT_EQ(kitchen->log(), "Kitchen");
}

TEST(NSObjectTest, DescriptionIsClassAndAddress)
{
    const auto kitchen = make<Kitchen>();
    std::ostringstream expected;
    expected << "<Kitchen: 0x" << std::hex << reinterpret_cast<std::uintptr_t>(static_cast<NSObject*>(kitchen.get()))
             << ">";
    EXPECT_EQ(kitchen->description(), expected.str());
    EXPECT_EQ(send(kitchen, "description").as<std::string>(), expected.str());
}

TEST(NSObjectTest, KnowsItsKind)
{
    const auto kitchen = make<Kitchen>();
    EXPECT_TRUE(kitchen->isKindOfClass(Room::staticClass()));
    EXPECT_TRUE(kitchen->isKindOfClass(Kitchen::staticClass()));
    EXPECT_FALSE(make<Room>()->isKindOfClass(Kitchen::staticClass()));
}

TEST(NSObjectTest, EqualsItselfOnlyUnlessAClassSaysOtherwise)
{
    const auto one = make<Room>(), other = make<Room>();
    EXPECT_TRUE(one->isEqual(*one));
    EXPECT_FALSE(one->isEqual(*other));
    EXPECT_TRUE(make<Named>("a")->isEqual(*make<Named>("a")));
    EXPECT_FALSE(make<Named>("a")->isEqual(*make<Named>("b")));
}

TEST(NSObjectTest, EqualityAndHashAreReachedByName)
{
    const auto one = make<Named>("a"), same = make<Named>("a");
    EXPECT_TRUE(send(one, "isEqual:", same).as<bool>());
    EXPECT_FALSE(send(one, "isEqual:", make<Named>("b")).as<bool>());
    EXPECT_FALSE(send(one, "isEqual:", nullptr).as<bool>());
    EXPECT_EQ(send(one, "hash"), send(same, "hash"));
    EXPECT_EQ(send(make<AllBits>(), "hash").as<std::int64_t>(), INT64_MAX) << "what a value can carry of it";
}

TEST(NSObjectTest, ContainersCanGoByEqualityAndHash)
{
    std::unordered_map<ObjectRef, int, ObjectHash, ObjectEqual> counts;
    ++counts[make<Named>("a")];
    ++counts[make<Named>("b")];
    ++counts[make<Named>("a")];
    EXPECT_EQ(counts.size(), 2U);
    EXPECT_EQ(counts[make<Named>("a")], 2);

    std::unordered_set<ObjectRef, ObjectHash, ObjectEqual> rooms{make<Room>(), make<Room>()};
    EXPECT_EQ(rooms.size(), 2U);
}

TEST(NSObjectTest, SharedGivesThePointerThatHoldsTheObject)
{
    const auto kitchen = make<Kitchen>();
    EXPECT_EQ(shared(*kitchen), kitchen);
    const Kitchen& unchangeable = *kitchen;
    EXPECT_EQ(shared(unchangeable), kitchen);
    EXPECT_EQ(kitchen.use_count(), 1);
}

TEST(NSObjectTest, AClassThatDoesNotSupportArchivesSaysSo)
{
    const auto room = make<Room>();
    const auto coder = make<NSCoder>();
    EXPECT_EQ(raised([&] { room->init(*coder); }),
              "NSInvalidArgumentException: Room.initWithCoder:: this class cannot be unarchived");
    EXPECT_EQ(raised([&] { send(room, "encodeWithCoder:", coder); }),
              "NSInvalidArgumentException: Room.encodeWithCoder:: this class cannot be archived");
}

} // namespace RVCore::NSObjectTests
