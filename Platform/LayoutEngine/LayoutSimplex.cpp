#include "LayoutSimplex.h"

#include <cmath>

namespace RVCore::LayoutInternal {

void SimplexWork::fit(const System& system)
{
    const Index columns = system.columnCount();
    const Index rows = system.rowCount();
    const Index levels = system.levelCount();
    if (levels > m_levels) {
        m_levels = levels;
        for (SparseVector* vector : {&upSums, &downSums})
            vector->grow(levels);
    }
    if (columns > m_columns) {
        m_columns = columns;
        for (SparseVector* vector : {&byPosition, &byColumn, &direction, &alpha})
            vector->grow(columns);
        banned.grow(columns);
        candidateOf.resize(columns, none);
        openPosition.resize(columns, none);
    }
    if (rows > m_rows) {
        m_rows = rows;
        rates.grow(rows);
    }
}

void Simplex::releaseBuffers()
{
    for (IndexSet* set : {&m_freePositions, &m_touchedPositions, &m_moved, &m_touchedRows, &m_suspects})
        set->releaseIndices();
    releaseIfEmpty(m_affected);
    std::vector<Index>().swap(m_changed);
    for (std::vector<Term>& changes : m_slopeChanges)
        releaseIfEmpty(changes);
}

void Simplex::start(System& system)
{
    m_system = &system;
    const Index columns = system.columnCount();
    const Index rows = system.rowCount();
    const Index levels = system.levelCount();
    m_slopeScale.assign(levels, 0.0);
    for (Index row = 0; row < rows; ++row) {
        for (const Piece piece : system.pieces(row))
            m_slopeScale[piece.level] = std::max({m_slopeScale[piece.level], piece.right, -piece.left});
    }
    m_prices.assign(levels, {});
    m_pricedLevels.clear();
    m_slopeChanges.assign(levels, {});
    m_changedLevels.clear();
    m_work->fit(system);
    for (IndexSet* set : {&m_freePositions, &m_touchedPositions, &m_moved})
        set->resize(columns);
    for (Index column = 0; column < columns; ++column)
        m_moved.insert(column);
    m_vacant.clear();
    m_newRows.clear();
    m_kept.clear();
    m_touchedRows.resize(rows);
    m_suspects.resize(rows);
    m_values.assign(columns, 0.0);
    m_affected.clear();
    m_scale = 1.0;
    m_scaleColumn = none;
    m_priceScale = m_slopeScale;
    chooseFirstBasis();
    m_isDirty = true;
}

void Simplex::moveTo(System& system)
{
    m_system = &system;
    m_isDirty = true;
}

void Simplex::setPieces(Index row, std::span<const Piece> pieces)
{
    Index strength = none;
    const bool wasAtBest = isBasic(row) && m_spot[row] == bestKink(row, strength);
    if (!m_isDirty && !isBasic(row) && m_spot[row] != none)
        noteSlopes(row, m_spot[row], -1.0);
    keepTarget(row, pieces);
    m_system->setPieces(row, pieces);
    for (const Piece& piece : pieces)
        m_slopeScale[piece.level] = std::max({m_slopeScale[piece.level], piece.right, -piece.left});
    m_suspects.insert(row);
    if (!isBasic(row)) {
        m_spot[row] = none;
        m_touchedRows.insert(row);
        return;
    }
    const Index position = positionOf(row);
    m_touchedPositions.insert(position);
    m_affected.push_back(position);
    if (wasAtBest || m_spot[row] >= m_system->kinkCount(row))
        m_spot[row] = bestKink(row, strength);
}

void Simplex::growRows()
{
    const Index rows = m_system->rowCount();
    m_basis.places.resize(rows, none);
    m_spot.resize(rows, none);
    m_touchedRows.grow(rows);
    m_suspects.grow(rows);
    m_work->fit(*m_system);
}

// Until something better turns up, a new column is held by its own row.
void Simplex::columnAdded(Index column)
{
    growRows();
    const Index row = m_system->ownRow(column);
    Index strength = none;
    m_basis.places[row] = column;
    m_spot[row] = bestKink(row, strength);
    m_basis.rows.push_back(row);
    m_values.push_back(0.0);
    for (IndexSet* set : {&m_freePositions, &m_touchedPositions, &m_moved})
        set->grow(m_values.size());
    m_moved.insert(column);
    m_isDirty = true;
}

void Simplex::rowAdded(Index row)
{
    growRows();
    m_spot[row] = none;
    m_kept.erase(row);
    m_touchedRows.insert(row);
    m_newRows.push_back(row);
    for (const Piece piece : m_system->pieces(row))
        m_slopeScale[piece.level] = std::max({m_slopeScale[piece.level], piece.right, -piece.left});
}

void Simplex::rowWillBeRemoved(Index row)
{
    if (isBasic(row))
        m_vacant.push_back(positionOf(row));
    else if (!m_isDirty && m_spot[row] != none)
        noteSlopes(row, m_spot[row], -1.0);
    keepTarget(row, {});
    m_system->setPieces(row, {});
    if (!isBasic(row))
        m_spot[row] = 0;
}

double Simplex::at(Index position) const
{
    const Index row = m_basis.rows[position];
    if (const PieceRange pieces = m_system->pieces(row); pieces.kinkCount() > 0)
        return pieces.positionOf(m_spot[row]);
    const auto kept = m_kept.find(row);
    return kept == m_kept.end() ? 0.0 : kept->second;
}

// Before the pieces of a row are exchanged: a basic one that is going to cost nothing stays where it is until another
// takes its place.
void Simplex::keepTarget(Index row, std::span<const Piece> next)
{
    if (!next.empty())
        m_kept.erase(row);
    else if (isBasic(row) && m_system->kinkCount(row) > 0)
        m_kept[row] = m_system->kinkPosition(row, m_spot[row]);
}

double Simplex::evaluateRow(Index row) const
{
    double sum = 0.0;
    for (const Term& term : m_system->terms(row))
        sum += term.coefficient * m_values[term.column];
    return sum;
}

// Of the segments on both sides of a kink the one that charges at the lower level; the left one when equal.
Index Simplex::quieterSide(Index row, Index kink) const
{
    Index sides[2] = {none, none};
    for (Index side = 0; side < 2; ++side) {
        m_system->visitSlopes(row, kink + side,
                              [&](Index level, double) { sides[side] = std::min(sides[side], level); });
    }
    return sides[1] > sides[0] ? kink + 1 : kink;
}

// The segment that a value lies in; the present one as long as the value is not clearly outside.
Index Simplex::segmentAt(Index row, double value, Index present) const
{
    const double width = tolerance();
    const PieceRange pieces = m_system->pieces(row);
    if (present != none) {
        bool isInside = true;
        for (const Piece piece : pieces) {
            if (piece.kink < present ? value < piece.at - width : value > piece.at + width)
                isInside = false;
        }
        if (isInside)
            return present;
    }
    Index segment = 0;
    for (const Piece piece : pieces) {
        if (std::abs(value - piece.at) <= width)
            return quieterSide(row, piece.kink);
        if (value > piece.at)
            segment = piece.kink + 1;
    }
    return segment;
}

// Pass 1.
void Simplex::moveBasis()
{
    m_changed.clear();
    m_factor.derive(*this, m_affected, m_values, m_changed);
    m_affected.clear();
    for (const Index column : m_changed) {
        m_moved.insert(column);
        widenScale(column);
    }
}

void Simplex::widenScale(Index column)
{
    if (std::abs(m_values[column]) <= m_scale)
        return;
    m_scale = std::abs(m_values[column]);
    m_scaleColumn = column;
}

void Simplex::measureScale()
{
    m_scale = 1.0;
    m_scaleColumn = none;
    for (Index column = 0; column < m_values.size(); ++column)
        widenScale(column);
}

// Far below the largest value that there once was, its tolerance would hide real differences.
bool Simplex::isScaleOutdated() const
{
    return m_scaleColumn != none && 64.0 * std::abs(m_values[m_scaleColumn]) < m_scale;
}

// Pass 2.
void Simplex::touchRowsOf(std::span<const Index> columns)
{
    for (const Index column : columns) {
        for (const Cell& cell : m_system->entries(column)) {
            if (!isBasic(cell.row))
                m_touchedRows.insert(cell.row);
        }
    }
}

void Simplex::relocate(Index row)
{
    const Index before = m_spot[row];
    const Index segment = segmentAt(row, evaluateRow(row), before);
    if (segment == before)
        return;
    if (before != none)
        noteSlopes(row, before, -1.0);
    m_spot[row] = segment;
    noteSlopes(row, segment, 1.0);
}

// Own rows have taken the place of some.
void Simplex::takeOver(std::span<const Factor::Repair> repairs)
{
    for (const Factor::Repair& one : repairs)
        m_spot[one.row] = none;
    for (const Factor::Repair& one : repairs) {
        const Index row = m_system->ownRow(one.column);
        Index strength = none;
        if (isBasic(row))
            m_spot[row] = bestKink(row, strength);
    }
}

// Pass 5, and the first steps from a first basis: everything anew from the basis.
void Simplex::refresh(Effort& effort)
{
    std::vector<Factor::Repair> repairs;
    m_factor.factor(*m_system, m_basis, repairs);
    takeOver(repairs);
    m_freePositions.clear(); // all positions are looked at again
    ++effort.factorisations;
    m_affected.resize(m_basis.rows.size());
    for (Index position = 0; position < m_affected.size(); ++position)
        m_affected[position] = position;
    moveBasis();
    measureScale();
    resetPrices();
    m_touchedRows.clear();
    for (Index row = 0; row < m_system->rowCount(); ++row) {
        if (isBasic(row))
            continue;
        m_spot[row] = segmentAt(row, evaluateRow(row), m_spot[row]);
        noteSlopes(row, m_spot[row], 1.0);
    }
    for (Index position = 0; position < m_basis.rows.size(); ++position) {
        m_touchedPositions.insert(position);
        for (const Piece piece : m_system->pieces(m_basis.rows[position])) {
            if (piece.level == 0 && piece.kink != m_spot[m_basis.rows[position]])
                m_suspects.insert(m_basis.rows[position]);
        }
    }
    m_work->banned.clear();
    m_isDirty = false;
}

bool Simplex::run(Effort& effort)
{
    m_work->fit(*m_system);
    constexpr std::size_t longestUpdate = 1000; // beyond this many small updates, rounding in the prices adds up
    m_work->banned.clear();
    fillVacancies();
    if (m_isDirty || m_factor.exchangeCount() > 0 || m_priceUpdates > longestUpdate)
        refresh(effort);
    moveBasis();
    if (isScaleOutdated())
        refresh(effort);
    touchRowsOf(m_changed);
    for (const Index row : m_touchedRows.indices()) {
        if (!isBasic(row))
            relocate(row);
    }
    m_touchedRows.clear();
    bool isBest = true;
    // Rounding may leave something to gain after everything was derived anew; more than a few rounds of it would
    // only move in the last digits.
    for (int round = 0; round < 5; ++round) {
        applySlopeChanges();
        isBest = optimise(effort);
        if (m_factor.exchangeCount() == 0 || !isBest)
            break;
        refresh(effort);
    }
    if (m_factor.exchangeCount() > 0)
        refresh(effort);
    applySlopeChanges();
    return isBest;
}

std::vector<Index> Simplex::violatedRows(Index level) const
{
    std::vector<Index> result;
    const double width = 100.0 * tolerance();
    for (const Index row : m_suspects.indices()) {
        const double value = rowValue(row);
        for (const Piece piece : m_system->pieces(row)) {
            const double slope = value < piece.at ? piece.left : piece.right;
            if (piece.level == level && slope != 0.0 && std::abs(value - piece.at) > width) {
                result.push_back(row);
                break;
            }
        }
    }
    return result;
}

std::vector<Index> Simplex::holdingRows(Index column)
{
    m_work->fit(*m_system);
    std::vector<Index> positions;
    m_work->byColumn.add(column, 1.0);
    m_factor.solveTransposed(m_work->byColumn, m_work->byPosition);
    for (const Index position : m_work->byPosition.indices()) {
        if (std::abs(m_work->byPosition[position]) > 1e-9)
            positions.push_back(position);
    }
    m_work->byPosition.clear();
    std::sort(positions.begin(), positions.end(),
              [&](Index a, Index b) { return m_factor.step(a) < m_factor.step(b); });
    for (Index& position : positions)
        position = m_basis.rows[position];
    return positions;
}

std::vector<Index> Simplex::movableColumns()
{
    m_work->fit(*m_system);
    IndexSet found;
    found.resize(m_system->columnCount());
    for (Index position = 0; position < m_basis.rows.size(); ++position) {
        const Index row = m_basis.rows[position];
        bool isFree = false;
        for (const Index segment : {m_spot[row] + 1, m_spot[row]}) {
            m_system->visitSlopes(row, segment,
                                  [&](Index level, double slope) { m_work->upSums.addCost(level, slope); });
            for (const Index level : m_pricedLevels)
                m_work->upSums.addCost(level, m_prices[level][position]);
            isFree = isFree || firstLevel(m_work->upSums) >= m_system->firstFreeLevel();
            m_work->upSums.clear();
        }
        if (!isFree)
            continue;
        m_work->byPosition.add(position, 1.0);
        m_factor.solve(m_work->byPosition, m_work->direction);
        for (const Index column : m_work->direction.indices()) {
            if (std::abs(m_work->direction[column]) > 1e-9)
                found.insert(column);
        }
        m_work->direction.clear();
    }
    return found.indices();
}

} // namespace RVCore::LayoutInternal
