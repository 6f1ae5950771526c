#pragma once

#include <LayoutEngine/LayoutEngine.h>

#include <string>

namespace RVCore {

class NSView;

// One contradiction in the tree of `root`, over several lines: every constraint of the set with its role, what it
// says and the view that owns it; then which of them is left out, and why.
std::string describeConflict(const LayoutConflict& conflict, const NSView& root, const LayoutEngine& engine);

} // namespace RVCore
