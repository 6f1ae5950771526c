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

// How pieces are kept, since there are dozens for each view: nearly all have one slope, to one side or to both.
struct StoredPiece {
    double at = 0.0;
    double slope = 0.0;
    Index kink = 0;
    Index level : 29 = 0;
    bool isLeft : 1 = false;
    bool isRight : 1 = false;
    // Stands for two: to the left at this level, to both sides at the next one, as a column's free levels charge.
    bool isPair : 1 = false;

    friend bool operator==(const StoredPiece&, const StoredPiece&) = default;
};
static_assert(sizeof(StoredPiece) == 24, "there are dozens for each view");

// Appends pieces in the form in which they are kept. One with different slopes left and right becomes two.
void storePieces(std::span<const Piece>, std::vector<StoredPiece>&);

// Stored pieces, read as what they stand for.
class PieceRange {
public:
    class Iterator {
    public:
        explicit Iterator(const StoredPiece* stored) : m_stored(stored) {}
        Piece operator*() const
        {
            const bool isRight = m_stored->isPair ? m_isSecond : m_stored->isRight;
            return {m_stored->at, m_stored->isLeft ? -m_stored->slope : 0.0, isRight ? m_stored->slope : 0.0,
                    m_stored->kink, m_stored->level + Index(m_isSecond)};
        }
        Iterator& operator++()
        {
            m_isSecond = m_stored->isPair && !m_isSecond;
            if (!m_isSecond)
                ++m_stored;
            return *this;
        }
        bool operator==(const Iterator&) const = default;

    private:
        const StoredPiece* m_stored;
        bool m_isSecond = false; // of a pair
    };

    PieceRange(const StoredPiece* first, const StoredPiece* last) : m_first(first), m_last(last) {}
    Iterator begin() const { return Iterator(m_first); }
    Iterator end() const { return Iterator(m_last); }
    Index kinkCount() const { return m_first == m_last ? 0 : m_last[-1].kink + 1; }
    PieceRange ofKink(Index kink) const;
    double positionOf(Index kink) const { return ofKink(kink).m_first->at; }

private:
    const StoredPiece* m_first;
    const StoredPiece* m_last;
};

} // namespace RVCore::LayoutInternal
