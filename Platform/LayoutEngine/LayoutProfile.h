#pragma once

#include "LayoutPieces.h"
#include "LayoutRecords.h"

#include <vector>

namespace RVCore::LayoutInternal {

// What one constraint, whose form is `scale` times that of its class, charges in terms of the class's form. `kink` is
// not set yet.
inline Piece costOf(const Constraint& constraint, double scale, Index level)
{
    const double magnitude = scale < 0.0 ? -scale : scale;
    const int sense = int(constraint.relation) * (scale < 0.0 ? -1 : 1);
    Piece piece;
    piece.at = constraint.constant / scale + 0.0;
    piece.left = sense >= 0 ? -magnitude : 0.0;
    piece.right = sense <= 0 ? magnitude : 0.0;
    piece.level = level;
    return piece;
}

// Sorts costs into a row's profile: kinks that differ by rounding only become one, and so do the costs that one
// level charges at one kink.
void makeProfile(std::vector<Piece>& costs);

} // namespace RVCore::LayoutInternal
