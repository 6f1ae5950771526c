#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

namespace RVCore {

// Closures that wait for the main thread's next turn, first in, first out. Adding and waiting are safe from any
// thread; for backends, which all need one.
class CallQueue {
public:
    // Returns whether the queue was empty before, that is whether the main thread has to be woken.
    bool add(std::function<void()> closure);
    bool isEmpty() const;

    // Runs as many closures as are waiting now, so those that they add wait for the next turn. What is left when
    // `isStopped` becomes true stays in the queue. An exception passes through after its closure is taken out.
    void runTurn(const bool& isStopped);

    // Returns when a closure is waiting, at the latest after this time.
    void wait();
    void wait(std::chrono::milliseconds limit);

private:
    std::function<void()> take();

    mutable std::mutex m_mutex;
    std::condition_variable m_added;
    std::deque<std::function<void()>> m_closures;
};

} // namespace RVCore
