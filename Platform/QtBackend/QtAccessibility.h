#pragma once

#include <Backend/Accessibility.h>

#include <QAccessible>

#include <memory>

namespace RVCore {

class QtWindowSurface;

// The bridge from a window's elements to the desktop's assistive technology.

// The window itself; Qt keeps it and ends it with the surface.
QAccessibleInterface* accessibleOf(QtWindowSurface& surface);
// Tells of a change of an element; a null one stands for the window.
void reportAccessibilityChange(QtWindowSurface& surface, const std::shared_ptr<AccessibleElement>& element,
                               AccessibleChange change);

} // namespace RVCore
