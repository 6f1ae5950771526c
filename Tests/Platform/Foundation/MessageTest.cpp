#include "Raised.h"
#include "Threads.h"

#include <Foundation/Message.h>

#include <gtest/gtest.h>

namespace RVCore::MessageTests {

namespace {

class Animal : public NSObject {
    RVCORE_CLASS(Animal)

public:
    std::string name() const { return m_name; }
    void setName(const std::string& name) { m_name = name; }

private:
    std::string m_name = "animal";
};

Class& Animal::staticClass()
{
    static Class& theClass = defineClass<Animal>("Animal", NSObject::staticClass(), [](auto& publish) {
        publish.property("name", &Animal::name, &Animal::setName);
        publish.method("sound", [](const Animal&) { return std::string("…"); });
        publish.method("legs", [](const Animal&) { return 4; });
        publish.classMethod("kingdom", [](const Class& receiver) { return "animals: " + receiver.name(); });
        publish.classMethod("habitat", [](const Class&) { return std::string("anywhere"); });
    });
    return theClass;
}

class Bird : public Animal {
    RVCORE_CLASS(Bird)
};

Class& Bird::staticClass()
{
    static Class& theClass = defineClass<Bird>("Bird", Animal::staticClass(), [](auto& publish) {
        publish.method("legs", [](const Bird&) { return 2; });
        publish.classMethod("habitat", [](const Class& receiver) { return "air of " + receiver.name(); });
    });
    return theClass;
}

class Sparrow : public Bird {
    RVCORE_CLASS(Sparrow)
};

Class& Sparrow::staticClass()
{
    static Class& theClass = defineClass<Sparrow>("Sparrow", Bird::staticClass(), [](auto&) {});
    return theClass;
}

enum class Season : int { summer = 3 };

} // namespace

TEST(MessageTest, ASubclasssMethodTakesThePlaceOfTheInheritedOne)
{
    EXPECT_EQ(send(make<Animal>(), "legs"), Value(4));
    EXPECT_EQ(send(make<Bird>(), "legs"), Value(2));
    EXPECT_EQ(send(make<Sparrow>(), "legs"), Value(2));
}

TEST(MessageTest, AnInheritedMethodIsAnswered)
{
    const auto sparrow = make<Sparrow>();
    send(sparrow, "setName:", "Jack");
    EXPECT_EQ(send(sparrow, "name"), Value("Jack"));
}

TEST(MessageTest, AnUnknownSelectorNamesTheReceiversClass)
{
    EXPECT_EQ(raised([] { send(make<Sparrow>(), "swim:", 1); }),
              "NSInvalidArgumentException: Sparrow: unrecognized selector swim:");
    EXPECT_EQ(raised([] { send(Sparrow::staticClass(), "swim"); }),
              "NSInvalidArgumentException: Sparrow (class): unrecognized selector swim");
}

TEST(MessageTest, ACategoryAddsMethodsToAClassAndItsSubclasses)
{
    const auto sparrow = make<Sparrow>();
    EXPECT_FALSE(sparrow->respondsToSelector("weight"));
    addCategory<Animal>("Weighing", [](auto& publish) {
        publish.method("weight", [](const Animal&) { return 0.5; });
        publish.classMethod("scales", [](const Class&) { return true; });
    });
    EXPECT_EQ(send(sparrow, "weight"), Value(0.5));
    EXPECT_EQ(send(Bird::staticClass(), "scales"), Value(true));
}

TEST(MessageTest, ACategoryReplacesAMethodOfTheClass)
{
    const auto sparrow = make<Sparrow>();
    EXPECT_EQ(send(sparrow, "sound"), Value("…"));
    addCategory<Animal>(
        "Sounds", [](auto& publish) { publish.method("sound", [](const Animal&) { return std::string("growl"); }); });
    EXPECT_EQ(send(sparrow, "sound"), Value("growl"));
    addCategory<Bird>(
        "Sounds", [](auto& publish) { publish.method("sound", [](const Bird&) { return std::string("tweet"); }); });
    EXPECT_EQ(send(sparrow, "sound"), Value("tweet"));
    EXPECT_EQ(send(make<Animal>(), "sound"), Value("growl"));
}

TEST(MessageTest, AMethodThatReplacesItselfRunsToItsEnd)
{
    addCategory<Animal>("Moulting", [](auto& publish) {
        const std::string text = "the first of two texts, too long to be kept in place";
        publish.method("moult", [text](const Animal&) {
            addCategory<Animal>("Moulting", [](auto& again) {
                again.method("moult", [](const Animal&) { return std::string("second"); });
            });
            return text;
        });
    });
    const auto animal = make<Animal>();
    EXPECT_EQ(send(animal, "moult"), Value("the first of two texts, too long to be kept in place"));
    EXPECT_EQ(send(animal, "moult"), Value("second"));
}

TEST(MessageTest, AClassLevelMessageIsInheritedAndKnowsItsReceiver)
{
    EXPECT_EQ(send(Animal::staticClass(), "kingdom"), Value("animals: Animal"));
    EXPECT_EQ(send(Sparrow::staticClass(), "kingdom"), Value("animals: Sparrow"));
}

TEST(MessageTest, AClassLevelMessageIsOverriddenByASubclass)
{
    EXPECT_EQ(send(Animal::staticClass(), "habitat"), Value("anywhere"));
    EXPECT_EQ(send(Bird::staticClass(), "habitat"), Value("air of Bird"));
    EXPECT_EQ(send(Sparrow::staticClass(), "habitat"), Value("air of Sparrow"));
}

TEST(MessageTest, AnAbsentReceiverAnswersNothing)
{
    EXPECT_TRUE(send(std::shared_ptr<Animal>(), "name").isNothing());
    EXPECT_TRUE(send(std::shared_ptr<Animal>(), "no such selector").isNothing());
}

TEST(MessageTest, AnObjectIsMadeByNameAlone)
{
    const Class* animal = Class::named("Animal");
    ASSERT_NE(animal, nullptr);
    const Value object = send(send(*animal, "alloc").as<ObjectRef>(), "init");
    EXPECT_EQ(object.kind(), "Animal");
    EXPECT_EQ(send(object.as<ObjectRef>(), "name"), Value("animal"));
}

TEST(MessageTest, RespondsToWhatItsClassAndSuperclassesPublish)
{
    const auto bird = make<Bird>();
    EXPECT_TRUE(bird->respondsToSelector("legs"));
    EXPECT_TRUE(bird->respondsToSelector("setName:"));
    EXPECT_FALSE(bird->respondsToSelector("setName"));
    EXPECT_FALSE(bird->respondsToSelector("kingdom"));
    EXPECT_TRUE(send(bird, "respondsToSelector:", Selector("legs")).as<bool>());
    EXPECT_FALSE(send(bird, "respondsToSelector:", Selector("fins")).as<bool>());
}

TEST(MessageTest, AReceiverLivesUntilItsMethodReturns)
{
    static std::shared_ptr<Animal> theOnlyOne;
    addCategory<Animal>("Leaving", [](auto& publish) {
        publish.method("leave", [](Animal& self) {
            theOnlyOne.reset();
            return self.name();
        });
    });
    theOnlyOne = make<Animal>();
    const std::weak_ptr<Animal> trace = theOnlyOne;
    EXPECT_EQ(send(theOnlyOne, "leave"), Value("animal"));
    EXPECT_TRUE(trace.expired());
}

TEST(MessageTest, AnythingThatConvertsCanBeAnArgument)
{
    EXPECT_EQ(toValue(Season::summer), Value(3));
    EXPECT_EQ(toValue(std::vector<std::string>{"a", "b"}), Value(Value::Array{"a", "b"}));
    EXPECT_EQ(toValue(std::optional<int>()), Value());
    EXPECT_EQ(toValue(std::optional<int>(2)), Value(2));
    const Value callback = toValue([](std::span<const Value> arguments) { return arguments[0]; });
    const std::vector<Value> arguments{"echo"};
    EXPECT_EQ((*callback.callback())(arguments), Value("echo"));
}

TEST(MessageTest, MessagesAreSentFromAnyThread)
{
    onThreads(4, [](int thread) {
        const auto sparrow = make<Sparrow>();
        for (int i = 0; i < 500; ++i) {
            const std::string name = std::to_string(thread * 1000 + i);
            send(sparrow, "setName:", name);
            ASSERT_EQ(send(sparrow, "name"), Value(name));
            ASSERT_EQ(send(sparrow, "legs"), Value(2));
        }
    });
}

} // namespace RVCore::MessageTests
