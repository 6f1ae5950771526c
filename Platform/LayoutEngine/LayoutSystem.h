#pragma once

#include "LayoutPieces.h"

#include <span>
#include <vector>

namespace RVCore::LayoutInternal {

struct Term {
    Index column = 0;
    double coefficient = 0.0;

    friend bool operator==(const Term&, const Term&) = default;
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
    void reserve(std::size_t columns, std::size_t rows, std::size_t terms, std::size_t pieces);
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
    bool isOwnRow(Index row) const { return m_rows[row].termCount == 1; }

    std::span<const Term> terms(Index row) const
    {
        return {m_terms.data() + m_rows[row].firstTerm, m_rows[row].termCount};
    }
    // The rows that a column is in; `column` of the result is the row.
    std::span<const Term> entries(Index column) const
    {
        return {m_entries.data() + m_columns[column].firstEntry, m_columns[column].entryCount};
    }

    PieceRange pieces(Index row) const
    {
        const StoredPiece* first = m_pieces.data() + m_rows[row].firstPiece;
        return {first, first + m_rows[row].pieceCount};
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
        Index ownRow = none;
        Index firstEntry = 0, entryCount = 0, entryCapacity = 0;
    };
    struct Row {
        Index firstTerm = 0, termCount = 0, termCapacity = 0;
        Index firstPiece = 0, pieceCount = 0, pieceCapacity = 0;
    };

    Index makeRow(std::span<const Term>);
    void addEntry(Index column, const Term& entry);
    void compactPieces();

    Index m_levels = 0;
    Index m_firstFreeLevel = 0;
    std::vector<Column> m_columns;
    std::vector<Row> m_rows;
    std::vector<Index> m_freeRows;
    std::vector<Term> m_terms;
    std::vector<Term> m_entries;
    std::vector<StoredPiece> m_pieces;
    std::vector<StoredPiece> m_stored; // kept for its memory
    std::size_t m_unusedPieces = 0;
    bool m_isFinished = false;
};

} // namespace RVCore::LayoutInternal
