#include "ViewTesting.h"

#include <CoreGraphics/Canvas.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <QuartzCore/CALayer.h>

#include <chrono>
#include <limits>

namespace RVCore::NSViewTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// --- Tree

TEST(NSViewTree, AnAddedViewComesLastAndKnowsItsSuperview)
{
    const auto host = make<NSView>();
    const auto a = make<NSView>(), b = make<NSView>();
    host->addSubview(a);
    host->addSubview(b);
    EXPECT_THAT(host->subviews(), ElementsAre(a, b));
    EXPECT_EQ(a->superview(), host.get());
    EXPECT_EQ(&b->rootView(), host.get());
    EXPECT_TRUE(a->isDescendantOf(*host));
    EXPECT_TRUE(a->isDescendantOf(*a));
    EXPECT_FALSE(host->isDescendantOf(*a));
}

TEST(NSViewTree, AddingAViewThatIsThereMovesItToTheEnd)
{
    const auto host = make<NSView>();
    const auto a = make<NSView>(), b = make<NSView>();
    host->addSubview(a);
    host->addSubview(b);
    host->addSubview(host->subviews().front()); // an element of the list itself
    EXPECT_THAT(host->subviews(), ElementsAre(b, a));
}

TEST(NSViewTree, AViewMovesOutOfTheSuperviewThatItHad)
{
    const auto first = make<NSView>(), second = make<NSView>();
    const auto view = make<ProbeView>();
    first->addSubview(view);
    second->addSubview(view);
    EXPECT_THAT(first->subviews(), ElementsAre());
    EXPECT_EQ(view->superview(), second.get());
    EXPECT_EQ(view->superviewCount, 2); // a move tells once
}

TEST(NSViewTree, AnInsertIndexIsClippedToTheCount)
{
    const auto host = make<NSView>();
    const auto a = make<NSView>(), b = make<NSView>(), c = make<NSView>();
    host->insertSubview(a, 7);
    host->insertSubview(b, 0);
    host->insertSubview(c, 1);
    EXPECT_THAT(host->subviews(), ElementsAre(b, c, a));
    host->insertSubview(a, 0);
    EXPECT_THAT(host->subviews(), ElementsAre(a, b, c));
}

TEST(NSViewTree, RemovingTwiceIsHarmless)
{
    const auto host = make<NSView>();
    const auto view = make<ProbeView>();
    host->addSubview(view);
    view->removeFromSuperview();
    view->removeFromSuperview();
    EXPECT_EQ(view->superview(), nullptr);
    EXPECT_THAT(host->subviews(), ElementsAre());
    EXPECT_EQ(view->superviewCount, 2);
}

TEST(NSViewTree, AddingAViewToItselfItsDescendantOrNothingRaisesAndChangesNothing)
{
    const auto host = make<NSView>(), middle = make<NSView>(), leaf = make<NSView>();
    host->addSubview(middle);
    middle->addSubview(leaf);
    EXPECT_THAT(raised([&] { host->addSubview(host); }), HasSubstr("itself"));
    EXPECT_THAT(raised([&] { leaf->addSubview(host); }), HasSubstr("its own descendant"));
    EXPECT_THAT(raised([&] { host->addSubview(nullptr); }), HasSubstr("NSView.addSubview:: there is no view"));
    EXPECT_THAT(host->subviews(), ElementsAre(middle));
    EXPECT_THAT(middle->subviews(), ElementsAre(leaf));
}

TEST(NSViewTree, RemovingTakesOutTheConstraintsThatCrossTheBorderAndNoOthers)
{
    const auto host = makeHost(100, 100);
    const auto moved = addTo(*host), inner = addTo(*moved), other = addTo(*host);
    const auto toHost = hold(*moved, Attribute::left, *host, Attribute::left);
    const auto fromDepth = hold(*inner, Attribute::top, *other, Attribute::top);
    const auto inside = hold(*inner, Attribute::left, *moved, Attribute::left);
    const auto own = hold(*moved, Attribute::width, {.constant = 10});
    const auto others = hold(*other, Attribute::left, *host, Attribute::left);
    for (const bool laidOutBefore : {false, true}) {
        if (laidOutBefore) {
            host->addSubview(moved);
            toHost->setActive(true);
            fromDepth->setActive(true);
            host->layoutSubtreeIfNeeded();
        }
        moved->removeFromSuperview();
        EXPECT_FALSE(toHost->isActive());
        EXPECT_FALSE(fromDepth->isActive());
        EXPECT_TRUE(inside->isActive());
        EXPECT_TRUE(own->isActive());
        EXPECT_TRUE(others->isActive());
    }
}

TEST(NSViewTree, SubviewsOutliveTheirSuperviewAsRoots)
{
    auto host = makeHost(100, 100);
    const auto view = addTo(*host);
    const auto constraint = hold(*view, Attribute::left, *host, Attribute::left);
    host->layoutSubtreeIfNeeded();
    host.reset();
    EXPECT_EQ(view->superview(), nullptr);
    EXPECT_FALSE(constraint->isActive());
    EXPECT_EQ(constraint->secondItem(), nullptr);
    EXPECT_EQ(constraint->firstItem(), view.get());
    view->layoutSubtreeIfNeeded();
}

// --- Geometry

TEST(NSViewGeometry, BoundsHaveTheSizeOfTheFrameAndAnOriginOfTheirOwn)
{
    const auto view = make<NSView>(CGRect(10, 20, 30, 40));
    EXPECT_EQ(view->bounds(), CGRect(0, 0, 30, 40));
    view->setBoundsOrigin({5, 6});
    EXPECT_EQ(view->bounds(), CGRect(5, 6, 30, 40));
    view->setFrameOrigin({1, 2});
    view->setFrameSize({3, 4});
    EXPECT_EQ(view->frame(), CGRect(1, 2, 3, 4));
    EXPECT_EQ(view->bounds(), CGRect(5, 6, 3, 4));
}

TEST(NSViewGeometry, OnlyANewSizeAsksForLayout)
{
    const auto view = make<ProbeView>(CGRect(0, 0, 30, 40));
    view->layoutSubtreeIfNeeded();
    view->setFrame({0, 0, 30, 40});
    view->setFrameOrigin({7, 7});
    EXPECT_EQ(view->resizeCount, 0);
    EXPECT_FALSE(view->needsLayout());
    view->setFrameSize({31, 40});
    EXPECT_EQ(view->resizeCount, 1);
    EXPECT_TRUE(view->needsLayout());
}

TEST(NSViewGeometry, ValuesThatAreNoLengthsRaiseAndChangeNothing)
{
    const auto view = make<NSView>(CGRect(1, 2, 3, 4));
    EXPECT_THAT(raised([&] { view->setFrame({0, 0, nan, 1}); }), HasSubstr("NSView.setFrame:: frame.width"));
    EXPECT_THAT(raised([&] { view->setFrame({infinity, 0, 1, 1}); }), HasSubstr("frame.x"));
    EXPECT_THAT(raised([&] { view->setFrame({0, -infinity, 1, 1}); }), HasSubstr("frame.y"));
    EXPECT_THAT(raised([&] { view->setFrame({0, 0, 1, 1e16}); }), HasSubstr("frame.height"));
    EXPECT_THAT(raised([&] { view->setFrameOrigin({nan, 0}); }), HasSubstr("frame.x"));
    EXPECT_THAT(raised([&] { view->setFrameSize({0, nan}); }), HasSubstr("frame.height"));
    EXPECT_THAT(raised([&] { view->setBoundsOrigin({nan, 0}); }), HasSubstr("NSView.setBoundsOrigin:: origin.x"));
    EXPECT_THAT(raised([&] { view->setBoundsOrigin({0, 1e300}); }), HasSubstr("origin.y"));
    EXPECT_THAT(raised([&] { view->setAlphaValue(nan); }), HasSubstr("NSView.setAlphaValue:: alpha"));
    EXPECT_THAT(raised([] { make<NSView>(CGRect(nan, 0, 0, 0)); }), HasSubstr("NSView.initWithFrame:"));
    EXPECT_EQ(view->frame(), CGRect(1, 2, 3, 4));
    EXPECT_EQ(view->bounds(), CGRect(0, 0, 3, 4));
    EXPECT_EQ(view->alphaValue(), 1);
}

// --- Conversion

// A view at (10, 20) 30 × 40 in a host of 100 × 200; where its corner (1, 2) lies in the host's coordinates.
template <class Host, class View> CGPoint converted(CGPoint hostScroll, CGPoint viewScroll)
{
    const auto host = make<Host>(CGRect(0, 0, 100, 200));
    const auto view = make<View>(CGRect(10, 20, 30, 40));
    host->addSubview(view);
    host->setBoundsOrigin(hostScroll);
    view->setBoundsOrigin(viewScroll);
    const CGPoint result = view->convertPointTo({1, 2}, host.get());
    EXPECT_EQ(host->convertPointTo(result, view.get()), (CGPoint{1, 2}));
    EXPECT_EQ(view->convertPointFrom(result, host.get()), (CGPoint{1, 2}));
    EXPECT_EQ(host->convertPointFrom({1, 2}, view.get()), result);
    return result;
}

TEST(NSViewConversion, FollowsTheDirectionsOfBothViewsAndTheirScrolling)
{
    EXPECT_EQ((converted<NSView, NSView>({}, {})), (CGPoint{11, 22}));
    EXPECT_EQ((converted<FlippedView, FlippedView>({}, {})), (CGPoint{11, 22}));
    EXPECT_EQ((converted<NSView, FlippedView>({}, {})), (CGPoint{11, 58})); // 20 + 40 - 2
    EXPECT_EQ((converted<FlippedView, NSView>({}, {})), (CGPoint{11, 58}));
    // A superview's scrolling moves what is shown, frames and all.
    EXPECT_EQ((converted<NSView, NSView>({100, 100}, {})), (CGPoint{11, 22}));
    EXPECT_EQ((converted<NSView, NSView>({}, {5, 6})), (CGPoint{6, 16}));
    EXPECT_EQ((converted<FlippedView, FlippedView>({}, {5, 6})), (CGPoint{6, 16}));
    EXPECT_EQ((converted<NSView, FlippedView>({}, {5, 6})), (CGPoint{6, 64}));
    EXPECT_EQ((converted<FlippedView, NSView>({}, {5, 6})), (CGPoint{6, 64}));
}

TEST(NSViewConversion, NothingStandsForWhatTheRootsFrameIsIn)
{
    const auto upward = make<NSView>(CGRect(10, 20, 100, 200));
    EXPECT_EQ(upward->convertPointTo({1, 2}, nullptr), (CGPoint{11, 22}));
    EXPECT_EQ(upward->convertPointFrom({11, 22}, nullptr), (CGPoint{1, 2}));
    const auto downward = make<FlippedView>(CGRect(10, 20, 100, 200));
    EXPECT_EQ(downward->convertPointTo({1, 2}, nullptr), (CGPoint{11, 218}));
    EXPECT_EQ(downward->convertPointFrom({11, 218}, nullptr), (CGPoint{1, 2}));
}

TEST(NSViewConversion, GoesAcrossBranchesOfATree)
{
    const auto host = make<NSView>(CGRect(0, 0, 100, 100));
    const auto a = make<FlippedView>(CGRect(10, 10, 20, 20));
    const auto b = make<NSView>(CGRect(50, 60, 20, 20));
    host->addSubview(a);
    host->addSubview(b);
    EXPECT_EQ(a->convertPointTo({0, 0}, b.get()), (CGPoint{-40, -30})); // (10, 30) in the host
    EXPECT_EQ(a->convertPointTo({3, 4}, a.get()), (CGPoint{3, 4}));
    EXPECT_EQ(b->convertPointFrom({0, 0}, a.get()), (CGPoint{-40, -30}));
}

TEST(NSViewConversion, ARectangleKeepsItsSize)
{
    const auto host = make<NSView>(CGRect(0, 0, 100, 200));
    const auto view = make<FlippedView>(CGRect(10, 20, 30, 40));
    host->addSubview(view);
    EXPECT_EQ(view->convertRectTo({1, 2, 5, 6}, host.get()), CGRect(11, 52, 5, 6)); // its bottom is 8 from the top
    EXPECT_EQ(host->convertRectTo({11, 52, 5, 6}, view.get()), CGRect(1, 2, 5, 6));
    EXPECT_EQ(view->convertRectFrom({11, 52, 5, 6}, host.get()), CGRect(1, 2, 5, 6));
    EXPECT_EQ(view->convertRectFrom({11, 52, 5, 6}, nullptr), CGRect(1, 2, 5, 6));
}

TEST(NSViewConversion, BetweenTreesRaises)
{
    const auto a = make<NSView>(), b = make<NSView>();
    EXPECT_THAT(raised([&] { a->convertPointTo({}, b.get()); }), HasSubstr("are in different trees"));
    EXPECT_THAT(raised([&] { a->convertRectFrom({}, b.get()); }), HasSubstr("are in different trees"));
}

// --- Appearance

TEST(NSViewAppearance, AlphaIsClipped)
{
    const auto view = make<NSView>();
    EXPECT_EQ(view->alphaValue(), 1);
    view->setAlphaValue(-3);
    EXPECT_EQ(view->alphaValue(), 0);
    view->setAlphaValue(7);
    EXPECT_EQ(view->alphaValue(), 1);
}

TEST(NSViewAppearance, TheBackingLayerIsAnchoredAtItsCentreAndFollowsTheFrame)
{
    const auto view = make<NSView>(CGRect(10, 20, 30, 40));
    EXPECT_EQ(view->layer(), nullptr);
    view->setWantsLayer(true);
    const auto layer = view->layer();
    EXPECT_EQ(layer->position(), (CGPoint{25, 40}));
    EXPECT_EQ(layer->bounds(), CGRect(0, 0, 30, 40));
    view->setFrame({0, 0, 10, 10});
    EXPECT_EQ(layer->position(), (CGPoint{5, 5}));
    layer->setAnchorPoint({0, 1});
    view->setFrame({1, 2, 10, 20});
    EXPECT_EQ(layer->position(), (CGPoint{1, 22}));
    view->setWantsLayer(true);
    EXPECT_EQ(view->layer(), layer);
    view->setWantsLayer(false);
    EXPECT_FALSE(view->wantsLayer());
}

TEST(NSViewAppearance, ALayerOutlivesItsView)
{
    auto view = make<NSView>();
    view->setWantsLayer(true);
    const auto layer = view->layer();
    view.reset();
    layer->setCornerRadius(3); // tells nobody
    EXPECT_EQ(layer->cornerRadius(), 3);
}

// --- By name

TEST(NSViewSelectors, EveryPropertyIsReadAndWrittenByName)
{
    const auto view = make<NSView>();
    send(view, "setFrame:", CGRect(1, 2, 3, 4));
    EXPECT_EQ(send(view, "frame").as<CGRect>(), CGRect(1, 2, 3, 4));
    send(view, "setFrameOrigin:", CGPoint{5, 6});
    send(view, "setFrameSize:", CGSize{7, 8});
    EXPECT_EQ(view->frame(), CGRect(5, 6, 7, 8));
    send(view, "setBoundsOrigin:", CGPoint{9, 10});
    EXPECT_EQ(send(view, "bounds").as<CGRect>(), CGRect(9, 10, 7, 8));
    EXPECT_FALSE(send(view, "isFlipped").as<bool>());
    send(view, "setHidden:", true);
    EXPECT_TRUE(send(view, "isHidden").as<bool>());
    send(view, "setAlphaValue:", 0.5);
    EXPECT_EQ(send(view, "alphaValue").as<double>(), 0.5);
    send(view, "setWantsLayer:", true);
    EXPECT_TRUE(send(view, "wantsLayer").as<bool>());
    EXPECT_EQ(send(view, "layer").as<std::shared_ptr<CALayer>>(), view->layer());
    send(view, "setLayerContentsRedrawPolicy:", 1);
    EXPECT_EQ(send(view, "layerContentsRedrawPolicy").as<int>(), 1);
    send(view, "setNeedsDisplay:", true);
    EXPECT_EQ(send(view, "intrinsicContentSize").as<CGSize>(), (CGSize{-1, -1}));
    send(view, "setTranslatesAutoresizingMaskIntoConstraints:", false);
    EXPECT_FALSE(send(view, "translatesAutoresizingMaskIntoConstraints").as<bool>());
    send(view, "setAutoresizingMask:", 18);
    EXPECT_EQ(send(view, "autoresizingMask").as<int>(), 18);
    send(view, "setIdentifier:", "name");
    EXPECT_EQ(send(view, "identifier").as<std::string>(), "name");
    send(view, "setContentHuggingPriority:forOrientation:", 300, 1);
    EXPECT_EQ(send(view, "contentHuggingPriorityForOrientation:", 1).as<float>(), 300);
    send(view, "setContentCompressionResistancePriority:forOrientation:", 400, 0);
    EXPECT_EQ(send(view, "contentCompressionResistancePriorityForOrientation:", 0).as<float>(), 400);
    send(view, "setNeedsLayout:", false);
    EXPECT_FALSE(send(view, "needsLayout").as<bool>());
    send(view, "setNeedsUpdateConstraints:", false);
    EXPECT_FALSE(send(view, "needsUpdateConstraints").as<bool>());
}

TEST(NSViewSelectors, EveryOperationIsCalledByName)
{
    const auto host =
        send(send(NSView::staticClass(), "alloc").as<ObjectRef>(), "initWithFrame:", CGRect(0, 0, 90, 50))
            .as<std::shared_ptr<NSView>>();
    const auto view = make<NSView>(CGRect(10, 10, 20, 20));
    send(host, "addSubview:", view);
    EXPECT_EQ(send(view, "superview").as<std::shared_ptr<NSView>>(), host);
    EXPECT_THAT(send(host, "subviews").as<std::vector<std::shared_ptr<NSView>>>(), ElementsAre(view));
    EXPECT_TRUE(send(view, "window").isNothing());
    EXPECT_TRUE(send(view, "isDescendantOf:", host).as<bool>());
    EXPECT_EQ(send(view, "convertPoint:toView:", CGPoint{1, 1}, host).as<CGPoint>(), (CGPoint{11, 11}));
    EXPECT_EQ(send(view, "convertPoint:fromView:", CGPoint{11, 11}, host).as<CGPoint>(), (CGPoint{1, 1}));
    EXPECT_EQ(send(view, "convertRect:toView:", CGRect(1, 1, 2, 2), nullptr).as<CGRect>(), CGRect(11, 11, 2, 2));
    EXPECT_EQ(send(view, "convertRect:fromView:", CGRect(11, 11, 2, 2), nullptr).as<CGRect>(), CGRect(1, 1, 2, 2));
    const auto width = hold(*view, Attribute::width, {.constant = 20});
    EXPECT_EQ(send(view, "constraints").as<Value::Array>().size(), 1u);
    EXPECT_EQ(send(view, "constraintsAffectingLayoutForOrientation:", 0).as<Value::Array>().size(), 1u);
    EXPECT_FALSE(send(view, "hasAmbiguousLayout").as<bool>());
    EXPECT_EQ(send(view, "fittingSize").as<CGSize>(), (CGSize{20, 0}));
    for (const char* operation : {"invalidateIntrinsicContentSize", "layout", "updateConstraints",
                                  "updateConstraintsForSubtreeIfNeeded", "layoutSubtreeIfNeeded"})
        EXPECT_TRUE(send(host, operation).isNothing()) << operation;
    EXPECT_FALSE(host->needsLayout());
    send(view, "removeFromSuperview");
    EXPECT_TRUE(send(view, "superview").isNothing());
}

// --- Size

TEST(NSViewScale, TenThousandSubviewsAreAddedConstrainedLaidOutAndRemovedInAMoment)
{
    constexpr int count = 10'000;
    const auto start = std::chrono::steady_clock::now();
    auto host = makeHost(400, 300'000);
    std::vector<std::shared_ptr<NSView>> views;
    std::vector<std::shared_ptr<NSLayoutConstraint>> constraints;
    host->layoutSubtreeIfNeeded(); // so that each is noted by itself
    for (int i = 0; i < count; ++i) {
        views.push_back(addTo(*host));
        NSView& view = *views.back();
        constraints.push_back(hold(view, Attribute::left, *host, Attribute::left));
        constraints.push_back(i == 0 ? hold(view, Attribute::top, *host, Attribute::top)
                                     : hold(view, Attribute::top, *views[views.size() - 2], Attribute::bottom));
        constraints.push_back(hold(view, Attribute::width, *host, Attribute::width));
        constraints.push_back(hold(view, Attribute::height, {.constant = 20}));
    }
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(views.back()->frame(), CGRect(0, 20.0 * (count - 1), 400, 20));
    for (const auto& constraint : constraints)
        constraint->setActive(false);
    for (const auto& constraint : constraints)
        constraint->setActive(true);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(views.back()->frame(), CGRect(0, 20.0 * (count - 1), 400, 20));
    for (const auto& view : views)
        view->removeFromSuperview();
    for (const auto& view : views)
        host->addSubview(view);
    for (std::size_t i = views.size(); i > 0; --i)
        views[i - 1]->removeFromSuperview();
    EXPECT_TRUE(host->constraints().empty());
    for (const auto& view : views)
        host->addSubview(view);
    views.clear();
    host.reset();
    // Generous, for sanitizers and a busy machine; anything quadratic takes longer by far.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

TEST(NSViewScale, AThousandLevelsAreLaidOutAskedAndTakenApart)
{
    constexpr int levels = 1000;
    auto host = makeHost(3000, 3000);
    NSView* innermost = host.get();
    for (int level = 0; level < levels; ++level) {
        const auto view = addTo(*innermost);
        for (const Attribute edge : {Attribute::left, Attribute::top})
            hold(*view, edge, *innermost, edge, {.constant = 1});
        for (const Attribute edge : {Attribute::right, Attribute::bottom})
            hold(*view, edge, *innermost, edge, {.constant = -1});
        innermost = view.get();
    }
    hold(*innermost, Attribute::width, *host, Attribute::width, {.constant = -2.0 * levels});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(innermost->frame(), CGRect(1, 1, 1000, 1000));
    EXPECT_EQ(innermost->convertPointTo({0, 0}, host.get()), (CGPoint{1000, 2000}));
    EXPECT_EQ(host->fittingSize(), (CGSize{2000, 2000}));
    innermost->setNeedsLayout(true);
    host->setFrameSize({2500, 2500});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(innermost->frame(), CGRect(1, 1, 500, 500));
}

} // namespace
} // namespace RVCore::NSViewTests
