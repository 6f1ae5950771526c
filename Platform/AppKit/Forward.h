#pragma once

namespace RVCore {

class LayoutContext;
class NSAnimation;
class NSAnimationContext;
class NSApplication;
class NSBitmapImageRep;
class NSButton;
class NSColor;
class NSControl;
class NSCursor;
class NSEvent;
class NSFont;
class NSImage;
class NSImageView;
class NSLayoutConstraint;
class NSProgressIndicator;
class NSPopover;
class NSResponder;
class NSScreen;
class NSTextField;
class NSTextFieldDelegate;
class NSToolbar;
class NSToolbarItem;
class NSTrackingArea;
class NSView;
class NSViewAnimator;
class NSViewController;
class NSWindow;
class NSWindowController;
class NSWindowDelegate;

} // namespace RVCore
