#pragma once

#include <cstdint>

namespace RVCore {

// What a window has around its content. The last three are accepted and kept, and change nothing where the desktop
// draws the title bars, as all of ours do.
enum class NSWindowStyleMask : std::uint32_t {
    borderless = 0,
    titled = 1,
    closable = 2,
    miniaturizable = 4,
    resizable = 8,
    texturedBackground = 256,
    unifiedTitleAndToolbar = 4096,
    fullSizeContentView = 32768,
};
constexpr NSWindowStyleMask operator|(NSWindowStyleMask left, NSWindowStyleMask right)
{
    return static_cast<NSWindowStyleMask>(static_cast<std::uint32_t>(left) | static_cast<std::uint32_t>(right));
}
constexpr bool contains(NSWindowStyleMask mask, NSWindowStyleMask part)
{
    return (static_cast<std::uint32_t>(mask) & static_cast<std::uint32_t>(part)) == static_cast<std::uint32_t>(part);
}

// Windows are drawn into a buffer; there is no other kind.
enum class NSBackingStoreType : int { buffered = 2 };

// Where a child window stands as seen from its parent.
enum class NSWindowOrderingMode : int { below = -1, above = 1 };

// How NSWindow::setFrame changes the frame.
struct NSWindowFrameChange {
    bool display = true; // lays the content out at once, not before the next frame
    bool animate = false;
};

} // namespace RVCore
