#include <LayoutEngine/LayoutInlineList.h>
#include <LayoutEngine/LayoutProfile.h>

#include <gtest/gtest.h>

namespace RVCore::LayoutInternal {
namespace {

TEST(LayoutProfile, aScaledConstraintCostsInItsOwnUnits)
{
    Constraint constraint;
    constraint.constant = 12;
    constraint.relation = LayoutRelation::greaterThanOrEqual;
    const Piece piece = costOf(constraint, -4, 2); // -4 form >= 12 is form <= -3
    EXPECT_EQ(piece.at, -3.0);
    EXPECT_EQ(piece.left, 0.0);
    EXPECT_EQ(piece.right, 4.0);
    EXPECT_EQ(piece.level, 2u);
}

TEST(LayoutProfile, kinksAreSortedAndCostsOfOneLevelAdded)
{
    std::vector<Piece> costs{{50, -1, 0, 0, 3}, {0, -1, 0, 0, 0}, {50, 0, 1, 0, 5}, {50 + 1e-11, -2, 2, 0, 3}};
    makeProfile(costs);
    EXPECT_EQ(costs, (std::vector<Piece>{{0, -1, 0, 0, 0}, {50, -3, 2, 1, 3}, {50, 0, 1, 1, 5}}));
}

TEST(LayoutProfile, manyPiecesAreSortedAsWell)
{
    std::vector<Piece> costs;
    for (Index i = 0; i < 40; ++i)
        costs.push_back({double((i * 7) % 40), -1, 1, 0, i % 3});
    makeProfile(costs);
    ASSERT_EQ(costs.size(), 40u);
    for (Index i = 0; i < 40; ++i) {
        EXPECT_EQ(costs[i].at, double(i));
        EXPECT_EQ(costs[i].kink, i);
    }
}

TEST(LayoutInlineList, growsOutOfItselfAndMoves)
{
    InlineList<int, 2> list;
    for (int i = 0; i < 10; ++i)
        list.append(i);
    InlineList<int, 2> moved = std::move(list);
    EXPECT_EQ(std::vector<int>(moved.begin(), moved.end()), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    moved.eraseIf([](int value) { return value % 2 == 0; });
    EXPECT_EQ(std::vector<int>(moved.begin(), moved.end()), (std::vector<int>{1, 3, 5, 7, 9}));
    InlineList<int, 2> small;
    small.append(4);
    moved = std::move(small);
    EXPECT_EQ(std::vector<int>(moved.begin(), moved.end()), std::vector<int>{4});
}

TEST(LayoutPackedForm, aTermIsOneWordUnlessItsCoefficientIsUnusual)
{
    const std::vector<Term> form{{7, 1.0}, {8, -0.5}, {12345678, -1.0 / 3}, {9, 0.25}};
    std::vector<std::uint32_t> words;
    for (const Term& term : form)
        appendPacked(term, words);
    EXPECT_EQ(words.size(), 6u);
    const PackedTerms packed(words);
    EXPECT_EQ(std::vector<Term>(packed.begin(), packed.end()), form);
    EXPECT_EQ(packed.size(), 4u);
}

TEST(LayoutPackedFormDeath, aNumberThatDoesNotFitStopsTheProgram)
{
    std::vector<std::uint32_t> words;
    EXPECT_DEATH(appendPacked({1u << 29, 1.0}, words), "LayoutEngine: there are too many variables or constraints");
}

} // namespace
} // namespace RVCore::LayoutInternal
