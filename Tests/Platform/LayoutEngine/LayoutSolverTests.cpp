#include "LayoutSystems.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>

namespace RVCore::LayoutSolverTests {
namespace {

std::vector<LayoutVariable> changedOf(const LayoutEngine& engine)
{
    return {engine.changedVariables().begin(), engine.changedVariables().end()};
}

TestSystem makeChain(int links)
{
    TestSystem system{"", links, {{{{0, 1}}, equal, 3, 748}}};
    for (int i = 1; i < links; ++i)
        system.constraints.push_back({{{i, 1}, {i - 1, -1}}, equal, 1.5, 749});
    return system;
}

TEST(LayoutSolver, anEqualConstraintPutBackCostsNoWork)
{
    const TestSystem system = makeChain(500);
    TestEngine test(system);
    test.engine.solve();
    const LayoutStatistics before = test.engine.statistics();
    for (const LayoutConstraintHandle handle : test.handles)
        test.engine.removeConstraint(handle);
    test.handles.clear();
    for (const TestConstraint& one : system.constraints)
        test.handles.push_back(test.add(one));
    EXPECT_TRUE(test.engine.needsSolve());
    EXPECT_EQ(test.value(499), 3 + 1.5 * 499);
    EXPECT_FALSE(test.engine.needsSolve());
    const LayoutStatistics& after = test.engine.statistics();
    EXPECT_EQ(after.pivots, before.pivots);
    EXPECT_EQ(after.kinkMoves, before.kinkMoves);
    EXPECT_EQ(after.factorisations, before.factorisations);
    EXPECT_EQ(after.builds, before.builds);
    EXPECT_TRUE(test.engine.changedVariables().empty());
}

TEST(LayoutSolver, aChangedConstantKeepsBasisAndFactors)
{
    TestEngine test(makeChain(500));
    test.engine.solve();
    const LayoutStatistics before = test.engine.statistics();
    test.engine.setConstant(test.handles[250], 4.5);
    test.engine.solve();
    EXPECT_EQ(test.engine.changedVariables().size(), 250u);
    EXPECT_EQ(test.engine.changedVariables().front(), test.variables[250]);
    EXPECT_EQ(test.engine.statistics().pivots, before.pivots);
    EXPECT_EQ(test.engine.statistics().factorisations, before.factorisations);
}

TEST(LayoutSolver, withoutNotesNothingIsSolved)
{
    TestEngine test(makeChain(5));
    test.engine.solve();
    test.engine.solve();
    test.engine.setConstant(test.handles[0], 3); // what it is already
    test.engine.setPriority(test.handles[0], 748);
    EXPECT_FALSE(test.engine.needsSolve());
    test.engine.solve();
    EXPECT_EQ(test.engine.statistics().solves, 1u);
}

TEST(LayoutSolver, anEditTouchesOnlyItsOwnPart)
{
    TestEngine test({"",
                     4,
                     {{{{0, 1}}, equal, 1, 500},
                      {{{1, 1}, {0, -1}}, equal, 1, 500},
                      {{{2, 1}}, equal, 1, 500},
                      {{{3, 1}, {2, -1}}, equal, 1, 500}}});
    test.engine.solve();
    EXPECT_EQ(test.engine.statistics().parts, 2u);
    const std::uint64_t factorisations = test.engine.statistics().factorisations;
    test.engine.setConstant(test.handles[2], 7);
    test.engine.solve();
    EXPECT_EQ(changedOf(test.engine), (std::vector<LayoutVariable>{test.variables[2], test.variables[3]}));
    EXPECT_EQ(test.engine.statistics().factorisations, factorisations);
    test.engine.removeConstraint(test.handles[1]);
    test.engine.solve();
    EXPECT_EQ(changedOf(test.engine), std::vector<LayoutVariable>{test.variables[1]});
}

TEST(LayoutSolver, partsGrowTogetherAndAreFreeOfEachOtherAgain)
{
    TestEngine test({"", 2, {{{{0, 1}}, equal, 1, 500}, {{{1, 1}}, equal, 2, 400}}});
    test.engine.solve();
    EXPECT_EQ(test.engine.statistics().parts, 2u);
    const LayoutConstraintHandle link = test.add({{{0, 1}, {1, -1}}, equal, 0, 1000});
    EXPECT_EQ(test.value(1), 1.0);
    EXPECT_EQ(test.engine.statistics().parts, 1u);
    test.engine.removeConstraint(link);
    EXPECT_EQ(test.value(0), 1.0);
    EXPECT_EQ(test.value(1), 2.0);
}

TEST(LayoutSolver, aHintOnAKnownVariableBuildsNothing)
{
    TestEngine test({"", 2, {{{{0, 1}, {1, -1}}, equal, 0, 500}, {{{1, 1}}, equal, 2, 400}}});
    test.engine.solve();
    const std::uint64_t builds = test.engine.statistics().builds;
    const LayoutConstraintHandle hint = test.add({{{0, 1}}, atLeast, 9, 500});
    EXPECT_EQ(test.value(1), 9.0);
    test.engine.removeConstraint(hint);
    EXPECT_EQ(test.value(1), 2.0);
    EXPECT_EQ(test.engine.statistics().builds, builds);
}

std::vector<std::uint64_t> bitsAfterEdits(unsigned seed)
{
    std::mt19937 random(seed);
    const TestSystem system = makeRandomSystem(seed);
    TestEngine test(system);
    std::vector<std::uint64_t> bits;
    for (int step = 0; step < 10; ++step) {
        test.engine.setConstant(test.handles[random() % test.handles.size()], double(random() % 1000) / 7);
        if (step % 3 == 0)
            test.handles.push_back(test.add(makeRandomConstraint(random, system.variables)));
        for (int i = 0; i < system.variables; ++i)
            bits.push_back(std::bit_cast<std::uint64_t>(test.value(i)));
    }
    return bits;
}

TEST(LayoutSolver, theSameCallsGiveTheSameBits)
{
    for (unsigned seed = 0; seed < 300; ++seed)
        ASSERT_EQ(bitsAfterEdits(seed), bitsAfterEdits(seed)) << "seed " << seed;
}

TEST(LayoutSolver, manyEditsLeaveNoDrift)
{
    TestSystem system = makeChain(20);
    for (TestConstraint& one : system.constraints)
        one.constant += 0.1;
    system.constraints.push_back({{{19, 1}}, atMost, 20, 800});
    system.constraints.push_back({{{19, 1}}, atMost, 25, 1000});
    TestEngine test(system);
    for (int i = 0; i < 100000; ++i) {
        test.engine.setConstant(test.handles[std::size_t(i) % 20], double(i % 7) / 3);
        test.engine.solve();
    }
    for (int i = 0; i < 20; ++i)
        system.constraints[std::size_t(i)].constant = test.engine.constant(test.handles[std::size_t(i)]);
    TestEngine fresh(system);
    for (int i = 0; i < 20; ++i)
        EXPECT_NEAR(test.value(i), fresh.value(i), 1e-12) << i;
}

TEST(LayoutSolver, changedVariablesAreEachNamedOnceInOrder)
{
    TestEngine test(makeChain(50));
    test.engine.solve();
    EXPECT_EQ(changedOf(test.engine), test.variables);
    test.engine.setConstant(test.handles[0], 4);
    test.engine.solve();
    EXPECT_EQ(changedOf(test.engine), test.variables);
}

} // namespace
} // namespace RVCore::LayoutSolverTests
