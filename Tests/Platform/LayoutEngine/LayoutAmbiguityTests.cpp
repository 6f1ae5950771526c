#include "LayoutSystems.h"

#include <gtest/gtest.h>

namespace RVCore::LayoutAmbiguityTests {
namespace {

TEST(LayoutAmbiguity, aVariableThatIsAddedAfterTheQuestionIsAmbiguousToo)
{
    LayoutEngine engine;
    const LayoutVariable early = engine.addVariable(0);
    EXPECT_TRUE(engine.isAmbiguous(early));
    const LayoutVariable late = engine.addVariable(0);
    EXPECT_TRUE(engine.isAmbiguous(late));
    EXPECT_EQ(engine.ambiguousVariables(), (std::vector{early, late}));
}

TEST(LayoutAmbiguity, aVariableThatIsRemovedAfterTheQuestionIsListedNoMore)
{
    LayoutEngine engine;
    const LayoutVariable variable = engine.addVariable(0);
    EXPECT_EQ(engine.ambiguousVariables().size(), 1u);
    engine.removeVariable(variable);
    EXPECT_TRUE(engine.ambiguousVariables().empty());
}

// Its column stays until there is something to solve.
TEST(LayoutAmbiguity, aRemovedVariableOfAPartThatStaysIsListedNoMore)
{
    TestEngine test({"", 3, {{{{0, 1}, {1, 1}}, equal, 4, 1000}, {{{1, 1}, {2, 1}}, equal, 4, 1000}}});
    test.engine.solve();
    test.engine.removeConstraint(test.handles[1]);
    EXPECT_EQ(test.engine.ambiguousVariables(), test.variables);
    test.engine.removeVariable(test.variables[2]);
    EXPECT_EQ(test.engine.ambiguousVariables(), (std::vector{test.variables[0], test.variables[1]}));
}

// In all of these, bounds meet in the point that is chosen, so that one variable can only move together with others.

TEST(LayoutAmbiguity, aVariableThatCanMoveIfAnotherOneDoesIsAmbiguous)
{
    TestEngine test({"", 2, {{{{1, 1}}, atLeast, 4, 1000}, {{{0, 1}, {1, 1}}, atMost, 4, 1000}}});
    EXPECT_TRUE(test.engine.isAmbiguous(test.variables[0]));
    EXPECT_TRUE(test.engine.isAmbiguous(test.variables[1])); // 5 if the other one is -1
}

TEST(LayoutAmbiguity, aVariableThatPushesAnotherOneAlongIsAmbiguous)
{
    TestEngine test({"", 2, {{{{1, 1}}, atMost, -26, 1000}, {{{0, 1}, {1, -0.5}}, atMost, 13, 1000}}});
    EXPECT_TRUE(test.engine.isAmbiguous(test.variables[1])); // -30 if the other one is -2
}

TEST(LayoutAmbiguity, theMiddleOfAChainOfBoundsIsAmbiguous)
{
    TestEngine test({"",
                     3,
                     {{{{1, 1}, {0, -1}}, atLeast, -2, 1000},
                      {{{2, 1}, {1, -1}}, atLeast, -3, 1000},
                      {{{0, 1}}, equal, 5, 1000}}});
    EXPECT_TRUE(test.engine.isAmbiguous(test.variables[1])); // 4 if the last one is 1
}

TEST(LayoutAmbiguity, aSummandAtItsBoundIsAmbiguousIfTheSumHasAFreeOne)
{
    TestEngine test(
        {"",
         14,
         {{{{1, 1}}, atLeast, 0, 1000}, {{{5, 1}}, atLeast, 7, 1000}, {{{1, 1}, {5, 1}, {13, 1}}, equal, 7, 1000}}});
    EXPECT_TRUE(test.engine.isAmbiguous(test.variables[1])); // 1 if the free one is -1
}

TEST(LayoutAmbiguity, askingTakesNoWorkWhereEverythingIsSettled)
{
    TestSystem system{"", 1000, {{{{0, 1}}, equal, 8, 1000}}};
    for (int i = 1; i < system.variables; ++i)
        system.constraints.push_back({{{i, 1}, {i - 1, -1}}, equal, 8, 1000});
    TestEngine test(system);
    test.engine.solve();
    const LayoutStatistics before = test.engine.statistics();
    EXPECT_TRUE(test.engine.ambiguousVariables().empty());
    EXPECT_EQ(test.engine.statistics().factorisations, before.factorisations);
    EXPECT_EQ(test.engine.statistics().pivots, before.pivots);
}

} // namespace
} // namespace RVCore::LayoutAmbiguityTests
