#include <LayoutEngine/LayoutProfileTable.h>

#include <gtest/gtest.h>

#include <random>

namespace RVCore::LayoutInternal {
namespace {

// One piece at each of the positions.
std::vector<StoredPiece> piecesAt(const std::vector<double>& positions)
{
    std::vector<StoredPiece> result;
    for (const double at : positions) {
        StoredPiece& piece = result.emplace_back();
        piece.at = at;
        piece.slope = 1.0;
        piece.kink = Index(result.size() - 1);
        piece.isLeft = true;
    }
    return result;
}

std::vector<StoredPiece> read(const ProfileTable& table, Index profile)
{
    const auto pieces = table.pieces(profile);
    return {pieces.begin(), pieces.end()};
}

TEST(LayoutProfileTable, equalCostsAreKeptOnce)
{
    ProfileTable table;
    const Index first = table.exchange(none, piecesAt({0, 50}));
    EXPECT_EQ(table.exchange(none, piecesAt({0, 50})), first);
    EXPECT_NE(table.exchange(none, piecesAt({0, 51})), first);
    EXPECT_NE(table.exchange(none, piecesAt({0})), first);
    EXPECT_EQ(table.exchange(none, {}), none);
    EXPECT_EQ(read(table, first), piecesAt({0, 50}));
}

TEST(LayoutProfileTable, whatOneRowExchangesStaysWithTheOthers)
{
    ProfileTable table;
    const Index shared = table.exchange(none, piecesAt({8}));
    table.exchange(none, piecesAt({8}));
    const Index other = table.exchange(shared, piecesAt({9}));
    EXPECT_NE(other, shared);
    EXPECT_EQ(read(table, shared), piecesAt({8}));
    EXPECT_EQ(read(table, other), piecesAt({9}));
    EXPECT_EQ(table.exchange(other, piecesAt({8})), shared);
}

TEST(LayoutProfileTable, whatOnlyOneRowHasIsWrittenOver)
{
    ProfileTable table;
    const Index own = table.exchange(none, piecesAt({100}));
    for (int width = 101; width < 200; ++width)
        EXPECT_EQ(table.exchange(own, piecesAt({double(width)})), own);
    EXPECT_NE(table.exchange(none, piecesAt({100})), own); // it is no more what it was
    EXPECT_EQ(table.exchange(none, piecesAt({199})), own);
}

TEST(LayoutProfileTable, everyRowKeepsItsCostsThroughManyExchanges)
{
    std::mt19937 random(3);
    ProfileTable table;
    std::vector<Index> profiles(200, none);
    std::vector<std::vector<StoredPiece>> expected(profiles.size());
    for (int round = 0; round < 20000; ++round) {
        const std::size_t row = random() % profiles.size();
        std::vector<double> positions(random() % 5);
        for (double& at : positions)
            at = double(random() % 4);
        expected[row] = piecesAt(positions);
        profiles[row] = table.exchange(profiles[row], expected[row]);
        if (round % 1000 != 0)
            continue;
        for (std::size_t each = 0; each < profiles.size(); ++each) {
            ASSERT_EQ(profiles[each] == none, expected[each].empty());
            if (profiles[each] != none) {
                ASSERT_EQ(read(table, profiles[each]), expected[each]);
            }
        }
    }
}

} // namespace
} // namespace RVCore::LayoutInternal
