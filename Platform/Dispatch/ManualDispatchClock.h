#pragma once

#include <Dispatch/DispatchClock.h>

#include <atomic>

namespace RVCore {

// A clock that stands still until it is moved, for tests. It is the program's clock as long as it lives:
//
//     ManualDispatchClock clock;
//     DispatchQueue::main().asyncAfter(DispatchTime::now() + 0.5, closure);
//     clock.advance(0.5); // runs the closure
class ManualDispatchClock : public DispatchClock {
public:
    ManualDispatchClock();
    ~ManualDispatchClock() override;

    double seconds() const override { return m_seconds; }
    double secondsSince1970() const override { return m_secondsSince1970; }
    bool isRunning() const override { return false; }
    bool moveOn(double seconds) override;

    // Moves both times on by this many seconds and on the way runs what the main queue holds, each closure when its
    // time has come, those that it adds included, and lets DispatchThreads have their turns, which at the same moment
    // come first. On the main thread. An exception that leaves a closure passes through and leaves the clock at that
    // closure's time. A number that is negative or not finite raises NSInvalidArgumentException.
    void advance(double seconds);
    // Sets the date alone; nothing else moves. A number that is not finite raises NSInvalidArgumentException.
    void setSecondsSince1970(double seconds);

private:
    void moveTo(double seconds);

    std::atomic<double> m_seconds = 0;
    std::atomic<double> m_secondsSince1970 = 0;
};

} // namespace RVCore
