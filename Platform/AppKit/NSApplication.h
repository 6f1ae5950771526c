#pragma once

#include <AppKit/AppKitKey.h>
#include <Foundation/NSObject.h>

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

    // For AppKit's own classes.
    void windowShown(const std::shared_ptr<NSWindow>& window, AppKitKey);
    void windowClosed(NSWindow& window, AppKitKey);

private:
    std::vector<std::shared_ptr<NSWindow>> m_windows;
    bool m_isRunning = false;
};

} // namespace RVCore
