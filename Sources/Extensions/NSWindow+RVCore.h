#pragma once

#include <AppKit/NSWindow.h>

#include <functional>
#include <optional>

namespace RVCore {

// Operations on every window, also published by selector (category RVCore).

// The style of the framework's windows: titled, closable, miniaturizable, with a textured background and the title
// united with the toolbar, in total 4359. Not resizable. By name on the class: a subclass that publishes a class
// method `defaultStyleMask` of its own supplies another one to what is made below.
NSWindowStyleMask defaultStyleMask();
// What the class answers `defaultStyleMask` with.
NSWindowStyleMask defaultStyleMaskOf(const Class& windowClass);

// An empty window of the class that takes the size its content needs. Without a style mask it has the class's
// default one; unknown bits raise NSInvalidArgumentException. By name: initWithStyleMask:.
template <std::derived_from<NSWindow> T = NSWindow>
std::shared_ptr<T> makeWindow(std::optional<NSWindowStyleMask> styleMask = std::nullopt)
{
    return make<T>(CGRect(), styleMask ? *styleMask : defaultStyleMaskOf(T::staticClass()),
                   NSBackingStoreType::buffered, false);
}
// A plain window in the same way, in T's default style. By name on the class: newDefaultWindowWithStyleMask:.
template <std::derived_from<NSWindow> T = NSWindow>
std::shared_ptr<NSWindow> newDefaultWindow(std::optional<NSWindowStyleMask> styleMask = std::nullopt)
{
    return makeWindow(styleMask ? *styleMask : defaultStyleMaskOf(T::staticClass()));
}

// The frame that the window has after growing or shrinking to this size to the right and downward: its left and top
// edges stay.
CGRect frameForSize(const NSWindow& window, CGSize size);

struct ResizeOptions {
    bool animated = true; // without effect: the resize is always animated
    std::function<void()> onDone = {};
};
// Resizes the window to this content size by its published `frameForSize:`, animated; its title bar and toolbar keep
// their height, the width is taken as it stands. `onDone` runs on the main queue when the time that the window gives
// for the change is over, whether or not it has arrived by then.
void resizeToNewContentSize(NSWindow& window, CGSize size, const ResizeOptions& options = {});

// Publishes these operations; runs once, before main.
bool publishWindowOperations();
inline const bool windowOperationsPublished = publishWindowOperations();

} // namespace RVCore
