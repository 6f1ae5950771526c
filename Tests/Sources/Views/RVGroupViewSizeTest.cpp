#include <Sources/Views/TestViews.h>

#include <gtest/gtest.h>

namespace RVCore::RVGroupViewSizeTests {

namespace {

using Offset = RVGroupView::Offset;
using Orientation = RVGroupView::Orientation;

// Members of 30 x 20 and 50 x 40, spacing 8, padding top 2, left 4, bottom 6, right 10.
class RVGroupViewSizeTest : public testing::Test {
protected:
    void SetUp() override { group->setPadding({2, 4, 6, 10}); }

    void offsetSecond(Offset offset)
    {
        group->offsetViews([&] { return RVGroupView::PerView<Offset>{{second, offset}}; });
    }

    std::shared_ptr<SizedView> first = sized(30, 20), second = sized(50, 40);
    std::shared_ptr<CountingGroupView> group = makeGroupView<CountingGroupView>({first, second}, {.spacing = 8});
};

// A group without printing the warning about members that have no size.
std::shared_ptr<RVGroupView> quietGroup(const RVGroupView::Views& views, Orientation orientation)
{
    testing::internal::CaptureStdout();
    auto group = makeGroupView(views, {.orientation = orientation});
    testing::internal::GetCapturedStdout();
    return group;
}

TEST_F(RVGroupViewSizeTest, sumsAlongTheAxisAndTakesTheLargestAcross)
{
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{102, 48})); // 4 + 10 + 8 + 30 + 50; 2 + 6 + 40
    group->setOrientation(Orientation::vertical);
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{64, 76})); // 4 + 10 + 50; 2 + 6 + 8 + 20 + 40
}

TEST_F(RVGroupViewSizeTest, anOffsetIsAddedInBothDimensions)
{
    offsetSecond({5, 3});
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{107, 51}));
    group->setOrientation(Orientation::vertical);
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{69, 79}));
}

TEST_F(RVGroupViewSizeTest, offsetsAcrossAreSummedNotMaximised)
{
    group->offsetViews([&] { return RVGroupView::PerView<Offset>{{first, {0, 3}}, {second, {0, 4}}}; });
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{102, 55}));
}

TEST_F(RVGroupViewSizeTest, theMemberThatIsFirstAfterHidingHasNoSpacing)
{
    group->setVisibility(first, false);
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{64, 48})); // 14 + 0 + 50; 8 + 40
}

TEST_F(RVGroupViewSizeTest, hiddenMembersAndTheirOffsetsDoNotCount)
{
    offsetSecond({5, 3});
    group->setVisibility(second, false);
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{44, 28}));
    group->setVisibility(first, false);
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{14, 8}));
}

TEST(RVGroupViewSize, anEmptyGroupReportsItsPadding)
{
    const auto group = make<RVGroupView>();
    EXPECT_EQ(group->intrinsicContentSize(), CGSize());
    group->setPadding({2, 4, 6, 10});
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{14, 8}));
}

TEST(RVGroupViewSize, anAbsentWidthAtTheEndMakesTheGroupsAbsent)
{
    const auto group = quietGroup({sized(50, 20), sized(-1, 30)}, Orientation::horizontal);
    group->setPadding({2, 4, 6, 10});
    group->setSpacing(8);
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{-1, 38})); // nothing is added to an absent width
}

TEST(RVGroupViewSize, anAbsentWidthIsNotSticky)
{
    const auto group = quietGroup({sized(-1, 30), sized(50, 20)}, Orientation::horizontal);
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{49, 30})); // -1 + 50
    group->setPadding({2, 4, 6, 10});
    group->setSpacing(8);
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{71, 38})); // 4 + 10 + 8 + 49
}

TEST(RVGroupViewSize, anAbsentMetricAcrossGivesWayToTheNextMember)
{
    EXPECT_EQ(quietGroup({sized(30, -1), sized(50, 20)}, Orientation::horizontal)->intrinsicContentSize(),
              (CGSize{80, 20}));
    EXPECT_EQ(quietGroup({sized(50, 20), sized(30, -1)}, Orientation::horizontal)->intrinsicContentSize(),
              (CGSize{80, -1}));
    EXPECT_EQ(quietGroup({sized(-1, 20), sized(30, -1)}, Orientation::vertical)->intrinsicContentSize(),
              (CGSize{30, -1}));
    EXPECT_EQ(quietGroup({sized(30, -1), sized(20, 10)}, Orientation::vertical)->intrinsicContentSize(),
              (CGSize{30, 9}));
}

TEST_F(RVGroupViewSizeTest, membersAreAskedOncePerQuestion)
{
    first->sizeQuestions = 0;
    group->intrinsicContentSize();
    EXPECT_EQ(first->sizeQuestions, 1);
}

TEST_F(RVGroupViewSizeTest, aRebuildLooksAtTheSizeTwiceAndOnceMoreToStoreANewOne)
{
    group->setNeedsLayout(true);
    first->sizeQuestions = 0;
    group->setOrientation(Orientation::horizontal); // with the request for layout, and by itself
    EXPECT_EQ(first->sizeQuestions, 2);
    first->sizeQuestions = 0;
    group->setOrientation(Orientation::vertical);
    EXPECT_EQ(first->sizeQuestions, 3);
}

TEST_F(RVGroupViewSizeTest, aGroupWhoseSizeDidNotChangeDoesNotInvalidateIt)
{
    group->setNeedsLayout(true); // publishes the padding
    group->resetCounts();
    group->setNeedsLayout(true);
    group->setAlignment(RVGroupView::Edge::fillParent());
    group->setResizePolicy(RVGroupView::ResizePolicy::leadingEdge);
    EXPECT_EQ(group->invalidations, 0);
}

TEST_F(RVGroupViewSizeTest, everyChangeOfSizeIsPublishedOnce)
{
    group->setNeedsLayout(true);
    group->resetCounts();
    group->setOrientation(Orientation::vertical);
    EXPECT_EQ(group->invalidations, 1);
    offsetSecond({5, 3}); // rebuilds twice
    EXPECT_EQ(group->invalidations, 2);
    group->setVisibility(first, false);
    EXPECT_EQ(group->invalidations, 3);
}

TEST(RVGroupViewSize, theFirstSizeIsPublishedUnlessItIsAbsentInBothDimensions)
{
    EXPECT_EQ(makeGroupView<CountingGroupView>({sized(1, 2)})->invalidations, 1);
    EXPECT_EQ(make<CountingGroupView>()->invalidations, 1);
    testing::internal::CaptureStdout();
    EXPECT_EQ(makeGroupView<CountingGroupView>({make<NSView>()})->invalidations, 0);
    testing::internal::GetCapturedStdout();
}

TEST_F(RVGroupViewSizeTest, aContainerFollowsTheGroupsSize)
{
    const auto host = make<RVBaseView>(CGRect(0, 0, 500, 500));
    host->addSubview(group);
    autoPinEdgeToSuperviewEdge(*group, LayoutEdge::top);
    autoPinEdgeToSuperviewEdge(*group, LayoutEdge::left);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(group->frame(), CGRect(0, 0, 102, 48));
    group->setVisibility(first, false);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(group->frame(), CGRect(0, 0, 64, 48));
}

TEST(RVGroupViewSize, anOuterGroupFollowsAnInnerOne)
{
    const auto a = sized(30, 20), b = sized(50, 40);
    const auto inner = makeGroupView({a, b}, {.orientation = Orientation::vertical});
    const auto outer = makeGroupView({inner, sized(5, 5)});
    EXPECT_EQ(outer->intrinsicContentSize(), (CGSize{55, 60}));
    inner->setVisibility(a, false);
    EXPECT_EQ(outer->intrinsicContentSize(), (CGSize{55, 40}));
}

} // namespace

} // namespace RVCore::RVGroupViewSizeTests
