#include <AppKit/WindowSizes.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>

namespace RVCore::WindowSizesTests {
namespace {

TEST(WindowSizes, ADesktopCountsWholePointsUpToALimit)
{
    EXPECT_EQ(desktopSize({0, 10.25}), (CGSize{1, 11}));
    EXPECT_EQ(desktopSize({-5, 1e9}), (CGSize{1, 32767}));
}

TEST(WindowSizes, WhatIsNoSizeOrPlaceRaisesWithItsName)
{
    EXPECT_EQ(raised([] {
                  requiredDesktopSize("op", {0.5, 3});
              }),
              "NSInvalidArgumentException: op: a window's content is at least 1 × 1, got 0.5 × 3");
    EXPECT_EQ(raised([] {
                  requireNotNegative("op", "size", {3, -1});
              }),
              "NSInvalidArgumentException: op: size must not be negative, got 3 × -1");
    EXPECT_EQ(
        raised([] {
            requireWindowOrigin("op", "origin", {0, -1.5e6});
        }),
        "NSInvalidArgumentException: op: origin must be within 1000000 points of the screen's, got (0, -1500000)");
    EXPECT_EQ(raised([] {
                  requireWindowRect("op", "frame", {0, 0, std::nan(""), 0});
              }),
              "NSInvalidArgumentException: op: frame.size.width must be finite, got nan");
    EXPECT_EQ(raised([] { requireWindowRect("op", "frame", {1e6, -1e6, 0, 0}); }), "nothing");
}

} // namespace
} // namespace RVCore::WindowSizesTests
