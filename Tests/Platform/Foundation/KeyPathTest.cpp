#include "Raised.h"

#include <Foundation/KeyPath.h>

#include <gtest/gtest.h>

namespace RVCore::KeyPathTests {

namespace {

class Lamp : public NSObject {
    RVCORE_CLASS(Lamp)

public:
    std::string name;
    double brightness = 1;
    bool lit = false;
    int writes = 0;
    std::shared_ptr<Lamp> next;
    std::vector<std::shared_ptr<Lamp>> others;

    void setBrightness(double value)
    {
        brightness = value;
        ++writes;
    }
};

Class& Lamp::staticClass()
{
    static Class& theClass = defineClass<Lamp>("Lamp", NSObject::staticClass(), [](auto& publish) {
        publish.readOnlyProperty("name", [](const Lamp& self) { return self.name; });
        publish.property(
            "brightness", [](const Lamp& self) { return self.brightness; }, &Lamp::setBrightness);
        publish.method("isLit", [](const Lamp& self) { return self.lit; });
        publish.method("setLit:", [](Lamp& self, bool lit) { self.lit = lit; });
        publish.readOnlyProperty("next", [](const Lamp& self) { return self.next; });
        publish.readOnlyProperty("others", [](const Lamp& self) { return self.others; });
    });
    return theClass;
}

// Writes for itself and keeps a list of the paths.
class CarefulLamp : public Lamp {
    RVCORE_CLASS(CarefulLamp)

public:
    std::vector<std::string> written;
};

Class& CarefulLamp::staticClass()
{
    static Class& theClass = defineClass<CarefulLamp>("CarefulLamp", Lamp::staticClass(), [](auto& publish) {
        publish.method("setValue:forKeyPath:", [](CarefulLamp& self, const Value& value, std::string_view path) {
            setValueAlongKeyPath(self, path, value);
            self.written.emplace_back(path);
        });
    });
    return theClass;
}

std::shared_ptr<Lamp> makeLamp(std::string name)
{
    auto lamp = make<Lamp>();
    lamp->name = std::move(name);
    return lamp;
}

std::shared_ptr<Lamp> makeChain()
{
    auto first = makeLamp("first");
    first->next = makeLamp("second");
    first->next->next = makeLamp("third");
    return first;
}

} // namespace

TEST(KeyPathTest, AKeyIsReadWithItsGetterAndWrittenWithItsSetter)
{
    const auto lamp = makeLamp("x");
    setValueForKeyPath(*lamp, "brightness", 0.25);
    EXPECT_EQ(lamp->brightness, 0.25);
    EXPECT_EQ(valueForKeyPath(*lamp, "brightness"), Value(0.25));
}

TEST(KeyPathTest, ATruthValuesGetterMayStartWithIs)
{
    const auto lamp = makeLamp("x");
    setValueForKeyPath(*lamp, "lit", true);
    EXPECT_EQ(valueForKeyPath(*lamp, "lit"), Value(true));
    EXPECT_EQ(valueForKeyPath(*lamp, "isLit"), Value(true));
}

TEST(KeyPathTest, APathLeadsFromObjectToObject)
{
    const auto first = makeChain();
    EXPECT_EQ(valueForKeyPath(*first, "next.next.name"), Value("third"));
    setValueForKeyPath(*first, "next.next.brightness", 3);
    EXPECT_EQ(first->next->next->brightness, 3);
    EXPECT_EQ(first->brightness, 1);
}

TEST(KeyPathTest, InAnArrayAKeyPicksTheElementOfThatName)
{
    const auto lamp = makeLamp("x");
    lamp->others = {makeLamp("blur"), makeLamp("tint"), makeLamp("tint")};
    setValueForKeyPath(*lamp, "others.tint.brightness", 9);
    EXPECT_EQ(lamp->others[1]->brightness, 9);
    EXPECT_EQ(lamp->others[2]->brightness, 1) << "the first of that name";
    EXPECT_EQ(valueForKeyPath(*lamp, "others.tint.brightness"), Value(9));
    EXPECT_EQ(valueForKeyPath(*lamp, "others.blur").as<ObjectRef>(), lamp->others[0]);
    EXPECT_EQ(raised([&] { valueForKeyPath(*lamp, "others.none.brightness"); }),
              "NSUnknownKeyException: no element of the array is named \"none\" (in the path "
              "\"others.none.brightness\")");
    EXPECT_EQ(raised([&] { setValueForKeyPath(*lamp, "others.tint", lamp); }),
              "NSUnknownKeyException: the path \"others.tint\" ends at an element of an array, which is not a "
              "property");
}

TEST(KeyPathTest, AMissingKeyNamesClassKeyAndPath)
{
    const auto first = makeChain();
    EXPECT_EQ(raised([&] { valueForKeyPath(*first, "next.volume"); }),
              "NSUnknownKeyException: Lamp has no key \"volume\" (in the path \"next.volume\")");
    EXPECT_EQ(raised([&] { valueForKeyPath(*first, "volume.next"); }),
              "NSUnknownKeyException: Lamp has no key \"volume\" (in the path \"volume.next\")");
    EXPECT_EQ(raised([&] { setValueForKeyPath(*first, "volume", 1); }),
              "NSUnknownKeyException: Lamp has no key \"volume\" (in the path \"volume\")");
}

TEST(KeyPathTest, AReadOnlyKeyIsNotWritten)
{
    const auto first = makeChain();
    EXPECT_EQ(raised([&] { setValueForKeyPath(*first, "next.name", "new"); }),
              "NSUnknownKeyException: Lamp has no key \"name\" (in the path \"next.name\")");
    EXPECT_EQ(first->next->name, "second");
}

TEST(KeyPathTest, APathThatEndsEarlySaysWhere)
{
    const auto first = makeChain();
    EXPECT_EQ(raised([&] { valueForKeyPath(*first, "next.next.next.name"); }),
              "NSUnknownKeyException: the path \"next.next.next.name\" ends at \"next\" of Lamp, which is nothing");
    EXPECT_EQ(raised([&] { setValueForKeyPath(*first, "brightness.x", 1); }),
              "NSUnknownKeyException: the path \"brightness.x\" ends at \"brightness\" of Lamp, which is number");
}

TEST(KeyPathTest, EmptyKeysAndSelectorsWithArgumentsAreNoKeys)
{
    const auto first = makeChain();
    for (const char* path : {"", ".", ".name", "next.", "next..name", "setLit:", "isEqual:"}) {
        EXPECT_NE(raised([&] { valueForKeyPath(*first, path); }).find("NSUnknownKeyException"), std::string::npos)
            << path;
        EXPECT_NE(raised([&] { setValueForKeyPath(*first, path, 1); }).find("NSUnknownKeyException"),
                  std::string::npos)
            << path;
    }
}

TEST(KeyPathTest, NothingIsWrittenWhenTheValueIsOfTheWrongKind)
{
    const auto first = makeChain();
    EXPECT_EQ(raised([&] { setValueForKeyPath(*first, "next.brightness", "bright"); }),
              "NSInvalidArgumentException: Lamp.setBrightness:: argument 1 must be number, got text");
    EXPECT_EQ(first->next->brightness, 1);
    EXPECT_EQ(first->next->writes, 0);
}

TEST(KeyPathTest, AnObjectThatWritesForItselfIsSentTheRestOfThePath)
{
    const auto careful = make<CarefulLamp>();
    careful->next = makeLamp("second");
    const auto first = makeChain();
    first->next->next = careful;
    setValueForKeyPath(*first, "next.next.brightness", 3);
    EXPECT_EQ(careful->brightness, 3);
    setValueForKeyPath(*first, "next.next.next.brightness", 4);
    EXPECT_EQ(careful->next->brightness, 4);
    setValueForKeyPath(*careful, "brightness", 5);
    EXPECT_EQ(careful->brightness, 5);
    EXPECT_EQ(careful->written, (std::vector<std::string>{"brightness", "next.brightness", "brightness"}));
    EXPECT_EQ(valueForKeyPath(*first, "next.next.brightness"), Value(5.0));
    EXPECT_NE(raised([&] { setValueForKeyPath(*first, "next.next.colour", 1); }).find("CarefulLamp has no key"),
              std::string::npos);
}

} // namespace RVCore::KeyPathTests
