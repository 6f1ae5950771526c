#include "Raised.h"
#include "SampleBox.h"

#include <Foundation/Message.h>
#include <Foundation/NSArray.h>

#include <gtest/gtest.h>

namespace RVCore::ValueConversionTests {

namespace {

enum class Fruit : std::uint8_t { apple = 1, pear = 2 };
enum class Tide : int { low = -1, high = 1 };

// There and back.
template <class T> T travelled(const T& content)
{
    return ValueConversion<T>::wrap(content).template as<T>();
}

template <class T> bool accepts(const Value& value)
{
    return ValueConversion<T>::unwrap(value).has_value();
}

} // namespace

TEST(ValueConversionTest, IntegersKeepTheirWholeRange)
{
    EXPECT_EQ(travelled(std::numeric_limits<std::int8_t>::min()), -128);
    EXPECT_EQ(travelled(std::numeric_limits<std::uint32_t>::max()), 4294967295U);
    EXPECT_EQ(travelled(std::numeric_limits<std::int64_t>::min()), std::numeric_limits<std::int64_t>::min());
}

TEST(ValueConversionTest, AnIntegerOutOfRangeIsRefused)
{
    EXPECT_TRUE(accepts<std::int8_t>(127));
    EXPECT_FALSE(accepts<std::int8_t>(128));
    EXPECT_FALSE(accepts<std::int8_t>(-129));
    EXPECT_FALSE(accepts<unsigned>(-1));
    EXPECT_FALSE(accepts<std::uint64_t>(-1));
    EXPECT_FALSE(accepts<int>(std::int64_t(1) << 31));
}

TEST(ValueConversionTest, NothingElsePassesForAnInteger)
{
    for (const Value& value : {Value(), Value(true), Value(1.0), Value("1"), Value(Value::Array{1})})
        EXPECT_FALSE(accepts<int>(value)) << value.kind();
}

TEST(ValueConversionTest, ABooleanIsNoNumberAndNoNumberIsABoolean)
{
    EXPECT_TRUE(travelled(true));
    EXPECT_FALSE(accepts<bool>(1));
    EXPECT_FALSE(accepts<double>(true));
}

TEST(ValueConversionTest, IntegersPassForNumbers)
{
    EXPECT_EQ(Value(3).as<double>(), 3.0);
    EXPECT_EQ(Value(3).as<float>(), 3.0F);
    EXPECT_EQ(travelled(0.1), 0.1);
    EXPECT_FALSE(accepts<double>("3"));
}

TEST(ValueConversionTest, ANumberThatAFloatCannotHoldIsRefused)
{
    EXPECT_FALSE(accepts<float>(1e39));
    EXPECT_FALSE(accepts<float>(-1e39));
    EXPECT_TRUE(accepts<float>(3.4e38));
    EXPECT_TRUE(accepts<float>(std::numeric_limits<double>::infinity()));
}

TEST(ValueConversionTest, EnumerationsTravelAsTheirNumber)
{
    EXPECT_EQ(*ValueConversion<Fruit>::wrap(Fruit::pear).integer(), 2);
    EXPECT_EQ(Value(1).as<Fruit>(), Fruit::apple);
    EXPECT_EQ(travelled(Tide::low), Tide::low);
    EXPECT_FALSE(accepts<Fruit>(256));
    EXPECT_FALSE(accepts<Fruit>("apple"));
    EXPECT_EQ(ValueConversion<Fruit>::expected(), "integer from 0 to 255");
}

TEST(ValueConversionTest, TextAndSelectorsAreApart)
{
    EXPECT_EQ(travelled(std::string("x")), "x");
    EXPECT_EQ(travelled(Selector("x:")), Selector("x:"));
    EXPECT_FALSE(accepts<std::string>(Selector("x")));
    EXPECT_FALSE(accepts<Selector>("x"));
}

TEST(ValueConversionTest, BoxedTypesComeBackAsThemselves)
{
    EXPECT_EQ(travelled(SamplePair{1, 2}), (SamplePair{1, 2}));
    EXPECT_FALSE(accepts<SamplePair>(OtherPair{1, 2}));
    EXPECT_EQ(ValueConversion<SamplePair>::expected(), "SamplePair");
}

TEST(ValueConversionTest, ObjectsAreAcceptedByTheirBasesOnly)
{
    const auto list = make<NSArray>();
    EXPECT_EQ(Value(list).as<ObjectRef>(), list);
    EXPECT_EQ(Value(list).as<std::shared_ptr<NSArray>>(), list);
    EXPECT_FALSE(accepts<std::shared_ptr<NSArray>>(make<NSObject>()));
    EXPECT_FALSE(accepts<std::shared_ptr<NSArray>>(Value::Array()));
    EXPECT_EQ(Value().as<std::shared_ptr<NSArray>>(), nullptr);
}

TEST(ValueConversionTest, AnOptionalIsItsContentOrNothing)
{
    EXPECT_EQ(travelled(std::optional(3)), 3);
    EXPECT_EQ(travelled(std::optional<int>()), std::nullopt);
    EXPECT_TRUE(ValueConversion<std::optional<int>>::wrap(std::nullopt).isNothing());
    EXPECT_FALSE(accepts<std::optional<int>>("3"));
    EXPECT_EQ(ValueConversion<std::optional<bool>>::expected(), "Boolean or nothing");
}

TEST(ValueConversionTest, AVectorIsAnArrayWhoseElementsAllFit)
{
    EXPECT_EQ(travelled(std::vector<int>{1, 2, 3}), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(travelled(std::vector<bool>{true, false}), (std::vector<bool>{true, false}));
    EXPECT_EQ(travelled(std::vector<std::vector<std::string>>{{"a"}, {}}),
              (std::vector<std::vector<std::string>>{{"a"}, {}}));
    EXPECT_FALSE(accepts<std::vector<int>>(Value::Array{1, "two"}));
    EXPECT_FALSE(accepts<std::vector<int>>(1));
    EXPECT_EQ(ValueConversion<std::vector<bool>>::expected(), "array of Boolean");
}

TEST(ValueConversionTest, ArraysAndDictionariesOfValuesPassAsTheyAre)
{
    EXPECT_EQ(travelled(Value::Array{1, "a", nullptr}).size(), 3U);
    EXPECT_EQ(travelled(Value::Dictionary{{"k", 1}}).at("k"), Value(1));
    EXPECT_FALSE(accepts<Value::Array>(Value::Dictionary()));
    EXPECT_FALSE(accepts<Value::Dictionary>(Value::Array()));
}

TEST(CallbackConversionTest, AFunctionIsCalledWithValuesAndAnswersOne)
{
    const auto callback = toValue(std::function<std::string(int, const std::string&)>(
        [](int count, const std::string& text) { return text + std::to_string(count); }));
    const std::vector<Value> arguments{2, "x"};
    EXPECT_EQ((*callback.callback())(arguments), Value("x2"));
}

TEST(CallbackConversionTest, AFunctionWithoutResultAnswersNothing)
{
    int calls = 0;
    const auto callback = toValue(std::function<void()>([&] { ++calls; }));
    EXPECT_TRUE((*callback.callback())({}).isNothing());
    EXPECT_EQ(calls, 1);
}

TEST(CallbackConversionTest, AWrongNumberOfValuesIsRefused)
{
    const auto callback = toValue(std::function<int(int)>([](int number) { return number; }));
    const std::vector<Value> two{1, 2};
    EXPECT_EQ(raised([&] { (*callback.callback())(two); }),
              "NSInvalidArgumentException: callback: takes 1 arguments, got 2");
    EXPECT_EQ(raised([&] { (*callback.callback())({}); }),
              "NSInvalidArgumentException: callback: takes 1 arguments, got 0");
}

TEST(CallbackConversionTest, AnArgumentOfTheWrongKindIsRefused)
{
    const auto callback = toValue(std::function<int(int)>([](int number) { return number; }));
    const std::vector<Value> text{"one"};
    EXPECT_EQ(raised([&] { (*callback.callback())(text); }),
              "NSInvalidArgumentException: Value.as: expected integer from -2147483648 to 2147483647, got text");
}

TEST(CallbackConversionTest, ACallbackOfValuesPassesForATypedFunction)
{
    const Value callback = Value::Callback(
        [](std::span<const Value> arguments) { return Value(static_cast<std::int64_t>(arguments.size())); });
    EXPECT_EQ(callback.as<std::function<int()>>()(), 0);
    EXPECT_EQ((callback.as<std::function<int(int, const std::string&)>>()(1, "x")), 2);
    callback.as<std::function<void(bool)>>()(true);
    EXPECT_EQ(raised([&] { callback.as<std::function<bool()>>()(); }),
              "NSInvalidArgumentException: Value.as: expected Boolean, got integer");
}

TEST(CallbackConversionTest, TypedFunctionsOfDifferentCountsDoNotMeetSilently)
{
    const auto callback = toValue(std::function<void(int, int)>([](int, int) {}));
    EXPECT_EQ(raised([&] { callback.as<std::function<void(int)>>()(1); }),
              "NSInvalidArgumentException: callback: takes 2 arguments, got 1");
}

TEST(CallbackConversionTest, AnAbsentFunctionIsNothingBothWays)
{
    EXPECT_TRUE(toValue(std::function<void()>()).isNothing());
    EXPECT_FALSE(Value().as<std::function<void()>>());
    EXPECT_FALSE(Value().as<Value::Callback>());
    EXPECT_FALSE(accepts<std::function<void()>>(3));
}

TEST(CallbackConversionTest, ATypedFunctionOutlivesTheValueItCameFrom)
{
    std::function<int()> function;
    {
        const auto held = std::make_shared<int>(9);
        function = toValue(std::function<int()>([held] { return *held; })).as<std::function<int()>>();
    }
    EXPECT_EQ(function(), 9);
}

} // namespace RVCore::ValueConversionTests
