#pragma once

#include <AppKit/AppKitKey.h>
#include <AppKit/NSResponder.h>
#include <Backend/WindowPlacement.h>
#include <CoreGraphics/ControlDescription.h>

#include <optional>
#include <vector>

namespace RVCore {

// The program as the desktop sees it: its windows and its run loop. From the first window on it serves the main
// queue, too. The last one on every responder chain that starts in a window.
class NSApplication : public NSResponder {
    RVCORE_CLASS(NSApplication)

public:
    ~NSApplication() override;
    static NSApplication& shared();
    // Whether the program is past the end of that one, where static objects that are older are still to end.
    static bool hasEnded();

    // Serves windows and input until `terminate`, or until the last window has been closed. Returns at once when no
    // window is open.
    void run();
    void terminate();

    // The windows that are open, in the order in which they were shown.
    const std::vector<std::shared_ptr<NSWindow>>& windows() const { return m_windows; }

    // Those of them that are visible, the one in front first: as the program and the user last turned to them.
    std::vector<std::shared_ptr<NSWindow>> orderedWindows() const;
    // The window that keys go to when the program is active; null when no visible window can be that. When it leaves
    // the screen, the next one from the front that can takes over.
    NSWindow* keyWindow() const { return m_keyWindow.lock().get(); }
    // Whether the desktop sends keys to one of the windows.
    bool isActive() const { return !m_activeWindow.expired(); }

    // Sends an event to its window, or if it has none to the key window. Events of windows that have gone are
    // dropped.
    virtual void sendEvent(NSEvent& event);
    // The same at the next turn of the run loop. As with the desktop's events, an NSException that leaves a handler
    // is printed on standard error, and the program goes on.
    void postEvent(const std::shared_ptr<NSEvent>& event);

    // Whether controls are light or dark; absent (the default) for what the desktop is.
    std::optional<Appearance> appearance() const { return m_appearance; }
    void setAppearance(std::optional<Appearance> appearance);
    Appearance effectiveAppearance() const;

    // Whether things move less, for people whom movement makes ill: what travels, grows or turns through an animator
    // is there at once, window frames too, while fades stay and completions keep their time. Absent (the default) for
    // what the desktop says, where it says so.
    bool reducesMotion() const;
    void setReducesMotion(std::optional<bool> reduces) { m_reducesMotion = reduces; }

    // Sends the action (a message that takes the sender or nothing) to the target; without a target to the first
    // object that answers it, from the key window's first responder upward, then to the application itself.
    // Returns whether anybody got it. Raises NSInvalidArgumentException when the target does not answer.
    bool sendAction(Selector action, const ObjectRef& target, const ObjectRef& sender);

    // For AppKit's own classes.
    void windowShown(const std::shared_ptr<NSWindow>& window, AppKitKey);
    void windowClosed(NSWindow& window, AppKitKey);
    void windowOrdered(NSWindow& window, WindowOrder order, AppKitKey);
    void windowLeftScreen(NSWindow& window, AppKitKey);
    void windowActivated(NSWindow& window, bool isActive, AppKitKey);
    void setKeyWindow(NSWindow* window, AppKitKey);

private:
    std::vector<std::shared_ptr<NSWindow>> m_windows;
    std::optional<Appearance> m_appearance;
    std::optional<bool> m_reducesMotion;
    std::vector<NSWindow*> m_orderedWindows; // visible, so open; the one in front first
    std::weak_ptr<NSWindow> m_keyWindow;
    std::weak_ptr<NSWindow> m_activeWindow; // that the desktop sends keys to
    bool m_isRunning = false;
};

} // namespace RVCore
