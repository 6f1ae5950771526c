#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cstdint>
#include <string>

namespace RVCore {

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
    // The bits of NSEventModifierFlags.
    std::uint32_t modifiers = 0;

    // Of pointer, button and scroll events: where in the content, in points from its top left corner.
    CGPoint location;
    // 0 left, 1 right, 2 middle, then as the desktop counts.
    int button = 0;
    // How far the content is to follow, in points; positive y moves it down. A wheel's notch is 10 points.
    CGPoint scroll;
    bool isPreciseScroll = false; // from a device that knows points rather than notches

    // Of key events: the text that the key gives, with modifiers and without them, and the number of the key on the
    // keyboard. Keys without a text give one character from 0xF700 on (see NSEvent.h).
    std::string characters;
    std::string charactersIgnoringModifiers;
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
