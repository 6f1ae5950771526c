#include "LayoutSimplex.h"

#include <functional>
#include <utility>

namespace RVCore::LayoutInternal {

// The kink at which the row by itself costs least. Its strength is the level of its weaker side there: what it
// costs to move the row the cheaper way; none when that is free.
Index Simplex::bestKink(Index row, Index& strength) const
{
    const PieceRange pieces = m_system->pieces(row);
    // Few rows have more than five pieces, so comparing slopes piece by piece is cheaper than keeping sums.
    const auto firstLevelAt = [&](Index segment, bool& isRising) {
        Index best = none;
        for (const Piece candidate : pieces) {
            if (candidate.level >= best)
                continue;
            double sum = 0.0;
            for (const Piece piece : pieces) {
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
    m_basis.rows.clear();
    m_basis.places.assign(rows, none);
    m_spot.assign(rows, none);
    while (m_basis.rows.size() < columns) {
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
        m_basis.places[row] = Index(m_basis.rows.size());
        m_spot[row] = kinks[row];
        m_basis.rows.push_back(row);
        isKnown[column] = 1;
        for (const Cell& cell : m_system->entries(column)) {
            if (--unknowns[cell.row] == 1 && strengths[cell.row] != none) {
                waiting[strengths[cell.row]].push_back(cell.row);
                level = std::min(level, strengths[cell.row]);
            }
        }
    }
}

// Pass 0. The columns that the going rows were derived for count as unknown, and so do those of new rows that nothing
// but their own lowest levels holds; all others count as known. From there it goes on as with a first basis.
void Simplex::fillVacancies()
{
    bool needsFirstBasis = false;
    for (const Index position : m_vacant) {
        if (m_isDirty || m_factor.isInBump(m_factor.step(position)))
            needsFirstBasis = true;
        else
            open(position, position); // which is the column, too
    }
    for (const Index row : m_newRows)
        openWeakColumnsOf(row);
    if (needsFirstBasis) {
        chooseFirstBasis();
        m_isDirty = true;
    } else {
        fillOpenColumns();
    }
    for (const Index column : m_work->open)
        m_work->openPosition[column] = none;
    m_work->open.clear();
    m_vacant.clear();
    m_newRows.clear();
}

void Simplex::open(Index column, Index position)
{
    if (m_work->openPosition[column] != none)
        return;
    m_work->openPosition[column] = position;
    m_work->open.push_back(column);
}

void Simplex::openWeakColumnsOf(Index row)
{
    for (const Term& term : m_system->terms(row)) {
        const Index own = m_system->ownRow(term.column);
        Index strength = none;
        if (isBasic(own) && m_spot[own] == bestKink(own, strength) && strength >= m_system->firstFreeLevel())
            open(term.column, m_basis.places[own]);
    }
}

void Simplex::fillOpenColumns()
{
    constexpr std::greater<> isWeaker; // of equally strong rows, the higher one
    const auto waitIfLast = [&](Index row) {
        const auto terms = m_system->terms(row);
        const auto isOpen = [&](const Term& term) { return m_work->openPosition[term.column] != none; };
        if (std::count_if(terms.begin(), terms.end(), isOpen) != 1)
            return;
        // A row that holds another column already is not free to hold this one.
        if (isBasic(row) &&
            !(m_system->isOwnRow(row) && m_work->openPosition[terms.front().column] == m_basis.places[row]))
            return;
        Index strength = none;
        bestKink(row, strength);
        if (strength == none || m_system->kinkCount(row) == 0)
            return;
        m_work->waiting.emplace_back(strength, row);
        std::push_heap(m_work->waiting.begin(), m_work->waiting.end(), isWeaker);
    };
    for (const Index column : m_work->open) {
        for (const Cell& cell : m_system->entries(column))
            waitIfLast(cell.row);
    }
    for (std::size_t left = m_work->open.size(); left > 0;) {
        std::pop_heap(m_work->waiting.begin(), m_work->waiting.end(), isWeaker);
        const Index row = m_work->waiting.back().second;
        m_work->waiting.pop_back();
        const auto terms = m_system->terms(row);
        const auto taken = std::find_if(terms.begin(), terms.end(),
                                        [&](const Term& term) { return m_work->openPosition[term.column] != none; });
        if (taken == terms.end())
            continue;
        const Index column = (*taken).column;
        takePlace(row, std::exchange(m_work->openPosition[column], none));
        --left;
        for (const Cell& cell : m_system->entries(column))
            waitIfLast(cell.row);
    }
    m_work->waiting.clear();
}

// The price that was asked of the old row becomes a change of slopes, which the next pass spreads over the new basis.
void Simplex::takePlace(Index row, Index position)
{
    const Index old = m_basis.rows[position];
    if (row == old)
        return;
    if (!m_isDirty) {
        for (const Index level : m_pricedLevels) {
            if (const double price = std::exchange(m_prices[level][position], 0.0); price != 0.0)
                noteSlopeChange(level, old, price);
        }
        if (m_spot[row] != none)
            noteSlopes(row, m_spot[row], -1.0);
    }
    Index strength = none;
    m_basis.places[old] = none;
    m_spot[old] = none;
    m_touchedRows.insert(old);
    m_basis.rows[position] = row;
    m_basis.places[row] = position;
    m_spot[row] = bestKink(row, strength);
    m_suspects.insert(row);
    m_touchedPositions.insert(position);
    m_affected.push_back(position);
    m_isDirty = m_isDirty || !m_factor.canReplace(position, row);
}

} // namespace RVCore::LayoutInternal
