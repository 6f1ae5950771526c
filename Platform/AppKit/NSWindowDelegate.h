#pragma once

namespace RVCore {

class NSWindow;

// What a window tells the object that looks after it. A callee may close the window or let go of it.
class NSWindowDelegate {
public:
    virtual ~NSWindowDelegate() = default;

    // Whether the window closes when the user asks for it. Default yes.
    virtual bool windowShouldClose(NSWindow&) { return true; }
    // The last word before the window leaves the screen for good.
    virtual void windowWillClose(NSWindow&) {}
    virtual void windowDidResize(NSWindow&) {}
    virtual void windowDidMove(NSWindow&) {}
    virtual void windowDidBecomeKey(NSWindow&) {}
    virtual void windowDidResignKey(NSWindow&) {}
    virtual void windowDidMiniaturize(NSWindow&) {}
    virtual void windowDidDeminiaturize(NSWindow&) {}
    // The window is on a screen with another backing scale.
    virtual void windowDidChangeBackingProperties(NSWindow&) {}
};

} // namespace RVCore
