#pragma once

#include <Dispatch/DispatchTime.h>

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

namespace RVCore {

// Closures that wait for the main thread, in the order of their times; of equal times the one added first comes
// first. Adding is safe from any thread. Somebody drives the queue: whoever serves the main thread sets a waker, and
// then runs what is due. While nothing waits, nobody is woken.
class DispatchQueue {
public:
    // The main thread's queue; the only one.
    static DispatchQueue& main();

    // Runs the closure on the main thread, soon, but not within this call. An absent closure raises
    // NSInvalidArgumentException.
    void async(std::function<void()> closure);
    // The same, not before this time; a time that has passed means now. One that never comes, infinity, raises
    // NSInvalidArgumentException.
    void asyncAfter(DispatchTime deadline, std::function<void()> closure);

    // Runs what is due, without what that adds, and returns how many closures that were. On the main thread. What
    // a closure throws passes through; the closures behind it wait for the next call.
    int runDue();
    // How many closures are due now.
    int dueCount() const;
    // When the first closure is due; nothing when none waits.
    std::optional<DispatchTime> nextDeadline() const;
    // Called on the thread that adds, after each closure that is now the first one in the queue or due at once; also
    // right away if something waits. Null for none.
    void setWaker(const std::function<void()>& waker);
    // For DispatchClock: the clock shows this many seconds more than the one before it.
    void clockChanged(double difference);

private:
    using Key = std::pair<double, std::uint64_t>; // time and number

    DispatchQueue() = default;
    std::function<void()> takeDue(std::uint64_t end);

    mutable std::mutex m_mutex;
    std::map<Key, std::function<void()>> m_closures;
    std::uint64_t m_nextNumber = 0;
    std::function<void()> m_waker;
};

} // namespace RVCore
