// A program of its own: it counts every allocation that is made in it.

#include "AllocationCounter.h"
#include "LayoutSystems.h"

#include <gtest/gtest.h>

namespace RVCore::LayoutAllocationTests {
namespace {

// A row of members, one of which takes what is left, each centred across.
TestSystem makeRow(int members)
{
    const int width = 4 * members, height = width + 1;
    TestSystem system{"", width + 2, {{{{width, 1}}, equal, 100000, 1000}, {{{height, 1}}, equal, 100, 1000}}};
    for (int i = 0; i < members; ++i) {
        const int x = 4 * i, y = x + 2;
        for (const int size : {x + 1, y + 1}) {
            system.constraints.push_back({{{size, 1}}, atLeast, 0, 1000});
            system.constraints.push_back({{{size, 1}}, atLeast, 50, 750});
            system.constraints.push_back({{{size, 1}}, atMost, 50, i == members / 2 ? 250.0f : 251.0f});
        }
        if (i > 0)
            system.constraints.push_back({{{x, 1}, {x - 4, -1}, {x - 3, -1}}, equal, 8, 749});
        system.constraints.push_back({{{y, 1}, {y + 1, 0.5}, {height, -0.5}}, equal, 0, 749});
        system.constraints.push_back({{{y, 1}}, atLeast, 4, 748});
    }
    system.constraints.push_back({{{0, 1}}, equal, 0, 748});
    system.constraints.push_back({{{width - 4, 1}, {width - 3, 1}, {width, -1}}, equal, 0, 748});
    return system;
}

double sumAfterResize(TestEngine& test, int step)
{
    test.engine.setConstant(test.handles[0], 100000.0 + 10 * (step % 7));
    test.engine.setConstant(test.handles[1], 100.0 + step % 5);
    test.engine.solve();
    double sum = 0;
    for (const LayoutVariable variable : test.variables)
        sum += test.engine.value(variable);
    return sum;
}

TEST(LayoutAllocation, aResizeThatChangesNoBasisAllocatesNothing)
{
    for (const int members : {3, 100}) {
        TestEngine test(makeRow(members));
        double sum = 0;
        for (int step = 0; step < 10; ++step) // buffers grow to what a resize needs
            sum += sumAfterResize(test, step);
        const LayoutStatistics before = test.engine.statistics();
        const std::size_t allocationsBefore = allocationCount();
        for (int step = 0; step < 1000; ++step)
            sum += sumAfterResize(test, step);
        const std::size_t made = allocationCount() - allocationsBefore;
        EXPECT_EQ(made, 0u) << members << " members";
        EXPECT_GT(sum, 0.0);
        EXPECT_EQ(test.engine.statistics().solves, before.solves + 1000);
        EXPECT_EQ(test.engine.statistics().pivots, before.pivots);
    }
}

TEST(LayoutAllocation, isCounted)
{
    const std::size_t before = allocationCount();
    TestEngine test(makeRow(3));
    test.engine.solve();
    EXPECT_GT(allocationCount(), before + 10);
}

} // namespace
} // namespace RVCore::LayoutAllocationTests
