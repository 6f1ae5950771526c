#include <AppKit/LayoutContext.h>
#include <AppKit/LayoutPass.h>
#include <AppKit/NSView.h>

#include <cstdio>

namespace RVCore {

namespace {

// A tree of wrapping texts settles in two or three rounds, and nested ones in a few more.
constexpr int maximumRounds = 32;
// A `layout` that lays out its own subtree is nested once; more is a view that calls itself without end.
constexpr int maximumDepth = 4;

} // namespace

void LayoutPass::run(NSView& subtree)
{
    const auto alive = shared(subtree);
    const auto root = shared(subtree.rootView()); // it owns the context
    LayoutContext& context = LayoutContext::ofTree(subtree);
    if (context.passDepth >= maximumDepth)
        return;
    struct Depth {
        int& depth;
        explicit Depth(int& passDepth) : depth(passDepth) { ++depth; }
        ~Depth() { --depth; }
    } depth(context.passDepth);

    for (int round = 0; round < maximumRounds; ++round) {
        updateConstraints(subtree);
        context.solve();
        if (&subtree == root.get())
            takeRootSize(subtree);
        layOut(subtree);
        if (!isMarked(subtree) && !context.needsSolve()) {
            context.unsettledWasReported = false;
            return;
        }
    }
    if (!context.unsettledWasReported)
        giveUp(subtree);
    context.unsettledWasReported = true;
    clearMarks(subtree);
}

void LayoutPass::updateConstraints(NSView& view)
{
    const auto alive = shared(view);
    if (view.m_descendantNeedsUpdateConstraints) {
        view.m_descendantNeedsUpdateConstraints = false; // what asks again meanwhile has its turn in the next round
        for (std::size_t i = 0; i < view.m_subviews.size(); ++i) {
            NSView& subview = *view.m_subviews[i];
            if (subview.m_needsUpdateConstraints || subview.m_descendantNeedsUpdateConstraints)
                updateConstraints(subview);
        }
    }
    if (view.m_needsUpdateConstraints) {
        view.setNeedsUpdateConstraints(false);
        view.updateConstraints();
    }
}

// Only a root that nothing holds in place takes a size of its content's; its origin stays.
void LayoutPass::takeRootSize(NSView& root)
{
    root.storeFrame(LayoutContext::of(root)->solvedFrame(root));
}

void LayoutPass::layOut(NSView& view)
{
    const auto alive = shared(view);
    if (view.m_needsLayout) {
        view.setNeedsLayout(false);
        view.layout();
    }
    if (!view.m_descendantNeedsLayout)
        return;
    view.m_descendantNeedsLayout = false;
    for (std::size_t i = 0; i < view.m_subviews.size(); ++i) {
        NSView& subview = *view.m_subviews[i];
        if (subview.m_needsLayout || subview.m_descendantNeedsLayout)
            layOut(subview);
    }
}

bool LayoutPass::isMarked(const NSView& view)
{
    return view.m_needsLayout || view.m_descendantNeedsLayout || view.m_needsUpdateConstraints ||
           view.m_descendantNeedsUpdateConstraints;
}

NSView* LayoutPass::firstMarked(NSView& view)
{
    if (view.m_needsLayout || view.m_needsUpdateConstraints)
        return &view;
    for (const auto& subview : view.m_subviews) {
        if (isMarked(*subview)) {
            if (NSView* found = firstMarked(*subview))
                return found;
        }
    }
    return nullptr;
}

void LayoutPass::giveUp(NSView& subtree)
{
    const NSView* culprit = firstMarked(subtree);
    const std::string report = "Layout of " + subtree.description() + " does not settle: after " +
                               std::to_string(maximumRounds) + " rounds " +
                               (culprit ? culprit->description() : "its content size") + " still asks for more\n";
    std::fputs(report.c_str(), stderr);
}

// Left as it is, the tree must not keep its window busy.
void LayoutPass::clearMarks(NSView& view)
{
    view.m_needsLayout = view.m_needsUpdateConstraints = false;
    const bool hasMarked = view.m_descendantNeedsLayout || view.m_descendantNeedsUpdateConstraints;
    view.m_descendantNeedsLayout = view.m_descendantNeedsUpdateConstraints = false;
    if (!hasMarked)
        return;
    for (const auto& subview : view.m_subviews) {
        if (isMarked(*subview))
            clearMarks(*subview);
    }
}

} // namespace RVCore
