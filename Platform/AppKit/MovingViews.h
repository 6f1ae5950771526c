#pragma once

#include <AppKit/Forward.h>

namespace RVCore {

// The views of the program whose layers are on their way, so that a window in which one is seen gets frame after
// frame, and one in which nothing moves gets none. A view that comes into a window, or is shown again, while it moves
// makes the window ask for a frame anyway, and that finds it here.
class MovingViews {
public:
    // A view that is here already stays.
    static void add(NSView& view);
    static void remove(const NSView& view);

    // Before the window's frame: tells of what has come to its end, and forgets it.
    static void prepareFrame(const NSWindow& window);
    // Whether something that moves is seen in the window.
    static bool areSeenIn(const NSWindow& window);
};

} // namespace RVCore
