#pragma once

namespace RVCore {

// What the program takes for the time. Everything that waits, fades or moves asks this clock, so a test that replaces
// it has time in its hand. Reading is safe from any thread.
class DispatchClock {
public:
    DispatchClock() = default;
    virtual ~DispatchClock() = default;
    DispatchClock(const DispatchClock&) = delete;
    DispatchClock& operator=(const DispatchClock&) = delete;

    // Seconds since a moment that stays the same as long as the clock lives; never goes back.
    virtual double seconds() const = 0;
    // The present date: seconds since 1970-01-01 00:00 UTC.
    virtual double secondsSince1970() const = 0;
    // Whether time goes on by itself. Where it does not, nobody has to be woken at some time.
    virtual bool isRunning() const = 0;
    // For who has to wait on the main thread: a clock that does not go on by itself is moved on by this many seconds,
    // with everything that is due on the way. Returns whether it was.
    virtual bool moveOn(double) { return false; }

    // The program's clock: the system's, unless another one is installed.
    static DispatchClock& shared();
    // Makes this the program's clock, or with null the system's again. It does not take the clock over. What waits on
    // the main queue or on a DispatchThread keeps its distance to the present. On the main thread, while no other one
    // asks for the time; it waits for the turns of DispatchThreads.
    static void install(DispatchClock* clock);
};

} // namespace RVCore
