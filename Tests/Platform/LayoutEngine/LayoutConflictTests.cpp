#include "LayoutSystems.h"

#include <gtest/gtest.h>

namespace RVCore::LayoutConflictTests {
namespace {

using Tags = std::vector<std::uint64_t>;

TEST(LayoutConflict, theNewestIsLeftOutAndTheOthersHold)
{
    TestEngine test({"",
                     3,
                     {{{{0, 1}}, equal, 10, 1000},
                      {{{1, 1}, {0, -1}}, equal, 5, 1000},
                      {{{2, 1}}, equal, 1, 1000},
                      {{{1, 1}}, atMost, 12, 1000}}});
    const std::vector<LayoutConflict> conflicts = test.engine.takeConflicts();
    ASSERT_EQ(conflicts.size(), 1u);
    EXPECT_EQ(conflicts[0].constraints, (Tags{0, 1, 3}));
    EXPECT_EQ(conflicts[0].leftOut, 3u);
    EXPECT_TRUE(test.engine.isLeftOut(test.handles[3]));
    EXPECT_EQ(test.value(0), 10.0);
    EXPECT_EQ(test.value(1), 15.0);
    EXPECT_EQ(test.value(2), 1.0);
}

TEST(LayoutConflict, theSetIsWholeAndMinimalWhereBoundsCoincide)
{
    // x0 <= -9 and x1 >= 0 meet in one point of the third one, so only one of them is needed to hold it there.
    TestEngine test({"",
                     2,
                     {{{{1, 1}}, atLeast, 0, 1000},
                      {{{0, 1}}, atMost, -9, 1000},
                      {{{0, 1}, {1, -0.5}}, equal, -9, 1000},
                      {{{1, 0.5}}, equal, 9, 1000}}});
    const std::vector<LayoutConflict> conflicts = test.engine.takeConflicts();
    ASSERT_EQ(conflicts.size(), 1u);
    EXPECT_EQ(conflicts[0].constraints, (Tags{1, 2, 3}));
    test.engine.removeConstraint(test.handles[1]);
    EXPECT_FALSE(test.engine.isLeftOut(test.handles[3]));
    EXPECT_EQ(test.value(1), 18.0);
}

TEST(LayoutConflict, eachCauseIsReportedOnce)
{
    TestEngine test({"", 2, {{{{0, 1}}, equal, 1, 1000}, {{{0, 1}}, equal, 2, 1000}}});
    EXPECT_EQ(test.engine.takeConflicts().size(), 1u);
    EXPECT_TRUE(test.engine.takeConflicts().empty());
    test.engine.solve();
    test.handles.push_back(test.add({{{1, 1}, {0, -1}}, equal, 1, 500}));
    EXPECT_EQ(test.value(1), 2.0);
    EXPECT_TRUE(test.engine.takeConflicts().empty());
    // Equal ones put back are the same cause, although the newest is another one now.
    test.engine.removeConstraint(test.handles[1]);
    test.handles[1] = test.add({{{0, 1}}, equal, 2, 1000});
    EXPECT_TRUE(test.engine.takeConflicts().empty());
    EXPECT_TRUE(test.engine.isLeftOut(test.handles[1]));
}

TEST(LayoutConflict, aCauseThatWasGoneIsReportedAgain)
{
    TestEngine test({"", 1, {{{{0, 1}}, equal, 1, 1000}, {{{0, 1}}, equal, 2, 1000}}});
    EXPECT_EQ(test.engine.takeConflicts().size(), 1u);
    test.engine.setPriority(test.handles[0], 500);
    EXPECT_TRUE(test.engine.takeConflicts().empty());
    EXPECT_EQ(test.value(0), 2.0);
    test.engine.setPriority(test.handles[0], 1000);
    EXPECT_EQ(test.engine.takeConflicts().size(), 1u);
    EXPECT_EQ(test.value(0), 1.0);
}

TEST(LayoutConflict, theOneLeftOutComesBackWhenAnotherGoes)
{
    TestEngine test(
        {"", 2, {{{{0, 1}}, equal, 10, 1000}, {{{1, 1}, {0, -1}}, atLeast, 5, 1000}, {{{1, 1}}, equal, 3, 1000}}});
    EXPECT_TRUE(test.engine.isLeftOut(test.handles[2]));
    test.engine.removeConstraint(test.handles[0]);
    EXPECT_FALSE(test.engine.isLeftOut(test.handles[2]));
    EXPECT_EQ(test.value(1), 3.0);
    EXPECT_LE(test.value(0), -2.0);
}

TEST(LayoutConflict, theOneLeftOutComesBackWhenAnotherChanges)
{
    TestEngine test({"", 1, {{{{0, 1}}, atMost, 10, 1000}, {{{0, 1}}, atLeast, 20, 1000}}});
    EXPECT_TRUE(test.engine.isLeftOut(test.handles[1]));
    test.engine.setConstant(test.handles[0], 30);
    EXPECT_EQ(test.value(0), 20.0);
    EXPECT_FALSE(test.engine.isLeftOut(test.handles[1]));
}

TEST(LayoutConflict, aLeftOutConstraintHasNoSayAtAll)
{
    // It does not pull what the others leave free.
    TestEngine test({"",
                     2,
                     {{{{0, 1}}, atMost, 10, 1000},
                      {{{0, 1}, {1, 1}}, atLeast, 5, 1000},
                      {{{0, 1}, {1, 0}}, atLeast, 20, 1000},
                      {{{0, 1}}, equal, 4, 1}}});
    EXPECT_TRUE(test.engine.isLeftOut(test.handles[2]));
    EXPECT_EQ(test.value(0), 4.0);
    EXPECT_EQ(test.value(1), 1.0);
}

TEST(LayoutConflict, whatContradictedOneLeftOutLaterComesBack)
{
    // 2 contradicts 1; once 1 is left out because of 0, nothing speaks against 2.
    TestEngine test({"", 1, {{{{0, 1}}, equal, 1, 1000}}});
    test.handles.push_back(test.add({{{0, 1}}, atLeast, 5, 1000}));
    test.handles.push_back(test.add({{{0, 1}}, atMost, 2, 1000}));
    EXPECT_FALSE(test.engine.isLeftOut(test.handles[2]));
    EXPECT_TRUE(test.engine.isLeftOut(test.handles[1]));
    const std::vector<LayoutConflict> conflicts = test.engine.takeConflicts();
    ASSERT_EQ(conflicts.size(), 1u);
    EXPECT_EQ(conflicts[0].constraints, (Tags{0, 1}));
}

TEST(LayoutConflict, aLongChainThatDoesNotFitNamesAllItsLinks)
{
    constexpr int links = 200;
    TestSystem system{"", links + 1, {{{{0, 1}}, equal, 0, 1000}}};
    for (int i = 0; i < links; ++i)
        system.constraints.push_back({{{i + 1, 1}, {i, -1}}, atLeast, 10, 1000});
    system.constraints.push_back({{{links, 1}}, atMost, 10 * links - 1, 1000});
    TestEngine test(system);
    const std::vector<LayoutConflict> conflicts = test.engine.takeConflicts();
    ASSERT_EQ(conflicts.size(), 1u);
    EXPECT_EQ(conflicts[0].constraints.size(), std::size_t(links) + 2);
    EXPECT_EQ(conflicts[0].leftOut, std::uint64_t(links) + 1);
    EXPECT_EQ(test.value(links), 10.0 * links);
}

TEST(LayoutConflict, conflictsByTheHundredAreAllReportedOnce)
{
    TestSystem system{"", 300, {}};
    for (int i = 0; i < 300; ++i)
        system.constraints.push_back({{{i, 1}}, equal, double(i), 1000});
    for (int i = 0; i < 300; ++i)
        system.constraints.push_back({{{i, 1}}, equal, double(i) + 1, 1000});
    for (int i = 1; i < 300; ++i) // all in one part
        system.constraints.push_back({{{i, 1}, {i - 1, -1}}, equal, 7, 500});
    TestEngine test(system);
    const std::vector<LayoutConflict> conflicts = test.engine.takeConflicts();
    EXPECT_EQ(conflicts.size(), 300u);
    for (const LayoutConflict& conflict : conflicts) {
        EXPECT_EQ(conflict.constraints, (Tags{conflict.leftOut - 300, conflict.leftOut}));
    }
    for (int i = 0; i < 300; ++i)
        EXPECT_EQ(test.value(i), i);
    EXPECT_TRUE(test.engine.takeConflicts().empty());
}

TEST(LayoutConflict, hundredsOfContradictingConstraintsOnOneVariable)
{
    TestSystem system{"", 1, {}};
    for (int i = 0; i < 300; ++i)
        system.constraints.push_back({{{0, 1}}, equal, double(i % 100), 1000});
    TestEngine test(system);
    EXPECT_EQ(test.value(0), 0.0);
    std::size_t leftOut = 0;
    for (const LayoutConstraintHandle handle : test.handles)
        leftOut += test.engine.isLeftOut(handle);
    EXPECT_EQ(leftOut, 297u);
    // Every one that is left out is named.
    EXPECT_EQ(test.engine.takeConflicts().size(), 297u);
    EXPECT_TRUE(test.engine.takeConflicts().empty());
}

} // namespace
} // namespace RVCore::LayoutConflictTests
