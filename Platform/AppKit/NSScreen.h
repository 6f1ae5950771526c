#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <Foundation/NSObject.h>

#include <vector>

namespace RVCore {

struct ScreenDescription;

// One of the desktop's screens as it was when it was asked for. Screen coordinates have their origin at the bottom
// left corner of the main screen, y upward, in points.
class NSScreen : public NSObject {
    RVCORE_CLASS(NSScreen)

public:
    // The main screen first; there is always one.
    static std::vector<std::shared_ptr<NSScreen>> screens();
    static std::shared_ptr<NSScreen> mainScreen();

    using NSObject::init;
    void init(const ScreenDescription& description, CGFloat mainScreenHeight);

    const CGRect& frame() const { return m_frame; }
    // Without what the desktop keeps for its panels.
    const CGRect& visibleFrame() const { return m_visibleFrame; }
    // Device pixels per point.
    CGFloat backingScaleFactor() const { return m_backingScaleFactor; }

private:
    CGRect m_frame;
    CGRect m_visibleFrame;
    CGFloat m_backingScaleFactor = 1;
};

} // namespace RVCore
