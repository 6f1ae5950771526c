#include <AppKit/WindowFrameAnimation.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

WindowFrameAnimation::WindowFrameAnimation(const CGRect& start, const CGRect& end, double duration)
    : m_start(start), m_end(end), m_duration(duration)
{
}

CGRect WindowFrameAnimation::frameAt(DispatchTime time) const
{
    if (time >= endTime())
        return m_end;
    const double elapsed = std::clamp((time - m_startTime) / m_duration, 0.0, 1.0);
    const double progress = elapsed * elapsed * (3 - 2 * elapsed);
    // An edge that does not move stays, also where it is no whole number.
    const auto between = [&](CGFloat from, CGFloat to) {
        return from == to ? from : std::round(from + (to - from) * progress);
    };
    const CGFloat left = between(m_start.minX(), m_end.minX());
    const CGFloat top = between(m_start.maxY(), m_end.maxY());
    const CGFloat width = between(m_start.size.width, m_end.size.width);
    const CGFloat height = between(m_start.size.height, m_end.size.height);
    return {left, top - height, width, height};
}

double WindowFrameAnimation::durationFor(const CGRect& start, const CGRect& end)
{
    const CGFloat largest =
        std::max({std::abs(end.minX() - start.minX()), std::abs(end.minY() - start.minY()),
                  std::abs(end.size.width - start.size.width), std::abs(end.size.height - start.size.height)});
    return 0.2 * largest / 150;
}

} // namespace RVCore
