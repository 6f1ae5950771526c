#include "Raised.h"
#include "SampleBox.h"

#include <Foundation/Message.h>

#include <gtest/gtest.h>

namespace RVCore::PublisherTests {

namespace {

int freeTotal(const class Counter& counter, int more);

class Counter : public NSObject {
    RVCORE_CLASS(Counter)

public:
    int count() const { return m_count; }
    void setCount(int count) { m_count = count; }
    virtual std::string title() const { return "counter"; }
    const std::string& label() const { return m_label; }
    void setLabel(const std::string& label) { m_label = label; }
    void absorb(Counter& other) { m_count += std::exchange(other.m_count, 0); }
    int peek(const Counter& other) const { return other.m_count; }
    int orZero(const std::shared_ptr<Counter>& other) const { return other ? other->m_count : 0; }
    std::size_t measure(std::string_view text) const { return text.size(); }
    SamplePair swapped(SamplePair pair) const { return {pair.right, pair.left}; }
    int apply(const std::function<int(int)>& change) { return m_count = change(m_count); }

private:
    int m_count = 0;
    std::string m_label;
};

int freeTotal(const Counter& counter, int more)
{
    return counter.count() + more;
}

Class& Counter::staticClass()
{
    static Class& theClass = defineClass<Counter>("Counter", NSObject::staticClass(), [](auto& publish) {
        publish.property("count", &Counter::count, &Counter::setCount);
        publish.property("label", &Counter::label, &Counter::setLabel);
        publish.readOnlyProperty("title", &Counter::title);
        publish.method("absorb:", &Counter::absorb);
        publish.method("peek:", &Counter::peek);
        publish.method("orZero:", &Counter::orZero);
        publish.method("measure:", &Counter::measure);
        publish.method("swapped:", &Counter::swapped);
        publish.method("apply:", &Counter::apply);
        publish.method("total:", &freeTotal);
        publish.method("countPlus:times:",
                       [](const Counter& self, int more, double factor) { return (self.count() + more) * factor; });
        publish.method("anything:", [](Counter&, const Value& value) { return value; });
        publish.initializer("initWithCount:", [](Counter& self, int count) { self.setCount(count); });
        publish.classMethod("counterWithCount:", [](const Class& receiver, int count) {
            return send(receiver.alloc(), "initWithCount:", count);
        });
    });
    return theClass;
}

class LoudCounter : public Counter {
    RVCORE_CLASS(LoudCounter)

public:
    std::string title() const override { return "COUNTER"; }
};

Class& LoudCounter::staticClass()
{
    static Class& theClass = defineClass<LoudCounter>("LoudCounter", Counter::staticClass(), [](auto& publish) {
        // A member function of the base, published once more by the subclass.
        publish.method("inheritedCount", &LoudCounter::count);
    });
    return theClass;
}

template <class... Arguments> std::string raisedBy(const char* selector, Arguments... arguments)
{
    const auto counter = make<Counter>();
    return raised([&] { send(counter, selector, arguments...); });
}

} // namespace

TEST(PublisherTest, MemberFunctionsAreMethods)
{
    const auto counter = make<Counter>();
    EXPECT_TRUE(send(counter, "setCount:", 5).isNothing());
    EXPECT_EQ(counter->count(), 5);
    EXPECT_EQ(send(counter, "count"), Value(5));
    send(counter, "setLabel:", "apples");
    EXPECT_EQ(send(counter, "label"), Value("apples"));
}

TEST(PublisherTest, FunctionsAndClosuresThatTakeTheReceiverFirstAreMethods)
{
    const auto counter = make<Counter>();
    counter->setCount(2);
    EXPECT_EQ(send(counter, "total:", 3), Value(5));
    EXPECT_EQ(send(counter, "countPlus:times:", 1, 1.5), Value(4.5));
    EXPECT_EQ(send(counter, "countPlus:times:", 1, 2), Value(6.0)) << "an integer passes for a number";
}

TEST(PublisherTest, AVirtualMemberFunctionRunsTheOverride)
{
    EXPECT_EQ(send(make<LoudCounter>(), "title"), Value("COUNTER"));
    EXPECT_EQ(send(make<LoudCounter>(), "inheritedCount"), Value(0));
}

TEST(PublisherTest, ObjectsAreHandedOverByReferenceOrPointer)
{
    const auto counter = make<Counter>();
    const auto other = make<LoudCounter>();
    other->setCount(4);
    EXPECT_EQ(send(counter, "peek:", other), Value(4));
    EXPECT_EQ(send(counter, "orZero:", other), Value(4));
    EXPECT_EQ(send(counter, "orZero:", nullptr), Value(0));
    send(counter, "absorb:", other);
    EXPECT_EQ(counter->count(), 4);
    EXPECT_EQ(other->count(), 0);
}

TEST(PublisherTest, TextBoxesCallbacksAndValuesAreHandedOver)
{
    const auto counter = make<Counter>();
    EXPECT_EQ(send(counter, "measure:", "four"), Value(4));
    EXPECT_EQ(send(counter, "swapped:", SamplePair{1, 2}), Value(SamplePair{2, 1}));
    EXPECT_EQ(send(counter, "apply:", std::function<int(int)>([](int n) { return n + 7; })), Value(7));
    EXPECT_EQ(send(counter, "anything:", Value::Array{1}), Value(Value::Array{1}));
    EXPECT_TRUE(send(counter, "anything:", nullptr).isNothing());
}

TEST(PublisherTest, AWrongArgumentNamesClassSelectorPositionAndExpectation)
{
    EXPECT_EQ(raisedBy("setCount:", "five"),
              "NSInvalidArgumentException: Counter.setCount:: argument 1 must be integer from -2147483648 to "
              "2147483647, got text");
    EXPECT_EQ(raisedBy("countPlus:times:", 1, true),
              "NSInvalidArgumentException: Counter.countPlus:times:: argument 2 must be number, got Boolean");
    EXPECT_EQ(raisedBy("swapped:", OtherPair()),
              "NSInvalidArgumentException: Counter.swapped:: argument 1 must be SamplePair, got OtherPair");
}

TEST(PublisherTest, AReferenceToAnObjectRefusesNothing)
{
    EXPECT_EQ(raisedBy("absorb:", nullptr),
              "NSInvalidArgumentException: Counter.absorb:: argument 1 must be Counter or nothing, got nothing");
    EXPECT_EQ(raisedBy("absorb:", make<NSObject>()),
              "NSInvalidArgumentException: Counter.absorb:: argument 1 must be Counter or nothing, got NSObject");
}

TEST(PublisherTest, AWrongNumberOfArgumentsIsRefused)
{
    EXPECT_EQ(raisedBy("setCount:"), "NSInvalidArgumentException: Counter.setCount:: takes 1 arguments, got 0");
    EXPECT_EQ(raisedBy("count", 1), "NSInvalidArgumentException: Counter.count: takes 0 arguments, got 1");
}

TEST(PublisherTest, AMethodWithAWrongArgumentDoesNotRun)
{
    const auto counter = make<Counter>(), other = make<Counter>();
    other->setCount(3);
    raised([&] { send(counter, "absorb:", other, 1); });
    EXPECT_EQ(other->count(), 3);
}

TEST(PublisherTest, AnInitialiserAnswersWithItsReceiver)
{
    const ObjectRef allocated = send(LoudCounter::staticClass(), "alloc").as<ObjectRef>();
    const Value initialised = send(allocated, "initWithCount:", 6);
    EXPECT_EQ(initialised.as<ObjectRef>(), allocated);
    EXPECT_EQ(initialised.as<std::shared_ptr<LoudCounter>>()->count(), 6);
}

TEST(PublisherTest, AClassMethodReceivesTheClassThatTheMessageWasSentTo)
{
    EXPECT_EQ(send(Counter::staticClass(), "counterWithCount:", 2).kind(), "Counter");
    EXPECT_EQ(send(LoudCounter::staticClass(), "counterWithCount:", 2).kind(), "LoudCounter");
}

TEST(PublisherDeathTest, ASelectorHasAsManyColonsAsTheOperationTakesArguments)
{
    Publisher<Counter> publish(Counter::staticClass(), "Wrong");
    EXPECT_DEATH(publish.method("setCount", &Counter::setCount),
                 "Fatal error: Counter publishes setCount with 1 arguments\n$");
    EXPECT_DEATH(publish.initializer("initWith:and:", [](Counter&, int) {}),
                 "Fatal error: Counter publishes initWith:and: with 1 arguments\n$");
    EXPECT_DEATH(publish.classMethod("made:", [](const Class&) {}),
                 "Fatal error: Counter publishes made: with 0 arguments\n$");
    EXPECT_DEATH(publish.property("count", &Counter::count, &Counter::count),
                 "Fatal error: Counter publishes setCount: with 0 arguments\n$");
}

} // namespace RVCore::PublisherTests
