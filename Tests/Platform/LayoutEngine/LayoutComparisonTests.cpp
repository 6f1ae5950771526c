#include "LayoutComparison.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace RVCore::LayoutComparisonTests {
namespace {

TEST(LayoutOracle, knowsTextbookAnswers)
{
    const OracleAnswer answer = askOracle({"",
                                           2,
                                           {{{{0, 1}}, atLeast, 10, 1000},
                                            {{{0, 1}, {1, 1}}, equal, 30, 1000},
                                            {{{1, 1}}, atLeast, 25, 1000},        // leaves 5 for the first
                                            {{{1, 2}}, equal, 50, 750},           // 10 short of it, in its own units
                                            {{{0, 1}}, equal, 0, 500},            // 10 above
                                            {{{0, 1}, {1, -1}}, atMost, 3, 1}}}); // holds
    EXPECT_EQ(answer.leftOut, (std::vector{false, false, true, false, false, false}));
    EXPECT_EQ(answer.violations, (std::map<float, double, std::greater<float>>{{750, 10}, {500, 10}, {1, 0}}));
}

TEST(LayoutComparison, addsViolationsUpByPriority)
{
    const TestSystem system{
        "", 1, {{{{0, 1}}, equal, 4, 1000}, {{{0, 2}}, atMost, 1, 500}, {{{0, 1}}, equal, 14, 500}}};
    TestEngine test(system);
    EXPECT_EQ(answerOf(test, system).violations,
              (std::map<float, double, std::greater<float>>{{1000, 0}, {500, 17}}));
}

TEST(LayoutComparison, namesEveryDifference)
{
    const OracleAnswer oracle{{true, false, false}, {{750, 0}, {500, 200}}};
    EXPECT_EQ(difference(oracle, oracle), "");
    EXPECT_EQ(difference({{true, false, false}, {{1000, 0}, {750, 9e-7}, {500, 200.0001}}}, oracle), "");
    EXPECT_EQ(difference({{false, false, true}, {{1000, 1}, {750, 2e-6}, {500, 199}}}, oracle),
              "constraint 0 is left out by the oracle only\n"
              "constraint 2 is left out by the engine only\n"
              "violation 1 at priority 1000, least 0\n"
              "violation 2e-06 at priority 750, least 0\n"
              "violation 199 at priority 500, least 200\n");
    EXPECT_THAT(difference({{true, false, false}, {{750, std::nan("")}}}, oracle), testing::HasSubstr("nan"));
}

} // namespace
} // namespace RVCore::LayoutComparisonTests
