#pragma once

#include <AppKit/NSEvent.h>
#include <Backend/InputEvent.h>

#include <memory>
#include <optional>
#include <vector>

namespace RVCore {

// Where a window's events go. It knows which view holds the pointer while a button is down, which tracking areas the
// pointer is in, and how many clicks have followed each other.
class WindowEvents {
public:
    explicit WindowEvents(NSWindow& window) : m_window(window) {}
    WindowEvents(const WindowEvents&) = delete;
    WindowEvents& operator=(const WindowEvents&) = delete;

    // Makes an event of what the desktop reports and sends it through the application.
    void handleInput(const InputEvent& input);
    // Sends an event to its view or responder.
    void dispatch(NSEvent& event);
    // Views may have come under the pointer or gone from it while it stood still.
    void contentMoved();
    // The window leaves the screen: no button is down any more, and the pointer is nowhere.
    void windowClosed();
    // The view is about to be taken out: its tracking areas, and those in it, are left first.
    void subtreeWillLeave(const NSView& subtree);

private:
    using Handler = void (NSResponder::*)(NSEvent& event);
    struct Click {
        int button = -1;
        int count = 0;
        double time = 0;
        CGPoint location;
    };
    struct Pressed {
        int button;
        std::weak_ptr<NSResponder> responder;
    };
    struct Inside {
        std::shared_ptr<NSTrackingArea> area;
        std::weak_ptr<NSView> view;
    };

    std::shared_ptr<NSEvent> makeEvent(const InputEvent& input);
    int countClick(const InputEvent& input);
    NSView* hitTest(CGPoint location) const;
    std::shared_ptr<NSResponder> responderAt(CGPoint location) const;
    bool isInToolbar(NSResponder& responder) const;
    void press(NSEvent& event, int button, Handler handler);
    void drag(NSEvent& event, int button, Handler handler);
    void release(NSEvent& event, int button, Handler handler);
    void move(NSEvent& event);
    void pressKey(NSEvent& event);
    void dropLostCaptures();
    std::vector<Inside> areasToBeIn() const;
    void updateTracking();
    void tell(const Inside& inside, NSEventType type);
    void updateCursor();
    std::vector<Inside> areasAt(CGPoint location) const;
    bool isActive(const NSTrackingArea& area, const NSView& view) const;

    NSWindow& m_window;
    std::optional<CGPoint> m_pointer;  // in window coordinates; absent while it is elsewhere
    double m_time = 0;                 // of the latest event
    std::vector<Pressed> m_pressed;    // in the order of pressing
    std::vector<Inside> m_inside;      // whose owners were told last that the pointer entered
    std::uint64_t m_trackingCount = 0; // how often it was found out which those should be
    Click m_click;
    CursorShape m_cursor = CursorShape::arrow;
};

} // namespace RVCore
