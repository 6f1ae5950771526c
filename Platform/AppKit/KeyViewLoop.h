#pragma once

#include <AppKit/Forward.h>

namespace RVCore {

// The view that Tab makes the first responder after `view`, in the tree under `root`: the next one in layout order
// that can be it, after the last one the first. A null `view` stands before the first. Null when there is none.
NSView* keyViewAfter(NSView& root, NSView* view);
// The one that Shift-Tab goes to.
NSView* keyViewBefore(NSView& root, NSView* view);

} // namespace RVCore
