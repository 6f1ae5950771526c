#pragma once

#include <AppKit/Forward.h>

#include <string>

namespace RVCore {

// A view tree as text, a line per view and, below each view, a line per constraint that it owns. Views are numbered
// in tree order, so the text is the same in every run and fit for golden files:
//
//   #1 NSView "host" (0, 0) 400 × 100
//     | #2.left == #1.left + 8 @750 'chain'
//     #2 RVCore.RVSpacerView (8, 0) 20 × 1
std::string describeViewTree(NSView& root);

// A view by its class and identifier, or by its description when it has none.
std::string nameOfView(const NSView* view);

// One constraint in words with the names of its views' classes and identifiers.
std::string describeConstraint(const NSLayoutConstraint& constraint);

} // namespace RVCore
