#include <Sources/Views/TestViews.h>

#include <gtest/gtest.h>

namespace RVCore::RVGroupViewFramesTests {

namespace {

using Arrangement = RVGroupView::Arrangement;
using Edge = RVGroupView::Edge;
using Offset = RVGroupView::Offset;
using Orientation = RVGroupView::Orientation;
using ResizePolicy = RVGroupView::ResizePolicy;

// Lays a group of a (30 x 20), b (50 x 40) and c (20 x 10) out in a host; spacing 8, padding top 2, left 4, bottom 6,
// right 10. Its content is 130 points long in a row and 94 in a column.
class RVGroupViewFrames : public testing::Test {
protected:
    void make(CGSize size, Arrangement arrangement = {})
    {
        arrangement.spacing = 8;
        group = makeGroupView<CountingGroupView>({a, b, c}, arrangement);
        group->setPadding({2, 4, 6, 10});
        group->setAlignment(arrangement.alignment); // the padding across takes effect with a rebuild
        nameSpacers(*group);
        host = hostOf(group, size);
        host->layoutSubtreeIfNeeded();
    }
    std::string layout()
    {
        host->layoutSubtreeIfNeeded();
        return frames({a, b, c});
    }
    // Along the axis, every element begins where the one before it ends.
    void expectUnbrokenChain() const
    {
        const bool isHorizontal = group->orientation() == Orientation::horizontal;
        const auto& elements = group->subviews();
        for (std::size_t i = 1; i < elements.size(); ++i) {
            const CGRect &before = elements[i - 1]->frame(), &frame = elements[i]->frame();
            EXPECT_EQ(isHorizontal ? frame.minX() : frame.minY(), isHorizontal ? before.maxX() : before.maxY());
        }
    }

    std::shared_ptr<SizedView> a = sized(30, 20, "a"), b = sized(50, 40, "b"), c = sized(20, 10, "c");
    std::shared_ptr<CountingGroupView> group;
    std::shared_ptr<NSView> host;
};

constexpr Orientation verticalOrientation = Orientation::vertical;

TEST_F(RVGroupViewFrames, aRowIsCentredAndItsLastMemberTakesTheRest)
{
    make({200, 100});
    EXPECT_EQ(frames(group->subviews()), "s0 (0, 49.5) 4 × 1\n"
                                         "a (4, 40) 30 × 20\n"
                                         "s1 (34, 49.5) 8 × 1\n"
                                         "b (42, 30) 50 × 40\n"
                                         "s2 (92, 49.5) 8 × 1\n"
                                         "c (100, 45) 90 × 10\n"
                                         "s3 (190, 49.5) 10 × 1\n");
    EXPECT_FALSE(group->hasAmbiguousLayout());
}

TEST_F(RVGroupViewFrames, aColumnIsCentredAndItsLastMemberTakesTheRest)
{
    make({100, 200}, {.orientation = verticalOrientation});
    EXPECT_EQ(frames(group->subviews()), "s0 (49.5, 0) 1 × 2\n"
                                         "a (35, 2) 30 × 20\n"
                                         "s1 (49.5, 22) 1 × 8\n"
                                         "b (25, 30) 50 × 40\n"
                                         "s2 (49.5, 70) 1 × 8\n"
                                         "c (40, 78) 20 × 116\n"
                                         "s3 (49.5, 194) 1 × 6\n");
}

TEST_F(RVGroupViewFrames, atItsOwnSizeNothingStretches)
{
    make({130, 48});
    EXPECT_EQ(layout(), "a (4, 14) 30 × 20\nb (42, 4) 50 × 40\nc (100, 19) 20 × 10\n");
    make({64, 94}, {.orientation = verticalOrientation});
    EXPECT_EQ(layout(), "a (17, 2) 30 × 20\nb (7, 30) 50 × 40\nc (22, 78) 20 × 10\n");
}

TEST_F(RVGroupViewFrames, theLeadingViewStretches)
{
    make({200, 100}, {.resizePolicy = ResizePolicy::leadingView});
    EXPECT_EQ(layout(), "a (4, 40) 100 × 20\nb (112, 30) 50 × 40\nc (170, 45) 20 × 10\n");
    make({100, 200}, {.orientation = verticalOrientation, .resizePolicy = ResizePolicy::leadingView});
    EXPECT_EQ(layout(), "a (35, 2) 30 × 126\nb (25, 136) 50 × 40\nc (40, 184) 20 × 10\n");
}

TEST_F(RVGroupViewFrames, theLeadingEdgePushesTheContentToTheEnd)
{
    make({200, 100}, {.resizePolicy = ResizePolicy::leadingEdge});
    EXPECT_EQ(layout(), "a (74, 40) 30 × 20\nb (112, 30) 50 × 40\nc (170, 45) 20 × 10\n");
    make({100, 200}, {.orientation = verticalOrientation, .resizePolicy = ResizePolicy::leadingEdge});
    EXPECT_EQ(layout(), "a (35, 108) 30 × 20\nb (25, 136) 50 × 40\nc (40, 184) 20 × 10\n");
}

TEST_F(RVGroupViewFrames, theTrailingEdgePacksTheContentAtTheStart)
{
    make({200, 100}, {.resizePolicy = ResizePolicy::trailingEdge});
    EXPECT_EQ(layout(), "a (4, 40) 30 × 20\nb (42, 30) 50 × 40\nc (100, 45) 20 × 10\n");
    make({100, 200}, {.orientation = verticalOrientation, .resizePolicy = ResizePolicy::trailingEdge});
    EXPECT_EQ(layout(), "a (35, 2) 30 × 20\nb (25, 30) 50 × 40\nc (40, 78) 20 × 10\n");
}

// Alignment is stronger than the padding across the axis.
TEST_F(RVGroupViewFrames, leadingMembersLieAtTheGroupsOwnEdge)
{
    make({200, 100}, {.alignment = Edge::leadingParent()});
    EXPECT_EQ(layout(), "a (4, 0) 30 × 20\nb (42, 0) 50 × 40\nc (100, 0) 90 × 10\n");
    make({100, 200}, {.orientation = verticalOrientation, .alignment = Edge::leadingParent()});
    EXPECT_EQ(layout(), "a (0, 2) 30 × 20\nb (0, 30) 50 × 40\nc (0, 78) 20 × 116\n");
}

TEST_F(RVGroupViewFrames, trailingMembersLieAtTheGroupsOwnEdge)
{
    make({200, 100}, {.alignment = Edge::trailingParent()});
    EXPECT_EQ(layout(), "a (4, 80) 30 × 20\nb (42, 60) 50 × 40\nc (100, 90) 90 × 10\n");
    make({100, 200}, {.orientation = verticalOrientation, .alignment = Edge::trailingParent()});
    EXPECT_EQ(layout(), "a (70, 2) 30 × 20\nb (50, 30) 50 × 40\nc (80, 78) 20 × 116\n");
}

TEST_F(RVGroupViewFrames, fillingMembersTakeTheWholeCrossAxis)
{
    make({200, 100}, {.alignment = Edge::fillParent()});
    EXPECT_EQ(layout(), "a (4, 0) 30 × 100\nb (42, 0) 50 × 100\nc (100, 0) 90 × 100\n");
    make({100, 200}, {.orientation = verticalOrientation, .alignment = Edge::fillParent()});
    EXPECT_EQ(layout(), "a (0, 2) 100 × 20\nb (0, 30) 100 × 40\nc (0, 78) 100 × 116\n");
}

TEST_F(RVGroupViewFrames, membersFollowAnotherViewAcross)
{
    make({200, 100});
    const auto other = makeView(*host);
    other->setFrame({0, 10, 200, 60});
    group->setAlignment(Edge::center(other));
    EXPECT_EQ(layout(), "a (4, 30) 30 × 20\nb (42, 20) 50 × 40\nc (100, 35) 90 × 10\n");
    group->setAlignment(Edge::leading(other));
    EXPECT_EQ(layout(), "a (4, 10) 30 × 20\nb (42, 10) 50 × 40\nc (100, 10) 90 × 10\n");
    group->setAlignment(Edge::trailing(other));
    EXPECT_EQ(layout(), "a (4, 50) 30 × 20\nb (42, 30) 50 × 40\nc (100, 60) 90 × 10\n");
    group->setAlignment(Edge::fill(other));
    EXPECT_EQ(layout(), "a (4, 10) 30 × 60\nb (42, 10) 50 × 60\nc (100, 10) 90 × 60\n");
}

TEST_F(RVGroupViewFrames, membersMayHaveAlignmentsOfTheirOwn)
{
    make({200, 100});
    group->alignViews([this] {
        return RVGroupView::PerView<Edge>{{a, Edge::leadingParent()}, {b, Edge::trailingParent()}};
    });
    EXPECT_EQ(layout(), "a (4, 0) 30 × 20\nb (42, 60) 50 × 40\nc (100, 45) 90 × 10\n");
}

TEST_F(RVGroupViewFrames, offsetsDisplaceMembersAndWhatFollowsAlongTheAxis)
{
    make({200, 100});
    group->offsetViews([this] { return RVGroupView::PerView<Offset>{{b, {5, 3}}}; });
    EXPECT_EQ(layout(), "a (4, 40) 30 × 20\nb (47, 33) 50 × 40\nc (105, 45) 85 × 10\n");
}

TEST_F(RVGroupViewFrames, aHiddenMemberClosesItsGap)
{
    make({200, 100});
    group->setVisibility(b, false);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(frames({a, c}), "a (4, 40) 30 × 20\nc (42, 45) 148 × 10\n");
    group->setVisibility(b, true);
    EXPECT_EQ(layout(), "a (4, 40) 30 × 20\nb (42, 30) 50 × 40\nc (100, 45) 90 × 10\n");
}

TEST_F(RVGroupViewFrames, aHiddenLastMemberLeavesItsRoomToTheOneBefore)
{
    make({200, 100});
    group->setVisibility(c, false);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(frames({a, b}), "a (4, 40) 30 × 20\nb (42, 30) 148 × 40\n");
}

TEST_F(RVGroupViewFrames, spacingAndPaddingMoveTheMembers)
{
    make({200, 100});
    group->setSpacing(10);
    group->setPadding({2, 5, 6, 11});
    EXPECT_EQ(layout(), "a (5, 40) 30 × 20\nb (45, 30) 50 × 40\nc (105, 45) 84 × 10\n");
}

TEST_F(RVGroupViewFrames, negativeSpacingLetsMembersOverlap)
{
    make({200, 100});
    group->setSpacing(-8);
    const auto sizes = [this] {
        std::string text;
        for (const auto& view : {a, b})
            text += describe(view->frame().size) + "\n";
        return text;
    };
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(sizes(), "30 × 20\n50 × 40\n");
    EXPECT_FALSE(group->needsLayout());
}

// Both ends are equally strong; a reader begins at the start, so it is the end that is cut.
TEST_F(RVGroupViewFrames, contentThatIsTooLongStaysAtTheStartAndKeepsItsSizesAndItsOrder)
{
    for (const CGFloat room : {100.0, 20.0, 0.0}) {
        make({room, 100});
        const CGFloat start = spacersOf(*group).front()->frame().minX();
        const CGFloat end = spacersOf(*group).back()->frame().maxX();
        EXPECT_EQ(start, 0) << room;
        EXPECT_EQ(end, 130) << room;
        EXPECT_EQ(a->frame().size, (CGSize{30, 20}));
        EXPECT_EQ(b->frame().size, (CGSize{50, 40}));
        EXPECT_EQ(c->frame().size, (CGSize{20, 10}));
        expectUnbrokenChain();

        make({100, room}, {.orientation = verticalOrientation});
        EXPECT_EQ(spacersOf(*group).front()->frame().minY(), 0) << room;
        EXPECT_EQ(spacersOf(*group).back()->frame().maxY(), std::max(94.0, room)) << room;
        EXPECT_EQ(b->frame().size, (CGSize{50, 40}));
        expectUnbrokenChain();
    }
}

TEST_F(RVGroupViewFrames, contentThatIsTooHighStaysCentred)
{
    make({200, 30});
    EXPECT_EQ(layout(), "a (4, 5) 30 × 20\nb (42, -5) 50 × 40\nc (100, 10) 90 × 10\n");
}

TEST_F(RVGroupViewFrames, requiredConstraintsFromOutsideWin)
{
    make({200, 100});
    autoSetDimension(*b, LayoutDimension::width, 10);
    EXPECT_EQ(layout(), "a (4, 40) 30 × 20\nb (42, 30) 10 × 40\nc (60, 45) 130 × 10\n");
    autoPinEdgeToSuperviewEdge(*a, LayoutEdge::top, 1);
    EXPECT_EQ(layout(), "a (4, 1) 30 × 98\nb (42, 30) 10 × 40\nc (60, 45) 130 × 10\n")
        << "still centred, which is stronger than hugging its height";
}

TEST_F(RVGroupViewFrames, aGroupInAGroupIsLaidOutAsAMember)
{
    const auto inner = makeGroupView({a, b}, {.orientation = verticalOrientation, .spacing = 4});
    inner->setIdentifier("inner");
    const auto outer = makeGroupView({inner, c}, {.spacing = 8});
    host = hostOf(outer, {200, 100});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(frames({inner, c}), "inner (0, 18) 50 × 64\nc (58, 45) 142 × 10\n");
    EXPECT_EQ(frames({a, b}), "a (10, 0) 30 × 20\nb (0, 24) 50 × 40\n");
    inner->setVisibility(a, false);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(frames({inner, c}), "inner (0, 30) 50 × 40\nc (58, 45) 142 × 10\n");
    EXPECT_EQ(frames({b}), "b (0, 0) 50 × 40\n");
}

TEST_F(RVGroupViewFrames, anEmptyGroupTakesTheSizeOfItsPadding)
{
    const auto empty = RVCore::make<RVGroupView>();
    empty->setIdentifier("empty");
    empty->setPadding({2, 4, 6, 10});
    const auto outer = makeGroupView({empty, c});
    EXPECT_EQ(outer->intrinsicContentSize(), (CGSize{34, 10}));
    host = hostOf(outer, {34, 10});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(frames({empty, c}), "empty (0, 1) 14 × 8\nc (14, 0) 20 × 10\n");
}

TEST_F(RVGroupViewFrames, aWrappedMemberKeepsTheWrappersSize)
{
    const auto content = RVCore::make<NSView>();
    content->setIdentifier("content");
    autoSetDimensionsToSize(*content, {40, 20});
    const auto row = makeGroupView({content, c});
    host = hostOf(row, {60, 20});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(row->views().at(0)->frame(), CGRect(0, 0, 40, 20));
    EXPECT_EQ(frames({content, c}), "content (0, 0) 40 × 20\nc (40, 5) 20 × 10\n");
}

TEST_F(RVGroupViewFrames, layoutSettlesAndASecondPassDoesNothing)
{
    make({200, 100});
    group->resetCounts();
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(group->layouts, 0);
    EXPECT_EQ(group->constraintUpdates, 0);
    EXPECT_EQ(group->invalidations, 0);
    group->setResizePolicy(ResizePolicy::leadingView);
    EXPECT_EQ(group->layouts, 0) << "nothing is laid out before the pass";
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(group->constraintUpdates, 1);
    EXPECT_GE(group->layouts, 1);
    EXPECT_FALSE(group->needsLayout());
    EXPECT_FALSE(group->needsUpdateConstraints());
}

TEST_F(RVGroupViewFrames, anEqualValueLeavesTheFramesAndTheirViewsAlone)
{
    make({200, 100});
    const std::string before = layout();
    a->layouts = 0;
    group->setSpacing(8);
    group->setAlignment(Edge::centerParent());
    EXPECT_EQ(layout(), before);
    EXPECT_EQ(a->layouts, 0);
}

TEST_F(RVGroupViewFrames, theSameStepsGiveTheSameFramesToTheBit)
{
    make({200, 100}, {.alignment = Edge::fillParent()});
    const std::string direct = layout();
    make({137, 61});
    host->setFrameSize({200, 100});
    group->setVisibility(b, false);
    layout();
    group->setVisibility(b, true);
    group->setAlignment(Edge::fillParent());
    EXPECT_EQ(layout(), direct);
}

} // namespace

} // namespace RVCore::RVGroupViewFramesTests
