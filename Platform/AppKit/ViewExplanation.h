#pragma once

#include <AppKit/Forward.h>

#include <memory>
#include <string>
#include <vector>

namespace RVCore {

// Why the view is where it is, in words: for each edge and extent its place, what holds it there in the order in
// which it is derived, and what touches it and gave way. Places count from the superview's top left corner, downward;
// views without an identifier are numbered as in describeViewTree. The same tree gives the same text.
//
//   NSView "b" in NSView "host": (50, 0) 30 × 20
//   left edge at 50
//       chain between NSView "b" and NSView "a", 749: left = right + 8
//       …
//       gave way by 12: horizontal content hugging of NSView "a", 250: width ≤ 30
//   right edge at 80
//       …
//
// "left = right + 8" is about the views in the order in which they are named. Brings constraints up to date first,
// but not frames. By name: explainLayout.
std::string explainLayout(NSView& view);

// The views from this one downward whose place or size the constraints leave open, in tree order: members that a
// group has taken out of its layout among them. By name: ambiguousViews.
std::vector<std::shared_ptr<NSView>> ambiguousViews(NSView& root);

} // namespace RVCore
