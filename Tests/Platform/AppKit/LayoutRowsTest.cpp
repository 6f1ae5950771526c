#include "ViewTesting.h"

namespace RVCore::LayoutRowsTests {
namespace {

using Mask = NSAutoresizingMask;

// The frame of a view at (10, 20) 30 × 40 with this mask when its superview grows from 100 × 100 to 200 × 300; the
// same by constraints, by the frame alone, and by constraints from the first pass on.
template <class Host> CGRect resized(Mask mask, const CGRect& frame = {10, 20, 30, 40})
{
    std::vector<CGRect> results;
    for (const bool laidOutBefore : {true, false}) {
        const auto host = make<Host>(CGRect(0, 0, 100, 100));
        const auto view = make<NSView>(frame);
        view->setAutoresizingMask(mask);
        host->addSubview(view);
        if (laidOutBefore)
            host->layoutSubtreeIfNeeded();
        EXPECT_EQ(view->frame(), frame);
        host->setFrameSize({200, 300});
        results.push_back(view->frame());
        host->layoutSubtreeIfNeeded();
        results.push_back(view->frame());
    }
    for (const CGRect& result : results)
        EXPECT_EQ(result, results.front());
    return results.front();
}

TEST(AutoresizingMask, NoneKeepsTheFrameInTheSuperviewsOwnCoordinates)
{
    EXPECT_EQ(resized<NSView>(Mask::none), CGRect(10, 20, 30, 40));
    EXPECT_EQ(resized<FlippedView>(Mask::none), CGRect(10, 20, 30, 40));
}

TEST(AutoresizingMask, EachFlagTakesAllThatItsAxisGains)
{
    for (const auto& resize : {resized<NSView>, resized<FlippedView>}) {
        const CGRect frame(10, 20, 30, 40);
        EXPECT_EQ(resize(Mask::minXMargin, frame), CGRect(110, 20, 30, 40));
        EXPECT_EQ(resize(Mask::width, frame), CGRect(10, 20, 130, 40));
        EXPECT_EQ(resize(Mask::maxXMargin, frame), CGRect(10, 20, 30, 40));
        EXPECT_EQ(resize(Mask::minYMargin, frame), CGRect(10, 220, 30, 40));
        EXPECT_EQ(resize(Mask::height, frame), CGRect(10, 20, 30, 240));
        EXPECT_EQ(resize(Mask::maxYMargin, frame), CGRect(10, 20, 30, 40));
    }
}

TEST(AutoresizingMask, SeveralFlagsShareInProportionToTheirLengths)
{
    EXPECT_EQ(resized<NSView>(Mask::minXMargin | Mask::width | Mask::maxXMargin), CGRect(20, 20, 60, 40));
    EXPECT_EQ(resized<NSView>(Mask::minXMargin | Mask::width), CGRect(35, 20, 105, 40));
    EXPECT_EQ(resized<FlippedView>(Mask::height | Mask::maxYMargin), CGRect(10, 20, 30, 140)); // 40 and 40
}

TEST(AutoresizingMask, LengthsThatSumUpToNothingShareEqually)
{
    EXPECT_EQ(resized<NSView>(Mask::minXMargin | Mask::maxXMargin, {0, 0, 100, 10}), CGRect(50, 0, 100, 10));
    EXPECT_EQ(resized<NSView>(Mask::width | Mask::minXMargin, {0, 0, 0, 10}), CGRect(50, 0, 50, 10));
}

TEST(AutoresizingMask, SubviewsOfSubviewsFollow)
{
    const auto host = makeHost(100, 100);
    const auto middle = make<NSView>(CGRect(0, 0, 100, 100)), inner = make<NSView>(CGRect(80, 0, 10, 10));
    middle->setAutoresizingMask(Mask::width);
    inner->setAutoresizingMask(Mask::minXMargin);
    host->addSubview(middle);
    middle->addSubview(inner);
    host->setFrameSize({150, 100});
    EXPECT_EQ(inner->frame(), CGRect(130, 0, 10, 10));
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(inner->frame(), CGRect(130, 0, 10, 10));
}

TEST(AutoresizingMask, ProportionsSurviveASuperviewWithoutRoom)
{
    const auto host = makeHost(100, 100);
    const auto view = make<NSView>(CGRect(20, 0, 60, 10));
    view->setAutoresizingMask(Mask::minXMargin | Mask::width | Mask::maxXMargin);
    host->addSubview(view);
    host->layoutSubtreeIfNeeded();
    host->setFrameSize({0, 100});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame(), CGRect(0, 0, 0, 10));
    host->setFrameSize({200, 100});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame(), CGRect(40, 0, 120, 10));
}

TEST(AutoresizingMask, ANewFrameOrMaskCountsFromNowOn)
{
    const auto host = makeHost(100, 100);
    const auto view = make<NSView>(CGRect(10, 10, 10, 10));
    host->addSubview(view);
    host->layoutSubtreeIfNeeded();
    view->setFrame({20, 20, 30, 30});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame(), CGRect(20, 20, 30, 30));
    view->setAutoresizingMask(Mask::width | Mask::height);
    host->setFrameSize({110, 120});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame(), CGRect(20, 20, 40, 50));
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    hold(*view, Attribute::width, {.constant = 1});
    hold(*view, Attribute::left, *host, Attribute::left, {.constant = 2});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame().minX(), 2);
    EXPECT_EQ(view->frame().size.width, 1);
}

TEST(AutoresizingMask, ConstraintsMayReferToAViewThatHoldsItsFrame)
{
    const auto host = makeHost(100, 100);
    const auto fixed = make<NSView>(CGRect(10, 20, 30, 40));
    host->addSubview(fixed);
    const auto view = addTo(*host);
    place(*view, {0, 0, 5, 5});
    view->superview()->constraints().front()->setActive(false);
    hold(*view, Attribute::left, *fixed, Attribute::right, {.constant = 2});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame(), CGRect(42, 0, 5, 5));
    fixed->setFrameOrigin({20, 20});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame(), CGRect(52, 0, 5, 5));
}

} // namespace
} // namespace RVCore::LayoutRowsTests
