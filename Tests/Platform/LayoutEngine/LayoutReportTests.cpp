#include "LayoutSystems.h"

#include <gtest/gtest.h>

namespace RVCore::LayoutReportTests {
namespace {

using Tags = std::vector<std::uint64_t>;

Tags tagsOf(const std::vector<LayoutHolding>& holding)
{
    Tags tags;
    for (const LayoutHolding& one : holding)
        tags.push_back(one.constraint);
    return tags;
}

TEST(LayoutReport, listsTheVariablesThatNothingSettles)
{
    TestEngine test({"",
                     6,
                     {{{{0, 1}}, equal, 1, 1000},
                      {{{1, 1}, {0, -1}}, equal, 1, 500},
                      {{{2, 1}, {3, 1}}, equal, 10, 500}, // which of both is anyone's guess
                      {{{4, 1}}, atLeast, 5, 500}}});     // 5 or more
    EXPECT_EQ(test.engine.ambiguousVariables(), (std::vector<LayoutVariable>{test.variables[2], test.variables[3],
                                                                             test.variables[4], test.variables[5]}));
    EXPECT_FALSE(test.engine.isAmbiguous(test.variables[1]));
    test.add({{{2, 1}}, equal, 3, 1});
    EXPECT_FALSE(test.engine.isAmbiguous(test.variables[2]));
    EXPECT_FALSE(test.engine.isAmbiguous(test.variables[3]));
}

TEST(LayoutReport, tiesBetweenEqualPrioritiesAreAmbiguous)
{
    TestEngine test(
        {"", 2, {{{{0, 1}, {1, 1}}, equal, 10, 1000}, {{{0, 1}}, equal, 0, 250}, {{{1, 1}}, equal, 0, 250}}});
    EXPECT_TRUE(test.engine.isAmbiguous(test.variables[0]));
    EXPECT_TRUE(test.engine.isAmbiguous(test.variables[1]));
    test.engine.setPriority(test.handles[1], 251);
    EXPECT_TRUE(test.engine.ambiguousVariables().empty());
    EXPECT_EQ(test.value(1), 10.0);
}

TEST(LayoutReport, boundsThatMeetSettleAVariable)
{
    TestEngine test({"", 1, {{{{0, 1}}, atLeast, 5, 750}, {{{0, 1}}, atMost, 5, 250}}});
    EXPECT_TRUE(test.engine.ambiguousVariables().empty());
}

TEST(LayoutReport, explainsWhatHoldsAVariableInOrderOfDerivation)
{
    TestEngine test({"",
                     3,
                     {{{{1, 1}, {0, -1}, {2, -1}}, equal, 8, 749},
                      {{{0, 1}}, equal, 20, 748},
                      {{{2, 1}}, atLeast, 50, 750},
                      {{{2, 1}}, atMost, 50, 251},
                      {{{1, 1}}, atMost, 70, 100}}});
    const LayoutExplanation explanation = test.engine.explain(test.variables[1]);
    EXPECT_EQ(tagsOf(explanation.holding), (Tags{1, 2, 3, 0}));
    EXPECT_EQ(explanation.holding[1].side, atLeast);
    EXPECT_EQ(explanation.holding[2].side, atMost);
    ASSERT_EQ(explanation.violated.size(), 1u);
    EXPECT_EQ(explanation.violated[0].constraint, 4u);
    EXPECT_EQ(explanation.violated[0].handle, test.handles[4]);
    EXPECT_EQ(explanation.violated[0].amount, 8.0);
    EXPECT_FALSE(explanation.isAmbiguous);
    EXPECT_EQ(tagsOf(test.engine.explain(test.variables[0]).holding), Tags{1});
}

TEST(LayoutReport, explainsAVariableThatNothingHolds)
{
    TestEngine test({"", 2, {{{{0, 1}}, atLeast, -5, 500}}});
    EXPECT_TRUE(test.engine.explain(test.variables[0]).holding.empty());
    EXPECT_TRUE(test.engine.explain(test.variables[0]).isAmbiguous);
    EXPECT_TRUE(test.engine.explain(test.variables[1]).isAmbiguous);
}

TEST(LayoutReport, theDescriptionIsStableText)
{
    TestEngine test({"",
                     4,
                     {{{{1, 1}, {0, -1}, {2, -1}}, equal, 8, 749},
                      {{{0, 1}}, equal, 20, 748},
                      {{{2, 0.5}, {1, -3}}, atLeast, -50.25, 251.5f},
                      {{{1, 1}}, atMost, 7, 1000},
                      {{{1, -2}}, atMost, -18, 1000},
                      {{}, atLeast, 1, 5},
                      {{{2, 1}}, atLeast, -10, 900}}});
    LayoutNaming naming;
    naming.variable = [](std::uint64_t owner) { return "view" + std::to_string(owner) + ".x"; };
    const std::string expected = "variables\n"
                                 "  view0.x = 9\n"
                                 "  view1.x = 7\n"
                                 "  view2.x = -10\n"
                                 "  view3.x = 0 ambiguous\n"
                                 "constraints\n"
                                 "  c0: -view0.x + view1.x - view2.x = 8 @749\n"
                                 "  c1: view0.x = 20 @748 violated by 11\n"
                                 "  c2: -3 view1.x + 0.5 view2.x >= -50.25 @251.5\n"
                                 "  c3: view1.x <= 7 @1000\n"
                                 "  c4: -2 view1.x <= -18 @1000 left out\n"
                                 "  c5: 0 >= 1 @5 violated by 1\n"
                                 "  c6: view2.x >= -10 @900\n";
    const std::string description = test.engine.description(naming);
    EXPECT_EQ(description, test.engine.description(naming));
    EXPECT_EQ(description, expected);
}

} // namespace
} // namespace RVCore::LayoutReportTests
