#include "Raised.h"
#include "SampleBox.h"

#include <Foundation/NSArray.h>

#include <gtest/gtest.h>

#include <cmath>

namespace RVCore::ValueTests {

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

Value identity(std::span<const Value> arguments)
{
    return arguments.empty() ? Value() : arguments[0];
}

} // namespace

TEST(ValueTest, IsNothingByDefault)
{
    EXPECT_TRUE(Value().isNothing());
    EXPECT_TRUE(Value(nullptr).isNothing());
    EXPECT_EQ(Value().kind(), "nothing");
    EXPECT_EQ(Value().description(), "nothing");
}

TEST(ValueTest, WhatIsAbsentIsNothing)
{
    EXPECT_TRUE(Value(std::shared_ptr<NSArray>()).isNothing());
    EXPECT_TRUE(Value(static_cast<const char*>(nullptr)).isNothing());
    EXPECT_TRUE(Value(Value::Callback()).isNothing());
}

TEST(ValueTest, CarriesABoolean)
{
    const Value value = true;
    EXPECT_TRUE(*value.boolean());
    EXPECT_EQ(value.integer(), nullptr);
    EXPECT_EQ(value.kind(), "Boolean");
    EXPECT_EQ(value.description(), "true");
    EXPECT_EQ(Value(false).description(), "false");
}

TEST(ValueTest, PointersDoNotBecomeTrue)
{
    static_assert(!std::constructible_from<Value, int*>);
    static_assert(!std::constructible_from<Value, const void*>);
    static_assert(!std::constructible_from<Value, NSObject*>);
    EXPECT_NE(Value("text").text(), nullptr);
    EXPECT_EQ(Value("text").boolean(), nullptr);
}

TEST(ValueTest, CarriesAnIntegerOfAnyType)
{
    EXPECT_EQ(*Value(3).integer(), 3);
    EXPECT_EQ(*Value(0).integer(), 0) << "not an absent pointer";
    EXPECT_EQ(*Value(std::uint8_t(200)).integer(), 200);
    EXPECT_EQ(*Value(std::int64_t(-5)).integer(), -5);
    EXPECT_EQ(*Value(std::uint64_t(largest)).integer(), largest);
    EXPECT_EQ(Value(3).kind(), "integer");
    EXPECT_EQ(Value(-3).description(), "-3");
}

TEST(ValueTest, AnIntegerThatDoesNotFitIsNotTurnedNegative)
{
    EXPECT_EQ(raised([] { Value(std::uint64_t(largest) + 1); }),
              "NSRangeException: Value: 9223372036854775808 is beyond the integers it can carry");
}

TEST(ValueTest, CarriesAFloatingPointNumber)
{
    const Value value = 2.5F;
    EXPECT_EQ(*value.floatingPoint(), 2.5);
    EXPECT_EQ(value.integer(), nullptr);
    EXPECT_EQ(value.kind(), "number");
    EXPECT_EQ(value.description(), "2.5");
}

TEST(ValueTest, CarriesText)
{
    EXPECT_EQ(*Value("abc").text(), "abc");
    EXPECT_EQ(*Value(std::string("abc")).text(), "abc");
    EXPECT_EQ(*Value(std::string_view("abcdef").substr(0, 3)).text(), "abc");
    EXPECT_EQ(Value("abc").kind(), "text");
    EXPECT_EQ(Value("abc").description(), "\"abc\"");
}

TEST(ValueTest, CarriesASelector)
{
    const Value value = Selector("setFrame:");
    EXPECT_EQ(*value.selector(), Selector("setFrame:"));
    EXPECT_EQ(value.text(), nullptr);
    EXPECT_EQ(value.kind(), "selector");
    EXPECT_EQ(value.description(), "setFrame:");
}

TEST(ValueTest, HoldsAnObjectAndNamesItsClass)
{
    auto list = make<NSArray>();
    const Value value = list;
    EXPECT_EQ(*value.object(), list);
    EXPECT_EQ(list.use_count(), 2);
    EXPECT_EQ(value.kind(), "NSArray");
    EXPECT_EQ(value.description(), list->description());
}

TEST(ValueTest, BoxesAPlainValue)
{
    const Value value = SamplePair{1, 2};
    EXPECT_EQ(*value.boxed<SamplePair>(), (SamplePair{1, 2}));
    EXPECT_EQ(value.boxed<OtherPair>(), nullptr);
    EXPECT_EQ(value.kind(), "SamplePair");
    EXPECT_EQ(value.description(), "1/2");
    EXPECT_EQ(Value(3).boxed<SamplePair>(), nullptr);
}

TEST(ValueTest, CarriesACallback)
{
    const Value value = Value::Callback(identity);
    const std::vector<Value> arguments{7};
    EXPECT_EQ((*value.callback())(arguments), Value(7));
    EXPECT_EQ(value.kind(), "callback");
    EXPECT_EQ(value.description(), "callback");
}

TEST(ValueTest, CarriesArraysAndDictionaries)
{
    const Value array = Value::Array{1, "two", nullptr};
    EXPECT_EQ(array.array()->size(), 3U);
    EXPECT_EQ(array.kind(), "array");
    EXPECT_EQ(array.description(), "[1, \"two\", nothing]");
    EXPECT_EQ(Value(Value::Array()).description(), "[]");

    const Value dictionary = Value::Dictionary{{"b", array}, {"a", true}};
    EXPECT_EQ(dictionary.dictionary()->at("a"), Value(true));
    EXPECT_EQ(dictionary.kind(), "dictionary");
    EXPECT_EQ(dictionary.description(), "{a: true, b: [1, \"two\", nothing]}");
}

TEST(ValueTest, CopiesShareTheirContent)
{
    const Value original = Value::Array{1, 2};
    const Value copy = original;
    EXPECT_EQ(copy.array(), original.array());
}

TEST(ValueEqualityTest, KindsAreApart)
{
    const std::vector<Value> values{nullptr,
                                    true,
                                    1,
                                    "1",
                                    Selector("1"),
                                    make<NSArray>(),
                                    SamplePair{1, 1},
                                    Value::Callback(identity),
                                    Value::Array{1},
                                    Value::Dictionary{{"1", 1}}};
    for (std::size_t left = 0; left < values.size(); ++left) {
        for (std::size_t right = 0; right < values.size(); ++right)
            EXPECT_EQ(values[left] == values[right], left == right) << left << " and " << right;
    }
}

TEST(ValueEqualityTest, NumbersOfTheSameAmountAreEqual)
{
    EXPECT_EQ(Value(3), Value(3.0));
    EXPECT_EQ(Value(3.0), Value(3));
    EXPECT_NE(Value(3), Value(3.5));
    EXPECT_NE(Value(0), Value(std::nan("")));
    EXPECT_NE(Value(std::nan("")), Value(std::nan("")));
    EXPECT_NE(Value(largest), Value(std::numeric_limits<double>::infinity()));
}

TEST(ValueEqualityTest, IntegersAreComparedExactlyWithNumbers)
{
    constexpr std::int64_t beyondDouble = (std::int64_t(1) << 53) + 1;
    EXPECT_NE(Value(beyondDouble), Value(9007199254740992.0));
    EXPECT_EQ(Value(beyondDouble - 1), Value(9007199254740992.0));
    EXPECT_NE(Value(largest), Value(9223372036854775808.0));
    EXPECT_EQ(Value(-largest - 1), Value(-9223372036854775808.0));
}

TEST(ValueEqualityTest, ObjectsCompareWithIsEqual)
{
    EXPECT_EQ(Value(make<NSArray>(Value::Array{1})), Value(make<NSArray>(Value::Array{1})));
    EXPECT_NE(Value(make<NSArray>(Value::Array{1})), Value(make<NSArray>(Value::Array{2})));
    EXPECT_NE(Value(make<NSObject>()), Value(make<NSObject>()));
}

TEST(ValueEqualityTest, BoxesCompareTypeAndContent)
{
    EXPECT_EQ(Value(SamplePair{1, 2}), Value(SamplePair{1, 2}));
    EXPECT_NE(Value(SamplePair{1, 2}), Value(SamplePair{1, 3}));
    EXPECT_NE(Value(SamplePair{1, 2}), Value(OtherPair{1, 2}));
}

TEST(ValueEqualityTest, CallbacksCompareByIdentity)
{
    const Value one = Value::Callback(identity);
    EXPECT_EQ(one, Value(one));
    EXPECT_NE(one, Value(Value::Callback(identity)));
}

TEST(ValueEqualityTest, ArraysAndDictionariesCompareTheirElements)
{
    EXPECT_EQ(Value(Value::Array{1, "a"}), Value(Value::Array{1.0, "a"}));
    EXPECT_NE(Value(Value::Array{1}), Value(Value::Array{1, 1}));
    EXPECT_EQ(Value(Value::Dictionary{{"a", 1}}), Value(Value::Dictionary{{"a", 1.0}}));
    EXPECT_NE(Value(Value::Dictionary{{"a", 1}}), Value(Value::Dictionary{{"b", 1}}));
}

TEST(ValueTest, AsSaysWhatWasExpectedAndWhatCame)
{
    EXPECT_EQ(Value(3).as<int>(), 3);
    EXPECT_EQ(Value(3).as<Value>(), Value(3));
    EXPECT_EQ(raised([] { Value("x").as<bool>(); }),
              "NSInvalidArgumentException: Value.as: expected Boolean, got text");
    EXPECT_EQ(raised([] { Value(300).as<std::uint8_t>(); }),
              "NSInvalidArgumentException: Value.as: expected integer from 0 to 255, got integer");
    EXPECT_EQ(raised([] { Value(OtherPair()).as<SamplePair>(); }),
              "NSInvalidArgumentException: Value.as: expected SamplePair, got OtherPair");
    EXPECT_EQ(raised([] { Value(make<NSObject>()).as<std::shared_ptr<NSArray>>(); }),
              "NSInvalidArgumentException: Value.as: expected NSArray or nothing, got NSObject");
}

} // namespace RVCore::ValueTests
