#include "LayoutPieces.h"

namespace RVCore::LayoutInternal {

namespace {

bool isPair(const Piece& first, const Piece& second)
{
    return first.kink == second.kink && first.level + 1 == second.level && first.left == second.left &&
           first.left < 0.0 && first.right == 0.0 && second.right == -second.left;
}

StoredPiece stored(const Piece& piece, double slope)
{
    StoredPiece result;
    result.at = piece.at;
    result.slope = slope;
    result.kink = piece.kink;
    result.level = piece.level & 0x1fffffff;
    return result;
}

} // namespace

double storePieces(std::span<const Piece> pieces, Pairing pairing, std::vector<StoredPiece>& result)
{
    double slopeOfPairs = 0.0;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const Piece& piece = pieces[i];
        if (pairing == Pairing::on && i + 1 < pieces.size() && isPair(piece, pieces[i + 1]) &&
            (slopeOfPairs == 0.0 || slopeOfPairs == -piece.left)) {
            slopeOfPairs = -piece.left;
            StoredPiece& pair = result.emplace_back(stored(piece, 0.0));
            pair.isLeft = pair.isRight = pair.isPair = true;
            ++i;
            continue;
        }
        const bool isEven = piece.right == -piece.left;
        if (piece.left < 0.0) {
            StoredPiece& left = result.emplace_back(stored(piece, -piece.left));
            left.isLeft = true;
            left.isRight = isEven;
        }
        if (piece.right > 0.0 && !isEven)
            result.emplace_back(stored(piece, piece.right)).isRight = true;
    }
    return slopeOfPairs;
}

PieceRange PieceRange::ofKink(Index kink) const
{
    const StoredPiece* first = firstOf(kink);
    const StoredPiece* last = first;
    while (last != m_last && last->kink == kink)
        ++last;
    return {{first, last}, m_slopeOfPairs};
}

} // namespace RVCore::LayoutInternal
