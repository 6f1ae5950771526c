#include <Dispatch/DispatchClock.h>
#include <Dispatch/DispatchTime.h>
#include <Foundation/NSException.h>

#include <cmath>

namespace RVCore {

DispatchTime DispatchTime::now()
{
    return DispatchTime(DispatchClock::shared().seconds());
}

DispatchTime::DispatchTime(double seconds) : m_seconds(seconds)
{
    if (std::isnan(seconds))
        raiseInvalidArgument("DispatchTime", "seconds must be a number, got nan");
}

DispatchTime DispatchTime::operator+(double seconds) const
{
    requireFinite("DispatchTime +", "seconds", seconds);
    return DispatchTime(m_seconds + seconds);
}

} // namespace RVCore
