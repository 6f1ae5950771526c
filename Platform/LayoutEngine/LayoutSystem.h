#pragma once

#include "LayoutSparse.h"

#include <span>
#include <vector>

namespace RVCore::LayoutInternal {

// A convex piecewise-linear cost of one row: what one level charges left and right of one kink. The pieces of
// a row are sorted by kink, then by level; left <= 0 <= right.
struct Piece {
    double at = 0.0;    // position of the kink
    double left = 0.0;  // slope below the kink
    double right = 0.0; // slope above the kink
    Index kink = 0;     // number of the kink within its row
    Index level = 0;    // 0 is the highest

    friend bool operator==(const Piece&, const Piece&) = default;
};

struct Term {
    Index column = 0;
    double coefficient = 0.0;

    friend bool operator==(const Term&, const Term&) = default;
};

// How many levels below all priorities decide what those leave free.
constexpr Index freeLevelCount = 2;

// One independent part of the constraints in the form the solver works on.
//
// A row is a linear form over the columns together with its cost. Row j below columnCount() is the form
// "column j" by itself; each has a kink at the lowest levels, so that a basis always exists. The forms are
// fixed once finish() was called; costs may be exchanged at any time.
class System {
public:
    void clear(Index columns, Index levels);
    void reserve(std::size_t rows, std::size_t terms, std::size_t pieces);
    Index addRow(std::span<const Term>); // the own rows first
    void finish();

    Index columnCount() const { return m_columns; }
    Index levelCount() const { return m_levels; }
    Index rowCount() const { return Index(m_rows.size()); }

    std::span<const Term> terms(Index row) const
    {
        return {m_terms.data() + m_rows[row].firstTerm, m_rows[row].termCount};
    }
    // The rows that a column is in; `column` of the result is the row.
    std::span<const Term> entries(Index column) const
    {
        return {m_entries.data() + m_entryStart[column], m_entryStart[column + 1] - m_entryStart[column]};
    }

    std::span<const Piece> pieces(Index row) const
    {
        return {m_pieces.data() + m_rows[row].firstPiece, m_rows[row].pieceCount};
    }
    std::span<const Piece> piecesOfKink(Index row, Index kink) const;
    Index kinkCount(Index row) const { return m_rows[row].kinkCount; }
    double kinkPosition(Index row, Index kink) const { return piecesOfKink(row, kink).front().at; }
    void setPieces(Index row, std::span<const Piece>);

    // Calls visit(level, slope) for what the row charges between kink segment - 1 and kink segment.
    template <typename Visit> void visitSlopes(Index row, Index segment, Visit visit) const
    {
        for (const Piece& piece : pieces(row)) {
            const double slope = piece.kink < segment ? piece.right : piece.left;
            if (slope != 0.0)
                visit(piece.level, slope);
        }
    }

private:
    struct Row {
        Index firstTerm, termCount, firstPiece, pieceCount, pieceCapacity, kinkCount;
    };

    void compactPieces();

    Index m_columns = 0;
    Index m_levels = 0;
    std::vector<Row> m_rows;
    std::vector<Term> m_terms;
    std::vector<Index> m_entryStart;
    std::vector<Term> m_entries;
    std::vector<Piece> m_pieces;
    std::size_t m_unusedPieces = 0;
};

} // namespace RVCore::LayoutInternal
