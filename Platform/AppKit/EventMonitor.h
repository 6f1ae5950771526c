#pragma once

#include <AppKit/AppKitKey.h>

#include <functional>

namespace RVCore {

// Sees every event that the application is about to send, while it lives.
class EventMonitor {
public:
    explicit EventMonitor(std::function<void(NSEvent&)> handler);
    ~EventMonitor();
    EventMonitor(const EventMonitor&) = delete;
    EventMonitor& operator=(const EventMonitor&) = delete;

    // Shows the event to all of them, the newest first; a handler may end monitors and make new ones.
    static void show(NSEvent& event, AppKitKey);

private:
    std::function<void(NSEvent&)> m_handler;
};

} // namespace RVCore
