#pragma once

#include <AppKit/Forward.h>
#include <AppKit/ViewComposer.h>
#include <Backend/ControlLook.h>

#include <QuartzCore/Compositor.h>

namespace RVCore {

// Paints what a window shows, frame after frame, and of each frame only what differs from the one before.
class WindowPainter {
public:
    // What of the window's area, content and toolbar, is not as in the frame before, in pixels.
    const DamageRegion& paint(NSWindow& window, CGFloat scale);
    const Bitmap& pixels() const { return m_compositor.pixels(); }
    const Composition& composition() const { return m_compositor.composition(); }
    // All of it on a canvas, without filters.
    static void paint(NSWindow& window, Canvas& canvas);

private:
    // What every control of a window may look different for.
    struct Look {
        Appearance appearance{};
        bool isKey = false;
        bool isActive = false;

        bool operator==(const Look&) const = default;
    };

    void followFocus(NSWindow& window);
    static void compose(NSWindow& window, ViewComposer& composer, Composition& into);

    ViewComposer m_composer;
    Compositor m_compositor = makeViewCompositor();
    Look m_look;
    std::weak_ptr<NSView> m_focused;
};

} // namespace RVCore
