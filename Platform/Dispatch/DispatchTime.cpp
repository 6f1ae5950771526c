#include <Dispatch/DispatchClock.h>
#include <Dispatch/DispatchTime.h>
#include <Foundation/NSException.h>

namespace RVCore {

DispatchTime DispatchTime::now()
{
    return DispatchTime(DispatchClock::shared().seconds());
}

DispatchTime DispatchTime::operator+(double seconds) const
{
    requireFinite("DispatchTime +", "seconds", seconds);
    return DispatchTime(m_seconds + seconds);
}

} // namespace RVCore
