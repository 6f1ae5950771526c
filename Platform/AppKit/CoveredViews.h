#pragma once

#include <AppKit/Forward.h>

#include <vector>

namespace RVCore {

// What modal views (see ViewInput::setAccessibilityModal) cover while they are visible: what is painted below them in
// their superview, and that itself.

// The subviews that none covers, in painting order: from the topmost modal one on, or all of them where there is
// none.
std::vector<NSView*> uncoveredSubviews(const NSView& view);
// The same in the order in which Tab goes through them.
std::vector<NSView*> uncoveredSubviewsInKeyOrder(const NSView& view);
// Whether a subview covers the view itself.
bool isCovered(const NSView& view);
// The modal view that covers the view or one that it is in; null for none.
NSView* coverOf(const NSView& view);

} // namespace RVCore
