#include "LayoutProfile.h"

#include <cmath>

namespace RVCore::LayoutInternal {

namespace {

// Nearly all rows have five pieces at most, for which sorting by insertion is the quickest. Both ways are stable.
template <typename Less> void sortPieces(std::vector<Piece>& pieces, Less less)
{
    if (pieces.size() > 16) {
        std::stable_sort(pieces.begin(), pieces.end(), less);
        return;
    }
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        const Piece piece = pieces[i];
        std::size_t place = i;
        for (; place > 0 && less(piece, pieces[place - 1]); --place)
            pieces[place] = pieces[place - 1];
        pieces[place] = piece;
    }
}

} // namespace

void makeProfile(std::vector<Piece>& costs)
{
    constexpr double widthOfKink = 1e-12; // relative; far above rounding, far below what a caller could mean
    if (costs.empty())
        return;
    sortPieces(costs, [](const Piece& a, const Piece& b) { return a.at < b.at; });
    Index kink = 0;
    double position = costs.front().at;
    for (Piece& piece : costs) {
        if (piece.at - position > widthOfKink * std::max(1.0, std::abs(position))) {
            ++kink;
            position = piece.at;
        }
        piece.at = position;
        piece.kink = kink;
    }
    sortPieces(costs,
               [](const Piece& a, const Piece& b) { return a.kink != b.kink ? a.kink < b.kink : a.level < b.level; });
    std::size_t kept = 0;
    for (std::size_t i = 1; i < costs.size(); ++i) {
        if (costs[i].kink == costs[kept].kink && costs[i].level == costs[kept].level) {
            costs[kept].left += costs[i].left;
            costs[kept].right += costs[i].right;
        } else {
            costs[++kept] = costs[i];
        }
    }
    costs.resize(kept + 1);
}

} // namespace RVCore::LayoutInternal
