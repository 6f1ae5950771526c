#include <Dispatch/DispatchQueue.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Foundation/NSException.h>

namespace RVCore {

ManualDispatchClock::ManualDispatchClock()
{
    install(this);
}

ManualDispatchClock::~ManualDispatchClock()
{
    if (&shared() == this)
        install(nullptr);
}

void ManualDispatchClock::advance(double seconds)
{
    requireFinite("ManualDispatchClock.advance", "seconds", seconds);
    if (seconds < 0)
        raiseInvalidArgument("ManualDispatchClock.advance", "time does not go back, got " + numberText(seconds));
    const double end = m_seconds + seconds;
    DispatchQueue& queue = DispatchQueue::main();
    for (auto next = queue.nextDeadline(); next && next->seconds() <= end; next = queue.nextDeadline()) {
        moveTo(next->seconds());
        queue.runDue();
    }
    moveTo(end);
}

// What is overdue has its time behind the present.
void ManualDispatchClock::moveTo(double seconds)
{
    if (seconds <= m_seconds)
        return;
    m_secondsSince1970 = m_secondsSince1970 + (seconds - m_seconds);
    m_seconds = seconds;
}

void ManualDispatchClock::setSecondsSince1970(double seconds)
{
    requireFinite("ManualDispatchClock.setSecondsSince1970", "seconds", seconds);
    m_secondsSince1970 = seconds;
}

} // namespace RVCore
