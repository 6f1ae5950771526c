#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <Dispatch/DispatchTime.h>

namespace RVCore {

// A window's way from one frame to another: slow at both ends. Frames on the way have whole points for edges, so that
// an edge that stays where it is does not tremble.
class WindowFrameAnimation {
public:
    // `duration` is in seconds and above 0.
    WindowFrameAnimation(const CGRect& start, const CGRect& end, double duration);

    // At the start before it, and exactly the end from the end on.
    CGRect frameAt(DispatchTime time) const;
    const CGRect& end() const { return m_end; }
    DispatchTime endTime() const { return m_startTime + m_duration; }

    // How long a window takes for the change: 0.2 seconds for every 150 points of the largest one among those of x,
    // y, width and height.
    static double durationFor(const CGRect& start, const CGRect& end);

private:
    CGRect m_start;
    CGRect m_end;
    DispatchTime m_startTime = DispatchTime::now();
    double m_duration;
};

} // namespace RVCore
