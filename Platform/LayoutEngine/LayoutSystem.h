#pragma once

#include "LayoutPieces.h"
#include "LayoutProfileTable.h"

#include <span>
#include <vector>

namespace RVCore::LayoutInternal {

// Packed, since there are dozens for each view.
struct [[gnu::packed, gnu::aligned(4)]] Term {
    Index column = 0;
    double coefficient = 0.0;

    friend bool operator==(const Term&, const Term&) = default;
};

// A coefficient of a System.
struct Cell {
    Index row = 0;
    Index column = 0;
    double coefficient = 0.0;
};

// Some of a list of cells, by their numbers.
class CellRange {
public:
    class Iterator {
    public:
        Iterator(const Cell* cells, const Index* number) : m_cells(cells), m_number(number) {}
        const Cell& operator*() const { return m_cells[*m_number]; }
        Iterator& operator++()
        {
            ++m_number;
            return *this;
        }
        bool operator==(const Iterator& other) const { return m_number == other.m_number; }

    private:
        const Cell* m_cells;
        const Index* m_number;
    };

    CellRange(const Cell* cells, std::span<const Index> numbers) : m_cells(cells), m_numbers(numbers) {}
    Iterator begin() const { return {m_cells, m_numbers.data()}; }
    Iterator end() const { return {m_cells, m_numbers.data() + m_numbers.size()}; }

private:
    const Cell* m_cells;
    std::span<const Index> m_numbers;
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
    void reserve(std::size_t columns, std::size_t rows, std::size_t cells);
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
    Index ownRow(Index column) const { return m_columns[column].ownRow; }
    bool isOwnRow(Index row) const { return m_rows[row].cellCount == 1; }

    std::span<const Cell> terms(Index row) const
    {
        return {m_cells.data() + m_rows[row].firstCell, m_rows[row].cellCount};
    }
    // The cells that a column is in.
    CellRange entries(Index column) const
    {
        return {m_cells.data(), {m_entries.data() + m_columns[column].firstEntry, m_columns[column].entryCount}};
    }

    PieceRange pieces(Index row) const { return {storedPieces(row), m_rows[row].slopeOfPairs}; }
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
        Index ownRow = none;
        Index firstEntry = 0, entryCount = 0, entryCapacity = 0;
    };
    struct Row {
        Index firstCell = 0, cellCount = 0, cellCapacity = 0;
        Index profile = none;
        double slopeOfPairs = 0.0;
    };

    std::span<const StoredPiece> storedPieces(Index row) const
    {
        return m_rows[row].profile == none ? std::span<const StoredPiece>() : m_profiles.pieces(m_rows[row].profile);
    }
    Index makeRow(std::span<const Term>);
    void addEntry(Index column, Index cell);

    Index m_levels = 0;
    Index m_firstFreeLevel = 0;
    std::vector<Column> m_columns;
    std::vector<Row> m_rows;
    std::vector<Index> m_freeRows;
    std::vector<Cell> m_cells;
    std::vector<Index> m_entries; // numbers of cells, column by column
    ProfileTable m_profiles;
    std::vector<StoredPiece> m_stored; // kept for its memory
    bool m_isFinished = false;
};

} // namespace RVCore::LayoutInternal
