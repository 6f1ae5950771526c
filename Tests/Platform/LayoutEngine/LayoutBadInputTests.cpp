#include "LayoutSystems.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace RVCore::LayoutBadInputTests {
namespace {

using Tags = std::vector<std::uint64_t>;

// An answer was found with work in proportion to the size of the system.
void expectBoundedWork(TestEngine& test, const TestSystem& system)
{
    test.engine.solve();
    const LayoutStatistics& statistics = test.engine.statistics();
    EXPECT_EQ(statistics.limitsReached, 0u);
    EXPECT_LE(statistics.pivots + statistics.kinkMoves, 4 * system.constraints.size());
    EXPECT_LE(statistics.factorisations, 4 * system.constraints.size());
}

// The conflicts, of which no two are the same and none is told twice; what they leave out is what is left out.
std::vector<LayoutConflict> distinctConflicts(TestEngine& test)
{
    std::vector<LayoutConflict> conflicts = test.engine.takeConflicts();
    std::set<Tags> sets;
    std::set<std::uint64_t> leftOut;
    for (const LayoutConflict& conflict : conflicts) {
        EXPECT_TRUE(sets.insert(conflict.constraints).second);
        EXPECT_TRUE(leftOut.insert(conflict.leftOut).second);
        EXPECT_TRUE(test.engine.isLeftOut(test.handles[std::size_t(conflict.leftOut)]));
    }
    std::size_t count = 0;
    for (const LayoutConstraintHandle handle : test.handles)
        count += test.engine.isLeftOut(handle);
    EXPECT_EQ(count, conflicts.size());
    EXPECT_TRUE(test.engine.takeConflicts().empty());
    return conflicts;
}

TEST(LayoutBadInput, everyLinkOfAChainContradictedByAnother)
{
    constexpr int links = 400;
    TestSystem system{"", links + 1, {{{{0, 1}}, equal, 0, 1000}}};
    for (int i = 0; i < links; ++i) {
        system.constraints.push_back({{{i + 1, 1}, {i, -1}}, equal, 1, 1000});
        system.constraints.push_back({{{i + 1, 1}, {i, -1}}, equal, 2, 1000});
    }
    TestEngine test(system);
    expectBoundedWork(test, system);
    const std::vector<LayoutConflict> conflicts = distinctConflicts(test);
    ASSERT_EQ(conflicts.size(), std::size_t(links));
    for (const LayoutConflict& conflict : conflicts)
        EXPECT_EQ(conflict.constraints, (Tags{conflict.leftOut - 1, conflict.leftOut}));
    EXPECT_EQ(test.value(links), links);
}

TEST(LayoutBadInput, linksBetweenPlacesThatAreAllFixed)
{
    constexpr int count = 400;
    TestSystem system{"", count, {}};
    for (int i = 0; i < count; ++i)
        system.constraints.push_back({{{i, 1}}, equal, 0, 1000});
    for (int i = 1; i < count; ++i)
        system.constraints.push_back({{{i, 1}, {i - 1, -1}}, equal, 7, 1000});
    TestEngine test(system);
    expectBoundedWork(test, system);
    const std::vector<LayoutConflict> conflicts = distinctConflicts(test);
    ASSERT_EQ(conflicts.size(), std::size_t(count - 1));
    for (const LayoutConflict& conflict : conflicts) {
        const std::uint64_t place = conflict.leftOut - count;
        EXPECT_EQ(conflict.constraints, (Tags{place, place + 1, conflict.leftOut}));
    }
}

TEST(LayoutBadInput, hundredsOfContradictionsThatHaveNothingToDoWithEachOther)
{
    constexpr int count = 400;
    TestSystem system{"", 2 * count, {}};
    for (int i = 0; i < count; ++i) {
        system.constraints.push_back({{{2 * i, 1}, {2 * i + 1, -1}}, equal, 3, 1000});
        system.constraints.push_back({{{2 * i, 1}, {2 * i + 1, -1}}, equal, 5, 1000});
    }
    TestEngine test(system);
    expectBoundedWork(test, system);
    EXPECT_EQ(distinctConflicts(test).size(), std::size_t(count));
    EXPECT_EQ(test.engine.statistics().parts, unsigned(count));
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(test.value(2 * i) - test.value(2 * i + 1), 3) << i;
}

TEST(LayoutBadInput, aCauseThatIsLeftAloneIsNotReportedAgain)
{
    TestSystem system{"", 100, {}};
    for (int i = 0; i < 100; ++i)
        system.constraints.push_back({{{i, 1}}, atLeast, 10, 1000});
    for (int i = 0; i < 100; ++i)
        system.constraints.push_back({{{i, 1}, {(i + 1) % 100, 1}}, atMost, 15, 1000});
    TestEngine test(system);
    EXPECT_EQ(distinctConflicts(test).size(), 100u);
    for (int i = 0; i < 50; ++i) {
        const LayoutConstraintHandle other = test.add({{{i, 1}, {i + 7, -1}}, equal, 5, 500});
        EXPECT_TRUE(test.engine.takeConflicts().empty()) << i;
        test.engine.setConstant(other, 3);
        EXPECT_TRUE(test.engine.takeConflicts().empty()) << i;
        test.engine.removeConstraint(other);
        EXPECT_TRUE(test.engine.takeConflicts().empty()) << i;
    }
}

TEST(LayoutBadInput, aCycleInWhichEveryLinkRises)
{
    for (const int length : {2, 10, 100, 400}) {
        TestSystem system{"", length, {}};
        for (int i = 0; i < length; ++i)
            system.constraints.push_back({{{(i + 1) % length, 1}, {i, -1}}, atLeast, 1, 1000});
        TestEngine test(system);
        expectBoundedWork(test, system);
        const std::vector<LayoutConflict> conflicts = distinctConflicts(test);
        ASSERT_EQ(conflicts.size(), 1u);
        EXPECT_EQ(conflicts[0].constraints.size(), std::size_t(length));
        EXPECT_EQ(conflicts[0].leftOut, std::uint64_t(length - 1));
    }
}

TEST(LayoutBadInput, manyCyclesThatShareTheirLinks)
{
    constexpr int count = 100;
    TestSystem system{"", count, {}};
    for (int i = 0; i < count; ++i) {
        for (int step = 1; step <= 5; ++step)
            system.constraints.push_back({{{i, 1}, {(i + step) % count, -1}}, atLeast, 1, 1000});
    }
    TestEngine test(system);
    expectBoundedWork(test, system);
    // 5 links lead out of the last place to the first five, 4 out of the one before to the first four, and so on.
    EXPECT_EQ(distinctConflicts(test).size(), 15u);
}

TEST(LayoutBadInput, aCyclicChainThatIsTooShortGivesWayByWhatIsMissing)
{
    constexpr int length = 300;
    TestSystem system{"", length, {{{{0, 1}}, equal, 0, 748}}};
    for (int i = 0; i < length; ++i)
        system.constraints.push_back({{{(i + 1) % length, 1}, {i, -1}}, equal, 2, 749});
    TestEngine test(system);
    expectBoundedWork(test, system);
    double sum = 0;
    for (const LayoutConstraintHandle handle : test.handles)
        sum += test.engine.violation(handle);
    EXPECT_NEAR(sum, 2.0 * length, 1e-9);
    EXPECT_TRUE(test.engine.takeConflicts().empty());
}

TEST(LayoutBadInput, zeroCoefficientsAreAsIfTheyWereNotThere)
{
    TestSystem system{"", 300, {}};
    for (int i = 0; i < 300; ++i)
        system.constraints.push_back({{{i, 1}, {(i + 1) % 300, 0}, {(i + 2) % 300, -0.0}}, equal, double(i), 749});
    for (int i = 0; i < 300; ++i)
        system.constraints.push_back({{{i, 0}}, equal, 0, 1000});
    TestEngine test(system);
    expectBoundedWork(test, system);
    EXPECT_EQ(test.engine.statistics().parts, 300u);
    for (int i = 0; i < 300; ++i)
        EXPECT_EQ(test.value(i), i);
    EXPECT_TRUE(test.engine.takeConflicts().empty());
}

TEST(LayoutBadInput, emptyContradictionsByTheHundredAreEachReportedOnce)
{
    TestSystem system{"", 1, {}};
    for (int i = 0; i < 300; ++i)
        system.constraints.push_back({{{0, 0}}, equal, double(i % 2), 1000});
    TestEngine test(system);
    expectBoundedWork(test, system);
    EXPECT_EQ(distinctConflicts(test).size(), 150u);
}

TEST(LayoutBadInput, duplicatesByTheHundredAreNoConflictAndNoWork)
{
    TestSystem system{"", 11, {{{{0, 1}}, equal, 1, 1000}}};
    for (int i = 0; i < 1000; ++i)
        system.constraints.push_back({{{i % 10 + 1, 1}, {i % 10, -1}}, equal, 2, i % 3 ? 1000.0f : 500.0f});
    TestEngine test(system);
    expectBoundedWork(test, system);
    EXPECT_EQ(test.engine.statistics().pivots, 0u);
    EXPECT_EQ(test.value(10), 21);
    EXPECT_TRUE(test.engine.takeConflicts().empty());
    // All but one of them go, and nothing moves.
    for (std::size_t i = 11; i < test.handles.size(); ++i)
        test.engine.removeConstraint(test.handles[i]);
    EXPECT_EQ(test.value(10), 21);
}

TEST(LayoutBadInput, variablesInNoConstraintAreZeroAndNoWork)
{
    TestSystem system{"", 10000, {{{{5000, 1}}, equal, 3, 500}}};
    TestEngine test(system);
    expectBoundedWork(test, system);
    EXPECT_EQ(test.engine.statistics().parts, 1u);
    EXPECT_EQ(test.value(5000), 3);
    EXPECT_EQ(test.value(9999), 0);
    EXPECT_EQ(test.engine.ambiguousVariables().size(), 9999u);
}

} // namespace
} // namespace RVCore::LayoutBadInputTests
