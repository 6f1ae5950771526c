#include "LayoutComparison.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

namespace RVCore::LayoutWorstCaseTests {
namespace {

// n x n variables at least 0, whose rows and columns sum up to 1; every one of them costs something. All vertices are
// degenerate.
TestSystem makeAssignment(int size, std::mt19937& random)
{
    TestSystem system{"assignment", size * size, {}};
    for (int i = 0; i < size; ++i) {
        TestConstraint row{{}, equal, 1, 1000};
        TestConstraint column{{}, equal, 1, 1000};
        for (int j = 0; j < size; ++j) {
            row.terms.push_back({i * size + j, 1});
            column.terms.push_back({j * size + i, 1});
            system.constraints.push_back({{{i * size + j, 1}}, atLeast, 0, 1000});
            system.constraints.push_back({{{i * size + j, double(1 + random() % 11)}}, atMost, 0, 500});
        }
        system.constraints.push_back(row);
        system.constraints.push_back(column);
    }
    return system;
}

TEST(LayoutWorstCase, assignmentsTakeNoMoreExchangesThanTheyHaveVariables)
{
    std::mt19937 random(5);
    for (const int size : {2, 4, 8, 12, 16, 20, 24}) {
        const TestSystem system = makeAssignment(size, random);
        TestEngine test(system);
        for (int i = 0; i < size; ++i) {
            double sum = 0;
            for (int j = 0; j < size; ++j)
                sum += test.value(i * size + j);
            EXPECT_NEAR(sum, 1, 1e-9) << "row " << i << " of " << size;
        }
        const LayoutStatistics& statistics = test.engine.statistics();
        EXPECT_EQ(statistics.limitsReached, 0u) << size;
        EXPECT_LE(statistics.pivots, unsigned(size * size)) << size;
        EXPECT_TRUE(test.engine.takeConflicts().empty());
    }
}

TEST(LayoutWorstCase, assignmentsCostAsLittleAsTheOracleFinds)
{
    std::mt19937 random(6);
    for (int i = 0; i < 20; ++i) {
        const TestSystem system = makeAssignment(2 + i % 5, random);
        ASSERT_EQ(faultsOf(system), "") << text(system);
    }
}

// The distorted cube that makes a steepest first choice visit every corner (Klee and Minty, Inequalities III, 1972).
TEST(LayoutWorstCase, distortedCubesTakeAFewExchangesForEachDimension)
{
    for (const int size : {2, 4, 8, 12, 16, 20}) {
        TestSystem system{"cube", size, {}};
        TestConstraint goal{{}, atLeast, std::pow(5.0, size + 1), 500};
        for (int i = 0; i < size; ++i) {
            TestConstraint face{{}, atMost, std::pow(5.0, i + 1), 1000};
            for (int j = 0; j < i; ++j)
                face.terms.push_back({j, std::pow(2.0, i - j + 1)});
            face.terms.push_back({i, 1});
            system.constraints.push_back(face);
            system.constraints.push_back({{{i, 1}}, atLeast, 0, 1000});
            goal.terms.push_back({i, std::pow(2.0, size - 1 - i)});
        }
        system.constraints.push_back(goal);
        TestEngine test(system);
        EXPECT_NEAR(test.value(size - 1), std::pow(5.0, size), 1e-9 * std::pow(5.0, size)) << size;
        EXPECT_EQ(test.engine.statistics().limitsReached, 0u) << size;
        EXPECT_LE(test.engine.statistics().pivots, unsigned(4 * size)) << size;
    }
}

// The same in a box: each side is a fraction away from the one before (Papadimitriou, Steiglitz, Combinatorial
// Optimization, 1982).
TEST(LayoutWorstCase, squashedCubesTakeAFewExchangesForEachDimension)
{
    for (const int size : {2, 5, 10, 15, 20, 25, 30}) {
        for (const double fraction : {0.1, 1.0 / 3, 0.45}) {
            TestSystem system{"cube", size, {}};
            for (int i = 0; i < size; ++i) {
                TestConstraint low{{{i, 1}}, atLeast, 0, 1000}, high{{{i, 1}}, atMost, 1, 1000};
                if (i > 0) {
                    low.terms.push_back({i - 1, -fraction});
                    high.terms.push_back({i - 1, fraction});
                }
                system.constraints.push_back(low);
                system.constraints.push_back(high);
            }
            system.constraints.push_back({{{size - 1, 1}}, atLeast, 10, 500});
            TestEngine test(system);
            EXPECT_NEAR(test.value(size - 1), 1, 1e-9) << size;
            EXPECT_EQ(test.engine.statistics().limitsReached, 0u) << size;
            EXPECT_LE(test.engine.statistics().pivots, unsigned(4 * size)) << size;
        }
    }
}

// On this the rule of the steepest first choice goes round in a circle (Beale, Naval Research Logistics Quarterly 2,
// 1955).
TEST(LayoutWorstCase, theClassicCycleIsLeft)
{
    const TestSystem system{"cycle",
                            4,
                            {{{{0, 0.25}, {1, -60}, {2, -0.04}, {3, 9}}, atMost, 0, 1000},
                             {{{0, 0.5}, {1, -90}, {2, -0.02}, {3, 3}}, atMost, 0, 1000},
                             {{{2, 1}}, atMost, 1, 1000},
                             {{{0, 1}}, atLeast, 0, 1000},
                             {{{1, 1}}, atLeast, 0, 1000},
                             {{{2, 1}}, atLeast, 0, 1000},
                             {{{3, 1}}, atLeast, 0, 1000},
                             {{{0, 0.75}, {1, -150}, {2, 0.02}, {3, -6}}, atLeast, 1, 500}}};
    TestEngine test(system);
    EXPECT_NEAR(test.engine.violation(test.handles.back()), 1 - 0.05, 1e-12);
    EXPECT_EQ(test.engine.statistics().limitsReached, 0u);
    EXPECT_LE(test.engine.statistics().pivots, 20u);
    EXPECT_EQ(faultsOf(system), "");
}

// Everything meets in the origin, and nothing is sparse, so a simplex method stalls at every step.
TestSystem makeCone(int size)
{
    std::mt19937 random{unsigned(size)};
    const auto plane = [&](double constant, LayoutRelation relation, float priority) {
        TestConstraint result{{}, relation, constant, priority};
        for (int i = 0; i < size; ++i)
            result.terms.push_back({i, double(random() % 19) - 9});
        return result;
    };
    TestSystem system{"cone", size, {}};
    for (int i = 0; i < 4 * size; ++i)
        system.constraints.push_back(plane(0, atMost, 1000));
    for (int i = 0; i < 5; ++i)
        system.constraints.push_back(plane(1000, atLeast, float(500 + i)));
    return system;
}

// Either it is solved, or statistics say that it may not be; required constraints hold, the number of exchanges is
// bounded, and the engine is fit for what comes next.
TEST(LayoutWorstCase, denseConesAreSolvedOrTheLimitIsReported)
{
    for (const int size : {5, 10, 15, 20, 25, 30, 40, 50}) {
        TestSystem system = makeCone(size);
        TestEngine test(system);
        const OracleAnswer answer = answerOf(test, system);
        const LayoutStatistics statistics = test.engine.statistics();
        std::printf("size %d: %zu constraints, %u exchanges%s\n", size, system.constraints.size(),
                    unsigned(statistics.pivots), statistics.limitsReached > 0 ? ", limit reached" : "");
        EXPECT_LE(statistics.pivots, 40 * system.constraints.size()) << size;
        EXPECT_NEAR(answer.violations.at(1000), 0, 1e-6) << size;
        if (statistics.limitsReached == 0)
            EXPECT_EQ(difference(answer, askOracle(system)), "") << size;
        else
            EXPECT_GT(size, 30);
        // All but a few planes go.
        for (std::size_t i = std::size_t(size) / 2; i < test.handles.size(); ++i)
            test.engine.removeConstraint(test.handles[i]);
        system.constraints.resize(std::size_t(size) / 2);
        test.handles.resize(system.constraints.size());
        system.constraints[0].constant = -1;
        test.engine.setConstant(test.handles[0], -1);
        EXPECT_EQ(difference(answerOf(test, system), askOracle(system)), "") << size;
        EXPECT_EQ(test.engine.statistics().limitsReached, statistics.limitsReached) << size;
    }
}

} // namespace
} // namespace RVCore::LayoutWorstCaseTests
