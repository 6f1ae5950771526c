#include "LayoutSystem.h"

#include <algorithm>

namespace RVCore::LayoutInternal {

void System::clear(Index levels, Index freeLevels)
{
    m_levels = levels;
    m_firstFreeLevel = levels - freeLevels;
    m_columns.clear();
    m_rows.clear();
    m_freeRows.clear();
    m_cells.clear();
    m_entries.clear();
    m_profiles.clear();
    m_isFinished = false;
}

void System::reserve(std::size_t columns, std::size_t rows, std::size_t cells)
{
    m_columns.reserve(columns);
    m_rows.reserve(rows);
    m_cells.reserve(cells);
}

Index System::addColumn()
{
    const auto column = Index(m_columns.size());
    m_columns.emplace_back();
    m_columns[column].ownRow = addRow({{{column, 1.0}}});
    return column;
}

Index System::makeRow(std::span<const Term> terms)
{
    if (m_freeRows.empty()) {
        m_rows.emplace_back();
        m_freeRows.push_back(Index(m_rows.size() - 1));
    }
    const Index index = m_freeRows.back();
    m_freeRows.pop_back();
    Row& row = m_rows[index];
    if (terms.size() > row.cellCapacity) {
        row.firstCell = Index(m_cells.size());
        row.cellCapacity = Index(terms.size());
        makeRoom(m_cells, terms.size());
        m_cells.resize(m_cells.size() + terms.size());
    }
    row.cellCount = Index(terms.size());
    std::transform(terms.begin(), terms.end(), m_cells.begin() + row.firstCell, [index](const Term& term) {
        return Cell{index, term.column, term.coefficient};
    });
    return index;
}

Index System::addRow(std::span<const Term> terms)
{
    const Index row = makeRow(terms);
    for (Index cell = 0; m_isFinished && cell < m_rows[row].cellCount; ++cell)
        addEntry(terms[cell].column, m_rows[row].firstCell + cell);
    return row;
}

void System::removeRow(Index row)
{
    for (const Cell& cell : terms(row)) {
        Column& column = m_columns[cell.column];
        const auto first = m_entries.begin() + column.firstEntry;
        const auto last = first + column.entryCount;
        const auto found = std::find(first, last, Index(&cell - m_cells.data()));
        std::copy(found + 1, last, found);
        --column.entryCount;
    }
    setPieces(row, {});
    m_rows[row].cellCount = 0;
    m_freeRows.push_back(row);
}

// A column that is full moves to the end, with room for as many again as a quarter of it.
void System::addEntry(Index index, Index cell)
{
    Column& column = m_columns[index];
    if (column.entryCount == column.entryCapacity) {
        const auto first = Index(m_entries.size());
        column.entryCapacity += column.entryCapacity / 4 + 2;
        makeRoom(m_entries, column.entryCapacity);
        m_entries.resize(m_entries.size() + column.entryCapacity);
        std::copy_n(m_entries.begin() + column.firstEntry, column.entryCount, m_entries.begin() + first);
        column.firstEntry = first;
    }
    m_entries[column.firstEntry + column.entryCount++] = cell;
}

void System::finish()
{
    for (const Cell& cell : m_cells)
        ++m_columns[cell.column].entryCapacity;
    Index next = 0;
    for (Column& column : m_columns) {
        column.firstEntry = next;
        next += column.entryCapacity;
    }
    m_entries.resize(next);
    for (Index cell = 0; cell < m_cells.size(); ++cell) {
        Column& column = m_columns[m_cells[cell].column];
        m_entries[column.firstEntry + column.entryCount++] = cell;
    }
    m_isFinished = true;
}

bool System::hasPieces(Index row, std::span<const Piece> pieces)
{
    m_stored.clear();
    const double slopeOfPairs = storePieces(pieces, m_stored);
    const auto present = storedPieces(row);
    return slopeOfPairs == m_rows[row].slopeOfPairs &&
           std::equal(present.begin(), present.end(), m_stored.begin(), m_stored.end());
}

void System::setPieces(Index row, std::span<const Piece> pieces)
{
    m_stored.clear();
    m_rows[row].slopeOfPairs = storePieces(pieces, m_stored);
    m_rows[row].profile = m_profiles.exchange(m_rows[row].profile, m_stored);
}

} // namespace RVCore::LayoutInternal
