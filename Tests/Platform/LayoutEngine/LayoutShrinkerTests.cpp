#include "LayoutShrinker.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace RVCore::LayoutShrinkerTests {
namespace {

TEST(LayoutShrinker, leavesOutWhateverIsNotNeeded)
{
    std::vector<int> list(100);
    for (int i = 0; i < 100; ++i)
        list[std::size_t(i)] = i;
    const auto has = [](const std::vector<int>& all, int one) {
        return std::find(all.begin(), all.end(), one) != all.end();
    };
    const auto needs = [&](const std::vector<int>& all) { return has(all, 3) && has(all, 50) && has(all, 99); };
    EXPECT_EQ(withoutNeedless(list, needs), (std::vector{3, 50, 99}));
    EXPECT_TRUE(withoutNeedless(list, [](const auto&) { return true; }).empty());
    EXPECT_EQ(withoutNeedless(list, [&](const auto& all) { return all == list; }), list);
}

// An invented fault: an equality below 900 that shares a variable with a constraint whose constant is above 40.
bool fails(const TestSystem& system)
{
    for (const TestConstraint& first : system.constraints) {
        for (const TestConstraint& second : system.constraints) {
            if (&first == &second || first.relation != equal || first.priority >= 900.0f || second.constant <= 40.0)
                continue;
            for (const auto& [one, coefficient] : first.terms) {
                for (const auto& [other, otherCoefficient] : second.terms) {
                    if (one == other && coefficient == -0.5)
                        return true;
                }
            }
        }
    }
    return false;
}

TEST(LayoutShrinker, keepsTheFaultAndNothingElse)
{
    std::mt19937 random(7);
    TestSystem system{"invented", 20, {}};
    for (int i = 0; i < 60; ++i)
        system.constraints.push_back(makeRandomConstraint(random, system.variables));
    system.constraints.push_back({{{3, 2}, {11, -0.5}, {12, 1}}, equal, -7.25, 748});
    for (int i = 0; i < 20; ++i)
        system.constraints.push_back(makeRandomConstraint(random, system.variables));
    system.constraints.push_back({{{11, 3}, {4, 1}}, atLeast, 57.3, 250});
    ASSERT_TRUE(fails(system));
    EXPECT_EQ(asTest(shrunk(system, fails)), "TEST(LayoutEngineOracle, nameTheRule)\n"
                                             "{\n"
                                             "    EXPECT_EQ(faultsOf({\"invented\", 1, {\n"
                                             "        {{{0, -0.5}}, equal, 0, 500},\n"
                                             "        {{{0, 1}}, atLeast, 100, 1000},\n"
                                             "    }}), \"\");\n"
                                             "}\n");
}

TEST(LayoutShrinker, printsNumbersThatReadBackAsTheSame)
{
    EXPECT_EQ(
        asTest({"", 2, {{{{0, 1.0 / 3}, {1, 1e-7}}, LayoutRelation::lessThanOrEqual, 1e9 + 0.5, 500.001f}, {}}}),
        "TEST(LayoutEngineOracle, nameTheRule)\n"
        "{\n"
        "    EXPECT_EQ(faultsOf({\"\", 2, {\n"
        "        {{{0, 0.3333333333333333}, {1, 1e-07}}, atMost, 1000000000.5, 500.001f},\n"
        "        {{}, equal, 0, 1000},\n"
        "    }}), \"\");\n"
        "}\n");
}

} // namespace
} // namespace RVCore::LayoutShrinkerTests
