#include <Dispatch/DispatchQueue.h>
#include <Dispatch/DispatchThread.h>
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
    while (true) {
        const auto turn = DispatchThread::nextTurn();
        const auto closure = queue.nextDeadline();
        const bool isTurn = turn && (!closure || *turn <= *closure);
        const auto next = isTurn ? turn : closure;
        if (!next || next->seconds() > end)
            break;
        moveTo(next->seconds());
        if (isTurn)
            DispatchThread::runTurn();
        else
            queue.runDue();
    }
    moveTo(end);
}

bool ManualDispatchClock::moveOn(double seconds)
{
    advance(seconds);
    return true;
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
