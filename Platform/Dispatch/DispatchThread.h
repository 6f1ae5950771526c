#pragma once

#include <Dispatch/DispatchTime.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <thread>

namespace RVCore {

// A thread that works from time to time by the program's clock: between its turns it waits for a moment. Where the
// clock stands until it is moved, moving it lets each thread have its turns on the way, one after the other, and
// waits until it waits again; so what threads do is the same in every run of a test.
//
//     DispatchThread thread([&](DispatchThread& self) {
//         while (const auto now = self.waitUntil(next))
//             next = step(*now);
//     });
//
// A turn must not wait for the main thread, which may be waiting for the turn.
class DispatchThread {
public:
    // Starts with the first turn. What leaves the work as an exception stops the program.
    explicit DispatchThread(std::function<void(DispatchThread&)> work);
    // Cancels, and waits until the turn under way is over. Not on the thread itself.
    ~DispatchThread();
    DispatchThread(const DispatchThread&) = delete;
    DispatchThread& operator=(const DispatchThread&) = delete;

    // On the thread: waits until the time has come and returns the present then, which is that time or later; nothing
    // once the thread has been cancelled.
    std::optional<DispatchTime> waitUntil(DispatchTime time);
    // No turn begins after this. Safe from any thread.
    void cancel();
    // Whether the caller runs on it.
    bool isCurrent() const { return std::this_thread::get_id() == m_thread.get_id(); }

    // For clocks.
    // Waits until every thread waits, changes the clock, and sees to it that the threads keep their distance to the
    // present; the function returns how many seconds the new clock shows more.
    static void changeClock(const std::function<double()>& change);
    // Waits until every thread waits. The first moment that one waits for; nothing when there is none.
    static std::optional<DispatchTime> nextTurn();
    // Lets the one that waits for the first moment have its turn, and waits for its end; the clock shows the time.
    static void runTurn();

private:
    enum class State : std::uint8_t { working, waiting, released, ended };
    struct Registry;

    static Registry& registry();
    void run();
    bool hasCome(DispatchTime time) const;

    std::function<void(DispatchThread&)> m_work;
    // Under the registry's lock.
    State m_state = State::working;
    DispatchTime m_deadline{0};
    bool m_isCancelled = false;
    std::thread m_thread; // last, as it starts with the rest in place
};

} // namespace RVCore
