#include <AppKit/NSApplication.h>
#include <Extensions/NSWindowController+RVCore.h>
#include <Foundation/Message.h>

namespace RVCore {

namespace {

// Centred over the key window, its top edge below that one's.
CGPoint originAbove(const CGRect& keyFrame, CGSize size)
{
    return {keyFrame.minX() + keyFrame.size.width * 0.5 - size.width * 0.5,
            keyFrame.minY() + keyFrame.size.height - size.height - NSWindowControllerConstants::windowOffset};
}

} // namespace

void showAboveKeyWindow(NSWindowController& controller, const ShowAboveOptions& options)
{
    NSWindow* const key = NSApplication::shared().keyWindow();
    if (!key)
        return;
    const auto keyWindow = shared(*key);
    const auto window = send(controller, "window").as<std::shared_ptr<NSWindow>>();
    if (!window)
        return;
    if (!keyWindow->isEqual(*window)) {
        if (options.stayOnTop)
            send(keyWindow, "addChildWindow:ordered:", window, NSWindowOrderingMode::above);
        send(window, "layoutIfNeeded");
        send(window, "setFrameOrigin:", originAbove(keyWindow->frame(), window->frame().size));
    }
    send(controller, "showWindow:", nullptr);
}

bool publishWindowControllerOperations()
{
    return addCategory<NSWindowController>("RVCore", [](auto& publish) {
        publish.classMethod(
            "defaultWindowControllerWithContentViewController:",
            [](const Class& receiver, const std::shared_ptr<NSViewController>& contentViewController) {
                const auto controller = std::dynamic_pointer_cast<NSWindowController>(receiver.alloc());
                return send(controller, "initWithContentViewController:styleMask:", contentViewController, nullptr)
                    .template as<std::shared_ptr<NSWindowController>>();
            });
        publish.initializer("initWithContentViewController:styleMask:",
                            [](NSWindowController& self,
                               const std::shared_ptr<NSViewController>& contentViewController,
                               std::optional<NSWindowStyleMask> styleMask) {
                                self.init(makeWindow(styleMask));
                                self.setContentViewController(contentViewController);
                            });
        publish.method("showAboveKeyWindowWithStayOnTop:", [](NSWindowController& self, bool stayOnTop) {
            showAboveKeyWindow(self, {.stayOnTop = stayOnTop});
        });
    });
}

} // namespace RVCore
