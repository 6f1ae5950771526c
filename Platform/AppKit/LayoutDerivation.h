#pragma once

#include <AppKit/LayoutRows.h>

namespace RVCore {

// Which of the rows, all of which hold with equality, settle a sum of variables: a right edge, say, is a position
// plus a width, and what only decides how far the view reaches to the left has no part in it. The result says for
// every row whether it has a part. Rows that say the same as one that has a part have one, too. Where the rows depend
// on each other in a circle, all have.
std::vector<bool> rowsThatSettle(const std::vector<LayoutVariable>& sum, const std::vector<LayoutRow>& rows);

} // namespace RVCore
