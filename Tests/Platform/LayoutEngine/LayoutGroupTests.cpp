#include "LayoutSystems.h"

#include <gtest/gtest.h>

namespace RVCore::LayoutGroupTests {
namespace {

// What a group view asks for: elements (spacers and members in turn) chained along the main axis and centred across
// it. Along means the horizontal axis of a horizontal group and the vertical one of a vertical group.
struct GroupShape {
    struct Element {
        double along, across;
        float hugging = 251;
        float resistance = 750;
    };
    std::vector<Element> elements;
    double along = 0, across = 0, padding = 0;
};

class Group {
public:
    explicit Group(const GroupShape& shape)
    {
        TestSystem system;
        const int host = 4 * int(shape.elements.size());
        system.variables = host + 2;
        system.constraints.push_back({{{host, 1}}, equal, shape.along, 1000});
        system.constraints.push_back({{{host + 1, 1}}, equal, shape.across, 1000});
        for (int i = 0; i < int(shape.elements.size()); ++i) {
            const GroupShape::Element& one = shape.elements[std::size_t(i)];
            addSize(system, 4 * i + 1, one.along, one);
            addSize(system, 4 * i + 3, one.across, one);
            if (i == 0)
                system.constraints.push_back({{{0, 1}}, equal, 0, 748});
            else
                system.constraints.push_back({{{4 * i, 1}, {4 * i - 4, -1}, {4 * i - 3, -1}}, equal, 0, 749});
            system.constraints.push_back({{{4 * i + 2, 1}, {4 * i + 3, 0.5}, {host + 1, -0.5}}, equal, 0, 749});
            system.constraints.push_back({{{4 * i + 2, 1}}, atLeast, shape.padding, 748});
            system.constraints.push_back(
                {{{host + 1, 1}, {4 * i + 3, -1}, {4 * i + 2, -1}}, atLeast, shape.padding, 748});
        }
        system.constraints.push_back({{{host - 4, 1}, {host - 3, 1}, {host, -1}}, equal, 0, 748});
        m_test = std::make_unique<TestEngine>(system);
    }

    // Position and size of every element along the axis.
    std::vector<std::pair<double, double>> along() { return spans(0); }
    std::vector<std::pair<double, double>> across() { return spans(2); }
    void resize(double along) { engine().setConstant(m_test->handles[0], along); }
    LayoutEngine& engine() { return m_test->engine; }

private:
    static void addSize(TestSystem& system, int variable, double hint, const GroupShape::Element& one)
    {
        system.constraints.push_back({{{variable, 1}}, atLeast, 0, 1000});
        system.constraints.push_back({{{variable, 1}}, atLeast, hint, one.resistance});
        system.constraints.push_back({{{variable, 1}}, atLeast, hint, 700});
        system.constraints.push_back({{{variable, 1}}, atMost, hint, one.hugging});
    }
    std::vector<std::pair<double, double>> spans(int offset)
    {
        std::vector<std::pair<double, double>> result;
        for (int i = 0; i + 4 < int(m_test->variables.size()); i += 4)
            result.push_back({m_test->value(i + offset), m_test->value(i + offset + 1)});
        return result;
    }

    std::unique_ptr<TestEngine> m_test;
};

using Spans = std::vector<std::pair<double, double>>;

const GroupShape threeMembers{{{8, 0}, {50, 20}, {8, 0}, {60, 30, 250}, {8, 0}, {40, 10}, {8, 0}}, 300, 50, 4};

TEST(LayoutGroup, theElementThatHugsLeastStretches)
{
    Group group(threeMembers);
    EXPECT_EQ(group.along(), (Spans{{0, 8}, {8, 50}, {58, 8}, {66, 178}, {244, 8}, {252, 40}, {292, 8}}));
    EXPECT_EQ(group.across(), (Spans{{25, 0}, {15, 20}, {25, 0}, {10, 30}, {25, 0}, {20, 10}, {25, 0}}));
    EXPECT_TRUE(group.engine().ambiguousVariables().empty());
    EXPECT_EQ(group.engine().statistics().pivots, 0u);
}

TEST(LayoutGroup, withoutRoomTheElementThatResistsLeastShrinks)
{
    GroupShape shape = threeMembers;
    shape.along = 170;
    shape.elements[1].resistance = 740;
    Group group(shape);
    EXPECT_EQ(group.along(), (Spans{{0, 8}, {8, 38}, {46, 8}, {54, 60}, {114, 8}, {122, 40}, {162, 8}}));
}

TEST(LayoutGroup, contentsThatResistMoreThanTheEndsOverflow)
{
    Group group(threeMembers);
    group.resize(100);
    // Everything keeps its size; one of the ends gives way by what is missing.
    double sum = 0;
    for (const auto& [position, size] : group.along())
        sum += size;
    EXPECT_EQ(sum, 182.0);
    EXPECT_EQ(group.along()[1].second, 50.0);
    EXPECT_EQ(group.along()[3].second, 60.0);
    group.resize(300);
    EXPECT_EQ(group.along(), Group(threeMembers).along());
}

TEST(LayoutGroup, noRoomAtAllAcrossKeepsTheCentre)
{
    GroupShape shape = threeMembers;
    shape.across = 10;
    Group group(shape);
    EXPECT_EQ(group.across()[3], (std::pair{-10.0, 30.0}));
}

TEST(LayoutGroup, anEmptyHostLeavesSizesAlone)
{
    GroupShape shape = threeMembers;
    shape.along = 0;
    Group group(shape);
    EXPECT_EQ(group.along()[5].second, 40.0);
    EXPECT_TRUE(group.engine().takeConflicts().empty());
}

TEST(LayoutGroup, aThousandMembersNeedNoExchangeToResize)
{
    GroupShape shape{{}, 70000, 100, 4};
    for (int i = 0; i < 1000; ++i) {
        shape.elements.push_back({8, 0});
        shape.elements.push_back({50, 20, i == 300 ? 250.0f : 251.0f});
    }
    shape.elements.push_back({8, 0});
    Group group(shape);
    EXPECT_EQ(group.along().back(), (std::pair{69992.0, 8.0}));
    EXPECT_EQ(group.engine().statistics().pivots, 0u);
    const std::uint64_t factorisations = group.engine().statistics().factorisations;
    group.resize(80000);
    EXPECT_EQ(group.along().back(), (std::pair{79992.0, 8.0}));
    EXPECT_EQ(group.along()[601].second, 50.0 + 80000 - 58008);
    EXPECT_EQ(group.engine().statistics().pivots, 0u);
    EXPECT_EQ(group.engine().statistics().factorisations, factorisations);
}

// Groups within groups: each fills its parent but for a margin, a thousand deep.
TEST(LayoutGroup, nestingAThousandDeepWorks)
{
    constexpr int depth = 1000;
    TestSystem system{"", 2 * depth, {}};
    system.constraints.push_back({{{0, 1}}, equal, 0, 1000});
    system.constraints.push_back({{{1, 1}}, equal, 5000, 1000});
    for (int i = 1; i < depth; ++i) {
        const int x = 2 * i;
        system.constraints.push_back({{{x, 1}, {x - 2, -1}}, equal, 1, 748});
        system.constraints.push_back({{{x - 2, 1}, {x - 1, 1}, {x, -1}, {x + 1, -1}}, equal, 1, 748});
        system.constraints.push_back({{{x + 1, 1}}, atLeast, 0, 1000});
    }
    TestEngine test(system);
    EXPECT_EQ(test.value(2 * depth - 1), 5000.0 - 2 * (depth - 1));
    test.engine.setConstant(test.handles[1], 6000);
    EXPECT_EQ(test.value(2 * depth - 1), 6000.0 - 2 * (depth - 1));
}

} // namespace
} // namespace RVCore::LayoutGroupTests
