#include "ViewTesting.h"

#include <Platform/Foundation/Raised.h>

#include <limits>

namespace RVCore::NSViewLayoutTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Two views of given intrinsic widths side by side in a host of 100 × 50.
struct Row {
    std::shared_ptr<FlippedView> host = makeHost(100, 50);
    std::shared_ptr<ProbeView> left = addTo<ProbeView>(*host), right = addTo<ProbeView>(*host);

    Row(CGFloat leftWidth, CGFloat rightWidth)
    {
        left->intrinsicSize = {leftWidth, 10};
        right->intrinsicSize = {rightWidth, 20};
        hold(*left, Attribute::left, *host, Attribute::left);
        hold(*right, Attribute::left, *left, Attribute::right);
        hold(*right, Attribute::right, *host, Attribute::right);
        for (const auto& view : {left, right})
            hold(*view, Attribute::top, *host, Attribute::top);
    }
    std::vector<CGRect> frames()
    {
        host->layoutSubtreeIfNeeded();
        return {left->frame(), right->frame()};
    }
};

TEST(NSViewContentSize, TheWeakerHuggingStretches)
{
    Row row(20, 30);
    row.left->setContentHuggingPriority(251, Orientation::horizontal);
    EXPECT_THAT(row.frames(), ElementsAre(CGRect(0, 0, 20, 10), CGRect(20, 0, 80, 20)));
    row.right->setContentHuggingPriority(252, Orientation::horizontal);
    EXPECT_THAT(row.frames(), ElementsAre(CGRect(0, 0, 70, 10), CGRect(70, 0, 30, 20)));
}

TEST(NSViewContentSize, TheWeakerCompressionResistanceShrinks)
{
    Row row(80, 60);
    row.left->setContentCompressionResistancePriority(751, Orientation::horizontal);
    EXPECT_THAT(row.frames(), ElementsAre(CGRect(0, 0, 80, 10), CGRect(80, 0, 20, 20)));
    row.right->setContentCompressionResistancePriority(752, Orientation::horizontal);
    EXPECT_THAT(row.frames(), ElementsAre(CGRect(0, 0, 40, 10), CGRect(40, 0, 60, 20)));
}

TEST(NSViewContentSize, PrioritiesOfOneAxisLeaveTheOtherAlone)
{
    const auto view = make<NSView>();
    EXPECT_EQ(view->contentHuggingPriority(Orientation::horizontal), 250);
    EXPECT_EQ(view->contentCompressionResistancePriority(Orientation::vertical), 750);
    view->setContentHuggingPriority(1, Orientation::vertical);
    view->setContentCompressionResistancePriority(2, Orientation::horizontal);
    EXPECT_EQ(view->contentHuggingPriority(Orientation::horizontal), 250);
    EXPECT_EQ(view->contentHuggingPriority(Orientation::vertical), 1);
    EXPECT_EQ(view->contentCompressionResistancePriority(Orientation::horizontal), 2);
    EXPECT_EQ(view->contentCompressionResistancePriority(Orientation::vertical), 750);
}

TEST(NSViewContentSize, PrioritiesAndOrientationsOutOfRangeRaise)
{
    const auto view = make<NSView>();
    EXPECT_THAT(raised([&] { view->setContentHuggingPriority(0, Orientation::horizontal); }),
                HasSubstr("NSView.setContentHuggingPriority:forOrientation:: priority must be above 0"));
    EXPECT_THAT(raised([&] { view->setContentCompressionResistancePriority(1001, Orientation::horizontal); }),
                HasSubstr("got 1001"));
    EXPECT_THAT(raised([&] { view->setContentHuggingPriority(1, Orientation{2}); }), HasSubstr("no orientation 2"));
    EXPECT_THAT(raised([&] { view->fittingSize(0); }), HasSubstr("NSView.fittingSize"));
    EXPECT_THAT(raised([&] { view->constraintsAffectingLayout(Orientation{7}); }), HasSubstr("no orientation 7"));
}

TEST(NSViewContentSize, CountsOnlyAfterItIsInvalidated)
{
    Row row(20, 30);
    row.left->setContentHuggingPriority(251, Orientation::horizontal);
    row.frames();
    const int asked = row.left->intrinsicSizeCount;
    row.left->intrinsicSize = {25, 11};
    EXPECT_THAT(row.frames(), ElementsAre(CGRect(0, 0, 20, 10), CGRect(20, 0, 80, 20)));
    EXPECT_EQ(row.left->intrinsicSizeCount, asked);
    row.left->invalidateIntrinsicContentSize();
    row.left->invalidateIntrinsicContentSize();
    EXPECT_THAT(row.frames(), ElementsAre(CGRect(0, 0, 25, 11), CGRect(25, 0, 75, 20)));
    EXPECT_EQ(row.left->intrinsicSizeCount, asked + 1);
}

TEST(NSViewContentSize, AMetricMayComeAndGo)
{
    const auto host = makeHost(100, 100);
    const auto view = addTo<ProbeView>(*host);
    hold(*view, Attribute::width, {.constant = 7, .priority = 10});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame().size.width, 7);
    view->intrinsicSize.width = 40;
    view->invalidateIntrinsicContentSize();
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame().size.width, 40);
    view->intrinsicSize.width = NSViewNoIntrinsicMetric;
    view->invalidateIntrinsicContentSize();
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame().size.width, 7);
}

TEST(NSViewContentSize, ASizeThatIsNoNumberRaisesInEveryPassUntilItIsOne)
{
    const auto host = makeHost(100, 100);
    const auto view = addTo<ProbeView>(*host), other = addTo<ProbeView>(*host);
    other->intrinsicSize = {5, 6};
    view->intrinsicSize.width = std::numeric_limits<double>::quiet_NaN();
    for (int i = 0; i < 2; ++i)
        EXPECT_THAT(raised([&] { host->layoutSubtreeIfNeeded(); }),
                    HasSubstr("NSView.intrinsicContentSize: size.width"));
    view->intrinsicSize.width = 30;
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame().size.width, 30);
    EXPECT_EQ(other->frame().size, (CGSize{5, 6}));
}

// --- Fitting size

TEST(NSViewFittingSize, IsTheSmallestThatTheConstraintsAllow)
{
    Row row(20, 30);
    hold(*row.right, Attribute::bottom, *row.host, Attribute::bottom, {.relation = Relation::lessThanOrEqual});
    EXPECT_EQ(row.host->fittingSize(), (CGSize{50, 20}));
    hold(*row.host, Attribute::width, {.constant = 70, .priority = 251, .relation = Relation::greaterThanOrEqual});
    EXPECT_EQ(row.host->fittingSize().width, 70);
}

TEST(NSViewFittingSize, ConstraintsThatAreNoStrongerGiveWay)
{
    const auto host = makeHost(100, 100);
    for (const double width : {70.0, 71.0, 72.0})
        hold(*host, Attribute::width, {.constant = width, .priority = 50, .relation = Relation::greaterThanOrEqual});
    EXPECT_EQ(host->fittingSize().width, 0);
    EXPECT_EQ(host->fittingSize(49).width, 72);
}

TEST(NSViewFittingSize, LooksAtTheSubtreeOnlyAndDisturbsNothing)
{
    Row row(20, 30);
    const auto frames = row.frames();
    const int layouts = row.left->layoutCount;
    EXPECT_EQ(row.left->fittingSize(), (CGSize{20, 10}));
    EXPECT_EQ(row.host->fittingSize(), (CGSize{50, 0}));
    EXPECT_EQ(row.frames(), frames);
    EXPECT_EQ(row.left->layoutCount, layouts);
    EXPECT_FALSE(row.host->needsLayout());
}

TEST(NSViewFittingSize, UpdatesConstraintsFirst)
{
    const auto view = make<ProbeView>();
    view->onUpdateConstraints = [&] { hold(*view, Attribute::width, {.constant = 33}); };
    EXPECT_EQ(view->fittingSize().width, 33);
    EXPECT_EQ(view->updateCount, 1);
}

// --- Explanations

TEST(NSViewExplanation, NamesTheConstraintsThatHoldAViewAndThoseThatGaveWay)
{
    const auto host = makeHost(100, 100);
    const auto view = addTo(*host);
    const auto left = hold(*view, Attribute::left, *host, Attribute::left, {.constant = 3});
    const auto top = hold(*view, Attribute::top, *host, Attribute::top);
    const auto wide = hold(*view, Attribute::width, {.constant = 30});
    const auto wish = hold(*view, Attribute::width, {.constant = 40, .priority = 10});
    EXPECT_THAT(view->constraintsAffectingLayout(Orientation::horizontal), ElementsAre(left, wide, wish));
    EXPECT_THAT(view->constraintsAffectingLayout(Orientation::vertical), ElementsAre(top));
}

TEST(NSViewExplanation, AmbiguousIsWhatNothingHolds)
{
    const auto host = makeHost(100, 100);
    const auto held = addTo(*host), loose = addTo(*host);
    place(*held, {1, 2, 3, 4});
    EXPECT_FALSE(held->hasAmbiguousLayout());
    EXPECT_FALSE(host->hasAmbiguousLayout());
    EXPECT_TRUE(loose->hasAmbiguousLayout());
    place(*loose, {1, 2, 3, 4});
    EXPECT_FALSE(loose->hasAmbiguousLayout());
}

// --- Roots

TEST(NSViewRoot, HoldsItsFrameAgainstItsContent)
{
    const auto root = makeHost(100, 100);
    hold(*root, Attribute::width, {.constant = 300, .priority = 999});
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(root->frame(), CGRect(0, 0, 100, 100));
}

TEST(NSViewRoot, WithoutItsMaskGivesWayToWhatIsStrongerThan500AndKeepsItsOrigin)
{
    const auto root = make<NSView>(CGRect(5, 6, 100, 100));
    root->setTranslatesAutoresizingMaskIntoConstraints(false);
    hold(*root, Attribute::width, {.constant = 300, .priority = 501});
    hold(*root, Attribute::height, {.constant = 300, .priority = 499});
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(root->frame(), CGRect(5, 6, 300, 100));
}

TEST(NSViewRoot, TakesAFrameEqualToWhatItsContentMadeOfIt)
{
    const auto root = make<NSView>(CGRect(0, 0, 100, 100));
    root->setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto wide = hold(*root, Attribute::width, {.constant = 300, .relation = Relation::greaterThanOrEqual});
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(root->frame().size.width, 300);
    root->setFrameSize({300, 100});
    wide->setActive(false);
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(root->frame().size.width, 300);
}

TEST(NSViewRoot, LaidOutAloneAndThenAddedFollowsItsNewTree)
{
    const auto root = makeHost(100, 100);
    const auto inner = addTo(*root);
    hold(*inner, Attribute::width, *root, Attribute::width, {.multiplier = 0.5});
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(inner->frame().size.width, 50);
    const auto host = makeHost(400, 100);
    host->layoutSubtreeIfNeeded();
    root->setTranslatesAutoresizingMaskIntoConstraints(false);
    host->addSubview(root);
    hold(*root, Attribute::width, *host, Attribute::width);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(inner->frame().size.width, 200);
    root->removeFromSuperview();
    root->setFrameSize({60, 10});
    root->layoutSubtreeIfNeeded();
    EXPECT_EQ(inner->frame().size.width, 30);
}

// --- Marks

TEST(NSViewMarks, ANewViewAsksForBothAndIsCleanAfterAPass)
{
    const auto view = make<ProbeView>();
    EXPECT_TRUE(view->needsLayout());
    EXPECT_TRUE(view->needsUpdateConstraints());
    view->layoutSubtreeIfNeeded();
    EXPECT_FALSE(view->needsLayout());
    EXPECT_FALSE(view->needsUpdateConstraints());
    EXPECT_EQ(view->layoutCount, 1);
    EXPECT_EQ(view->updateCount, 1);
    view->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->layoutCount, 1);
    EXPECT_EQ(view->updateCount, 1);
}

TEST(NSViewMarks, AChangeAsksTheSuperviewAndWhatIsResizedForLayoutAndNobodyElse)
{
    const auto host = make<ProbeView>(CGRect(0, 0, 100, 100));
    const auto moved = addTo<ProbeView>(*host), resized = addTo<ProbeView>(*host), other = addTo<ProbeView>(*host);
    for (const auto& view : {moved, resized, other})
        place(*view, {0, 0, 10, 10});
    const auto left = hold(*moved, Attribute::left, *host, Attribute::left, {.constant = 5, .priority = 1});
    host->layoutSubtreeIfNeeded();
    const auto counts = [&] {
        return std::vector{host->layoutCount, moved->layoutCount, resized->layoutCount, other->layoutCount};
    };
    const auto before = counts();
    moved->constraints();
    for (const auto& constraint : host->constraints()) {
        if (constraint->firstItem() == moved.get() && constraint->firstAttribute() == Attribute::top)
            constraint->setConstant(50);
    }
    resized->constraints().front()->setConstant(20);
    EXPECT_FALSE(host->needsLayout());
    host->layoutSubtreeIfNeeded();
    EXPECT_THAT(counts(), ElementsAre(before[0] + 1, before[1], before[2] + 1, before[3]));
    EXPECT_EQ(resized->resizeCount, 2);
}

} // namespace
} // namespace RVCore::NSViewLayoutTests
