#pragma once

#include "LayoutPackedForm.h"
#include "LayoutPieces.h"
#include "LayoutProfileTable.h"

#include <span>
#include <vector>

namespace RVCore::LayoutInternal {

// A coefficient of a System.
struct Cell {
    Index row = 0;
    double coefficient = 0.0;
};

class System;

// The cells of a column, the one of its own row first.
class ColumnCells {
public:
    class Iterator {
    public:
        Iterator(const ColumnCells& cells, std::size_t place) : m_cells(&cells), m_place(place) {}
        inline Cell operator*() const;
        Iterator& operator++()
        {
            ++m_place;
            return *this;
        }
        bool operator==(const Iterator& other) const { return m_place == other.m_place; }

    private:
        const ColumnCells* m_cells;
        std::size_t m_place; // 0 for the own row, then the entries
    };

    ColumnCells(const System& system, Index column, Index ownRow, std::span<const std::uint32_t> entries)
        : m_system(system), m_entries(entries), m_column(column), m_ownRow(ownRow)
    {
    }
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, m_entries.size() + 1}; }

private:
    const System& m_system;
    std::span<const std::uint32_t> m_entries;
    Index m_column;
    Index m_ownRow;
};

// One independent part of the constraints in the form the solver works on.
//
// A row is a linear form over the columns together with its cost. Every column has a row of its own, the form
// "column" by itself, with a kink at the lowest levels, so that a basis always exists: these are the free levels, on
// which only own rows cost anything. Rows with more columns, and columns, may come and rows may go at any time, and
// costs be exchanged.
class System {
public:
    void clear(Index levels, Index freeLevels); // the free ones are the last of them
    void reserve(std::size_t columns, std::size_t rows, std::size_t terms);
    Index addColumn(); // with its own row
    Index addRow(std::span<const Term>);
    // Its number is used again. Not for own rows.
    void removeRow(Index row);
    // After the rows of a new system, and only then: enters all of them in their columns at once.
    void finish();

    Index columnCount() const { return Index(m_columns.size()); }
    Index levelCount() const { return m_levels; }
    Index firstFreeLevel() const { return m_firstFreeLevel; }
    Index rowCount() const { return Index(m_rows.size()); } // removed ones included
    Index ownRow(Index column) const
    {
        return column < m_firstLaterColumn ? column : m_laterOwnRows[column - m_firstLaterColumn];
    }
    bool isOwnRow(Index row) const { return m_rows[row].isOwn; }
    // Of an own row.
    Index columnOf(Index row) const { return Packing::numberIn(m_rows[row].place); }

    PackedTerms terms(Index row) const
    {
        const Row& its = m_rows[row];
        return its.isOwn ? PackedTerms({&its.place, 1}) : PackedTerms({m_words.data() + its.place, its.wordCount});
    }
    ColumnCells entries(Index column) const
    {
        const Column& its = m_columns[column];
        return {*this, column, ownRow(column), {m_entries.data() + its.firstEntry, its.entryCount}};
    }

    double coefficient(Index row, Index column) const; // of a term that the row has

    PieceRange pieces(Index row) const
    {
        return {storedPieces(row), isOwnRow(row) ? m_slopesOfPairs[columnOf(row)] : 0.0};
    }
    PieceRange piecesOfKink(Index row, Index kink) const { return pieces(row).ofKink(kink); }
    Index kinkCount(Index row) const { return pieces(row).kinkCount(); }
    double kinkPosition(Index row, Index kink) const { return pieces(row).positionOf(kink); }
    bool hasPieces(Index row, std::span<const Piece>);
    void setPieces(Index row, std::span<const Piece>);

    // Calls visit(level, slope) for what the row charges between kink segment - 1 and kink segment.
    template <typename Visit> void visitSlopes(Index row, Index segment, Visit visit) const
    {
        for (const Piece piece : pieces(row)) {
            const double slope = piece.kink < segment ? piece.right : piece.left;
            if (slope != 0.0)
                visit(piece.level, slope);
        }
    }

private:
    struct Column {
        Index firstEntry = 0, entryCount = 0, entryCapacity = 0;
    };
    struct Row {
        std::uint32_t place = 0; // of an own row, the word of its only term; else of its first word
        std::uint32_t wordCount : 31 = 0;
        std::uint32_t isOwn : 1 = false;
        Index profile = none;
    };

    std::span<const StoredPiece> storedPieces(Index row) const
    {
        return m_rows[row].profile == none ? std::span<const StoredPiece>() : m_profiles.pieces(m_rows[row].profile);
    }
    Pairing pairingIn(Index row) const { return isOwnRow(row) ? Pairing::on : Pairing::off; }
    Index makeRow();
    void addEntry(Index column, std::uint32_t entry);

    Index m_levels = 0;
    Index m_firstFreeLevel = 0;
    std::vector<Column> m_columns;
    std::vector<double> m_slopesOfPairs; // in the columns' own rows; others have no pairs
    // The columns that a system begins with have their own numbers for own rows.
    Index m_firstLaterColumn = 0;
    std::vector<Index> m_laterOwnRows;
    std::vector<Row> m_rows;
    std::vector<Index> m_freeRows;
    std::vector<std::uint32_t> m_words;   // of rows; what removed ones leave is lost until clear()
    std::vector<std::uint32_t> m_entries; // column by column, words of a row and the code of a coefficient
    ProfileTable m_profiles;
    std::vector<StoredPiece> m_stored; // kept for its memory
    bool m_isFinished = false;
};

inline Cell ColumnCells::Iterator::operator*() const
{
    if (m_place == 0)
        return {m_cells->m_ownRow, 1.0};
    const std::uint32_t entry = m_cells->m_entries[m_place - 1];
    const Index row = Packing::numberIn(entry);
    if (const std::uint32_t code = Packing::codeIn(entry); code != Packing::unusual)
        return {row, Packing::usualCoefficients[code]};
    return {row, m_cells->m_system.coefficient(row, m_cells->m_column)};
}

} // namespace RVCore::LayoutInternal
