#include "Raised.h"

#include <Foundation/Message.h>
#include <Foundation/NSArray.h>
#include <Foundation/NSCoder.h>

#include <gtest/gtest.h>

namespace RVCore {

TEST(NSArrayTest, IsEmptyByDefault)
{
    EXPECT_EQ(make<NSArray>()->count(), 0U);
}

TEST(NSArrayTest, KeepsItsElementsInOrder)
{
    const auto array = make<NSArray>(Value::Array{3, "two", nullptr});
    EXPECT_EQ(array->elements(), (Value::Array{3, "two", nullptr}));
    EXPECT_EQ(array->count(), 3U);
}

TEST(NSArrayTest, IsMadeFromAListOfAnythingThatIsAValue)
{
    const auto object = make<NSObject>();
    EXPECT_EQ(makeArray(std::vector{object})->elements()[0].as<ObjectRef>(), object);
    EXPECT_EQ(makeArray(std::vector<int>{1, 2})->elements(), (Value::Array{1, 2}));
}

TEST(NSArrayTest, IsReachedByName)
{
    const auto array =
        send(send(NSArray::staticClass(), "alloc").as<ObjectRef>(), "initWithArray:", Value::Array{"a", "b"})
            .as<std::shared_ptr<NSArray>>();
    EXPECT_EQ(send(array, "count"), Value(2));
    EXPECT_EQ(send(array, "objectAtIndex:", 1), Value("b"));
}

TEST(NSArrayTest, AnIndexBeyondTheCountRaises)
{
    const auto array = make<NSArray>(Value::Array{1});
    EXPECT_EQ(raised([&] { send(array, "objectAtIndex:", 1); }),
              "NSRangeException: NSArray.objectAtIndex:: index 1 is beyond the count 1");
    EXPECT_EQ(raised([&] { send(array, "objectAtIndex:", -1); }),
              "NSInvalidArgumentException: NSArray.objectAtIndex:: argument 1 must be integer from 0 to "
              "18446744073709551615, got integer");
}

TEST(NSArrayTest, EqualElementsMakeEqualArraysWithEqualHashes)
{
    const auto one = make<NSArray>(Value::Array{1, 2}), same = make<NSArray>(Value::Array{1.0, 2.0});
    EXPECT_TRUE(one->isEqual(*same));
    EXPECT_EQ(one->hash(), same->hash());
    EXPECT_FALSE(one->isEqual(*make<NSArray>(Value::Array{2, 1})));
    EXPECT_FALSE(one->isEqual(*make<NSObject>()));
}

TEST(NSArrayTest, ComesBackFromAnArchiveWithItsObjects)
{
    const auto inner = make<NSArray>(Value::Array{"x"});
    const auto outer = make<NSArray>(Value::Array{inner, 5, inner});
    const auto copy = std::dynamic_pointer_cast<NSArray>(unarchivedObject(archivedObject(*outer)));
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, outer);
    EXPECT_TRUE(copy->isEqual(*outer));
    EXPECT_EQ(copy->elements()[0].as<ObjectRef>(), copy->elements()[2].as<ObjectRef>());
}

} // namespace RVCore
