#include "LayoutSystems.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace RVCore::LayoutEngineTests {
namespace {

TEST(LayoutEngine, aVariableInNoConstraintIsZeroAndAmbiguous)
{
    LayoutEngine engine;
    const LayoutVariable x = engine.addVariable(7);
    EXPECT_EQ(engine.value(x), 0.0);
    EXPECT_TRUE(engine.isAmbiguous(x));
    EXPECT_EQ(engine.owner(x), 7u);
}

TEST(LayoutEngine, solvesATextbookSystem)
{
    // Left, middle and right of an interval: the middle is half way, left of right by at least ten, right at most
    // a hundred (Badros, Borning, Stuckey, ACM Transactions on Computer-Human Interaction 8, 2001).
    TestEngine test({"",
                     3,
                     {{{{1, 2}, {0, -1}, {2, -1}}, equal, 0, 1000},
                      {{{2, 1}, {0, -1}}, atLeast, 10, 1000},
                      {{{2, 1}}, atMost, 100, 1000},
                      {{{0, 1}}, atLeast, 0, 1000},
                      {{{1, 1}}, equal, 45, 500},
                      {{{0, 1}}, equal, 30, 250}}});
    EXPECT_EQ(test.value(1), 45.0);
    EXPECT_EQ(test.value(0), 30.0);
    EXPECT_EQ(test.value(2), 60.0);
}

TEST(LayoutEngine, oneConstraintBeatsAThousandOfTheNextPriority)
{
    TestSystem system{"", 1, {{{{0, 1}}, equal, 1, 749}}};
    for (int i = 0; i < 1000; ++i)
        system.constraints.push_back({{{0, 1}}, equal, 100, 748});
    EXPECT_EQ(TestEngine(system).value(0), 1.0);
}

TEST(LayoutEngine, prioritiesAThousandthApartAreLevels)
{
    TestEngine test({"", 1, {{{{0, 1}}, equal, 1, 500.001f}, {{{0, 1}}, equal, 2, 500}, {{{0, 1}}, equal, 2, 500}}});
    EXPECT_EQ(test.value(0), 1.0);
}

TEST(LayoutEngine, withinAPriorityTheSumOfViolationsIsLeast)
{
    // The median, not the mean.
    TestSystem system{"", 1, {}};
    for (const double constant : {0.0, 1.0, 7.0, 100.0, 1000.0})
        system.constraints.push_back({{{0, 1}}, equal, constant, 500});
    EXPECT_EQ(TestEngine(system).value(0), 7.0);
}

TEST(LayoutEngine, violationsCountInTheConstraintsOwnUnits)
{
    // Three units of violation per point beat one and one.
    TestEngine test({"", 1, {{{{0, 3}}, equal, 30, 500}, {{{0, 1}}, equal, 0, 500}, {{{0, 1}}, equal, 0, 500}}});
    EXPECT_EQ(test.value(0), 10.0);
    EXPECT_EQ(test.engine.violation(test.handles[0]), 0.0);
    EXPECT_EQ(test.engine.violation(test.handles[1]), 10.0);
}

TEST(LayoutEngine, aTieIsDecidedByTheNextPriority)
{
    TestEngine test({"", 1, {{{{0, 1}}, equal, 10, 500}, {{{0, 1}}, equal, 20, 500}, {{{0, 1}}, equal, 13, 100}}});
    EXPECT_EQ(test.value(0), 13.0);
}

TEST(LayoutEngine, aTieThatNoPriorityDecidesKeepsTheNearEndInPlace)
{
    // Two elements of 50 in a chain, tied with equal strength to both ends of a row of 70.
    TestEngine test(
        {"", 2, {{{{0, 1}, {1, -1}}, equal, -50, 749}, {{{0, 1}}, equal, 0, 748}, {{{1, 1}}, equal, 20, 748}}});
    EXPECT_EQ(test.value(0), 0.0);
    EXPECT_EQ(test.value(1), 50.0);
}

TEST(LayoutEngine, whatIsFreeGoesBelowZeroOnlyWhereAConstraintSendsIt)
{
    TestEngine test({"", 2, {{{{0, 1}}, equal, -30, 1}, {{{1, 1}, {0, -1}}, atMost, 10, 1000}}});
    EXPECT_EQ(test.value(0), -30.0);
    EXPECT_EQ(test.value(1), -20.0);
    EXPECT_EQ(test.engine.ambiguousVariables().size(), 1u);
}

TEST(LayoutEngine, inequalitiesHoldWithoutPulling)
{
    TestEngine test({"",
                     2,
                     {{{{0, 1}}, atLeast, 10, 1000},
                      {{{0, 1}}, equal, 15, 1},
                      {{{1, -2}}, atMost, -10, 1000}}}); // x1 >= 5 by way of a negative coefficient
    EXPECT_EQ(test.value(0), 15.0);
    EXPECT_EQ(test.value(1), 5.0);
}

TEST(LayoutEngine, repeatedVariablesAreSummedAndZerosDropped)
{
    TestEngine test({"", 2, {{{{0, 1}, {1, 0}, {0, 1}, {1, 5}, {1, -5}}, equal, 8, 1000}}});
    EXPECT_EQ(test.value(0), 4.0);
    EXPECT_EQ(test.value(1), 0.0);
    EXPECT_TRUE(test.engine.isAmbiguous(test.variables[1]));
}

TEST(LayoutEngine, aFormWithoutVariablesHoldsOrIsAConflictByItself)
{
    TestEngine test({"",
                     1,
                     {{{}, atLeast, -1, 1000},
                      {{{0, 0}}, equal, 0, 1000},
                      {{{0, 1}, {0, -1}}, atMost, -1, 1000},
                      {{}, equal, 3, 500}}});
    const std::vector<LayoutConflict> conflicts = test.engine.takeConflicts();
    ASSERT_EQ(conflicts.size(), 1u);
    EXPECT_EQ(conflicts[0].constraints, std::vector<std::uint64_t>{2});
    EXPECT_TRUE(test.engine.isLeftOut(test.handles[2]));
    EXPECT_FALSE(test.engine.isLeftOut(test.handles[3]));
    EXPECT_EQ(test.engine.violation(test.handles[3]), 3.0);
    test.engine.setConstant(test.handles[2], 0);
    EXPECT_FALSE(test.engine.isLeftOut(test.handles[2]));
    EXPECT_TRUE(test.engine.takeConflicts().empty());
}

TEST(LayoutEngine, duplicatesOfRequiredConstraintsAreNoConflict)
{
    TestSystem system{"", 2, {}};
    for (int i = 0; i < 50; ++i)
        system.constraints.push_back({{{0, 1.0 + i}, {1, -1.0 - i}}, equal, 3.0 + 3.0 * i, 1000});
    system.constraints.push_back({{{1, 1}}, equal, 4, 1000});
    TestEngine test(system);
    EXPECT_EQ(test.value(0), 7.0);
    EXPECT_TRUE(test.engine.takeConflicts().empty());
}

TEST(LayoutEngine, aCycleThatClosesHoldsAndOneThatDoesNotGivesWay)
{
    TestSystem system{"", 100, {}};
    for (int i = 0; i < 100; ++i)
        system.constraints.push_back({{{(i + 1) % 100, 1}, {i, -1}}, equal, i < 99 ? 2.0 : -198.0, 749});
    system.constraints.push_back({{{0, 1}}, equal, 10, 748});
    EXPECT_EQ(TestEngine(system).value(99), 208.0);
    system.constraints[99].constant = -190;
    TestEngine open(system);
    double sum = 0;
    for (int i = 0; i < 100; ++i)
        sum += open.engine.violation(open.handles[std::size_t(i)]);
    EXPECT_NEAR(sum, 8.0, 1e-9);
    EXPECT_EQ(open.value(0), 10.0);
}

TEST(LayoutEngine, aChainOfTenThousandHoldsEndToEnd)
{
    constexpr int count = 10000;
    TestSystem system{"", count, {{{{0, 1}}, equal, 5, 1000}}};
    for (int i = 1; i < count; ++i)
        system.constraints.push_back({{{i, 1}, {i - 1, -1}}, equal, 0.25, 749});
    TestEngine test(system);
    EXPECT_EQ(test.value(count - 1), 5 + 0.25 * (count - 1));
    test.engine.setConstant(test.handles[0], 1e7);
    EXPECT_EQ(test.value(count - 1), 1e7 + 0.25 * (count - 1));
    EXPECT_EQ(test.engine.statistics().pivots, 0u);
}

TEST(LayoutEngine, removedConstraintsLeaveNoTrace)
{
    TestEngine test({"", 2, {{{{0, 1}}, equal, 10, 500}, {{{1, 1}, {0, -1}}, equal, 3, 1000}}});
    EXPECT_EQ(test.value(1), 13.0);
    test.engine.removeConstraint(test.handles[0]);
    EXPECT_EQ(test.value(0), 0.0);
    EXPECT_EQ(test.value(1), 3.0);
    test.engine.removeConstraint(test.handles[1]);
    EXPECT_EQ(test.value(1), 0.0);
    EXPECT_FALSE(test.engine.contains(test.handles[1]));
    test.engine.removeVariable(test.variables[0]);
    test.engine.removeVariable(test.variables[1]);
    EXPECT_EQ(test.engine.statistics().parts, 0u);
}

TEST(LayoutEngine, theNumberOfARemovedVariableStartsAnew)
{
    LayoutEngine engine;
    const LayoutVariable x = engine.addVariable(1);
    const LayoutTerm term{x, 1};
    const LayoutConstraintHandle handle = engine.addConstraint({&term, 1}, equal, 9, 500, 0);
    EXPECT_EQ(engine.value(x), 9.0);
    engine.removeConstraint(handle);
    engine.removeVariable(x);
    const LayoutVariable early = engine.addVariable(2); // before the solver has let go of x
    engine.solve();
    const LayoutVariable late = engine.addVariable(3);
    EXPECT_EQ(engine.value(early), 0.0);
    EXPECT_EQ(engine.value(late), 0.0);
    EXPECT_EQ(engine.owner(early), 2u);
    EXPECT_EQ(engine.owner(late), 3u);
    EXPECT_NE(early, late);
}

TEST(LayoutEngine, aChangedPriorityTakesEffect)
{
    TestEngine test({"", 1, {{{{0, 1}}, equal, 1, 500}, {{{0, 1}}, equal, 2, 400}}});
    EXPECT_EQ(test.value(0), 1.0);
    test.engine.setPriority(test.handles[1], 600);
    EXPECT_EQ(test.value(0), 2.0);
    test.engine.setPriority(test.handles[0], 1000);
    EXPECT_EQ(test.value(0), 1.0);
    EXPECT_EQ(test.engine.priority(test.handles[0]), 1000.0f);
}

TEST(LayoutEngine, largeCoordinatesKeepTheirDigits)
{
    TestSystem system{"", 200, {{{{0, 1}}, equal, 1e7, 1000}}};
    for (int i = 1; i < 200; ++i)
        system.constraints.push_back({{{i, 1}, {i - 1, -1}}, equal, 0.1, 749});
    EXPECT_NEAR(TestEngine(system).value(199), 1e7 + 19.9, 1e-6);
}

TEST(LayoutEngine, aValueThatWasHugeOnceHidesNothingLater)
{
    TestEngine test({"",
                     3,
                     {{{{0, 0.001}}, equal, 1e9, 1000},
                      {{{0, 1}, {1, 1e-3}}, atMost, 2e12, 900},
                      {{{1, 1000}, {2, 1000}, {0, 1e-6}}, atLeast, 7, 500}}});
    test.engine.solve();
    test.engine.setConstant(test.handles[0], 0);
    EXPECT_NEAR(test.value(1) + test.value(2), 0.007, 1e-9);
}

using LayoutEngineDeathTest = testing::Test;

TEST(LayoutEngineDeathTest, stopsOnValuesThatAreNotFinite)
{
    LayoutEngine engine;
    const LayoutTerm term{engine.addVariable(0), 1};
    const LayoutTerm bad{term.variable, std::numeric_limits<double>::quiet_NaN()};
    EXPECT_DEATH(engine.addConstraint({&bad, 1}, equal, 0, 500, 0), "LayoutEngine: a coefficient is not finite");
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_DEATH(engine.addConstraint({&term, 1}, equal, infinity, 500, 0), "LayoutEngine: a constant is not finite");
    const LayoutConstraintHandle handle = engine.addConstraint({&term, 1}, equal, 0, 500, 0);
    EXPECT_DEATH(engine.setConstant(handle, -infinity), "LayoutEngine: a constant is not finite");
}

TEST(LayoutEngineDeathTest, stopsOnPrioritiesOutOfRange)
{
    LayoutEngine engine;
    const LayoutTerm term{engine.addVariable(0), 1};
    for (const float priority : {0.0f, -1.0f, 1000.5f, std::numeric_limits<float>::quiet_NaN()})
        EXPECT_DEATH(engine.addConstraint({&term, 1}, equal, 0, priority, 0),
                     "LayoutEngine: a priority is outside \\(0, 1000\\]");
}

TEST(LayoutEngineDeathTest, stopsOnWhatIsNotOfThisEngine)
{
    LayoutEngine engine;
    const LayoutVariable x = engine.addVariable(0);
    const LayoutTerm term{x, 1};
    const LayoutConstraintHandle handle = engine.addConstraint({&term, 1}, equal, 0, 500, 0);
    EXPECT_DEATH(engine.removeVariable(x), "LayoutEngine: a variable was removed that an installed constraint uses");
    engine.removeConstraint(handle);
    EXPECT_DEATH(engine.removeConstraint(handle), "LayoutEngine: a constraint is not installed in this engine");
    EXPECT_DEATH(engine.value({}), "LayoutEngine: a variable is not one of this engine");
    engine.addConstraint({&term, 1}, equal, 0, 500, 0);
    EXPECT_DEATH(engine.setPriority(handle, 3), "LayoutEngine: a constraint is not installed in this engine");
}

} // namespace
} // namespace RVCore::LayoutEngineTests
