#include "LayoutSystems.h"

#include <gtest/gtest.h>

#include <cmath>

namespace RVCore::LayoutNumberTests {
namespace {

// What coordinates may be off by, in points, wherever they are.
constexpr double accuracy = 1e-3;

// Sizes that no binary number hits, with gaps between them.
double oddSize(int i)
{
    return 0.1 * (i % 13) + 1.0 / (3 + i % 7) + (i % 5 ? 20.0 : 12345.678);
}

TEST(LayoutNumbers, aChainOfAThousandOddSizesEndsWhereItShould)
{
    for (const double start : {0.1, 1e6 + 1.0 / 3, 1e7 - 3e6, -1e7}) {
        TestSystem system{"", 2000, {{{{0, 1}}, equal, start, 748}}};
        for (int i = 0; i < 1000; ++i) {
            if (i > 0)
                system.constraints.push_back({{{2 * i, 1}, {2 * i - 2, -1}, {2 * i - 1, -1}}, equal, 0.7, 749});
            system.constraints.push_back({{{2 * i + 1, 1}}, atLeast, oddSize(i), 750});
            system.constraints.push_back({{{2 * i + 1, 1}}, atMost, oddSize(i), 251});
        }
        TestEngine test(system);
        long double expected = start;
        for (int i = 0; i < 1000; ++i) {
            ASSERT_NEAR(test.value(2 * i), double(expected), accuracy) << i;
            expected += static_cast<long double>(oddSize(i)) + 0.7L;
        }
    }
}

TEST(LayoutNumbers, aChainThatIsHeldAtItsFarEndBeginsWhereItShould)
{
    TestSystem system{"", 1000, {{{{999, 1}}, equal, 1e7, 1000}}};
    long double expected = 1e7;
    for (int i = 1; i < 1000; ++i) {
        system.constraints.push_back({{{i, 1}, {i - 1, -1}}, equal, oddSize(i), 749});
        expected -= static_cast<long double>(oddSize(i));
    }
    EXPECT_NEAR(TestEngine(system).value(0), double(expected), accuracy);
}

// Each box is centred in the one around it, which is far from the origin and a little larger.
TEST(LayoutNumbers, centresOfNestedBoxesStayWhereTheyAre)
{
    constexpr int depth = 300;
    constexpr double start = 9.9e6 + 1.0 / 3;
    TestSystem system{"", 2 * depth, {{{{0, 1}}, equal, start, 1000}, {{{1, 1}}, equal, 1e5, 1000}}};
    for (int i = 1; i < depth; ++i) {
        const int x = 2 * i;
        system.constraints.push_back({{{x, 1}, {x + 1, 0.5}, {x - 2, -1}, {x - 1, -0.5}}, equal, 0, 749});
        system.constraints.push_back({{{x + 1, 1}, {x - 1, -1}}, equal, -0.1 - 1.0 / (3 + i % 7), 750});
    }
    TestEngine test(system);
    for (int i = 0; i < depth; ++i)
        ASSERT_NEAR(test.value(2 * i) + test.value(2 * i + 1) / 2, start + 5e4, accuracy) << i;
}

// A position that is a fraction of another, ten deep, down and up again.
TEST(LayoutNumbers, multipliersUndoEachOther)
{
    TestSystem system{"", 21, {{{{0, 1}}, equal, 1e7, 1000}}};
    for (int i = 1; i <= 20; ++i)
        system.constraints.push_back({{{i, i <= 10 ? 3.0 : 1.0}, {i - 1, i <= 10 ? -1.0 : -3.0}}, equal, 0, 749});
    EXPECT_NEAR(TestEngine(system).value(20), 1e7, accuracy);
}

// A row of members of which one takes what is left; the sizes do not come out even.
TestSystem makeRow(int members)
{
    const int host = 2 * members;
    TestSystem system{"", host + 1, {{{{host, 1}}, equal, 1e6 + 0.1, 1000}, {{{0, 1}}, equal, 1e5 / 3, 748}}};
    for (int i = 0; i < members; ++i) {
        system.constraints.push_back({{{2 * i + 1, 1}}, atLeast, 0, 1000});
        system.constraints.push_back({{{2 * i + 1, 1}}, atLeast, oddSize(i), 750});
        system.constraints.push_back({{{2 * i + 1, 1}}, atMost, oddSize(i), i == members / 2 ? 250.0f : 251.0f});
        if (i > 0)
            system.constraints.push_back({{{2 * i, 1}, {2 * i - 2, -1}, {2 * i - 1, -1}}, equal, 0.1, 749});
    }
    system.constraints.push_back({{{host - 2, 1}, {host - 1, 1}, {host, -1}}, equal, -0.3, 748});
    return system;
}

void expectSame(TestEngine& edited, const TestSystem& system)
{
    TestEngine fresh(system);
    for (int i = 0; i < system.variables; ++i)
        ASSERT_NEAR(edited.value(i), fresh.value(i), 1e-9 * std::max(1.0, std::abs(fresh.value(i)))) << i;
}

TEST(LayoutNumbers, aHundredThousandNewConstantsLeaveNoDrift)
{
    TestSystem system = makeRow(10);
    TestEngine test(system);
    std::mt19937 random(1);
    for (int i = 0; i < 100000; ++i) {
        const std::size_t chosen = random() % system.constraints.size();
        double& constant = system.constraints[chosen].constant;
        constant += double(random() % 2001) / 7 - 1000.0 / 7;
        if (std::abs(constant) > 2e6)
            constant /= 3;
        test.engine.setConstant(test.handles[chosen], constant);
        test.engine.solve();
        if (i % 1000 == 999)
            expectSame(test, system);
    }
    EXPECT_GT(test.engine.statistics().solves, 99000u);
    EXPECT_EQ(test.engine.statistics().limitsReached, 0u);
}

// A member that goes takes its two links of the chain along, and one link goes around it.
TEST(LayoutNumbers, hidingAndShowingAHundredThousandTimesLeavesNoDrift)
{
    constexpr int members = 6, hidden = 2;
    TestSystem system = makeRow(members);
    const TestConstraint around{{{2 * hidden + 2, 1}, {2 * hidden - 2, -1}, {2 * hidden - 1, -1}}, equal, 0.1, 749};
    const auto isLinkOfHidden = [](const TestConstraint& one) {
        return one.terms.size() == 3 && (one.terms[0].first == 2 * hidden || one.terms[1].first == 2 * hidden);
    };
    TestSystem without = system;
    std::erase_if(without.constraints, isLinkOfHidden);
    without.constraints.push_back(around);
    TestEngine test(system);
    for (int i = 0; i < 50000; ++i) {
        std::vector<std::size_t> links;
        for (std::size_t j = 0; j < system.constraints.size(); ++j) {
            if (isLinkOfHidden(system.constraints[j]))
                links.push_back(j);
        }
        for (const std::size_t link : links)
            test.engine.removeConstraint(test.handles[link]);
        const LayoutConstraintHandle shortcut = test.add(around);
        test.engine.solve();
        if (i % 1000 == 999)
            expectSame(test, without);
        test.engine.removeConstraint(shortcut);
        for (const std::size_t link : links)
            test.handles[link] = test.add(system.constraints[link]);
        // Sizes come and go as well.
        system.constraints[0].constant = 1e6 + double(i % 1000) / 3;
        without.constraints[0].constant = system.constraints[0].constant;
        test.engine.setConstant(test.handles[0], system.constraints[0].constant);
        test.engine.solve();
        if (i % 1000 == 999)
            expectSame(test, system);
    }
    EXPECT_EQ(test.engine.statistics().solves, 100000u);
    EXPECT_EQ(test.engine.statistics().limitsReached, 0u);
}

} // namespace
} // namespace RVCore::LayoutNumberTests
