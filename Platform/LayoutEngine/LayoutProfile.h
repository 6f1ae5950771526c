#pragma once

#include "LayoutModel.h"

#include <vector>

namespace RVCore::LayoutInternal {

// What one constraint charges, in terms of its class's form. `kink` is not set yet.
inline Piece costOf(const Constraint& constraint, Index level)
{
    const double magnitude = constraint.scale < 0.0 ? -constraint.scale : constraint.scale;
    const int sense = int(constraint.relation) * (constraint.scale < 0.0 ? -1 : 1);
    Piece piece;
    piece.at = constraint.constant / constraint.scale + 0.0;
    piece.left = sense >= 0 ? -magnitude : 0.0;
    piece.right = sense <= 0 ? magnitude : 0.0;
    piece.level = level;
    return piece;
}

// Sorts costs into a row's profile: kinks that differ by rounding only become one, and so do the costs that one
// level charges at one kink.
void makeProfile(std::vector<Piece>& costs);

} // namespace RVCore::LayoutInternal
