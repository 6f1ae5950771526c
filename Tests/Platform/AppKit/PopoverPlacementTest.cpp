#include <AppKit/PopoverPlacement.h>

#include <gtest/gtest.h>

namespace RVCore::PopoverPlacementTests {
namespace {

constexpr CGRect screen(0, 0, 1000, 800);
constexpr CGSize content{198, 98}; // with its border 200 × 100

PopoverPlacement place(const CGRect& anchor, NSRectEdge preferred)
{
    return placePopover(anchor, content, preferred, screen);
}

TEST(PopoverPlacement, standsAtTheMiddleOfThePreferredEdge)
{
    const CGRect anchor(400, 300, 100, 50);
    EXPECT_EQ(place(anchor, NSRectEdge::maxY), (PopoverPlacement{{350, 350, 200, 109}, NSRectEdge::maxY, 100}));
    EXPECT_EQ(place(anchor, NSRectEdge::minY), (PopoverPlacement{{350, 191, 200, 109}, NSRectEdge::minY, 100}));
    EXPECT_EQ(place(anchor, NSRectEdge::minX), (PopoverPlacement{{191, 275, 209, 100}, NSRectEdge::minX, 50}));
    EXPECT_EQ(place(anchor, NSRectEdge::maxX), (PopoverPlacement{{500, 275, 209, 100}, NSRectEdge::maxX, 50}));
}

TEST(PopoverPlacement, takesTheOppositeEdgeWhereThereIsNoRoom)
{
    EXPECT_EQ(place({400, 740, 100, 50}, NSRectEdge::maxY).edge, NSRectEdge::minY);
    EXPECT_EQ(place({400, 10, 100, 50}, NSRectEdge::minY).edge, NSRectEdge::maxY);
    EXPECT_EQ(place({10, 300, 100, 50}, NSRectEdge::minX).edge, NSRectEdge::maxX);
    EXPECT_EQ(place({890, 300, 100, 50}, NSRectEdge::maxX).edge, NSRectEdge::minX);
}

TEST(PopoverPlacement, takesAnotherEdgeWhereThereIsNoRoomOnEither)
{
    EXPECT_EQ(place({400, 0, 100, 800}, NSRectEdge::maxY).edge, NSRectEdge::maxX);
    EXPECT_EQ(place({850, 0, 100, 800}, NSRectEdge::maxY).edge, NSRectEdge::minX);
    EXPECT_EQ(place({0, 300, 1000, 50}, NSRectEdge::minX).edge, NSRectEdge::minY);
}

TEST(PopoverPlacement, staysAtThePreferredEdgeWhereThereIsNoRoomAtAll)
{
    EXPECT_EQ(place({0, 0, 1000, 800}, NSRectEdge::maxX).edge, NSRectEdge::maxX);
}

TEST(PopoverPlacement, movesAlongTheEdgeToStayOnTheScreen)
{
    const PopoverPlacement left = place({20, 300, 40, 50}, NSRectEdge::maxY);
    EXPECT_EQ(left.frame.minX(), 0);
    EXPECT_EQ(left.tip, 40) << "the arrow still points at the anchor's middle";
    const PopoverPlacement right = place({940, 300, 40, 50}, NSRectEdge::maxY);
    EXPECT_EQ(right.frame.maxX(), 1000);
    EXPECT_EQ(right.tip, 160);
    const PopoverPlacement low = place({400, 0, 40, 20}, NSRectEdge::maxX);
    EXPECT_EQ(low.frame.minY(), 0);
    EXPECT_EQ(low.tip, 15) << "no nearer to the corner";
}

TEST(PopoverPlacement, anArrowOnANarrowPopoverIsInItsMiddle)
{
    const PopoverPlacement narrow = placePopover({400, 300, 100, 50}, {8, 8}, NSRectEdge::maxY, screen);
    EXPECT_EQ(narrow.frame.size, (CGSize{10, 19}));
    EXPECT_EQ(narrow.tip, 5);
}

} // namespace
} // namespace RVCore::PopoverPlacementTests
