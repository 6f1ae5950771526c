#include <LayoutEngine/LayoutPieces.h>

#include <gtest/gtest.h>

namespace RVCore::LayoutInternal {
namespace {

std::vector<StoredPiece> stored(const std::vector<Piece>& pieces)
{
    std::vector<StoredPiece> result;
    storePieces(pieces, Pairing::on, result);
    return result;
}

std::vector<Piece> read(const PieceRange& range)
{
    std::vector<Piece> result;
    for (const Piece piece : range)
        result.push_back(piece);
    return result;
}

PieceRange rangeOf(const std::vector<StoredPiece>& pieces)
{
    return {pieces, 1.5};
}

TEST(LayoutPieces, areReadAsTheyWereStored)
{
    const std::vector<Piece> pieces{{0, -1, 0, 0, 0},   {0, -1.5, 0, 0, 7},   {0, -1.5, 1.5, 0, 8},
                                    {20, 0, 0.5, 1, 2}, {50, -0.25, 0, 2, 3}, {50, -2, 2, 2, 4},
                                    {50, 0, 3, 2, 5}};
    EXPECT_EQ(read(rangeOf(stored(pieces))), pieces);
}

TEST(LayoutPieces, whatAColumnsFreeLevelsChargeIsKeptAsOne)
{
    EXPECT_EQ(stored({{0, -1.5, 0, 0, 7}, {0, -1.5, 1.5, 0, 8}}).size(), 1u);
    // The slope is the row's, not the pair's.
    std::vector<StoredPiece> ofOneRow, ofAnother;
    EXPECT_EQ(storePieces(std::vector<Piece>{{0, -1.5, 0, 0, 7}, {0, -1.5, 1.5, 0, 8}}, Pairing::on, ofOneRow), 1.5);
    EXPECT_EQ(storePieces(std::vector<Piece>{{0, -1.25, 0, 0, 7}, {0, -1.25, 1.25, 0, 8}}, Pairing::on, ofAnother),
              1.25);
    EXPECT_EQ(ofOneRow, ofAnother);
    std::vector<StoredPiece> oneByOne; // as in rows that have no slope of their own
    EXPECT_EQ(storePieces(std::vector<Piece>{{0, -1.5, 0, 0, 7}, {0, -1.5, 1.5, 0, 8}}, Pairing::off, oneByOne), 0.0);
    EXPECT_EQ(oneByOne.size(), 2u);
    // There is one for the row: a pair of another slope is two.
    EXPECT_EQ(stored({{0, -1.5, 0, 0, 7}, {0, -1.5, 1.5, 0, 8}, {1, -1, 0, 1, 7}, {1, -1, 1, 1, 8}}).size(), 3u);
    // Another slope, another kink, a gap between the levels, or another side: two.
    EXPECT_EQ(stored({{0, -1.5, 0, 0, 7}, {0, -1, 1, 0, 8}}).size(), 2u);
    EXPECT_EQ(stored({{0, -1.5, 0, 0, 7}, {1, -1.5, 1.5, 1, 8}}).size(), 2u);
    EXPECT_EQ(stored({{0, -1.5, 0, 0, 7}, {0, -1.5, 1.5, 0, 9}}).size(), 2u);
    EXPECT_EQ(stored({{0, 0, 1.5, 0, 7}, {0, -1.5, 1.5, 0, 8}}).size(), 2u);
}

TEST(LayoutPieces, differentSlopesToBothSidesAreReadOneByOne)
{
    EXPECT_EQ(read(rangeOf(stored({{5, -1, 2, 0, 3}}))), (std::vector<Piece>{{5, -1, 0, 0, 3}, {5, 0, 2, 0, 3}}));
}

TEST(LayoutPieces, areFoundByKink)
{
    const std::vector<StoredPiece> pieces =
        stored({{0, -1, 0, 0, 7}, {0, -1, 1, 0, 8}, {20, 0, 1, 1, 2}, {50, -1, 0, 2, 3}, {50, -1, 1, 2, 5}});
    const PieceRange range = rangeOf(pieces);
    EXPECT_EQ(range.kinkCount(), 3u);
    EXPECT_EQ(read(range.ofKink(1)), (std::vector<Piece>{{20, 0, 1, 1, 2}}));
    EXPECT_EQ(read(range.ofKink(0)).size(), 2u);
    EXPECT_EQ(range.positionOf(2), 50);
    EXPECT_EQ(rangeOf({}).kinkCount(), 0u);
}

} // namespace
} // namespace RVCore::LayoutInternal
