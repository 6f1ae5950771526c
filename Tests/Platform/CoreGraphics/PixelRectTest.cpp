#include <CoreGraphics/PixelRect.h>

#include <gtest/gtest.h>

#include <sstream>

namespace RVCore::PixelRectTests {
namespace {

TEST(PixelRect, IsEmptyUntilBothSidesAreAboveZero)
{
    EXPECT_TRUE(PixelRect().isEmpty());
    EXPECT_TRUE((PixelRect{0, 0, 1, 0}).isEmpty());
    EXPECT_TRUE((PixelRect{0, 0, -1, 5}).isEmpty());
    EXPECT_FALSE((PixelRect{-3, -3, 1, 1}).isEmpty());
}

TEST(PixelRect, ContainsARectangleThatDoesNotStandOutAnywhere)
{
    const PixelRect rect{2, 3, 4, 5};
    EXPECT_TRUE(rect.contains(rect));
    EXPECT_TRUE(rect.contains(PixelRect{3, 4, 1, 1}));
    EXPECT_TRUE(rect.contains(PixelRect{100, 100, 0, 4})) << "an empty one has no pixels";
    EXPECT_FALSE(rect.contains(PixelRect{1, 3, 4, 5}));
    EXPECT_FALSE(rect.contains(PixelRect{2, 2, 4, 5}));
    EXPECT_FALSE(rect.contains(PixelRect{2, 3, 5, 5}));
    EXPECT_FALSE(rect.contains(PixelRect{2, 3, 4, 6}));
}

TEST(PixelRect, TheIntersectionIsTheCommonPart)
{
    const PixelRect rect{0, 0, 10, 10};
    EXPECT_EQ(rect.intersection({5, -2, 10, 6}), (PixelRect{5, 0, 5, 4}));
    EXPECT_EQ(rect.intersection({2, 3, 4, 5}), (PixelRect{2, 3, 4, 5}));
    EXPECT_EQ(rect.intersection({10, 0, 4, 4}), PixelRect()) << "neighbours have nothing in common";
    EXPECT_EQ(rect.intersection({5, 5, 0, 0}), PixelRect());
}

TEST(PixelRect, TheUnionIsTheSmallestRectangleAroundBoth)
{
    const PixelRect rect{0, 0, 10, 10};
    EXPECT_EQ(rect.unionWith({20, -5, 2, 3}), (PixelRect{0, -5, 22, 15}));
    EXPECT_EQ(rect.unionWith({2, 3, 4, 5}), rect);
    EXPECT_EQ(rect.unionWith({50, 50, 0, 1}), rect) << "an empty one adds nothing";
    EXPECT_EQ((PixelRect{50, 50, 0, 1}).unionWith(rect), rect);
    EXPECT_EQ((PixelRect{50, 50, 0, 1}).unionWith({7, 7, -1, 1}), PixelRect());
}

TEST(PixelRect, AnInsetMovesEveryEdgeInward)
{
    EXPECT_EQ((PixelRect{2, 3, 10, 20}).insetBy(1, 4), (PixelRect{3, 7, 8, 12}));
    EXPECT_EQ((PixelRect{2, 3, 10, 20}).insetBy(-1, -4), (PixelRect{1, -1, 12, 28}));
    EXPECT_TRUE((PixelRect{2, 3, 10, 20}).insetBy(5, 0).isEmpty());
}

TEST(PixelRect, PrintsOriginAndSize)
{
    std::ostringstream text;
    text << PixelRect{1, -2, 3, 4};
    EXPECT_EQ(text.str(), "(1, -2) 3 × 4");
}

} // namespace
} // namespace RVCore::PixelRectTests
