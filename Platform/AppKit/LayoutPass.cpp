#include <AppKit/LayoutContext.h>
#include <AppKit/LayoutPass.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewDump.h>

#include <cstdio>
#include <exception>

namespace RVCore {

namespace {

// A tree of wrapping texts settles in two or three rounds, and nested ones in a few more.
constexpr int maximumRounds = 32;
// For a pass that an override starts within another one of the same tree; what is left marked is the outer one's.
constexpr int maximumNestedRounds = 4;
// A `layout` that lays out its own subtree is nested once; more is a view that calls itself without end.
constexpr int maximumDepth = 4;

// Puts a mark back that was taken away for a call which then raised.
class MarkRestorer {
public:
    explicit MarkRestorer(bool& mark) : m_mark(mark) {}
    ~MarkRestorer()
    {
        if (std::uncaught_exceptions() > m_exceptions)
            m_mark = true;
    }
    MarkRestorer(const MarkRestorer&) = delete;
    MarkRestorer& operator=(const MarkRestorer&) = delete;

private:
    bool& m_mark;
    int m_exceptions = std::uncaught_exceptions();
};

// Overrides may change the list of subviews, so the ones to visit are collected first. Who holds this list also keeps
// them alive while they are called.
template <class IsMarked>
std::vector<std::shared_ptr<NSView>> markedSubviews(const NSView& view, const IsMarked& isMarked)
{
    std::vector<std::shared_ptr<NSView>> result;
    for (const auto& subview : view.subviews()) {
        if (isMarked(*subview))
            result.push_back(subview);
    }
    return result;
}

} // namespace

void LayoutPass::run(NSView& subtree)
{
    const auto alive = shared(subtree);
    const auto root = shared(subtree.rootView());
    const auto context = LayoutContext::ofTree(subtree).shared_from_this();
    if (context->passDepth >= maximumDepth)
        return;
    struct Depth {
        int& depth;
        explicit Depth(int& passDepth) : depth(passDepth) { ++depth; }
        ~Depth() { --depth; }
    } depth(context->passDepth);

    const bool isNested = context->passDepth > 1;
    const int rounds = isNested ? maximumNestedRounds : maximumRounds;
    for (int round = 0; round < rounds; ++round) {
        const bool goesOn = runRound(subtree);
        if (!goesOn || LayoutContext::of(subtree) != context.get())
            return;
        if (!isMarked(subtree) && !context->needsSolve())
            return;
    }
    if (isNested)
        return;
    reportUnsettled(subtree);
    clearMarks(subtree);
}

// Returns whether the subtree is still in the tree that it was in.
bool LayoutPass::runRound(NSView& subtree)
{
    LayoutContext* context = LayoutContext::of(subtree); // alive: the pass holds it
    const auto isInTree = [&] { return LayoutContext::of(subtree) == context; };
    updateConstraints(subtree);
    if (!isInTree())
        return false;
    context->solve();
    if (!isInTree())
        return false;
    // Only a root that nothing holds in place takes a size of its content's; its origin stays.
    if (!subtree.superview())
        subtree.takeSolvedFrame(context->solvedFrame(subtree), {});
    layOut(subtree);
    return isInTree();
}

void LayoutPass::updateConstraints(NSView& view)
{
    NSView::LayoutMarks& marks = view.layoutMarks({});
    if (marks.descendantUpdateConstraints) {
        const MarkRestorer restorer(marks.descendantUpdateConstraints);
        marks.descendantUpdateConstraints = false; // what asks again meanwhile has its turn in the next round
        const auto marked = markedSubviews(view, [](NSView& subview) {
            const NSView::LayoutMarks& its = subview.layoutMarks({});
            return its.updateConstraints || its.descendantUpdateConstraints;
        });
        for (const auto& subview : marked) {
            if (subview->superview() == &view)
                updateConstraints(*subview);
        }
    }
    if (marks.updateConstraints) {
        const MarkRestorer restorer(marks.updateConstraints);
        view.setNeedsUpdateConstraints(false);
        view.updateConstraints();
    }
}

void LayoutPass::layOut(NSView& view)
{
    NSView::LayoutMarks& marks = view.layoutMarks({});
    if (marks.layout) {
        const MarkRestorer restorer(marks.layout);
        view.setNeedsLayout(false);
        view.layout();
    }
    if (!marks.descendantLayout)
        return;
    const MarkRestorer restorer(marks.descendantLayout);
    marks.descendantLayout = false;
    const auto marked = markedSubviews(view, [](NSView& subview) {
        const NSView::LayoutMarks& its = subview.layoutMarks({});
        return its.layout || its.descendantLayout;
    });
    for (const auto& subview : marked) {
        if (subview->superview() == &view)
            layOut(*subview);
    }
}

bool LayoutPass::isMarked(const NSView& view)
{
    const NSView::LayoutMarks& marks = const_cast<NSView&>(view).layoutMarks({});
    return marks.layout || marks.descendantLayout || marks.updateConstraints || marks.descendantUpdateConstraints;
}

NSView* LayoutPass::firstMarked(NSView& view)
{
    const NSView::LayoutMarks& marks = view.layoutMarks({});
    if (marks.layout || marks.updateConstraints)
        return &view;
    for (const auto& subview : view.subviews()) {
        if (isMarked(*subview)) {
            if (NSView* found = firstMarked(*subview))
                return found;
        }
    }
    return nullptr;
}

// Once for the life of the view that asks for more.
void LayoutPass::reportUnsettled(NSView& subtree)
{
    NSView* marked = firstMarked(subtree);
    ViewLayoutState& state = ViewLayoutState::make(marked ? *marked : subtree);
    if (state.unsettledWasReported)
        return;
    state.unsettledWasReported = true;
    const std::string report = "Layout of " + nameOfView(&subtree) + " does not settle: after " +
                               std::to_string(maximumRounds) + " rounds " +
                               (marked ? nameOfView(marked) : "the size of its content") + " still asks for more\n";
    std::fputs(report.c_str(), stderr);
}

// Left as it is, the tree must not keep its window busy.
void LayoutPass::clearMarks(NSView& view)
{
    NSView::LayoutMarks& marks = view.layoutMarks({});
    const bool hasMarked = marks.descendantLayout || marks.descendantUpdateConstraints;
    marks = {.layout = false, .updateConstraints = false};
    if (!hasMarked)
        return;
    for (const auto& subview : view.subviews()) {
        if (isMarked(*subview))
            clearMarks(*subview);
    }
}

} // namespace RVCore
