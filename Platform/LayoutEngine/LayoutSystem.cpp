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
    m_terms.clear();
    m_entries.clear();
    m_pieces.clear();
    m_unusedPieces = 0;
    m_isFinished = false;
}

void System::reserve(std::size_t columns, std::size_t rows, std::size_t terms, std::size_t pieces)
{
    m_columns.reserve(columns);
    m_rows.reserve(rows);
    m_terms.reserve(terms);
    m_pieces.reserve(pieces);
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
    if (terms.size() > row.termCapacity) {
        row.firstTerm = Index(m_terms.size());
        row.termCapacity = Index(terms.size());
        makeRoom(m_terms, terms.size());
        m_terms.insert(m_terms.end(), terms.begin(), terms.end());
    } else {
        std::copy(terms.begin(), terms.end(), m_terms.begin() + row.firstTerm);
    }
    row.termCount = Index(terms.size());
    return index;
}

Index System::addRow(std::span<const Term> terms)
{
    const Index row = makeRow(terms);
    if (m_isFinished) {
        for (const Term& term : terms)
            addEntry(term.column, {row, term.coefficient});
    }
    return row;
}

void System::removeRow(Index row)
{
    for (const Term& term : terms(row)) {
        Column& column = m_columns[term.column];
        const auto first = m_entries.begin() + column.firstEntry;
        const auto last = first + column.entryCount;
        const auto found = std::find_if(first, last, [&](const Term& entry) { return entry.column == row; });
        std::copy(found + 1, last, found);
        --column.entryCount;
    }
    setPieces(row, {});
    m_rows[row].termCount = 0;
    m_freeRows.push_back(row);
}

// A column that is full moves to the end, with room for as many again as a quarter of it.
void System::addEntry(Index index, const Term& entry)
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
    m_entries[column.firstEntry + column.entryCount++] = entry;
}

void System::finish()
{
    for (const Term& term : m_terms)
        ++m_columns[term.column].entryCapacity;
    Index next = 0;
    for (Column& column : m_columns) {
        column.firstEntry = next;
        next += column.entryCapacity;
    }
    m_entries.resize(next);
    for (Index row = 0; row < rowCount(); ++row) {
        for (const Term& term : terms(row)) {
            Column& column = m_columns[term.column];
            m_entries[column.firstEntry + column.entryCount++] = {row, term.coefficient};
        }
    }
    m_isFinished = true;
}

bool System::hasPieces(Index row, std::span<const Piece> pieces)
{
    m_stored.clear();
    storePieces(pieces, m_stored);
    const StoredPiece* first = m_pieces.data() + m_rows[row].firstPiece;
    return std::equal(first, first + m_rows[row].pieceCount, m_stored.begin(), m_stored.end());
}

void System::setPieces(Index row, std::span<const Piece> pieces)
{
    m_stored.clear();
    storePieces(pieces, m_stored);
    Row& record = m_rows[row];
    if (m_stored.size() > record.pieceCapacity) {
        m_unusedPieces += record.pieceCapacity;
        record.firstPiece = Index(m_pieces.size());
        record.pieceCapacity = Index(m_stored.size());
        makeRoom(m_pieces, m_stored.size());
        m_pieces.resize(m_pieces.size() + m_stored.size());
    }
    std::copy(m_stored.begin(), m_stored.end(), m_pieces.begin() + record.firstPiece);
    record.pieceCount = Index(m_stored.size());
    if (m_unusedPieces > 1000 && m_unusedPieces > m_pieces.size() / 2)
        compactPieces();
}

void System::compactPieces()
{
    std::vector<StoredPiece> compact;
    compact.reserve(m_pieces.size() - m_unusedPieces);
    for (Row& row : m_rows) {
        const auto first = m_pieces.begin() + row.firstPiece;
        row.firstPiece = Index(compact.size());
        compact.insert(compact.end(), first, first + row.pieceCapacity);
    }
    m_pieces = std::move(compact);
    m_unusedPieces = 0;
}

} // namespace RVCore::LayoutInternal
