#pragma once

#include <AppKit/NSButton.h>

namespace RVCore {

// Buttons that are ready for use, also published by selector (category RVCore). Each runs the class's plain `init`
// and then the setters in the order given there, through overrides of a subclass:
//
//     makeButton({.title = "Save", .target = document, .action = "save:"})
//     makeCheckbox<MyButton>({.title = "Wrap lines"})

struct ButtonSettings {
    std::string title = {};
    ObjectRef target = nullptr;
    std::optional<Selector> action = std::nullopt;
};

struct ImageButtonSettings {
    std::shared_ptr<NSImage> image = nullptr; // may be absent
    ObjectRef target = nullptr;
    std::optional<Selector> action = std::nullopt;
};

// Target, action, title, type momentaryPushIn, border, bezel rounded.
void configureButton(NSButton& button, const ButtonSettings& settings);
// Target, action, type switchButton, title.
void configureCheckbox(NSButton& button, const ButtonSettings& settings);
// Target, action, type radio, title.
void configureRadio(NSButton& button, const ButtonSettings& settings);
// Target, action, type momentaryChange, no border, image only, no scaling, image.
void configureImageButton(NSButton& button, const ImageButtonSettings& settings);

// initWithButtonTitle:target:action:
template <std::derived_from<NSButton> T = NSButton> std::shared_ptr<T> makeButton(const ButtonSettings& settings)
{
    auto button = make<T>();
    configureButton(*button, settings);
    return button;
}

// initWithCheckboxTitle:target:action:
template <std::derived_from<NSButton> T = NSButton> std::shared_ptr<T> makeCheckbox(const ButtonSettings& settings)
{
    auto button = make<T>();
    configureCheckbox(*button, settings);
    return button;
}

// initWithRadioTitle:target:action:
template <std::derived_from<NSButton> T = NSButton> std::shared_ptr<T> makeRadio(const ButtonSettings& settings)
{
    auto button = make<T>();
    configureRadio(*button, settings);
    return button;
}

// initWithImage:target:action:
template <std::derived_from<NSButton> T = NSButton>
std::shared_ptr<T> makeImageButton(const ImageButtonSettings& settings)
{
    auto button = make<T>();
    configureImageButton(*button, settings);
    return button;
}

// Publishes these operations; runs once, before main.
bool publishButtonOperations();
inline const bool buttonOperationsPublished = publishButtonOperations();

} // namespace RVCore
