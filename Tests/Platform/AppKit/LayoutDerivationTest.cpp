#include "ViewTesting.h"

#include <AppKit/LayoutDerivation.h>

namespace RVCore::LayoutDerivationTests {
namespace {

constexpr LayoutVariable a{0}, b{1}, c{2};
using Rows = std::vector<LayoutRow>;
using Parts = std::vector<bool>;

LayoutRow row(std::vector<LayoutTerm> terms)
{
    return {.terms = std::move(terms)};
}

TEST(LayoutDerivation, WhatCancelsOutHasNoPart)
{
    // a = …; b = a + …; a + c = …: then a + c is settled by the last row alone, and b + c by the last two.
    const Rows rows{row({{a, 1}}), row({{b, 1}, {a, -1}}), row({{a, 1}, {c, 1}})};
    EXPECT_EQ(rowsThatSettle({a, c}, rows), (Parts{false, false, true}));
    EXPECT_EQ(rowsThatSettle({b, c}, rows), (Parts{false, true, true}));
    EXPECT_EQ(rowsThatSettle({b}, rows), (Parts{true, true, false}));
    EXPECT_EQ(rowsThatSettle({b, a}, rows), (Parts{true, true, false}));
}

TEST(LayoutDerivation, TheOrderOfTheRowsDoesNotMatter)
{
    const Rows rows{row({{a, 1}, {c, 1}}), row({{b, 1}, {a, -1}}), row({{a, 1}})};
    EXPECT_EQ(rowsThatSettle({b, c}, rows), (Parts{true, true, false}));
}

TEST(LayoutDerivation, ARowThatSaysTheSameHasAPartToo)
{
    const Rows rows{row({{a, 1}}), row({{a, -2}}), row({{b, 1}, {a, 1}}), row({{b, 2}, {a, 2}})};
    EXPECT_EQ(rowsThatSettle({a}, rows), (Parts{true, true, false, false}));
    EXPECT_EQ(rowsThatSettle({a, b}, rows), (Parts{false, false, true, true}));
}

TEST(LayoutDerivation, RowsThatDependOnEachOtherAllHaveAPart)
{
    const Rows circle{row({{a, 1}, {b, 1}}), row({{a, 1}, {b, -1}})};
    EXPECT_EQ(rowsThatSettle({a}, circle), (Parts{true, true}));
}

TEST(LayoutDerivation, WhatTheRowsDoNotSettleIsLeftWithAllOfThem)
{
    EXPECT_EQ(rowsThatSettle({a, b}, {row({{a, 1}})}), (Parts{true}));
    EXPECT_EQ(rowsThatSettle({a}, {}), Parts());
    EXPECT_EQ(rowsThatSettle({a}, {row({}), row({{a, 1}, {a, -1}}), row({{a, 1}})}), (Parts{false, false, true}));
}

} // namespace
} // namespace RVCore::LayoutDerivationTests
