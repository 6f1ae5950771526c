#pragma once

#include <AppKit/NSViewController.h>
#include <AppKit/NSWindowController.h>
#include <Extensions/NSWindow+RVCore.h>

namespace RVCore {

// Operations on every window controller, also published by selector (category RVCore).

// How far the top edge of a window that is shown above the key window lies below that one's top edge, in points.
struct NSWindowControllerConstants {
    static constexpr CGFloat windowOffset = 200.0;
};

// A controller of the class with a window of this style (absent: the default one) around the view controller. By
// name: initWithContentViewController:styleMask:.
template <std::derived_from<NSWindowController> T = NSWindowController>
std::shared_ptr<T> makeWindowController(const std::shared_ptr<NSViewController>& contentViewController,
                                        std::optional<NSWindowStyleMask> styleMask = std::nullopt)
{
    auto controller = make<T>(makeWindow(styleMask));
    controller->setContentViewController(contentViewController);
    return controller;
}
// The same of the class T in the default style. By name on the class:
// defaultWindowControllerWithContentViewController:.
template <std::derived_from<NSWindowController> T = NSWindowController>
std::shared_ptr<T> defaultWindowController(const std::shared_ptr<NSViewController>& contentViewController)
{
    return makeWindowController<T>(contentViewController);
}

struct ShowAboveOptions {
    bool stayOnTop = false; // makes the window a child window of the key window: it moves with it and stays in front
};
// Shows the controller's window, in the size that its content needs, centred over the key window and windowOffset
// below its top edge. The key window itself is shown where it is. Does nothing without a key window, and without a
// window of its own. To stay on top of one of its own child windows raises NSInvalidArgumentException, and changes
// nothing.
void showAboveKeyWindow(NSWindowController& controller, const ShowAboveOptions& options = {});

// Publishes these operations; runs once, before main.
bool publishWindowControllerOperations();
inline const bool windowControllerOperationsPublished = publishWindowControllerOperations();

} // namespace RVCore
