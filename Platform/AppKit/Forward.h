#pragma once

namespace RVCore {

class LayoutContext;
class NSApplication;
class NSColor;
class NSFont;
class NSLayoutConstraint;
class NSResponder;
class NSTextField;
class NSView;
class NSWindow;

} // namespace RVCore
