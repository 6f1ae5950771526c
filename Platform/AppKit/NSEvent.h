#pragma once

#include <AppKit/Forward.h>
#include <Backend/InputEvent.h>
#include <Foundation/NSObject.h>

#include <cstdint>
#include <string>

namespace RVCore {

enum class NSEventType : std::uint8_t {
    leftMouseDown = 1,
    leftMouseUp = 2,
    rightMouseDown = 3,
    rightMouseUp = 4,
    mouseMoved = 5,
    leftMouseDragged = 6,
    rightMouseDragged = 7,
    mouseEntered = 8,
    mouseExited = 9,
    keyDown = 10,
    keyUp = 11,
    flagsChanged = 12,
    cursorUpdate = 17,
    scrollWheel = 22,
    otherMouseDown = 25,
    otherMouseUp = 26,
    otherMouseDragged = 27,
};

// The modifier keys that are down, as InputModifier explains them. `capsLock` is in the events of the Caps Lock key
// only.
enum class NSEventModifierFlags : std::uint32_t {
    none = 0,
    capsLock = InputModifier::capsLock,
    shift = InputModifier::shift,
    control = InputModifier::control,
    option = InputModifier::option,
    command = InputModifier::command,
    numericPad = InputModifier::numericPad,
    function = InputModifier::function,
};
constexpr NSEventModifierFlags operator|(NSEventModifierFlags left, NSEventModifierFlags right)
{
    return static_cast<NSEventModifierFlags>(static_cast<std::uint32_t>(left) | static_cast<std::uint32_t>(right));
}
constexpr NSEventModifierFlags operator&(NSEventModifierFlags left, NSEventModifierFlags right)
{
    return static_cast<NSEventModifierFlags>(static_cast<std::uint32_t>(left) & static_cast<std::uint32_t>(right));
}
constexpr bool contains(NSEventModifierFlags flags, NSEventModifierFlags flag)
{
    return (flags & flag) == flag;
}

// What an event says; what its type has no use for stays as it is here.
struct NSEventContent {
    NSEventType type = NSEventType::mouseMoved;
    CGPoint locationInWindow; // points from the content's bottom left corner, y upward
    NSEventModifierFlags modifierFlags = NSEventModifierFlags::none;
    double timestamp = 0; // seconds
    std::weak_ptr<NSWindow> window;
    int clickCount = 0;   // of presses and releases: 1, and more where clicks follow each other at one place
    int buttonNumber = 0; // 0 left, 1 right, 2 middle
    // How far a scroll event moves the content, in points; positive y down.
    CGPoint scrollingDelta;
    bool hasPreciseScrollingDeltas = false;
    std::string characters; // UTF-8; see NSKey in InputEvent.h
    std::string charactersIgnoringModifiers;
    std::uint16_t keyCode = 0;
    bool isARepeat = false;
    std::shared_ptr<NSTrackingArea> trackingArea; // of mouseEntered, mouseExited and cursorUpdate
};

// Something that a user did to a window, or that a program says he did: an event made in code does all that a real
// one does. It does not change.
class NSEvent : public NSObject {
    RVCORE_CLASS(NSEvent)

public:
    using NSObject::init;
    // Numbers that are not finite raise NSInvalidArgumentException.
    void init(NSEventContent content);

    NSEventType type() const { return m_content.type; }
    CGPoint locationInWindow() const { return m_content.locationInWindow; }
    NSEventModifierFlags modifierFlags() const { return m_content.modifierFlags; }
    double timestamp() const { return m_content.timestamp; }
    // Null once it is gone; whether there was one.
    std::shared_ptr<NSWindow> window() const { return m_content.window.lock(); }
    bool hasWindow() const;
    int clickCount() const { return m_content.clickCount; }
    int buttonNumber() const { return m_content.buttonNumber; }
    CGFloat scrollingDeltaX() const { return m_content.scrollingDelta.x; }
    CGFloat scrollingDeltaY() const { return m_content.scrollingDelta.y; }
    bool hasPreciseScrollingDeltas() const { return m_content.hasPreciseScrollingDeltas; }
    const std::string& characters() const { return m_content.characters; }
    const std::string& charactersIgnoringModifiers() const { return m_content.charactersIgnoringModifiers; }
    std::uint16_t keyCode() const { return m_content.keyCode; }
    bool isARepeat() const { return m_content.isARepeat; }
    const std::shared_ptr<NSTrackingArea>& trackingArea() const { return m_content.trackingArea; }

    // "<NSEvent: 0x… leftMouseDown at (3, 4) in …>"
    std::string description() const override;

private:
    NSEventContent m_content;
};

// Whether it is a key pressed with the modifier of shortcuts, or with `control`.
bool isShortcut(const NSEvent& event);

} // namespace RVCore
