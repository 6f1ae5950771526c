#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cstdint>

namespace RVCore {

// Positions on the desktop count in points from the top left corner of the first screen, y downward.

// How high a title bar is taken to be where no desktop tells, in points.
inline constexpr CGFloat usualTitleBarHeight = 22;

// The largest side that a window's content can have, and how far from the first screen's corner it can be, in points:
// what the protocols between programs and desktops count to.
inline constexpr CGFloat largestWindowSide = 32767;

// What the desktop puts around a window's content, and what it lets the user do. A window that is not titled has no
// frame at all.
struct WindowStyle {
    bool isTitled = true;
    bool isClosable = true;
    bool isMinimizable = true;
    bool isResizable = true;
    bool isOpaque = true; // otherwise what is not painted shows what is behind it, where the desktop can
    bool operator==(const WindowStyle&) const = default;
};

// Where a window is.
struct WindowPlacement {
    CGPoint origin;     // the top left corner, that of the title bar if there is one
    EdgeInsets margins; // what the desktop has put around the content
    bool operator==(const WindowPlacement&) const = default;
};

struct ScreenDescription {
    CGRect frame;
    CGRect visibleFrame; // without what the desktop keeps for panels
    CGFloat backingScale = 1;
    bool operator==(const ScreenDescription&) const = default;
};

enum class WindowOrder : std::uint8_t { front, back };

} // namespace RVCore
