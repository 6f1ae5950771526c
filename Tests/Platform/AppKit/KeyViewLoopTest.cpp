#include "InputTesting.h"

#include <AppKit/KeyViewLoop.h>

#include <gmock/gmock.h>

namespace RVCore::KeyViewLoopTests {
namespace {

using testing::ElementsAre;

std::shared_ptr<ListeningView> addKeyView(NSView& superview, const CGRect& frame, const std::string& name)
{
    auto view = make<ListeningView>(frame);
    view->setIdentifier(name);
    view->accepts = true;
    superview.addSubview(view);
    return view;
}

// The names of the loop from the first on, forward; backward must be the same the other way round.
std::vector<std::string> loopOf(NSView& root)
{
    std::vector<std::string> names;
    NSView* const first = keyViewAfter({shared(root)}, nullptr);
    for (NSView* view = first; view;) {
        names.push_back(view->identifier());
        NSView* const next = keyViewAfter({shared(root)}, view);
        EXPECT_EQ(keyViewBefore({shared(root)}, next), view);
        view = next == first ? nullptr : next;
    }
    return names;
}

TEST(KeyViewLoop, goesThroughLinesFromTheTopAndEachFromTheLeft)
{
    const auto root = makeHost(200, 200);
    addKeyView(*root, {100, 52, 50, 20}, "d");
    addKeyView(*root, {0, 50, 50, 20}, "c");
    addKeyView(*root, {100, 0, 50, 20}, "b");
    addKeyView(*root, {0, 5, 50, 20}, "a"); // a little lower, on the same line
    EXPECT_THAT(loopOf(*root), ElementsAre("a", "b", "c", "d"));
}

TEST(KeyViewLoop, countsFromTheTopInAViewThatIsNotFlipped)
{
    const auto root = make<NSView>(CGRect(0, 0, 200, 200));
    addKeyView(*root, {0, 0, 50, 20}, "low");
    addKeyView(*root, {0, 100, 50, 20}, "high");
    EXPECT_THAT(loopOf(*root), ElementsAre("high", "low"));
}

TEST(KeyViewLoop, passesByWhatAModalViewCovers)
{
    const auto root = makeHost(200, 200);
    const auto outer = addKeyView(*root, {0, 0, 100, 100}, "outer");
    addKeyView(*outer, {0, 0, 10, 10}, "covered");
    const auto cover = addKeyView(*outer, {0, 0, 100, 100}, "cover");
    addKeyView(*outer, {20, 0, 10, 10}, "above");
    addKeyView(*root, {0, 100, 100, 100}, "next");
    cover->setAccessibilityModal(true);
    EXPECT_THAT(loopOf(*root), ElementsAre("cover", "above", "next"));
    cover->setHidden(true);
    EXPECT_THAT(loopOf(*root), ElementsAre("outer", "covered", "above", "next"));
    cover->setHidden(false);
    cover->setAlphaValue(0);
    EXPECT_THAT(loopOf(*root), ElementsAre("outer", "covered", "above", "next"));
}

TEST(KeyViewLoop, visitsAViewBeforeWhatIsInIt)
{
    const auto root = makeHost(200, 200);
    const auto outer = addKeyView(*root, {0, 0, 100, 100}, "outer");
    addKeyView(*outer, {0, 0, 10, 10}, "inner");
    addKeyView(*root, {0, 100, 100, 100}, "next");
    EXPECT_THAT(loopOf(*root), ElementsAre("outer", "inner", "next"));
}

TEST(KeyViewLoop, leavesOutWhatIsHiddenOrAcceptsNoKeys)
{
    const auto root = makeHost(200, 200);
    addKeyView(*root, {0, 0, 10, 10}, "a");
    addKeyView(*root, {0, 20, 10, 10}, "hidden")->setHidden(true);
    addKeyView(*root, {0, 40, 10, 10}, "deaf")->accepts = false;
    addKeyView(*root, {0, 60, 10, 10}, "b");
    EXPECT_THAT(loopOf(*root), ElementsAre("a", "b"));
}

TEST(KeyViewLoop, aViewsOwnChoiceOfTheNextComesBeforeTheOrder)
{
    const auto root = makeHost(200, 200);
    const auto a = addKeyView(*root, {0, 0, 10, 10}, "a");
    addKeyView(*root, {0, 20, 10, 10}, "b");
    auto c = addKeyView(*root, {0, 40, 10, 10}, "c");
    a->setNextKeyView(c);
    EXPECT_EQ(a->nextKeyView(), c);
    EXPECT_THAT(loopOf(*root), ElementsAre("a", "c", "b"));
    c->setNextKeyView(a); // it has had its turn
    EXPECT_THAT(loopOf(*root), ElementsAre("a", "c", "b"));
    a->setNextKeyView(nullptr);
    EXPECT_THAT(loopOf(*root), ElementsAre("a", "b", "c"));
}

TEST(KeyViewLoop, viewsWithoutAHeightComeInOrder)
{
    const auto root = makeHost(200, 200);
    addKeyView(*root, {20, 0, 0, 0}, "b");
    addKeyView(*root, {0, 0, 0, 0}, "a");
    EXPECT_EQ(loopOf(*root).size(), 2U);
}

TEST(KeyViewLoop, isEmptyWhereNothingTakesKeys)
{
    const auto root = makeHost(200, 200);
    EXPECT_EQ(keyViewAfter({root}, nullptr), nullptr);
    EXPECT_EQ(keyViewBefore({root}, nullptr), nullptr);
    const auto only = addKeyView(*root, {0, 0, 10, 10}, "only");
    EXPECT_EQ(keyViewAfter({root}, only.get()), only.get());
}

TEST(KeyViewLoop, passesOverWhatIsTransparent)
{
    const auto root = makeHost(200, 200);
    addKeyView(*root, {0, 0, 50, 20}, "a");
    const auto clear = addKeyView(*root, {0, 30, 50, 20}, "clear");
    addKeyView(*clear, {0, 0, 10, 10}, "in it");
    addKeyView(*root, {0, 60, 50, 20}, "b");
    clear->setAlphaValue(0);
    EXPECT_THAT(loopOf(*root), ElementsAre("a", "b"));
}

} // namespace
} // namespace RVCore::KeyViewLoopTests
