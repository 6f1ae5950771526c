#include <AppKit/NSImage.h>
#include <Extensions/NSButton+RVCore.h>

namespace RVCore {

namespace {

void configureStateButton(NSButton& button, NSButtonType type, const ButtonSettings& settings)
{
    button.setTarget(settings.target);
    button.setAction(settings.action);
    button.setButtonType(type);
    button.setTitle(settings.title);
}

// An initialiser whose first argument is the title.
template <class Configure> auto titledInitializer(Configure configure)
{
    return [configure](NSButton& self, const std::string& title, const ObjectRef& target,
                       const std::optional<Selector>& action) {
        self.init();
        configure(self, {.title = title, .target = target, .action = action});
    };
}

} // namespace

void configureButton(NSButton& button, const ButtonSettings& settings)
{
    button.setTarget(settings.target);
    button.setAction(settings.action);
    button.setTitle(settings.title);
    button.setButtonType(NSButtonType::momentaryPushIn);
    button.setBordered(true);
    button.setBezelStyle(NSBezelStyle::rounded);
}

void configureCheckbox(NSButton& button, const ButtonSettings& settings)
{
    configureStateButton(button, NSButtonType::switchButton, settings);
}

void configureRadio(NSButton& button, const ButtonSettings& settings)
{
    configureStateButton(button, NSButtonType::radio, settings);
}

void configureImageButton(NSButton& button, const ImageButtonSettings& settings)
{
    button.setTarget(settings.target);
    button.setAction(settings.action);
    button.setButtonType(NSButtonType::momentaryChange);
    button.setBordered(false);
    button.setImagePosition(NSCellImagePosition::imageOnly);
    button.setImageScaling(NSImageScaling::none);
    button.setImage(settings.image);
}

bool publishButtonOperations()
{
    return addCategory<NSButton>("RVCore", [](auto& publish) {
        publish.initializer("initWithButtonTitle:target:action:", titledInitializer(&configureButton));
        publish.initializer("initWithCheckboxTitle:target:action:", titledInitializer(&configureCheckbox));
        publish.initializer("initWithRadioTitle:target:action:", titledInitializer(&configureRadio));
        publish.initializer("initWithImage:target:action:",
                            [](NSButton& self, const std::shared_ptr<NSImage>& image, const ObjectRef& target,
                               const std::optional<Selector>& action) {
                                self.init();
                                configureImageButton(self, {.image = image, .target = target, .action = action});
                            });
    });
}

} // namespace RVCore
