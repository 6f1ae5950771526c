#include <AppKit/ButtonLayout.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::ButtonLayoutTests {
namespace {

using Position = NSCellImagePosition;

ButtonContent content(Position position)
{
    return {.title = {40, 16}, .image = {20, 10}, .imagePosition = position};
}

std::string placed(const ButtonContent& content, const CGRect& room)
{
    const ButtonLayout layout = layoutButton(content, room);
    return "image " + describe(layout.image) + ", title " + describe(layout.title);
}

constexpr CGFloat width = 100, height = 50;
const CGRect room(0, 0, width, height);

TEST(ButtonLayout, ATitleAloneIsCentred)
{
    EXPECT_EQ(naturalSize(content(Position::noImage)), (CGSize{40, 16}));
    EXPECT_EQ(placed(content(Position::noImage), room), "image (0, 0) 0 × 0, title (30, 17) 40 × 16");
}

TEST(ButtonLayout, AnImageAloneIsCentred)
{
    EXPECT_EQ(naturalSize(content(Position::imageOnly)), (CGSize{20, 10}));
    EXPECT_EQ(placed(content(Position::imageOnly), room), "image (40, 20) 20 × 10, title (0, 0) 0 × 0");
}

TEST(ButtonLayout, ImageAndTitleAreCentredTogether)
{
    EXPECT_EQ(naturalSize(content(Position::imageLeft)), (CGSize{64, 16}));
    EXPECT_EQ(placed(content(Position::imageLeft), room), "image (18, 20) 20 × 10, title (42, 17) 40 × 16");
    EXPECT_EQ(naturalSize(content(Position::imageRight)), (CGSize{64, 16}));
    EXPECT_EQ(placed(content(Position::imageRight), room), "image (62, 20) 20 × 10, title (18, 17) 40 × 16");
    EXPECT_EQ(naturalSize(content(Position::imageAbove)), (CGSize{40, 30}));
    EXPECT_EQ(placed(content(Position::imageAbove), room), "image (40, 10) 20 × 10, title (30, 24) 40 × 16");
    EXPECT_EQ(naturalSize(content(Position::imageBelow)), (CGSize{40, 30}));
    EXPECT_EQ(placed(content(Position::imageBelow), room), "image (40, 30) 20 × 10, title (30, 10) 40 × 16");
    EXPECT_EQ(naturalSize(content(Position::imageOverlaps)), (CGSize{40, 16}));
    EXPECT_EQ(placed(content(Position::imageOverlaps), room), "image (40, 20) 20 × 10, title (30, 17) 40 × 16");
}

TEST(ButtonLayout, TheRoomMayLieAnywhere)
{
    EXPECT_EQ(placed(content(Position::imageLeft), {5, 6, width, height}),
              "image (23, 26) 20 × 10, title (47, 23) 40 × 16");
}

TEST(ButtonLayout, AtTheLeftEdgeItStartsThere)
{
    ButtonContent left = content(Position::imageLeft);
    left.isCentered = false;
    EXPECT_EQ(placed(left, room), "image (0, 20) 20 × 10, title (24, 17) 40 × 16");
    left.imagePosition = Position::noImage;
    EXPECT_EQ(placed(left, room), "image (0, 0) 0 × 0, title (0, 17) 40 × 16");
}

TEST(ButtonLayout, ATitleGivesWayToTheImage)
{
    EXPECT_EQ(placed(content(Position::noImage), {0, 0, 25, 10}), "image (0, 0) 0 × 0, title (0, 0) 25 × 10");
    EXPECT_EQ(placed(content(Position::imageLeft), {0, 0, 50, 20}), "image (0, 5) 20 × 10, title (24, 2) 26 × 16");
    EXPECT_EQ(placed(content(Position::imageLeft), {0, 0, 10, 20}), "image (0, 7) 10 × 5, title (10, 2) 0 × 16");
    EXPECT_EQ(placed(content(Position::imageAbove), {0, 0, 50, 18}), "image (15, 0) 20 × 10, title (5, 14) 40 × 4");
}

TEST(ButtonLayout, AnImageScalesIntoWhatTheTitleLeaves)
{
    ButtonContent scaled = content(Position::imageLeft);
    scaled.imageScaling = NSImageScaling::proportionallyUpOrDown;
    EXPECT_EQ(placed(scaled, room), "image (0, 11) 56 × 28, title (60, 17) 40 × 16");
    scaled.imageScaling = NSImageScaling::axesIndependently;
    EXPECT_EQ(placed(scaled, room), "image (0, 0) 56 × 50, title (60, 17) 40 × 16");
    scaled.imagePosition = Position::imageOnly;
    EXPECT_EQ(placed(scaled, room), "image (0, 0) 100 × 50, title (0, 0) 0 × 0");
    scaled.imageScaling = NSImageScaling::none;
    EXPECT_EQ(placed(scaled, {0, 0, 10, 10}), "image (-5, 0) 20 × 10, title (0, 0) 0 × 0");
}

TEST(ButtonLayout, WhatIsNotThereTakesNoRoom)
{
    ButtonContent empty{.title = {0, 16}, .image = {}, .imagePosition = Position::imageLeft};
    EXPECT_EQ(naturalSize(empty), (CGSize{0, 16})) << "as high as with a title";
    EXPECT_EQ(placed(empty, room), "image (0, 0) 0 × 0, title (0, 0) 0 × 0");
    empty.image = {20, 10};
    EXPECT_EQ(naturalSize(empty), (CGSize{20, 10}));
    EXPECT_EQ(placed(empty, room), "image (40, 20) 20 × 10, title (0, 0) 0 × 0");
}

} // namespace
} // namespace RVCore::ButtonLayoutTests
