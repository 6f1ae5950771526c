#include <AppKit/ToolbarPlan.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::ToolbarPlanTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Span = ToolbarPlan::Span;

constexpr ToolbarPart flexible{0, true, true};
constexpr ToolbarPart space{16, true, false};

ToolbarPlan plan(const std::vector<ToolbarPart>& parts, CGFloat width)
{
    return planToolbar(
        parts.size(), [&](std::size_t index) { return parts[index]; }, width, 20);
}

TEST(ToolbarPlan, PartsFollowEachOtherFromTheLeft)
{
    const ToolbarPlan result = plan({{40}, {50}, space, {30}}, 300);
    EXPECT_THAT(result.shown, ElementsAre(Span{6, 40}, Span{48, 50}, Span{100, 16}, Span{118, 30}));
    EXPECT_FALSE(result.hasChevron);
}

TEST(ToolbarPlan, AFlexibleSpaceTakesWhatIsLeft)
{
    EXPECT_THAT(plan({{40}, flexible, {50}}, 300).shown, ElementsAre(Span{6, 40}, Span{48, 194}, Span{244, 50}));
}

TEST(ToolbarPlan, FlexibleSpacesShareInWholePoints)
{
    const auto shown = plan({flexible, {41}, flexible}, 100).shown;
    EXPECT_THAT(shown, ElementsAre(Span{6, 21}, Span{29, 41}, Span{72, 22}));
}

TEST(ToolbarPlan, WhatHasNoRoomIsBehindTheChevronAtTheRightEnd)
{
    const ToolbarPlan result = plan({{40}, {40}, {40}}, 130); // one point too few for the three
    EXPECT_THAT(result.shown, ElementsAre(Span{6, 40}, Span{48, 40}));
    EXPECT_TRUE(result.hasChevron);
    EXPECT_EQ(result.chevronX, 104);
    EXPECT_FALSE(plan({{40}, {40}, {40}}, 136).hasChevron);
    EXPECT_TRUE(plan({{40}, {40}, {40}}, 135).hasChevron);
}

TEST(ToolbarPlan, TheChevronTakesRoomFromThePartsBeforeIt)
{
    const ToolbarPlan result = plan({{40}, {40}, {40}}, 109);
    EXPECT_THAT(result.shown, ElementsAre(Span{6, 40}));
    EXPECT_EQ(result.chevronX, 83);
    EXPECT_THAT(plan({{40}, {40}, {40}}, 110).shown.size(), 1);
    EXPECT_THAT(plan({{40}, {40}, {40}}, 116).shown.size(), 2);
}

TEST(ToolbarPlan, WhereNothingHasRoomThereIsTheChevronAlone)
{
    for (const CGFloat width : {30.0, 5.0, 0.0}) {
        const ToolbarPlan result = plan({{40}}, width);
        EXPECT_THAT(result.shown, IsEmpty()) << width;
        EXPECT_TRUE(result.hasChevron) << width;
        EXPECT_GE(result.chevronX, 6) << width;
    }
}

TEST(ToolbarPlan, GapsAloneNeedNoChevron)
{
    EXPECT_FALSE(plan({{40}, space, flexible}, 52).hasChevron);
    EXPECT_EQ(plan({{40}, space, flexible}, 52).shown.size(), 1U);
    EXPECT_TRUE(plan({{40}, space, {1}}, 52).hasChevron);
    EXPECT_EQ(plan({}, 0), ToolbarPlan());
}

TEST(ToolbarPlan, PartsThatHaveNoRoomAreNotMeasured)
{
    std::size_t furthest = 0;
    const auto partAt = [&](std::size_t index) {
        furthest = std::max(furthest, index);
        return ToolbarPart{40};
    };
    planToolbar(1'000'000, partAt, 200, 20);
    EXPECT_EQ(furthest, 4U);
}

} // namespace
} // namespace RVCore::ToolbarPlanTests
