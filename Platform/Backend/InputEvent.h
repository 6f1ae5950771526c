#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cstdint>
#include <string>

namespace RVCore {

// The modifier keys that are down, as bits. `command` is the one for shortcuts: on a Linux desktop that is the key
// Ctrl, while Alt is `option` and the key with the desktop's sign is `control`.
namespace InputModifier {
inline constexpr std::uint32_t capsLock = 1U << 16;
inline constexpr std::uint32_t shift = 1U << 17;
inline constexpr std::uint32_t control = 1U << 18;
inline constexpr std::uint32_t option = 1U << 19;
inline constexpr std::uint32_t command = 1U << 20;
inline constexpr std::uint32_t numericPad = 1U << 21; // a key of the number pad
inline constexpr std::uint32_t function = 1U << 23;   // a key without a text, such as an arrow
} // namespace InputModifier

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

enum class InputKind : std::uint8_t {
    pointerMoved,    // also with buttons down, and where the pointer comes in
    pointerLeft,     // the pointer is over another window, or over none
    buttonPressed,   //
    buttonReleased,  // told to the window where the button was pressed, wherever the pointer is
    scrolled,        //
    keyPressed,      //
    keyReleased,     //
    modifiersChanged //
};

// What a user did to a window, as the desktop reports it.
struct InputEvent {
    InputKind kind = InputKind::pointerMoved;
    // In seconds, from any start that stays the same while the program runs.
    double time = 0;
    std::uint32_t modifiers = 0; // InputModifier

    // Of pointer, button and scroll events: where in the content, in points from its top left corner.
    CGPoint location{};
    // 0 left, 1 right, 2 middle, then as the desktop counts.
    int button = 0;
    // How far the content is to follow, in points; positive y moves it down. A wheel's notch is 10 points.
    CGPoint scroll{};
    bool isPreciseScroll = false; // from a device that knows points rather than notches

    // Of key events: the text that the key gives, with modifiers and without them, and the number of the key on the
    // keyboard. Keys without a text give one of NSKey.
    std::string characters{};
    std::string charactersIgnoringModifiers{};
    std::uint16_t keyCode = 0;
    bool isRepeat = false;
};

// What the pointer looks like.
enum class CursorShape : std::uint8_t {
    arrow,
    iBeam,
    crosshair,
    pointingHand,
    openHand,
    closedHand,
    resizeLeftRight,
    resizeUpDown,
    operationNotAllowed
};

} // namespace RVCore
