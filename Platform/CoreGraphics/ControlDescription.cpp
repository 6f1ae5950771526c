#include <CoreGraphics/ControlDescription.h>
#include <Foundation/NSException.h>

namespace RVCore {

namespace {

std::string nameOf(ControlKind kind)
{
    switch (kind) {
    case ControlKind::pushButton:
        return "push button";
    case ControlKind::checkBox:
        return "check box";
    case ControlKind::radioButton:
        return "radio button";
    case ControlKind::progressBar:
        return "progress bar";
    case ControlKind::textField:
        return "text field";
    case ControlKind::focusRing:
        return "focus ring";
    case ControlKind::toolbar:
        return "toolbar";
    case ControlKind::toolButton:
        return "tool button";
    }
    return "";
}

std::string textOf(ControlValue value)
{
    switch (value) {
    case ControlValue::off:
        return "";
    case ControlValue::on:
        return ", on";
    case ControlValue::mixed:
        return ", mixed";
    }
    return "";
}

} // namespace

std::string describe(const ControlDescription& control)
{
    std::string text = nameOf(control.kind) + textOf(control.value);
    const auto add = [&](bool applies, const char* word) {
        if (applies)
            text.append(", ").append(word);
    };
    if (control.kind == ControlKind::progressBar)
        text += (control.isIndeterminate ? ", indeterminate at " : " ") + numberText(control.progress);
    add(control.isPressed, "pressed");
    add(control.isHovered, "hovered");
    add(control.hasFocus && control.kind != ControlKind::focusRing, "focused"); // goes without saying
    add(control.isDefault, "default");
    add(!control.isEnabled, "disabled");
    add(!control.isWindowActive, "in the background");
    add(control.appearance == Appearance::dark, "dark");
    return text;
}

} // namespace RVCore
