#include <AppKit/NSColor.h>
#include <Extensions/NSTextField+RVCore.h>

namespace RVCore {

void configureLabel(NSTextField& field, const std::optional<std::string>& text)
{
    field.setStringValue(text.value_or(""));
    field.setBordered(false);
    field.setBezeled(false);
    field.setEditable(false);
    field.setSelectable(false);
    field.setBackgroundColor(makeColor(0, 0, 0, 0));
}

void configureTextField(NSTextField& field, const TextFieldSettings& settings)
{
    field.setStringValue(settings.string.value_or(""));
    field.setPlaceholderString(settings.placeholder);
    field.setBordered(true);
    field.setBezeled(true);
    field.setEditable(true);
    field.setSelectable(true);
    field.setBackgroundColor(makeColor(1, 1, 1));
}

bool publishTextFieldOperations()
{
    return addCategory<NSTextField>("RVCore", [](auto& publish) {
        publish.initializer("initWithLabelString:", [](NSTextField& self, const std::optional<std::string>& text) {
            self.init();
            configureLabel(self, text);
        });
        publish.initializer("initWithString:placeholder:",
                            [](NSTextField& self, const std::optional<std::string>& text,
                               const std::optional<std::string>& placeholder) {
                                self.init();
                                configureTextField(self, {.string = text, .placeholder = placeholder});
                            });
    });
}

} // namespace RVCore
