#include "Benchmarks.h"

#include <Foundation/Message.h>

#include <memory>

namespace RVCore {

namespace {

class Counter : public NSObject {
    RVCORE_CLASS(Counter)

public:
    virtual void add(int step) { m_count += step; }
    int count() const { return m_count; }

private:
    int m_count = 0;
};

Class& Counter::staticClass()
{
    static Class& theClass = defineClass<Counter>("Counter", NSObject::staticClass(),
                                                  [](auto& publish) { publish.method("add:", &Counter::add); });
    return theClass;
}

// A subclass that publishes nothing, so that a message has to be looked up further up, as most of them are.
class LoudCounter : public Counter {
    RVCORE_CLASS(LoudCounter)

public:
    void add(int step) override { Counter::add(2 * step); }
};

Class& LoudCounter::staticClass()
{
    static Class& theClass = defineClass<LoudCounter>("LoudCounter", Counter::staticClass(), [](auto&) {});
    return theClass;
}

} // namespace

void benchmarkMessaging()
{
    constexpr int calls = 200'000;
    constexpr int rounds = 15;
    const std::shared_ptr<Counter> counter = make<LoudCounter>();
    keep(counter); // from here on the compiler cannot know which class it is

    const double direct = nanoseconds(rounds, [&] {
        for (int i = 0; i < calls; i++) {
            counter->add(1);
            keep(*counter);
        }
    });

    const Selector add("add:");
    const double sent = nanoseconds(rounds, [&] {
        for (int i = 0; i < calls; i++)
            send(*counter, add, 1);
    });

    // As it is mostly written: the text of the selector stands in the call.
    const double sentByText = nanoseconds(rounds, [&] {
        for (int i = 0; i < calls; i++)
            send(*counter, "add:", 1);
    });

    report("message.virtual_call_ns", direct / calls);
    report("message.send_ns", sent / calls);
    report("message.send_by_text_ns", sentByText / calls);
    report("message.vs_virtual", sent / direct);
}

} // namespace RVCore
