#include <AppKit/WindowGeometry.h>

#include <gtest/gtest.h>

namespace RVCore::WindowGeometryTests {
namespace {

WindowGeometry decorated()
{
    WindowGeometry geometry;
    geometry.origin = {100, 50};
    geometry.margins = {.top = 22, .left = 2, .bottom = 3, .right = 4};
    geometry.toolbarHeight = 30;
    geometry.contentSize = {200, 100};
    return geometry;
}

TEST(WindowGeometry, TheFrameIsAroundContentToolbarAndWhatTheDesktopAdds)
{
    EXPECT_EQ(decorated().frame(), CGRect(100, 50, 206, 155));
    EXPECT_EQ(decorated().topLeft(), (CGPoint{100, 205}));
    EXPECT_EQ(decorated().areaFor({200, 100}), (CGSize{200, 130}));
}

TEST(WindowGeometry, FramesAndContentsAreTheWayBackOfEachOther)
{
    const CGRect content(10, 20, 300, 400);
    EXPECT_EQ(decorated().contentFor(decorated().frameFor(content)), content);
    EXPECT_EQ(decorated().contentFor({0, 0, 1, 1}).size, CGSize()) << "a frame that is too small for anything";
}

TEST(WindowGeometry, SizesAreKeptWithinTheLimitsInWholePoints)
{
    WindowGeometry geometry = decorated();
    geometry.contentMinSize = {50, 60};
    geometry.contentMaxSize = {500, 600};
    EXPECT_EQ(geometry.limited(CGSize{10.5, 1000}), (CGSize{50, 600}));
    EXPECT_EQ(geometry.limited(CGSize{99.5, 100}), (CGSize{100, 100}));
}

TEST(WindowGeometry, WhatTheContentNeedsStandsAboveTheLargestSizeAndTheSmallestAboveBoth)
{
    WindowGeometry geometry;
    geometry.contentMaxSize = {100, 100};
    geometry.neededSize = {150, 20};
    EXPECT_EQ(geometry.largest(), (CGSize{150, 100}));
    EXPECT_EQ(geometry.limited(CGSize{400, 400}), (CGSize{150, 100}));
    geometry.contentMinSize = {30, 120};
    EXPECT_EQ(geometry.smallest(), (CGSize{150, 120}));
    EXPECT_EQ(geometry.limited(CGSize{1, 1}).height, 120);
}

TEST(WindowGeometry, AFrameThatIsLimitedKeepsItsTopLeftCorner)
{
    WindowGeometry geometry = decorated();
    geometry.contentMaxSize = {150, 80};
    EXPECT_EQ(geometry.limited(geometry.frame()), CGRect(100, 70, 156, 135));
    geometry.contentMaxSize = {1000, 1000};
    EXPECT_EQ(geometry.limited(geometry.frame()), geometry.frame());
}

} // namespace
} // namespace RVCore::WindowGeometryTests
