#pragma once

#include "LayoutSparse.h"

#include <algorithm>
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

// How pieces are kept: nearly all have one slope, to one side or to both.
struct StoredPiece {
    double at = 0.0;
    double slope =
        0.0; // of a pair, 0: its slope is the row's own, so that rows which differ in nothing else are equal
    Index kink = 0;
    Index level : 29 = 0;
    bool isLeft : 1 = false;
    bool isRight : 1 = false;
    // Stands for two: to the left at this level, to both sides at the next one, as a column's free levels charge.
    bool isPair : 1 = false;

    friend bool operator==(const StoredPiece&, const StoredPiece&) = default;
};

enum class Pairing : bool { off, on };

// Appends pieces in the form in which they are kept; returns the slope of the pairs among them, 0 without any. A
// piece with different slopes left and right becomes two.
double storePieces(std::span<const Piece>, Pairing, std::vector<StoredPiece>&);

// Stored pieces, read as what they stand for in a row whose pairs have a slope.
class PieceRange {
public:
    class Iterator {
    public:
        Iterator(const StoredPiece* stored, double slopeOfPairs) : m_stored(stored), m_slopeOfPairs(slopeOfPairs) {}
        Piece operator*() const
        {
            const bool isRight = m_stored->isPair ? m_isSecond : m_stored->isRight;
            const double slope = m_stored->isPair ? m_slopeOfPairs : m_stored->slope;
            return {m_stored->at, m_stored->isLeft ? -slope : 0.0, isRight ? slope : 0.0, m_stored->kink,
                    m_stored->level + Index(m_isSecond)};
        }
        Iterator& operator++()
        {
            m_isSecond = m_stored->isPair && !m_isSecond;
            if (!m_isSecond)
                ++m_stored;
            return *this;
        }
        bool operator==(const Iterator& other) const
        {
            return m_stored == other.m_stored && m_isSecond == other.m_isSecond;
        }

    private:
        const StoredPiece* m_stored;
        double m_slopeOfPairs;
        bool m_isSecond = false; // of a pair
    };

    PieceRange(std::span<const StoredPiece> stored, double slopeOfPairs)
        : m_first(stored.data()), m_last(stored.data() + stored.size()), m_slopeOfPairs(slopeOfPairs)
    {
    }
    Iterator begin() const { return {m_first, m_slopeOfPairs}; }
    Iterator end() const { return {m_last, m_slopeOfPairs}; }
    Index kinkCount() const { return m_first == m_last ? 0 : m_last[-1].kink + 1; }
    PieceRange ofKink(Index kink) const;
    double positionOf(Index kink) const { return firstOf(kink)->at; }

private:
    const StoredPiece* firstOf(Index kink) const
    {
        return std::lower_bound(m_first, m_last, kink,
                                [](const StoredPiece& piece, Index number) { return piece.kink < number; });
    }

    const StoredPiece* m_first;
    const StoredPiece* m_last;
    double m_slopeOfPairs;
};

} // namespace RVCore::LayoutInternal
