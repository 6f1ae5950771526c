#pragma once

#include <AppKit/Forward.h>
#include <Backend/Accessibility.h>

#include <memory>
#include <string>
#include <vector>

namespace RVCore {

// Tells assistive technology that something of a view has changed. Views tell of a change of focus and of their own
// label themselves; a control tells of its value and state.
void postAccessibilityChange(NSView& view, AccessibleChange change);

// What a view is called: its label, or its value if it is a text, or the text of the label before it. That is the one
// that Tab would pass on its way to the view in their superview, or where the view comes first there, in the views
// around it.
std::string accessibilityName(const NSView& view);

// Those of the subviews, or of what is in them, that assistive technology can reach: of visible views, from the last
// modal one on where there is one.
std::vector<std::shared_ptr<AccessibleElement>> accessibleElementsIn(NSView& view);

// What is directly in the window: of its content, brought up to date, and then the toolbar.
std::vector<std::shared_ptr<AccessibleElement>> accessibleElementsOf(NSWindow& window);

// A line for each element in the window, indented, in stable form: role, 'name', "value", states.
std::string accessibilityTree(NSWindow& window);

} // namespace RVCore
