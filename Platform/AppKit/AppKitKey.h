#pragma once

#include <AppKit/Forward.h>
#include <Backend/Accessibility.h>

namespace RVCore {

class LayoutPass;
class TextFieldSession;
class ToolbarItemButton;
class ToolbarView;
class ViewComposer;
class ViewLayoutState;
class WindowEvents;
class WindowKeys;
class WindowPainter;

// Opens to each other what AppKit's classes share: operations that take a key are theirs alone, for only they can
// make one.
class AppKitKey {
    AppKitKey() = default;
    friend class LayoutContext;
    friend class LayoutPass;
    friend class NSLayoutConstraint;
    friend class NSApplication;
    friend class NSPopover;
    friend class NSToolbar;
    friend class NSToolbarItem;
    friend class NSView;
    friend class NSViewAnimator;
    friend class NSViewController;
    friend class NSWindow;
    friend class NSWindowController;
    friend class TextFieldSession;
    friend class ToolbarItemButton;
    friend class ToolbarView;
    friend class ViewComposer;
    friend class ViewLayoutState;
    friend class WindowEvents;
    friend class WindowKeys;
    friend class WindowPainter;
    friend std::vector<std::shared_ptr<AccessibleElement>> accessibleElementsOf(NSWindow& window);
    friend void postAccessibilityChange(NSView& view, AccessibleChange change);
};

} // namespace RVCore
