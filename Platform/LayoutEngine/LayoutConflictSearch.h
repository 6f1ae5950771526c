#pragma once

#include "LayoutModel.h"
#include "LayoutSimplex.h"

#include <vector>

namespace RVCore::LayoutInternal {

// Finds contradictions among required constraints, given in order of installation.
//
// Each constraint becomes a level of its own, the oldest the highest. The first level whose violation cannot be
// brought to zero belongs to a constraint that contradicts older ones, and the rows with a price at that level are
// those it contradicts: rows of a basis are independent, so no smaller set does. (Where kinks coincide, a row outside
// the basis may be one of them; then members are dropped one by one as long as the contradiction stays.) The
// constraint is taken out, and the search goes on until the rest agrees. Each set ends with the constraint to leave
// out.
std::vector<std::vector<Index>> findConflicts(const Model&, const std::vector<Index>& constraints, Effort&);

} // namespace RVCore::LayoutInternal
