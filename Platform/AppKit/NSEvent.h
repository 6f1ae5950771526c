#pragma once

#include <AppKit/Forward.h>
#include <CoreGraphics/CGGeometry.h>
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

// The modifier keys that are down. `command` is the one for shortcuts: on a Linux desktop that is the key Ctrl, while
// Alt is `option` and the key with the desktop's sign is `control`.
enum class NSEventModifierFlags : std::uint32_t {
    none = 0,
    capsLock = 1U << 16,
    shift = 1U << 17,
    control = 1U << 18,
    option = 1U << 19,
    command = 1U << 20,
    numericPad = 1U << 21,
    function = 1U << 23,
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

// What keys that have no text give as their characters, in UTF-8.
namespace NSKey {
inline constexpr const char* enter = "\x03"; // of the number pad
inline constexpr const char* backspace = "\x7f";
inline constexpr const char* tab = "\t";
inline constexpr const char* backTab = "\x19"; // Shift-Tab
inline constexpr const char* carriageReturn = "\r";
inline constexpr const char* escape = "\x1b";
inline constexpr const char* space = " ";
inline constexpr const char* up = "\xef\x9c\x80"; // U+F700 and on
inline constexpr const char* down = "\xef\x9c\x81";
inline constexpr const char* left = "\xef\x9c\x82";
inline constexpr const char* right = "\xef\x9c\x83";
inline constexpr const char* f1 = "\xef\x9c\x84"; // U+F704; F2 to F35 follow
inline constexpr const char* insert = "\xef\x9c\xa7";
inline constexpr const char* deleteForward = "\xef\x9c\xa8";
inline constexpr const char* home = "\xef\x9c\xa9";
inline constexpr const char* end = "\xef\x9c\xab";
inline constexpr const char* pageUp = "\xef\x9c\xac";
inline constexpr const char* pageDown = "\xef\x9c\xad";
inline constexpr const char* menu = "\xef\x9c\xb5";
} // namespace NSKey

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
    std::string characters; // UTF-8; see NSKey
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
    std::shared_ptr<NSWindow> window() const { return m_content.window.lock(); } // null once it is gone
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

} // namespace RVCore
