#pragma once

#include "LayoutSimplex.h"

#include <vector>

namespace RVCore::LayoutInternal {

// The columns that have another value in some solution that costs as much on all levels above the free ones, in
// ascending order. The simplex has been run and stays as it is; after an iteration limit, some may be missing.
std::vector<Index> ambiguousColumns(const System&, Simplex&, Effort&);

} // namespace RVCore::LayoutInternal
