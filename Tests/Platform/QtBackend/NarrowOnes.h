#pragma once

namespace RVCore {

// Adds the family "Narrow Ones", whose figure one is half as wide as its other figures: none of the installed fonts
// has figures of different advances. Returns whether it is there now.
bool addNarrowOnes();

} // namespace RVCore
