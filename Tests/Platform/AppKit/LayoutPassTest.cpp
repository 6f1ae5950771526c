#include "ViewTesting.h"

#include <AppKit/NSTextField.h>
#include <AppKit/ViewDump.h>
#include <Foundation/NSException.h>
#include <Platform/Foundation/Raised.h>

namespace RVCore::LayoutPassTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

// host > a > inA, host > b; all write to the log.
struct Tree {
    std::vector<std::string> log;
    std::shared_ptr<ProbeView> host = make<ProbeView>(CGRect(0, 0, 100, 100));
    std::shared_ptr<ProbeView> a = addTo<ProbeView>(*host, "a"), inA = addTo<ProbeView>(*a, "inA"),
                               b = addTo<ProbeView>(*host, "b");

    Tree()
    {
        host->setIdentifier("host");
        for (const auto& view : {host, a, inA, b})
            view->log = &log;
    }
    void layOut() { host->layoutSubtreeIfNeeded(); }
};

TEST(LayoutPass, UpdatesConstraintsFromTheLeavesUpAndLaysOutFromTheRootDown)
{
    Tree tree;
    tree.layOut();
    EXPECT_THAT(tree.log, ElementsAre("update inA", "update a", "update b", "update host", "layout host", "layout a",
                                      "layout inA", "layout b"));
    tree.log.clear();
    tree.inA->setNeedsLayout(true);
    tree.b->setNeedsUpdateConstraints(true);
    tree.layOut();
    EXPECT_THAT(tree.log, ElementsAre("update b", "layout inA"));
}

TEST(LayoutPass, OfASubtreeLeavesTheRestMarked)
{
    Tree tree;
    tree.layOut();
    tree.log.clear();
    tree.inA->setNeedsLayout(true);
    tree.b->setNeedsLayout(true);
    tree.a->layoutSubtreeIfNeeded();
    EXPECT_THAT(tree.log, ElementsAre("layout inA"));
    tree.layOut();
    EXPECT_THAT(tree.log, ElementsAre("layout inA", "layout b"));
}

TEST(LayoutPass, GivesWhatAsksAgainItsTurnInTheNextRound)
{
    Tree tree;
    tree.b->onLayout = [&] {
        if (tree.b->layoutCount < 3)
            tree.a->setNeedsLayout(true);
    };
    tree.a->onLayout = [&] {
        if (tree.a->layoutCount < 3)
            tree.b->setNeedsLayout(true);
    };
    tree.inA->onLayout = [&] {
        if (tree.inA->layoutCount == 1)
            tree.inA->setNeedsUpdateConstraints(true);
    };
    tree.layOut();
    EXPECT_EQ(tree.a->layoutCount, 3);
    EXPECT_EQ(tree.inA->updateCount, 2);
    EXPECT_FALSE(tree.a->needsLayout() || tree.b->needsLayout() || tree.inA->needsUpdateConstraints());
}

TEST(LayoutPass, EndsAndReportsOnceAViewThatAsksForLayoutInEveryLayout)
{
    Tree tree;
    tree.a->onLayout = [&] { tree.a->setNeedsLayout(true); };
    CaptureStderr();
    tree.layOut();
    EXPECT_EQ(tree.a->layoutCount, 32);
    EXPECT_FALSE(tree.a->needsLayout()); // left as it is
    tree.b->setNeedsLayout(true);
    tree.layOut(); // settles
    tree.a->setNeedsLayout(true);
    tree.layOut();
    EXPECT_EQ(GetCapturedStderr(), "Layout of NSView \"host\" does not settle: after 32 rounds NSView \"a\" still "
                                   "asks for more\n");
}

TEST(LayoutPass, EndsWithAViewThatLaysItselfOutInEveryLayout)
{
    Tree tree;
    tree.a->onLayout = [&] {
        tree.a->setNeedsLayout(true);
        tree.host->layoutSubtreeIfNeeded();
        tree.a->setNeedsLayout(true);
    };
    CaptureStderr();
    tree.layOut();
    EXPECT_THAT(GetCapturedStderr(), HasSubstr("does not settle"));
    EXPECT_LE(tree.a->layoutCount, 32 * (1 + 4 + 16 + 64));
}

TEST(LayoutPass, EndsWithViewsThatInvalidateEachOthersSize)
{
    Tree tree;
    tree.a->onIntrinsicSize = [&] { tree.b->invalidateIntrinsicContentSize(); };
    tree.b->onIntrinsicSize = [&] { tree.a->invalidateIntrinsicContentSize(); };
    CaptureStderr();
    tree.layOut();
    EXPECT_EQ(GetCapturedStderr(), "Layout of NSView \"host\" does not settle: after 32 rounds the size of its "
                                   "content still asks for more\n");
}

// Counts how often it is told that its subviews have moved.
class CountingHost : public FlippedView {
public:
    int markCount = 0;

    void setNeedsLayout(bool needsLayout) override
    {
        markCount += needsLayout ? 1 : 0;
        FlippedView::setNeedsLayout(needsLayout);
    }
};

TEST(LayoutPass, ManyTextsThatWrapAreSolvedTogether)
{
    const auto host = make<CountingHost>(CGRect(0, 0, 300, 100));
    std::shared_ptr<NSView> previous;
    std::vector<std::shared_ptr<NSTextField>> texts;
    for (int i = 0; i < 40; ++i) {
        const auto text = plainLabel("Several words that wrap at the width of the host");
        text->setLineBreakMode(NSLineBreakMode::wordWrapping);
        text->setTranslatesAutoresizingMaskIntoConstraints(false);
        host->addSubview(text);
        hold(*text, Attribute::left, *host, Attribute::left);
        hold(*text, Attribute::right, *host, Attribute::right);
        if (previous)
            hold(*text, Attribute::top, *previous, Attribute::bottom);
        else
            hold(*text, Attribute::top, *host, Attribute::top);
        previous = text;
        texts.push_back(text);
    }
    host->layoutSubtreeIfNeeded();
    const CGFloat height = texts[0]->frame().size.height;
    host->markCount = 0;
    host->setFrameSize({100, 100});
    host->layoutSubtreeIfNeeded();
    EXPECT_GT(texts[0]->frame().size.height, height);
    EXPECT_EQ(texts[39]->frame().minY(), 39 * texts[0]->frame().size.height);
    EXPECT_LE(host->markCount, 4); // the new size, the new widths, the new heights; not once for each text
}

TEST(LayoutPass, ANestedPassBringsItsSubtreeUpToDate)
{
    Tree tree;
    place(*tree.a, {0, 0, 50, 50});
    place(*tree.inA, {1, 2, 3, 4});
    CGRect seen;
    tree.host->onLayout = [&] {
        tree.a->layoutSubtreeIfNeeded();
        seen = tree.inA->frame();
    };
    tree.layOut();
    EXPECT_EQ(seen, CGRect(1, 44, 3, 4));
}

// --- Exceptions

void raise()
{
    raiseInvalidArgument("test", "no");
}

TEST(LayoutPass, AnOverrideThatRaisesIsCalledAgainInTheNextPassAndSoAreTheOthers)
{
    for (const bool inLayout : {false, true}) {
        Tree tree;
        tree.layOut();
        for (const auto& view : {tree.inA, tree.b}) {
            view->setNeedsLayout(true);
            view->setNeedsUpdateConstraints(true);
        }
        (inLayout ? tree.inA->onLayout : tree.inA->onUpdateConstraints) = raise;
        for (int i = 0; i < 2; ++i)
            EXPECT_THAT(raised([&] { tree.layOut(); }), HasSubstr("test: no"));
        tree.inA->onLayout = tree.inA->onUpdateConstraints = nullptr;
        tree.log.clear();
        tree.layOut();
        using Log = std::vector<std::string>;
        EXPECT_EQ(tree.log, inLayout ? Log({"layout inA", "layout b"})
                                     : Log({"update inA", "update b", "layout inA", "layout b"}));
    }
}

// --- Overrides that change the tree

TEST(LayoutPass, ViewsThatAnOverrideRemovesOrAddsDoNotDisturbTheOthers)
{
    Tree tree;
    const auto last = addTo<ProbeView>(*tree.host, "last");
    last->log = &tree.log;
    std::shared_ptr<ProbeView> added;
    tree.a->onUpdateConstraints = [&] { tree.a->removeFromSuperview(); };
    tree.b->onLayout = [&] {
        if (!added) {
            added = addTo<ProbeView>(*tree.host, "added");
            added->log = &tree.log;
        }
        tree.b->removeFromSuperview();
    };
    tree.layOut();
    EXPECT_THAT(tree.log,
                ElementsAre("update inA", "update a", "update b", "update last", "update host", "layout host",
                            "layout b", "layout last", "update added", "layout host", "layout added"));
    EXPECT_TRUE(tree.a->needsLayout());
}

TEST(LayoutPass, AViewMayDieInItsOwnLayout)
{
    Tree tree;
    const std::weak_ptr<ProbeView> b = tree.b;
    hold(*tree.b, Attribute::width, *tree.a, Attribute::width);
    tree.b->onLayout = [&] {
        tree.b->removeFromSuperview();
        tree.b.reset();
    };
    tree.layOut();
    EXPECT_TRUE(b.expired());
    EXPECT_FALSE(tree.host->needsLayout());
}

TEST(LayoutPass, TheRootMayBePutIntoAnotherTreeByAnyOverride)
{
    for (int where = 0; where < 5; ++where) {
        Tree tree;
        const auto other = makeHost(300, 300);
        other->layoutSubtreeIfNeeded();
        const auto move = [&] { other->addSubview(tree.host); };
        place(*tree.a, {0, 0, 5, 5});
        if (where == 0)
            tree.a->onUpdateConstraints = move;
        else if (where == 1)
            tree.a->onLayout = move;
        else if (where == 2)
            tree.a->onIntrinsicSize = move;
        else if (where == 3)
            tree.a->onResize = move;
        else
            tree.host->onSetNeedsLayout = [&](bool) { move(); };
        tree.layOut();
        EXPECT_EQ(tree.host->superview(), other.get()) << where;
        other->layoutSubtreeIfNeeded();
        EXPECT_EQ(tree.a->frame(), CGRect(0, 95, 5, 5)) << where;
        EXPECT_FALSE(other->needsLayout() || tree.a->needsLayout());
    }
}

TEST(LayoutPass, AnOverrideMayLetTheWholeTreeGo)
{
    Tree tree;
    tree.inA->onLayout = [&] { tree.host.reset(); };
    tree.host->layoutSubtreeIfNeeded();
    EXPECT_EQ(tree.a->superview(), nullptr);
}

TEST(LayoutPass, AnOverrideMayEndAConstraintThatIsInConflict)
{
    Tree tree;
    place(*tree.a, {0, 0, 10, 10});
    tree.layOut();
    auto late = hold(*tree.a, Attribute::width, {.constant = 20});
    hold(*tree.b, Attribute::width, {.constant = 5});
    tree.host->onSetNeedsLayout = [&](bool needs) {
        if (needs && late) {
            late->setActive(false);
            late.reset();
        }
    };
    CaptureStderr();
    tree.layOut();
    EXPECT_THAT(GetCapturedStderr(), HasSubstr("constraint of NSView \"a\": width = 20"));
    EXPECT_EQ(late, nullptr);
}

} // namespace
} // namespace RVCore::LayoutPassTests
