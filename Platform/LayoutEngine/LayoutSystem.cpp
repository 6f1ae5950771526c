#include "LayoutSystem.h"

#include <algorithm>

namespace RVCore::LayoutInternal {

void System::clear(Index levels, Index freeLevels)
{
    m_levels = levels;
    m_firstFreeLevel = levels - freeLevels;
    m_columns.clear();
    m_slopesOfPairs.clear();
    m_firstLaterColumn = 0;
    m_laterOwnRows.clear();
    m_rows.clear();
    m_freeRows.clear();
    m_words.clear();
    m_entries.clear();
    m_profiles.clear();
    m_isFinished = false;
}

void System::reserve(std::size_t columns, std::size_t rows, std::size_t terms)
{
    m_columns.reserve(columns);
    m_slopesOfPairs.reserve(columns);
    m_rows.reserve(rows);
    m_words.reserve(terms);
    m_entries.reserve(terms);
}

Index System::addColumn()
{
    const auto column = Index(m_columns.size());
    const Index index = makeRow();
    m_columns.emplace_back();
    m_slopesOfPairs.push_back(0.0);
    if (index == column && m_laterOwnRows.empty())
        m_firstLaterColumn = column + 1;
    else
        m_laterOwnRows.push_back(index);
    m_rows[index].place = Packing::word(column, Packing::codeOf(1.0));
    m_rows[index].isOwn = true;
    return column;
}

Index System::makeRow()
{
    Index index = Index(m_rows.size());
    if (m_freeRows.empty()) {
        m_rows.emplace_back();
    } else {
        index = m_freeRows.back();
        m_freeRows.pop_back();
    }
    return index;
}

Index System::addRow(std::span<const Term> terms)
{
    const Index index = makeRow();
    const std::size_t first = m_words.size();
    makeRoom(m_words, terms.size());
    for (const Term& term : terms)
        appendPacked(term, m_words);
    Row& row = m_rows[index];
    row.place = std::uint32_t(first);
    row.wordCount = std::uint32_t(m_words.size() - first) & 0x7fffffff;
    for (const Term& term : terms) {
        if (m_isFinished)
            addEntry(term.column, Packing::word(index, Packing::codeOf(term.coefficient)));
    }
    return index;
}

void System::removeRow(Index row)
{
    for (const Term& term : terms(row)) {
        Column& column = m_columns[term.column];
        const auto first = m_entries.begin() + column.firstEntry;
        const auto last = first + column.entryCount;
        const auto found =
            std::find_if(first, last, [&](std::uint32_t entry) { return Packing::numberIn(entry) == row; });
        std::copy(found + 1, last, found);
        --column.entryCount;
    }
    setPieces(row, {});
    m_rows[row].wordCount = 0;
    m_freeRows.push_back(row);
}

double System::coefficient(Index row, Index column) const
{
    const PackedTerms its = terms(row);
    return (*std::find_if(its.begin(), its.end(), [&](const Term& term) { return term.column == column; }))
        .coefficient;
}

// A column that is full moves to the end, with room for as many again as a quarter of it.
void System::addEntry(Index index, std::uint32_t entry)
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
    const auto visitTerms = [&](const auto& visit) {
        for (Index row = 0; row < m_rows.size(); ++row) {
            if (isOwnRow(row))
                continue;
            for (const Term& term : terms(row))
                visit(row, term);
        }
    };
    visitTerms([&](Index, const Term& term) { ++m_columns[term.column].entryCapacity; });
    Index next = 0;
    for (Column& column : m_columns) {
        column.firstEntry = next;
        next += column.entryCapacity;
    }
    m_entries.resize(next);
    visitTerms([&](Index row, const Term& term) {
        Column& column = m_columns[term.column];
        m_entries[column.firstEntry + column.entryCount++] = Packing::word(row, Packing::codeOf(term.coefficient));
    });
    m_isFinished = true;
}

bool System::hasPieces(Index row, std::span<const Piece> pieces)
{
    m_stored.clear();
    const double slopeOfPairs = storePieces(pieces, pairingIn(row), m_stored);
    const auto present = storedPieces(row);
    return (!isOwnRow(row) || slopeOfPairs == m_slopesOfPairs[columnOf(row)]) &&
           std::equal(present.begin(), present.end(), m_stored.begin(), m_stored.end());
}

void System::setPieces(Index row, std::span<const Piece> pieces)
{
    m_stored.clear();
    const double slopeOfPairs = storePieces(pieces, pairingIn(row), m_stored);
    if (isOwnRow(row))
        m_slopesOfPairs[columnOf(row)] = slopeOfPairs;
    m_rows[row].profile = m_profiles.exchange(m_rows[row].profile, m_stored);
}

} // namespace RVCore::LayoutInternal
