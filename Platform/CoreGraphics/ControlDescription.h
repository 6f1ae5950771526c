#pragma once

#include <cstdint>
#include <string>

namespace RVCore {

enum class ControlKind : std::uint8_t {
    pushButton,
    checkBox,    // the box, with the content beside it
    radioButton, // the circle, with the content beside it
    progressBar, // no content
    textField,   // the frame around the text; the ground inside is the field's own
    focusRing,   // around whatever has no focus ring of its own; no content
    toolbar,     // the ground that tool buttons stand on; no content
    toolButton   // a push button that is flat until the pointer is over it
};

enum class ControlValue : std::uint8_t { off, on, mixed };

// Whether things are dark on light or light on dark.
enum class Appearance : std::uint8_t { light, dark };

// A control with everything that decides how the desktop's style draws it; what stands inside is not part of it.
struct ControlDescription {
    ControlKind kind = ControlKind::pushButton;
    ControlValue value = ControlValue::off;
    Appearance appearance = Appearance::light;
    bool isEnabled = true;
    bool isPressed = false;
    bool isHovered = false;
    bool hasFocus = false;
    bool isDefault = false;       // what Return does
    bool isWindowActive = true;   // whether keys go to the window
    bool hasText = false;         // styles have a smallest width for buttons with text
    double progress = 0;          // of a bar, from 0 to 1; the style clips
    bool isIndeterminate = false; // a bar that shows only that something is going on; `progress` moves the sign

    bool operator==(const ControlDescription&) const = default;
};

// "push button, on, pressed, dark": what differs from the default; for dumps.
std::string describe(const ControlDescription& control);

} // namespace RVCore
