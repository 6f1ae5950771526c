#include <Platform/ConstraintLibrary/ConstraintText.h>
#include <Platform/Foundation/Raised.h>
#include <Sources/Views/TestViews.h>

#include <gtest/gtest.h>

#include <limits>

namespace RVCore::RVGroupViewTests {

namespace {

using Edge = RVGroupView::Edge;
using Offset = RVGroupView::Offset;
using Orientation = RVGroupView::Orientation;
using ResizePolicy = RVGroupView::ResizePolicy;
template <class Entry> using PerView = RVGroupView::PerView<Entry>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr auto horizontal = NSLayoutConstraintOrientation::horizontal;
constexpr auto vertical = NSLayoutConstraintOrientation::vertical;

// A group of a, b and c, with spacers s0 to s3.
class RVGroupViewTest : public testing::Test {
protected:
    void SetUp() override
    {
        group->setIdentifier("g");
        nameSpacers(*group);
        group->resetCounts();
    }

    std::string installed() const { return constraintTexts(group->constraints()); }
    std::string chain() const
    {
        std::string text;
        for (const auto& constraint : group->constraints()) {
            if (constraint->priority() == 749 && constraint->firstAttribute() == NSLayoutAttribute::left)
                text += constraintText(*constraint) + "\n";
        }
        return text;
    }

    std::shared_ptr<SizedView> a = sized(30, 20, "a"), b = sized(50, 40, "b"), c = sized(20, 10, "c");
    std::shared_ptr<CountingGroupView> group = makeGroupView<CountingGroupView>({a, b, c});
};

TEST(RVGroupView, plainlyMadeIsAnEmptyHorizontalGroupInItsDefaults)
{
    const auto group = make<RVGroupView>();
    EXPECT_TRUE(group->views().empty());
    EXPECT_EQ(group->orientation(), Orientation::horizontal);
    EXPECT_EQ(group->spacing(), 0);
    EXPECT_EQ(group->padding(), EdgeInsets());
    EXPECT_EQ(group->alignment().edgeCase(), Edge::Case::center);
    EXPECT_EQ(group->alignment().view(), nullptr);
    EXPECT_EQ(group->resizePolicy(), ResizePolicy::trailingView);
    EXPECT_TRUE(group->subviews().empty());
    EXPECT_TRUE(group->constraints().empty());
}

TEST(RVGroupView, takesItsArrangement)
{
    const auto target = make<NSView>();
    const auto group = makeGroupView({}, {.orientation = Orientation::vertical,
                                          .spacing = 8,
                                          .alignment = Edge::fill(target),
                                          .resizePolicy = ResizePolicy::leadingEdge});
    EXPECT_EQ(group->orientation(), Orientation::vertical);
    EXPECT_EQ(group->spacing(), 8);
    EXPECT_EQ(group->alignment().edgeCase(), Edge::Case::fill);
    EXPECT_EQ(group->alignment().view(), target);
    EXPECT_EQ(group->resizePolicy(), ResizePolicy::leadingEdge);
}

TEST(RVGroupView, casesAreInTheirOrder)
{
    EXPECT_EQ(static_cast<int>(Orientation::horizontal), 0);
    EXPECT_EQ(static_cast<int>(Orientation::vertical), 1);
    EXPECT_EQ(static_cast<int>(ResizePolicy::trailingView), 0);
    EXPECT_EQ(static_cast<int>(ResizePolicy::leadingView), 1);
    EXPECT_EQ(static_cast<int>(ResizePolicy::leadingEdge), 2);
    EXPECT_EQ(static_cast<int>(ResizePolicy::trailingEdge), 3);
    EXPECT_EQ(static_cast<int>(Edge::Case::center), 0);
    EXPECT_EQ(static_cast<int>(Edge::Case::leading), 1);
    EXPECT_EQ(static_cast<int>(Edge::Case::trailing), 2);
    EXPECT_EQ(static_cast<int>(Edge::Case::fill), 3);
}

TEST(RVGroupView, edgesCarryAnOptionalView)
{
    const auto view = make<NSView>();
    const std::pair<Edge, Edge> edges[] = {{Edge::center(view), Edge::centerParent()},
                                           {Edge::leading(view), Edge::leadingParent()},
                                           {Edge::trailing(view), Edge::trailingParent()},
                                           {Edge::fill(view), Edge::fillParent()}};
    int tag = 0;
    for (const auto& [with, parent] : edges) {
        EXPECT_EQ(static_cast<int>(with.edgeCase()), tag);
        EXPECT_EQ(static_cast<int>(parent.edgeCase()), tag++);
        EXPECT_EQ(with.view(), view);
        EXPECT_EQ(parent.view(), nullptr);
    }
    static_assert(!std::equality_comparable<Edge>);
}

TEST(RVGroupView, theOppositeOrientationIsTheOtherOne)
{
    EXPECT_EQ(makeGroupView({})->oppositeOrientation(), Orientation::vertical);
    EXPECT_EQ(makeGroupView({}, {.orientation = Orientation::vertical})->oppositeOrientation(),
              Orientation::horizontal);
}

TEST(RVGroupView, hugsAndResistsLikeASpacerWhateverItsOrientation)
{
    for (const Orientation orientation : {Orientation::horizontal, Orientation::vertical}) {
        const auto group = makeGroupView({}, {.orientation = orientation});
        EXPECT_EQ(group->contentHuggingPriority(horizontal), 250.0F);
        EXPECT_EQ(group->contentHuggingPriority(vertical), 750.0F);
        EXPECT_EQ(group->contentCompressionResistancePriority(horizontal), 750.0F);
        EXPECT_EQ(group->contentCompressionResistancePriority(vertical), 750.0F);
    }
}

TEST(RVGroupView, isFlippedLayerBackedAndLaidOutByConstraints)
{
    const auto group = make<RVGroupView>();
    EXPECT_TRUE(group->isFlipped());
    EXPECT_TRUE(group->wantsLayer());
    EXPECT_EQ(group->layerContentsRedrawPolicy(), NSViewLayerContentsRedrawPolicy::onSetNeedsDisplay);
    EXPECT_FALSE(group->translatesAutoresizingMaskIntoConstraints());
    EXPECT_EQ(group->frame(), CGRect());
}

TEST(RVGroupView, theSizeConstraintsOfItsFirstMomentAreDropped)
{
    std::vector<std::weak_ptr<NSLayoutConstraint>> created;
    std::shared_ptr<RVGroupView> group;
    {
        const auto all = autoCreateConstraints([&] { group = make<RVGroupView>(); });
        ASSERT_EQ(all.size(), 2U);
        EXPECT_EQ(all[0]->firstAttribute(), NSLayoutAttribute::width);
        EXPECT_EQ(all[1]->firstAttribute(), NSLayoutAttribute::height);
        created.assign(all.begin(), all.end());
    }
    EXPECT_TRUE(created[0].expired());
    EXPECT_TRUE(created[1].expired());
}

TEST_F(RVGroupViewTest, settingViewsRebuildsOnEveryAssignment)
{
    group->setViews({a, b, c});
    EXPECT_EQ(group->rebuilds, 1);
    group->setViews({a, b, c});
    EXPECT_EQ(group->rebuilds, 2);
}

TEST_F(RVGroupViewTest, alignmentOrientationAndPolicyRebuildConstraintsOnEveryAssignment)
{
    group->setAlignment(Edge::centerParent());
    EXPECT_EQ(group->rebuilds, 1);
    group->setOrientation(Orientation::horizontal);
    EXPECT_EQ(group->rebuilds, 2);
    group->setResizePolicy(ResizePolicy::trailingView);
    EXPECT_EQ(group->rebuilds, 3);
}

TEST_F(RVGroupViewTest, rebuildingConstraintsKeepsTheSpacersAndMarksTheGroup)
{
    const auto spacers = spacersOf(*group);
    group->setNeedsLayout(false);
    group->setNeedsUpdateConstraints(false);
    group->setOrientation(Orientation::vertical);
    EXPECT_EQ(spacersOf(*group), spacers);
    EXPECT_TRUE(group->needsLayout());
    EXPECT_TRUE(group->needsUpdateConstraints());
}

TEST_F(RVGroupViewTest, settingSpacingToItsPresentValueStillRebuildsTheSpacers)
{
    const auto before = installed();
    spacersOf(*group).at(1)->setSize({99, 99});
    group->setSpacing(0);
    EXPECT_EQ(spacersOf(*group).at(1)->size(), (CGSize{0, 1}));
    EXPECT_EQ(group->rebuilds, 0) << "no constraint is rebuilt";
    EXPECT_EQ(installed(), before);
}

TEST_F(RVGroupViewTest, settingPaddingToItsPresentValueStillRebuildsTheSpacers)
{
    spacersOf(*group).at(0)->setSize({99, 99});
    group->setPadding({});
    EXPECT_EQ(spacersOf(*group).at(0)->size(), (CGSize{0, 1}));
    EXPECT_EQ(group->rebuilds, 0);
}

TEST_F(RVGroupViewTest, spacingAndPaddingPublishTheSizeOnlyWithTheNextRequestForLayout)
{
    group->setSpacing(8);
    group->setPadding({1, 2, 3, 4});
    EXPECT_EQ(group->invalidations, 0);
    group->setNeedsLayout(true);
    EXPECT_EQ(group->invalidations, 1);
}

TEST_F(RVGroupViewTest, paddingAcrossTheAxisTakesEffectWithTheNextRebuild)
{
    group->setPadding({2, 4, 6, 10});
    EXPECT_THAT(installed(), testing::HasSubstr("a.top >= g.top @748"));
    group->setResizePolicy(ResizePolicy::trailingView);
    EXPECT_THAT(installed(), testing::HasSubstr("a.top >= g.top + 2 @748"));
}

TEST_F(RVGroupViewTest, aligningViewsRebuildsTwice)
{
    group->alignViews([this] { return PerView<Edge>{{a, Edge::leadingParent()}}; });
    EXPECT_EQ(group->rebuilds, 2);
    EXPECT_THAT(installed(), testing::HasSubstr("a.top == g.top @749"));
}

TEST_F(RVGroupViewTest, aligningViewsCallsTheBlockOnce)
{
    int calls = 0;
    group->alignViews([&] {
        ++calls;
        return PerView<Edge>();
    });
    group->offsetViews([&] {
        ++calls;
        return PerView<Offset>();
    });
    EXPECT_EQ(calls, 2);
}

TEST_F(RVGroupViewTest, aligningNoViewsRemovesEveryAlignmentAndRebuildsTwice)
{
    const auto before = installed();
    group->alignViews([this] { return PerView<Edge>{{a, Edge::leadingParent()}}; });
    group->resetCounts();
    group->alignViews([] { return PerView<Edge>(); });
    EXPECT_EQ(group->rebuilds, 2);
    EXPECT_EQ(installed(), before);
}

TEST_F(RVGroupViewTest, alignmentsAreReplacedNotMerged)
{
    group->alignViews([this] { return PerView<Edge>{{a, Edge::leadingParent()}}; });
    group->alignViews([this] { return PerView<Edge>{{b, Edge::trailingParent()}}; });
    EXPECT_THAT(installed(), testing::HasSubstr("a.centerY == g.centerY @749"));
    EXPECT_THAT(installed(), testing::HasSubstr("b.bottom == g.bottom @749"));
}

TEST_F(RVGroupViewTest, offsettingViewsRebuildsTwiceAndReplaces)
{
    group->offsetViews([this] { return PerView<Offset>{{a, {5, 3}}}; });
    EXPECT_EQ(group->rebuilds, 2);
    EXPECT_THAT(installed(), testing::HasSubstr("a.left == s0.right + 5 @749"));
    EXPECT_THAT(installed(), testing::HasSubstr("a.centerY == g.centerY + 3 @749"));
    group->offsetViews([this] { return PerView<Offset>{{b, {1, 2}}}; });
    EXPECT_EQ(group->rebuilds, 4);
    EXPECT_THAT(installed(), testing::HasSubstr("a.left == s0.right @749"));
    EXPECT_THAT(installed(), testing::HasSubstr("b.left == s1.right + 1 @749"));
}

TEST_F(RVGroupViewTest, entriesOfOtherViewsAreNeverUsed)
{
    const auto before = installed();
    const auto stranger = make<NSView>();
    group->offsetViews([&] { return PerView<Offset>{{stranger, {5, 3}}}; });
    group->alignViews([&] { return PerView<Edge>{{stranger, Edge::leading(make<NSView>())}}; });
    EXPECT_EQ(installed(), before);
}

TEST_F(RVGroupViewTest, alignmentsAndOffsetsOutliveTheMembers)
{
    group->alignViews([this] { return PerView<Edge>{{a, Edge::leadingParent()}}; });
    group->offsetViews([this] { return PerView<Offset>{{a, {5, 3}}}; });
    group->setViews({b});
    group->setViews({a});
    nameSpacers(*group);
    EXPECT_THAT(installed(), testing::HasSubstr("a.left == s0.right + 5 @749"));
    EXPECT_THAT(installed(), testing::HasSubstr("a.top == g.top + 3 @749"));
}

TEST_F(RVGroupViewTest, hidingTheLastMemberTakesTheSpacerBeforeIt)
{
    group->setVisibility(c, false);
    EXPECT_EQ(chain(), "a.left == s0.right @749\n"
                       "s1.left == a.right @749\n"
                       "b.left == s1.right @749\n"
                       "s3.left == b.right @749\n");
}

TEST_F(RVGroupViewTest, hidingAnyOtherMemberTakesTheSpacerAfterIt)
{
    group->setVisibility(a, false);
    EXPECT_EQ(chain(), "b.left == s0.right @749\n"
                       "s2.left == b.right @749\n"
                       "c.left == s2.right @749\n"
                       "s3.left == c.right @749\n");
}

TEST_F(RVGroupViewTest, hidingTwoMembersCountsAmongTheVisibleOnes)
{
    group->setVisibility(b, false);
    group->setVisibility(a, false); // the first visible spacer after a is s1 still
    EXPECT_EQ(chain(), "c.left == s0.right @749\n"
                       "s3.left == c.right @749\n");
    group->setVisibility(b, true); // brings its own spacer, s2, back
    EXPECT_EQ(chain(), "b.left == s0.right @749\n"
                       "s2.left == b.right @749\n"
                       "c.left == s2.right @749\n"
                       "s3.left == c.right @749\n");
}

TEST_F(RVGroupViewTest, aHiddenMemberStaysAMemberAndASubview)
{
    group->setVisibility(b, false);
    EXPECT_EQ(group->views(), (RVGroupView::Views{a, b, c}));
    EXPECT_EQ(b->superview(), group.get());
    EXPECT_EQ(b->alphaValue(), 0);
    EXPECT_TRUE(b->wantsLayer());
    EXPECT_FALSE(b->isHidden());
    EXPECT_EQ(spacersOf(*group).size(), 4U);
    EXPECT_EQ(spacersOf(*group).at(2)->alphaValue(), 1) << "spacers show nothing anyway";
    EXPECT_EQ(group->rebuilds, 1);
}

TEST_F(RVGroupViewTest, hidingThenShowingEndsAtFullOpacity)
{
    b->setAlphaValue(0.5);
    const auto before = installed();
    group->setVisibility(b, false);
    EXPECT_EQ(b->alphaValue(), 0);
    group->setVisibility(b, true);
    EXPECT_EQ(b->alphaValue(), 1);
    EXPECT_TRUE(b->wantsLayer());
    EXPECT_EQ(installed(), before);
    EXPECT_EQ(group->rebuilds, 2);
}

TEST_F(RVGroupViewTest, showingAMemberMakesItLayerBackedAgain)
{
    group->setVisibility(b, false);
    b->setWantsLayer(false);
    group->setVisibility(b, true);
    EXPECT_TRUE(b->wantsLayer());
}

TEST_F(RVGroupViewTest, hidingAHiddenMemberAndShowingAVisibleOneDoNothing)
{
    b->setAlphaValue(0.5);
    group->setVisibility(b, true);
    EXPECT_EQ(b->alphaValue(), 0.5);
    EXPECT_FALSE(b->wantsLayer());
    EXPECT_EQ(group->rebuilds, 0);
    group->setVisibility(b, false);
    b->setAlphaValue(0.25);
    group->resetCounts();
    group->setVisibility(b, false);
    EXPECT_EQ(b->alphaValue(), 0.25);
    EXPECT_EQ(group->rebuilds, 0);
}

TEST_F(RVGroupViewTest, showingAViewThatIsNoMemberDoesNothing)
{
    const auto stranger = make<NSView>();
    group->setVisibility(stranger, true);
    EXPECT_FALSE(stranger->wantsLayer());
    EXPECT_EQ(group->rebuilds, 0);
}

TEST_F(RVGroupViewTest, everyMemberCanBeHiddenAndShownAgainInAnyOrder)
{
    const auto before = installed();
    for (const auto& view : {b, c, a})
        group->setVisibility(view, false);
    EXPECT_EQ(installed(), "");
    EXPECT_EQ(group->subviews().size(), 7U);
    for (const auto& view : {c, b, a})
        group->setVisibility(view, true);
    EXPECT_EQ(installed(), before) << "each has its own spacer back";
}

TEST_F(RVGroupViewTest, replacingTheViewsEndsEveryHiddenState)
{
    const auto oldSpacers = spacersOf(*group);
    group->setVisibility(b, false);
    group->setViews({a, c});
    EXPECT_EQ(b->superview(), nullptr);
    EXPECT_EQ(b->alphaValue(), 0) << "nobody has shown it";
    for (const auto& spacer : oldSpacers)
        EXPECT_EQ(spacer->superview(), nullptr);
    group->setViews({a, b, c});
    EXPECT_EQ(group->subviews().size(), 7U);
    nameSpacers(*group);
    EXPECT_THAT(chain(), testing::HasSubstr("b.left == s1.right @749")) << "it is laid out again";
}

TEST_F(RVGroupViewTest, needsLayoutIsThePlatforms)
{
    group->setNeedsLayout(false);
    EXPECT_FALSE(group->needsLayout());
    RVCore::setNeedsLayout(*group);
    EXPECT_TRUE(group->needsLayout());
}

TEST_F(RVGroupViewTest, everyWriteToNeedsLayoutLooksAtTheSizeFirst)
{
    a->changeSizeSilently({31, 20});
    group->setNeedsLayout(false);
    EXPECT_EQ(group->invalidations, 1);
    group->setNeedsLayout(false);
    EXPECT_EQ(group->invalidations, 1) << "it has not changed since";
    a->changeSizeSilently({32, 20});
    group->setNeedsLayout(true);
    EXPECT_EQ(group->invalidations, 2);
}

TEST_F(RVGroupViewTest, numbersMustBeFinite)
{
    const auto refuse = [](const char* text, const auto& operation) {
        EXPECT_EQ(raised(operation), std::string("NSInvalidArgumentException: RVGroupView.") + text);
    };
    const auto before = installed();
    refuse("init: spacing must be finite, got nan", [] { makeGroupView({}, {.spacing = nan}); });
    refuse("setSpacing: spacing must be finite, got nan", [this] { group->setSpacing(nan); });
    refuse("setSpacing: spacing must be finite, got inf", [this] { group->setSpacing(infinity); });
    refuse("setPadding: padding.top must be finite, got nan", [this] { group->setPadding({nan, 0, 0, 0}); });
    refuse("setPadding: padding.left must be finite, got -inf", [this] { group->setPadding({0, -infinity, 0, 0}); });
    refuse("setPadding: padding.bottom must be finite, got nan", [this] { group->setPadding({0, 0, nan, 0}); });
    refuse("setPadding: padding.right must be finite, got nan", [this] { group->setPadding({0, 0, 0, nan}); });
    refuse("offsetViews: offset.x must be finite, got nan", [this] {
        group->offsetViews([this] { return PerView<Offset>{{a, {nan, 0}}}; });
    });
    refuse("offsetViews: offset.y must be finite, got inf", [this] {
        group->offsetViews([this] { return PerView<Offset>{{a, {0, infinity}}}; });
    });
    EXPECT_EQ(group->spacing(), 0);
    EXPECT_EQ(group->padding(), EdgeInsets());
    EXPECT_EQ(group->rebuilds, 0);
    EXPECT_EQ(installed(), before);
}

TEST_F(RVGroupViewTest, membersMustBeViewsThatTheGroupIsNotIn)
{
    const auto host = make<RVBaseView>();
    host->addSubview(group);
    EXPECT_EQ(raised([this] {
                  group->setViews({a, nullptr});
              }),
              "NSInvalidArgumentException: RVGroupView.setViews: a member must not be absent");
    EXPECT_THAT(raised([this] { group->setViews({group}); }), testing::HasSubstr("the group is in it"));
    EXPECT_THAT(raised([&] { group->setViews({host}); }), testing::HasSubstr("the group is in it"));
    EXPECT_EQ(group->views(), (RVGroupView::Views{a, b, c}));
    EXPECT_EQ(group->rebuilds, 0);
}

TEST_F(RVGroupViewTest, blocksAndViewsMustBeThere)
{
    EXPECT_THAT(raised([this] { group->alignViews({}); }), testing::HasSubstr("RVGroupView.alignViews: there is no"));
    EXPECT_THAT(raised([this] { group->offsetViews({}); }),
                testing::HasSubstr("RVGroupView.offsetViews: there is no"));
    EXPECT_EQ(raised([this] { group->setVisibility(nullptr, true); }),
              "NSInvalidArgumentException: RVGroupView.setVisibility: view must not be absent");
}

TEST_F(RVGroupViewTest, anAlignmentTargetOfAnotherTreeIsRefused)
{
    const auto before = installed();
    const auto stranger = make<NSView>();
    EXPECT_THAT(raised([&] { group->setAlignment(Edge::leading(stranger)); }),
                testing::HasSubstr("have no common ancestor"));
    EXPECT_EQ(group->alignment().view(), nullptr);
    EXPECT_THAT(raised([&] { group->alignViews([&] {
                                 return PerView<Edge>{{b, Edge::fill(stranger)}};
                             }); }),
                testing::HasSubstr("have no common ancestor"));
    EXPECT_EQ(group->rebuilds, 0);
    EXPECT_EQ(installed(), before);
}

TEST_F(RVGroupViewTest, aTargetThatHasLeftTheTreeLeavesNoHalfBuiltLayout)
{
    const auto host = make<RVBaseView>();
    host->addSubview(group);
    const auto target = makeView(*host);
    group->setAlignment(Edge::leading(target));
    target->removeFromSuperview();
    EXPECT_THAT(raised([this] { group->setOrientation(Orientation::vertical); }),
                testing::HasSubstr("have no common ancestor"));
    EXPECT_EQ(installed(), "");
    host->addSubview(target);
    group->setOrientation(Orientation::horizontal);
    EXPECT_THAT(installed(), testing::HasSubstr("a.left == s0.right @749"));
}

TEST_F(RVGroupViewTest, aMemberCanBeTheTargetOfTheOthers)
{
    group->setAlignment(Edge::leading(b));
    EXPECT_THAT(installed(), testing::HasSubstr("a.top == b.top @749"));
    EXPECT_THAT(constraintTexts(b->constraints()), testing::HasSubstr("b.top == b.top @749"))
        << "trivially so itself";
    const auto host = hostOf(group, {200, 100});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(a->frame().minY(), b->frame().minY());
    EXPECT_EQ(c->frame().minY(), b->frame().minY());
}

TEST(RVGroupViewDeathTest, hidingAViewThatIsNoMemberStopsTheProgram)
{
    const auto group = makeGroupView({sized(1, 1)});
    EXPECT_DEATH(group->setVisibility(make<NSView>(), false),
                 "Fatal error: cannot hide <NSView: 0x[0-9a-f]+>: it is not a visible member of <RVCore.RVGroupView: "
                 "0x[0-9a-f]+>");
    const auto empty = make<RVGroupView>();
    EXPECT_DEATH(empty->setVisibility(make<NSView>(), false), "it is not a visible member of");
    EXPECT_DEATH(send(empty, "setVisibilityWithView:visible:", make<NSView>(), false),
                 "it is not a visible member of");
}

TEST(RVGroupViewDeathTest, aFrameIsNoWayToMakeOne)
{
    EXPECT_DEATH(make<RVGroupView>(CGRect()), "^Fatal error: Use of unimplemented initializer 'init\\(frame:\\)' for "
                                              "class 'RVCore.RVGroupView'\n$");
    EXPECT_DEATH(send(std::make_shared<RVGroupView>(), "initWithFrame:", CGRect()),
                 "'init\\(frame:\\)' for class 'RVCore.RVGroupView'");
}

TEST(RVGroupViewDeathTest, anArchiveIsNoWayToMakeOne)
{
    NSCoder coder;
    EXPECT_DEATH(std::make_shared<RVGroupView>()->init(coder),
                 "^Sources/Common/Misc/GlobalFunctions:12: Fatal error: Not Supported\n$");
    EXPECT_DEATH(send(std::make_shared<RVGroupView>(), "initWithCoder:", std::make_shared<NSCoder>()),
                 "Fatal error: Not Supported");
}

TEST(RVGroupViewSelectors, everyPropertyIsReadAndWrittenAndEveryOperationCalled)
{
    const ObjectRef group = send(*Class::named("RVCore.RVGroupView"), "alloc").as<ObjectRef>();
    EXPECT_EQ(send(group, "init").as<ObjectRef>(), group);
    const auto first = sized(30, 20), second = sized(50, 40);
    send(group, "setViews:", Value::Array{first, second});
    EXPECT_EQ(send(group, "views").as<RVGroupView::Views>(), (RVGroupView::Views{first, second}));
    send(group, "setSpacing:", 8);
    EXPECT_EQ(send(group, "spacing").as<double>(), 8);
    send(group, "setPadding:", EdgeInsets{2, 4, 6, 10});
    EXPECT_EQ(send(group, "padding").as<EdgeInsets>(), (EdgeInsets{2, 4, 6, 10}));
    send(group, "setNeedsLayout:", false);
    EXPECT_FALSE(send(group, "needsLayout").as<bool>());
    EXPECT_EQ(send(group, "intrinsicContentSize").as<CGSize>(), (CGSize{102, 48}));
    send(group, "setVisibilityWithView:visible:", first, false);
    EXPECT_EQ(send(group, "intrinsicContentSize").as<CGSize>(), (CGSize{64, 48}));
    send(group, "setVisibilityWithView:visible:", first, true);
    EXPECT_EQ(send(first, "alpha").as<double>(), 1);
    EXPECT_TRUE(send(group, "isFlipped").as<bool>());
}

TEST(RVGroupViewSelectors, aSubclassTakesThePlaceOfThePlainInitialiser)
{
    class Subclass : public RVGroupView {
    public:
        using RVGroupView::init;
        void init() override { init({sized(1, 2)}, {.spacing = 3}); }
    };
    EXPECT_EQ(make<Subclass>()->views().size(), 1U);
    const auto made = std::make_shared<Subclass>();
    send(made, "init");
    EXPECT_EQ(made->spacing(), 3);
}

TEST(RVGroupView, letsGoOfEverythingWhenItDies)
{
    auto member = sized(1, 1);
    std::weak_ptr<RVSpacerView> spacer;
    {
        const auto group = makeGroupView({member, sized(2, 2)});
        group->setVisibility(member, false);
        spacer = spacersOf(*group).at(0);
    }
    EXPECT_TRUE(spacer.expired());
    EXPECT_EQ(member.use_count(), 1);
    EXPECT_EQ(member->superview(), nullptr);
}

} // namespace

} // namespace RVCore::RVGroupViewTests
