#pragma once

#include <AppKit/Forward.h>

#include <memory>
#include <vector>

namespace RVCore {

// The view that Tab makes the first responder after `view`, in the trees under `roots`, one tree after the other: the
// next one in layout order that can be it, after the last one the first. A null `view` stands before the first. Null
// when there is none.
NSView* keyViewAfter(const std::vector<std::shared_ptr<NSView>>& roots, NSView* view);
// The one that Shift-Tab goes to.
NSView* keyViewBefore(const std::vector<std::shared_ptr<NSView>>& roots, NSView* view);

} // namespace RVCore
