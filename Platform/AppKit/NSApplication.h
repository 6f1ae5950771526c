#pragma once

#include <AppKit/AppKitKey.h>
#include <CoreGraphics/ControlDescription.h>
#include <Foundation/NSObject.h>

#include <optional>
#include <vector>

namespace RVCore {

// The program as the desktop sees it: its windows and its run loop.
class NSApplication : public NSObject {
    RVCORE_CLASS(NSApplication)

public:
    static NSApplication& shared();

    // Serves windows and input until `terminate`, or until the last window has been closed. Returns at once when no
    // window is open.
    void run();
    void terminate();

    // The windows that are open, in the order in which they were shown.
    const std::vector<std::shared_ptr<NSWindow>>& windows() const { return m_windows; }

    // The window that keys go to: of those that are open, the one that was shown last; null when there is none.
    NSWindow* keyWindow() const { return m_windows.empty() ? nullptr : m_windows.back().get(); }

    // Sends an event to its window, or if it has none to the key window. Events of windows that have gone are
    // dropped.
    virtual void sendEvent(NSEvent& event);
    // The same at the next turn of the run loop.
    void postEvent(const std::shared_ptr<NSEvent>& event);

    // Whether controls are light or dark; absent (the default) for what the desktop is.
    std::optional<Appearance> appearance() const { return m_appearance; }
    void setAppearance(std::optional<Appearance> appearance);
    Appearance effectiveAppearance() const;

    // Sends the action (a message that takes the sender or nothing) to the target; without a target to the first
    // object that answers it, from the key window's first responder upward, then to the application itself.
    // Returns whether anybody got it. Raises NSInvalidArgumentException when the target does not answer.
    bool sendAction(Selector action, const ObjectRef& target, const ObjectRef& sender);

    // For AppKit's own classes.
    void windowShown(const std::shared_ptr<NSWindow>& window, AppKitKey);
    void windowClosed(NSWindow& window, AppKitKey);

private:
    std::vector<std::shared_ptr<NSWindow>> m_windows;
    std::optional<Appearance> m_appearance;
    bool m_isRunning = false;
};

} // namespace RVCore
