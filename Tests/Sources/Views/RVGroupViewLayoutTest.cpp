#include <Platform/ConstraintLibrary/ConstraintText.h>
#include <Platform/Foundation/Raised.h>
#include <Sources/Views/TestViews.h>

#include <gtest/gtest.h>

#include <limits>

namespace RVCore::RVGroupViewLayoutTests {

namespace {

using Edge = RVGroupView::Edge;
using Offset = RVGroupView::Offset;
using Orientation = RVGroupView::Orientation;
using ResizePolicy = RVGroupView::ResizePolicy;
using Views = RVGroupView::Views;

constexpr auto horizontal = NSLayoutConstraintOrientation::horizontal;
constexpr auto vertical = NSLayoutConstraintOrientation::vertical;

std::string installed(const RVGroupView& group)
{
    return constraintTexts(group.constraints());
}

std::string printed(const std::function<void()>& operation)
{
    testing::internal::CaptureStdout();
    operation();
    return testing::internal::GetCapturedStdout();
}

constexpr const char* secondWarningLine =
    "Make sure the view has an intrinsic content size or you can specify dimension constraints manually.\n";

TEST(RVGroupViewLayout, aGroupWithoutMembersHasNoSpacersAndNoConstraints)
{
    const auto group = make<CountingGroupView>();
    EXPECT_TRUE(group->subviews().empty());
    EXPECT_TRUE(group->constraints().empty());
}

TEST(RVGroupViewLayout, rebuildingAGroupWithoutMembersOnlyMarksItAndLooksAtItsSize)
{
    const auto group = make<CountingGroupView>();
    group->setPadding({1, 2, 3, 4});
    group->setNeedsLayout(false);
    group->setNeedsUpdateConstraints(false);
    group->resetCounts();
    group->setPadding({1, 2, 3, 5});
    group->setOrientation(Orientation::vertical);
    EXPECT_TRUE(group->needsLayout());
    EXPECT_TRUE(group->needsUpdateConstraints());
    EXPECT_EQ(group->rebuilds, 1);
    EXPECT_EQ(group->invalidations, 1);
    EXPECT_TRUE(group->constraints().empty());
    EXPECT_TRUE(group->subviews().empty());
}

TEST(RVGroupViewLayout, withAllMembersHiddenThereAreNoConstraintsAndTheSpacersStay)
{
    const auto a = sized(1, 1), b = sized(2, 2);
    const auto group = makeGroupView({a, b});
    group->setVisibility(a, false);
    group->setVisibility(b, false);
    EXPECT_EQ(installed(*group), "");
    EXPECT_EQ(spacersOf(*group).size(), 3U);
    EXPECT_EQ(group->subviews().size(), 5U);
}

TEST(RVGroupViewLayout, oneMemberStandsBetweenTwoSpacersOfThePadding)
{
    const auto m0 = sized(30, 20, "m0");
    const auto group = makeGroupView({m0});
    group->setIdentifier("g");
    group->setPadding({2, 4, 6, 10});
    nameSpacers(*group);
    const auto spacers = spacersOf(*group);
    ASSERT_EQ(group->subviews(), (Views{spacers.at(0), m0, spacers.at(1)}));
    EXPECT_EQ(spacers[0]->intrinsicContentSize(), (CGSize{4, 1}));
    EXPECT_EQ(spacers[1]->intrinsicContentSize(), (CGSize{10, 1}));
    EXPECT_THAT(installed(*group), testing::StartsWith("m0.left == s0.right @749\n"
                                                       "s1.left == m0.right @749\n"
                                                       "s0.left == g.left @748\n"
                                                       "s1.right == g.right @748\n"));
}

TEST(RVGroupViewLayout, membersAndSpacersAreSubviewsInTurn)
{
    const auto a = sized(1, 1), b = sized(2, 2);
    const auto group = makeGroupView({a, b});
    const auto spacers = spacersOf(*group);
    ASSERT_EQ(spacers.size(), 3U);
    EXPECT_EQ(group->subviews(), (Views{spacers[0], a, spacers[1], b, spacers[2]}));
}

TEST(RVGroupViewLayout, spacersHaveTheSizesOfTheGaps)
{
    const auto group = makeGroupView({sized(1, 1), sized(2, 2), sized(3, 3)});
    const auto sizes = [&group] {
        std::vector<CGSize> result;
        for (const auto& spacer : spacersOf(*group))
            result.push_back(spacer->intrinsicContentSize());
        return result;
    };
    group->setSpacing(8);
    group->setPadding({2, 4, 6, 10});
    EXPECT_EQ(sizes(), (std::vector<CGSize>{{4, 1}, {8, 1}, {8, 1}, {10, 1}}));
    group->setOrientation(Orientation::vertical);
    EXPECT_EQ(sizes(), (std::vector<CGSize>{{1, 2}, {1, 8}, {1, 8}, {1, 6}}));
}

TEST(RVGroupViewLayout, theEndsOfWhatIsVisibleCarryThePadding)
{
    const auto a = sized(1, 1), b = sized(2, 2), c = sized(3, 3);
    const auto group = makeGroupView({a, b, c}, {.spacing = 8});
    group->setPadding({2, 4, 6, 10});
    group->setVisibility(c, false); // with the spacer before it: the last one stays at the end
    const auto spacers = spacersOf(*group);
    EXPECT_EQ(spacers.at(0)->size(), (CGSize{4, 1}));
    EXPECT_EQ(spacers.at(1)->size(), (CGSize{8, 1}));
    EXPECT_EQ(spacers.at(3)->size(), (CGSize{10, 1}));
    group->setPadding({2, 5, 6, 11});
    EXPECT_EQ(spacers.at(0)->size(), (CGSize{5, 1}));
    EXPECT_EQ(spacers.at(3)->size(), (CGSize{11, 1}));
    EXPECT_EQ(spacers.at(2)->size(), (CGSize{8, 1})) << "left out, so not resized";
}

TEST(RVGroupViewLayout, withEverythingHiddenSpacersAreNotResized)
{
    const auto a = sized(1, 1);
    const auto group = makeGroupView({a});
    group->setPadding({0, 4, 0, 10});
    group->setVisibility(a, false);
    group->setPadding({0, 5, 0, 11});
    EXPECT_EQ(spacersOf(*group).at(0)->size(), (CGSize{4, 1}));
}

TEST(RVGroupViewLayout, anOffsetMovesAlongTheAxisInTheChainAndAcrossInTheAlignment)
{
    const auto a = sized(30, 20, "a");
    const auto group = makeGroupView({a});
    group->setIdentifier("g");
    nameSpacers(*group);
    group->offsetViews([&] { return RVGroupView::PerView<Offset>{{a, {5, 3}}}; });
    EXPECT_THAT(installed(*group), testing::HasSubstr("a.left == s0.right + 5 @749\n"));
    EXPECT_THAT(installed(*group), testing::HasSubstr("a.centerY == g.centerY + 3 @749\n"));
    group->setOrientation(Orientation::vertical);
    EXPECT_THAT(installed(*group), testing::HasSubstr("a.top == s0.bottom + 3 @749\n"));
    EXPECT_THAT(installed(*group), testing::HasSubstr("a.centerX == g.centerX + 5 @749\n"));
}

TEST(RVGroupViewLayout, leadingPinsToTheOtherViewsEdgeAndLeadingParentToTheGroups)
{
    const auto a = sized(30, 20, "a");
    const auto group = makeGroupView({a});
    const auto host = hostOf(group, {100, 100});
    group->setIdentifier("g");
    const auto other = namedView("other", host.get());
    group->setAlignment(Edge::leading(other));
    EXPECT_THAT(constraintTexts(host->constraints()), testing::HasSubstr("a.top == other.top @749\n"));
    group->setAlignment(Edge::leadingParent());
    EXPECT_THAT(installed(*group), testing::HasSubstr("a.top == g.top @749\n"));
    EXPECT_THAT(constraintTexts(host->constraints()), testing::Not(testing::HasSubstr("other")));
}

TEST(RVGroupViewLayout, trailingEdgeLetsTheLastSpacerStretch)
{
    for (const auto& [orientation, axis, others] :
         {std::tuple{Orientation::horizontal, horizontal, 251.0F}, {Orientation::vertical, vertical, 750.0F}}) {
        const auto group = makeGroupView({sized(1, 1), sized(2, 2)},
                                         {.orientation = orientation, .resizePolicy = ResizePolicy::trailingEdge});
        for (const auto& element : group->subviews())
            EXPECT_EQ(element->contentHuggingPriority(axis), element == group->subviews().back() ? 250.0F : others);
    }
}

TEST(RVGroupViewLayout, huggingOfAnotherPassIsOverwrittenNotReset)
{
    const auto a = sized(1, 1), b = sized(2, 2);
    const auto group = makeGroupView({a, b});
    EXPECT_EQ(b->contentHuggingPriority(horizontal), 250.0F);
    group->setOrientation(Orientation::vertical);
    EXPECT_EQ(a->contentHuggingPriority(horizontal), 251.0F) << "from the horizontal pass";
    EXPECT_EQ(a->contentHuggingPriority(vertical), 750.0F);
    group->setVisibility(b, false);
    EXPECT_EQ(a->contentHuggingPriority(vertical), 250.0F) << "it is the last visible member now";
    EXPECT_EQ(b->contentHuggingPriority(vertical), 250.0F) << "hidden, so left as it was";
}

TEST(RVGroupViewLayout, assigningViewsTwiceCreatesNewSpacersEachTime)
{
    const auto a = sized(1, 1), b = sized(2, 2);
    const auto group = makeGroupView({a, b});
    const auto first = spacersOf(*group);
    group->setViews({a, b});
    const auto second = spacersOf(*group);
    EXPECT_EQ(second.size(), 3U);
    for (const auto& spacer : first) {
        EXPECT_EQ(spacer->superview(), nullptr);
        EXPECT_THAT(second, testing::Not(testing::Contains(spacer)));
    }
    EXPECT_EQ(group->subviews().size(), 5U);
}

TEST(RVGroupViewLayout, oldMembersLeaveTheHierarchyWhateverTheNewOnesAre)
{
    const auto a = sized(1, 1), b = sized(2, 2), c = sized(3, 3);
    const auto group = makeGroupView({a, b, c});
    group->setViews({b});
    EXPECT_EQ(a->superview(), nullptr);
    EXPECT_EQ(c->superview(), nullptr);
    EXPECT_EQ(group->subviews().size(), 3U);
    EXPECT_TRUE(a->constraints().empty()) << "its smallest size was the group's";
    EXPECT_EQ(b->constraints().size(), 2U);
    group->setViews({});
    EXPECT_TRUE(group->subviews().empty());
    EXPECT_TRUE(group->constraints().empty());
    EXPECT_TRUE(b->constraints().empty());
}

TEST(RVGroupViewLayout, membersKeepTheirSmallestSizeAcrossConstraintRebuilds)
{
    const auto a = sized(30, 20, "a");
    const auto group = makeGroupView({a});
    const auto before = a->constraints();
    EXPECT_EQ(constraintTexts(before), "a.width >= 30 @700\na.height >= 20 @700\n");
    a->changeSizeSilently({31, 21});
    group->setOrientation(Orientation::vertical);
    EXPECT_EQ(a->constraints(), before);
    group->setViews({a});
    EXPECT_EQ(constraintTexts(a->constraints()), "a.width >= 31 @700\na.height >= 21 @700\n");
}

TEST(RVGroupViewLayout, aViewWithOnlyAFittingSizeIsWrapped)
{
    const auto content = namedView("content");
    autoSetDimensionsToSize(*content, {40, 20});
    std::shared_ptr<RVGroupView> group;
    EXPECT_EQ(printed([&] { group = makeGroupView({content}); }), "") << "no warning";
    const auto wrapper = std::dynamic_pointer_cast<RVIntrinsicView>(group->views().at(0));
    ASSERT_TRUE(wrapper);
    EXPECT_EQ(wrapper->size(), (CGSize{40, 20}));
    EXPECT_EQ(wrapper->wrappedView(), content);
    EXPECT_EQ(content->superview(), wrapper.get());
    EXPECT_EQ(wrapper->superview(), group.get());
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{40, 20}));
}

TEST(RVGroupViewLayout, wrappingTakesTheMetricThatThereIs)
{
    const auto content = sized(35, -1);
    autoSetDimension(*content, LayoutDimension::height, 12);
    const auto group = makeGroupView({content});
    const auto wrapper = std::dynamic_pointer_cast<RVIntrinsicView>(group->views().at(0));
    ASSERT_TRUE(wrapper);
    EXPECT_EQ(wrapper->size(), (CGSize{35, 12}));
}

TEST(RVGroupViewLayout, assigningTheViewsThatItReturnsKeepsTheWrappers)
{
    const auto content = namedView("content");
    autoSetDimensionsToSize(*content, {40, 20});
    const auto group = makeGroupView({content, sized(1, 1)});
    const Views views = group->views();
    group->setViews(views);
    EXPECT_EQ(group->views(), views);
    EXPECT_EQ(content->superview(), views[0].get());
}

TEST(RVGroupViewLayout, aWrappedViewPassedAgainGetsANewWrapper)
{
    const auto content = namedView("content");
    autoSetDimensionsToSize(*content, {40, 20});
    const auto group = makeGroupView({content});
    const auto first = group->views().at(0);
    group->setViews({content});
    EXPECT_NE(group->views().at(0), first);
    EXPECT_EQ(content->superview(), group->views().at(0).get());
    EXPECT_TRUE(first->subviews().empty());
}

TEST(RVGroupViewLayout, aViewWithoutAnySizeIsKeptAfterAWarning)
{
    const auto sizeless = make<NSView>();
    std::shared_ptr<RVGroupView> group;
    EXPECT_EQ(printed([&] { group = makeGroupView({sizeless}); }),
              "RVGroupView warning: cannot determine view size: " + sizeless->description() + "\n" +
                  secondWarningLine);
    EXPECT_EQ(group->views(), (Views{sizeless}));
    EXPECT_EQ(sizeless->superview(), group.get());
    EXPECT_TRUE(sizeless->constraints().empty()) << "no smallest size";
    EXPECT_EQ(spacersOf(*group).size(), 2U);
}

TEST(RVGroupViewLayout, theWarningComesOncePerMemberAndFullRebuild)
{
    const auto first = make<NSView>();
    const auto second = sized(-1, 20);
    const auto group = makeGroupView({});
    const std::string warning = "RVGroupView warning: cannot determine view size: ";
    const std::string both = warning + first->description() + "\n" + secondWarningLine + warning +
                             second->description() + "\n" + secondWarningLine;
    EXPECT_EQ(printed([&] { group->setViews({first, sized(1, 1), second}); }), both);
    EXPECT_EQ(printed([&] { group->setViews({first, sized(1, 1), second}); }), both);
    EXPECT_EQ(printed([&] { group->setOrientation(Orientation::vertical); }), "");
}

TEST(RVGroupViewLayout, aMemberMayOccurTwice)
{
    const auto a = sized(30, 20, "a");
    const auto group = makeGroupView({a, a});
    EXPECT_EQ(group->subviews().size(), 4U) << "three spacers and the one view";
    const auto host = hostOf(group, {100, 50});
    host->layoutSubtreeIfNeeded();
    group->setVisibility(a, false);
    EXPECT_EQ(installed(*group), "");
    group->setVisibility(a, true);
    EXPECT_NE(installed(*group), "");
}

TEST(RVGroupViewLayout, aMemberWhoseSizeIsNoNumberIsRefusedAndTheGroupStaysUsable)
{
    const auto a = sized(30, 20, "a");
    const auto group = makeGroupView({a});
    EXPECT_THAT(raised([&] { group->setViews({sized(std::numeric_limits<double>::quiet_NaN(), 1)}); }),
                testing::HasSubstr("size must be finite, got nan"));
    EXPECT_EQ(installed(*group), "");
    group->setViews({a});
    EXPECT_EQ(group->subviews().size(), 3U);
    EXPECT_NE(installed(*group), "");
}

TEST(RVGroupViewLayout, aRebuildPutsEqualConstraintsInPlaceOfTheOldOnes)
{
    const auto group = makeGroupView({sized(1, 1, "a"), sized(2, 2, "b")});
    group->setIdentifier("g");
    nameSpacers(*group);
    const auto before = group->constraints();
    group->setAlignment(Edge::centerParent());
    EXPECT_EQ(constraintTexts(group->constraints()), constraintTexts(before));
    EXPECT_NE(group->constraints(), before);
    for (const auto& constraint : before)
        EXPECT_FALSE(constraint->isActive());
}

} // namespace

} // namespace RVCore::RVGroupViewLayoutTests
