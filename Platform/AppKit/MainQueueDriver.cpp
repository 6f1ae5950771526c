#include <AppKit/MainQueueDriver.h>
#include <Backend/Backend.h>
#include <Dispatch/DispatchClock.h>
#include <Dispatch/DispatchQueue.h>

namespace RVCore {

namespace {

void serveMainQueue();

void wakeMainThread()
{
    Backend::shared().callLater(&serveMainQueue);
}

void waitForNextDeadline()
{
    const auto deadline = DispatchQueue::main().nextDeadline();
    const double delay = deadline ? *deadline - DispatchTime::now() : 0;
    if (!deadline)
        Backend::shared().setWakeUp(0, nullptr);
    else if (delay <= 0)
        wakeMainThread();
    else if (DispatchClock::shared().isRunning())
        Backend::shared().setWakeUp(delay, &serveMainQueue);
}

void serveMainQueue()
{
    struct AtEnd { // also when a closure raises
        ~AtEnd() { waitForNextDeadline(); }
    } atEnd;
    DispatchQueue& queue = DispatchQueue::main();
    // A closure may start a run of its own, which has to serve the others.
    if (queue.dueCount() > 1)
        wakeMainThread();
    queue.runDue();
}

} // namespace

void connectMainQueue()
{
    DispatchQueue::main().setWaker(&wakeMainThread);
}

} // namespace RVCore
