#include "LayoutSimplex.h"

namespace RVCore::LayoutInternal {

// The kink at which the row by itself costs least. Its strength is the level of its weaker side there: what it
// costs to move the row the cheaper way; none when that is free.
Index Simplex::bestKink(Index row, Index& strength) const
{
    const std::span<const Piece> pieces = m_system->pieces(row);
    // Few rows have more than five pieces, so comparing slopes piece by piece is cheaper than keeping sums.
    const auto firstLevelAt = [&](Index segment, bool& isRising) {
        Index best = none;
        for (const Piece& candidate : pieces) {
            if (candidate.level >= best)
                continue;
            double sum = 0.0;
            for (const Piece& piece : pieces) {
                if (piece.level == candidate.level)
                    sum += piece.kink < segment ? piece.right : piece.left;
            }
            if (sum > priceTolerance(candidate.level) || sum < -priceTolerance(candidate.level)) {
                best = candidate.level;
                isRising = sum > 0.0;
            }
        }
        return best;
    };
    const Index kinks = m_system->kinkCount(row);
    strength = none;
    Index before = none;
    bool isRising = false;
    before = firstLevelAt(0, isRising);
    for (Index kink = 0; kink < kinks; ++kink) {
        const Index after = firstLevelAt(kink + 1, isRising);
        if (after == none || isRising || kink + 1 == kinks) {
            strength = before == none || after == none ? none : std::max(before, after);
            return kink;
        }
        before = after;
    }
    return 0;
}

// Grows the set of known columns outward from the constants, always by the strongest row that has one unknown
// column left; a column's own row at the lowest level is the last resort. Linear in the number of terms.
void Simplex::chooseFirstBasis()
{
    const Index columns = m_system->columnCount();
    const Index rows = m_system->rowCount();
    std::vector<std::vector<Index>> waiting(m_system->levelCount());
    std::vector<std::size_t> next(m_system->levelCount(), 0);
    std::vector<Index> unknowns(rows), strengths(rows), kinks(rows);
    Index level = 0;
    for (Index row = 0; row < rows; ++row) {
        unknowns[row] = Index(m_system->terms(row).size());
        kinks[row] = bestKink(row, strengths[row]);
        if (unknowns[row] == 1 && strengths[row] != none)
            waiting[strengths[row]].push_back(row);
    }
    std::vector<std::uint8_t> isKnown(columns, 0);
    m_basis.clear();
    m_place.assign(rows, none);
    m_spot.assign(rows, none);
    while (m_basis.size() < columns) {
        while (next[level] == waiting[level].size())
            ++level;
        const Index row = waiting[level][next[level]++];
        if (unknowns[row] != 1)
            continue;
        Index column = none;
        for (const Term& term : m_system->terms(row)) {
            if (!isKnown[term.column])
                column = term.column;
        }
        m_place[row] = Index(m_basis.size());
        m_spot[row] = kinks[row];
        m_basis.push_back(row);
        isKnown[column] = 1;
        for (const Term& entry : m_system->entries(column)) {
            if (--unknowns[entry.column] == 1 && strengths[entry.column] != none) {
                waiting[strengths[entry.column]].push_back(entry.column);
                level = std::min(level, strengths[entry.column]);
            }
        }
    }
}

} // namespace RVCore::LayoutInternal
