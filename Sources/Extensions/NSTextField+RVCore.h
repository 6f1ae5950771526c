#pragma once

#include <AppKit/NSTextField.h>

namespace RVCore {

// Text fields in the house style, also published by selector (category RVCore). Each is made with its class's plain
// initialiser; then the settings are made, in the order in which they stand here. Font, alignment, line breaks and
// `drawsBackground` stay as they are by default.

// The text (or none: an empty one), no border, no bezel, neither editable nor selectable, on clear ground. Made by
// makeLabel; by name: initWithLabelString:.
void configureLabel(NSTextField& field, const std::optional<std::string>& text);

struct TextFieldSettings {
    std::optional<std::string> string = std::nullopt; // absent: an empty one
    std::optional<std::string> placeholder = std::nullopt;
};

// The text, the placeholder, border and bezel, editable and selectable, on white ground. Made by makeTextField; by
// name: initWithString:placeholder:.
void configureTextField(NSTextField& field, const TextFieldSettings& settings);

template <std::derived_from<NSTextField> T = NSTextField>
std::shared_ptr<T> makeLabel(const std::optional<std::string>& text)
{
    auto label = make<T>();
    configureLabel(*label, text);
    return label;
}

template <std::derived_from<NSTextField> T = NSTextField>
std::shared_ptr<T> makeTextField(const TextFieldSettings& settings = {})
{
    auto field = make<T>();
    configureTextField(*field, settings);
    return field;
}

// Publishes these operations; runs once, before main.
bool publishTextFieldOperations();
inline const bool textFieldOperationsPublished = publishTextFieldOperations();

} // namespace RVCore
