#include <Dispatch/DispatchClock.h>
#include <Dispatch/DispatchQueue.h>
#include <Dispatch/DispatchThread.h>

#include <atomic>
#include <chrono>

namespace RVCore {

namespace {

class SystemClock : public DispatchClock {
public:
    double seconds() const override { return secondsOf(std::chrono::steady_clock::now().time_since_epoch()); }
    double secondsSince1970() const override
    {
        return secondsOf(std::chrono::system_clock::now().time_since_epoch());
    }
    bool isRunning() const override { return true; }

private:
    template <class Duration> static double secondsOf(Duration duration)
    {
        return std::chrono::duration<double>(duration).count();
    }
};

constinit std::atomic<DispatchClock*> installedClock = nullptr;

} // namespace

DispatchClock& DispatchClock::shared()
{
    static SystemClock& systemClock = *new SystemClock; // for threads that outlive the statics
    DispatchClock* const clock = installedClock;
    return clock ? *clock : systemClock;
}

void DispatchClock::install(DispatchClock* clock)
{
    double difference = 0;
    DispatchThread::changeClock([&] {
        const double before = shared().seconds();
        installedClock = clock;
        return difference = shared().seconds() - before;
    });
    DispatchQueue::main().clockChanged(difference);
}

} // namespace RVCore
