#pragma once

#include <AppKit/NSPopover.h>

namespace RVCore {

// Popovers in the house style, also published by selector (category RVCore).

struct PopoverSettings {
    std::shared_ptr<NSView> view; // its constraints decide the popover's size
    NSPopoverBehavior behavior = NSPopoverBehavior::semitransient;
    std::weak_ptr<NSPopoverDelegate> delegate = {};
};

// Sets behaviour and delegate, then the content: a plain view controller whose plain view holds the view, pinned to
// all four edges. Raises NSInvalidArgumentException without a view. Made by makePopover; by name:
// initWithView:behavior:delegate:.
void configurePopover(NSPopover& popover, const PopoverSettings& settings);

template <std::derived_from<NSPopover> T = NSPopover> std::shared_ptr<T> makePopover(const PopoverSettings& settings)
{
    auto popover = make<T>();
    configurePopover(*popover, settings);
    return popover;
}

// Shows the popover at the view's bounds, moved by the offset. By name: showWithRelativeToView:preferredEdge:offset:.
void show(NSPopover& popover, NSView& anchor, NSRectEdge preferredEdge, CGPoint offset = {});

// Publishes these operations; runs once, before main.
bool publishPopoverOperations();
inline const bool popoverOperationsPublished = publishPopoverOperations();

} // namespace RVCore
