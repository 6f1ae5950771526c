#include <AppKit/LayoutContext.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewDump.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <cstdio>
#include <unordered_map>

namespace RVCore {

namespace {

// What a tag of the engine stands for. Objects are aligned to 8 bytes at least, which leaves three bits; rows of a
// view's own are told apart by their form, so one bit says whose row it is.
enum class TagKind : std::uint64_t { constraint = 0, view = 1 };

std::uint64_t tagOf(const NSLayoutConstraint& constraint)
{
    return reinterpret_cast<std::uintptr_t>(&constraint) | static_cast<std::uint64_t>(TagKind::constraint);
}

std::uint64_t tagOf(const NSView& view)
{
    return reinterpret_cast<std::uintptr_t>(&view) | static_cast<std::uint64_t>(TagKind::view);
}

NSLayoutConstraint* constraintOf(std::uint64_t tag)
{
    if ((tag & 1) != static_cast<std::uint64_t>(TagKind::constraint))
        return nullptr;
    return reinterpret_cast<NSLayoutConstraint*>(static_cast<std::uintptr_t>(tag));
}

NSView* viewOf(std::uint64_t tag)
{
    return reinterpret_cast<NSView*>(static_cast<std::uintptr_t>(tag & ~std::uint64_t{1}));
}

template <class Visit> void forEachInTree(NSView& root, const Visit& visit)
{
    std::vector<NSView*> open{&root};
    while (!open.empty()) {
        NSView& view = *open.back();
        open.pop_back();
        visit(view);
        const auto& subviews = view.subviews();
        for (auto subview = subviews.rbegin(); subview != subviews.rend(); ++subview)
            open.push_back(subview->get());
    }
}

// A view's intrinsic size, checked: a size that is no number would poison the whole layout.
CGSize checkedIntrinsicSize(const NSView& view)
{
    const CGSize size = view.intrinsicContentSize();
    requireFinite(view.classObject().name() + ".intrinsicContentSize", "size", size);
    return size;
}

constexpr ViewLayoutState::OwnRow contentRows[] = {ViewLayoutState::widthHugging, ViewLayoutState::widthResistance,
                                                   ViewLayoutState::heightHugging, ViewLayoutState::heightResistance};
constexpr ViewLayoutState::OwnRow frameRows[] = {ViewLayoutState::horizontalPosition,
                                                 ViewLayoutState::horizontalExtent, ViewLayoutState::verticalPosition,
                                                 ViewLayoutState::verticalExtent};

const ViewVariables& liveVariables(const NSView& view)
{
    return ViewLayoutState::of(view)->variables;
}

} // namespace

LayoutContext::LayoutContext(NSView& root) : m_root(root)
{
    m_pendingSubtrees.push_back(&root);
}

LayoutContext::~LayoutContext()
{
    forEachInTree(m_root, [](NSView& view) {
        ViewLayoutState* state = ViewLayoutState::of(view);
        if (!state)
            return;
        state->context = nullptr;
        state->variables = {};
        state->ownRows.fill({});
        state->intrinsicSizeIsStale = false;
        state->forEachHeld([](NSLayoutConstraint& constraint) { constraint.m_handle = {}; });
    });
}

LayoutContext* LayoutContext::of(const NSView& view)
{
    const ViewLayoutState* state = ViewLayoutState::of(view);
    return state ? state->context : nullptr;
}

LayoutContext& LayoutContext::ofTree(NSView& view)
{
    NSView& root = view.rootView();
    ViewLayoutState& state = ViewLayoutState::make(root);
    if (!state.ownedContext)
        state.ownedContext = std::make_unique<LayoutContext>(root);
    state.ownedContext->takeInPending();
    return *state.ownedContext;
}

void LayoutContext::subtreeAdded(NSView& subtree)
{
    m_pendingSubtrees.push_back(&subtree);
    ++m_revision;
}

void LayoutContext::subtreeWillBeRemoved(NSView& subtree)
{
    ++m_revision;
    if (!of(subtree)) {
        const auto pending = std::find(m_pendingSubtrees.rbegin(), m_pendingSubtrees.rend(), &subtree);
        if (pending != m_pendingSubtrees.rend())
            m_pendingSubtrees.erase(std::next(pending).base());
        return;
    }
    // A subtree inside this one may still be waiting.
    if (!m_pendingSubtrees.empty())
        std::erase_if(m_pendingSubtrees, [&](NSView* pending) { return pending->isDescendantOf(subtree); });
    // All rows go before the variables that they are over.
    forEachInTree(subtree, [&](NSView& view) {
        ViewLayoutState* state = ViewLayoutState::of(view);
        if (!state || !state->context)
            return;
        state->forEachHeld([&](NSLayoutConstraint& constraint) {
            if (constraint.m_handle.isValid())
                m_engine.removeConstraint(constraint.m_handle);
            constraint.m_handle = {};
        });
        for (LayoutConstraintHandle& handle : state->ownRows) {
            if (handle.isValid())
                m_engine.removeConstraint(handle);
            handle = {};
        }
    });
    forEachInTree(subtree, [&](NSView& view) { letGo(view); });
}

void LayoutContext::letGo(NSView& view)
{
    ViewLayoutState* state = ViewLayoutState::of(view);
    if (!state || !state->context)
        return;
    for (const LayoutVariable variable :
         {state->variables.x, state->variables.y, state->variables.width, state->variables.height}) {
        if (variable.isValid())
            m_engine.removeVariable(variable);
    }
    state->variables = {};
    if (state->intrinsicSizeIsStale)
        std::erase(m_staleIntrinsicSizes, &view);
    state->intrinsicSizeIsStale = false;
    state->context = nullptr;
}

void LayoutContext::takeInPending()
{
    // Taking a view in asks it for its intrinsic size, which may add further subtrees.
    while (!m_pendingSubtrees.empty()) {
        NSView& subtree = *m_pendingSubtrees.front();
        m_pendingSubtrees.erase(m_pendingSubtrees.begin());
        takeIn(subtree);
    }
}

void LayoutContext::takeIn(NSView& subtree)
{
    std::vector<NSView*> views;
    forEachInTree(subtree, [&](NSView& view) {
        if (!of(view)) // it may have come in with another subtree
            views.push_back(&view);
    });
    std::vector<NSLayoutConstraint*> constraints;
    for (NSView* view : views) {
        ViewLayoutState& state = ViewLayoutState::make(*view);
        state.context = this;
        const std::uint64_t tag = tagOf(*view);
        if (view != &m_root) {
            state.variables.x = m_engine.addVariable(tag);
            state.variables.y = m_engine.addVariable(tag);
        }
        state.variables.width = m_engine.addVariable(tag);
        state.variables.height = m_engine.addVariable(tag);
        state.forEachHeld([&](NSLayoutConstraint& constraint) { constraints.push_back(&constraint); });
        state.intrinsicSizeIsStale = true;
        m_staleIntrinsicSizes.push_back(view);
    }
    for (NSView* view : views) {
        installOwnRow(*view, ViewLayoutState::widthNotNegative, {});
        installOwnRow(*view, ViewLayoutState::heightNotNegative, {});
        for (const auto kind : frameRows)
            installOwnRow(*view, kind, {});
    }
    // The order of installation decides which of contradicting constraints is left out.
    std::sort(constraints.begin(), constraints.end(),
              [](const auto* left, const auto* right) { return left->m_activation < right->m_activation; });
    for (NSLayoutConstraint* constraint : constraints)
        install(*constraint);
    for (NSView* view : views) {
        NSView* superview = view->superview();
        if (superview && !superview->m_needsLayout)
            superview->setNeedsLayout(true);
    }
}

void LayoutContext::install(NSLayoutConstraint& constraint)
{
    makeConstraintRow(constraint, *constraint.holder(), liveVariables, m_row);
    constraint.m_handle =
        m_engine.addConstraint(m_row.terms, m_row.relation, m_row.constant, m_row.priority, tagOf(constraint));
}

void LayoutContext::constraintActivated(NSLayoutConstraint& constraint)
{
    takeInPending();
    ++m_revision;
    if (!constraint.m_handle.isValid()) // else it came in with a pending subtree
        install(constraint);
}

void LayoutContext::constraintWillBeDeactivated(NSLayoutConstraint& constraint)
{
    ++m_revision;
    if (constraint.m_handle.isValid())
        m_engine.removeConstraint(constraint.m_handle);
    constraint.m_handle = {};
}

void LayoutContext::constraintChanged(NSLayoutConstraint& constraint)
{
    ++m_revision;
    if (!constraint.m_handle.isValid())
        return; // waiting with its subtree
    m_engine.setConstant(constraint.m_handle, constraint.constant());
    m_engine.setPriority(constraint.m_handle, constraint.priority());
}

void LayoutContext::installOwnRow(NSView& view, ViewLayoutState::OwnRow kind, CGSize intrinsicSize)
{
    const auto row = makeOwnRow(view, kind, intrinsicSize, &view == &m_root, liveVariables);
    if (row)
        ViewLayoutState::of(view)->ownRows[kind] =
            m_engine.addConstraint(row->terms, row->relation, row->constant, row->priority, tagOf(view));
}

void LayoutContext::updateOwnRow(NSView& view, ViewLayoutState::OwnRow kind, CGSize intrinsicSize)
{
    LayoutConstraintHandle& handle = ViewLayoutState::of(view)->ownRows[kind];
    const auto row = makeOwnRow(view, kind, intrinsicSize, &view == &m_root, liveVariables);
    const bool onlyNumbersChange =
        std::find(std::begin(frameRows), std::end(frameRows), kind) == std::end(frameRows) || &view == &m_root;
    if (handle.isValid() && row && onlyNumbersChange) {
        m_engine.setConstant(handle, row->constant);
        m_engine.setPriority(handle, row->priority);
        return;
    }
    if (handle.isValid())
        m_engine.removeConstraint(handle);
    handle = {};
    if (row)
        handle = m_engine.addConstraint(row->terms, row->relation, row->constant, row->priority, tagOf(view));
}

void LayoutContext::intrinsicSizeInvalidated(NSView& view)
{
    ViewLayoutState& state = *ViewLayoutState::of(view);
    if (state.intrinsicSizeIsStale)
        return;
    ++m_revision;
    state.intrinsicSizeIsStale = true;
    m_staleIntrinsicSizes.push_back(&view);
}

void LayoutContext::contentPriorityChanged(NSView& view, NSLayoutConstraintOrientation orientation)
{
    ++m_revision;
    const bool isVertical = orientation == NSLayoutConstraintOrientation::vertical;
    const auto& rows = ViewLayoutState::of(view)->ownRows;
    const auto update = [&](ViewLayoutState::OwnRow kind, NSLayoutPriority priority) {
        if (rows[kind].isValid())
            m_engine.setPriority(rows[kind], priority);
    };
    update(isVertical ? ViewLayoutState::heightHugging : ViewLayoutState::widthHugging,
           view.contentHuggingPriority(orientation));
    update(isVertical ? ViewLayoutState::heightResistance : ViewLayoutState::widthResistance,
           view.contentCompressionResistancePriority(orientation));
}

void LayoutContext::frameGiven(NSView& view)
{
    for (const auto kind : frameRows)
        updateOwnRow(view, kind, {});
}

void LayoutContext::updateIntrinsicSizes()
{
    // Asking a view for its size may make others stale, so the list may grow while it is worked off. One that
    // raises stays on the list, so that the next pass raises again rather than laying out nonsense.
    const auto dropDone = [&](std::size_t count) {
        m_staleIntrinsicSizes.erase(m_staleIntrinsicSizes.begin(),
                                    m_staleIntrinsicSizes.begin() + static_cast<std::ptrdiff_t>(count));
    };
    std::size_t done = 0;
    try {
        for (; done < m_staleIntrinsicSizes.size(); ++done) {
            NSView& view = *m_staleIntrinsicSizes[done];
            const CGSize size = checkedIntrinsicSize(view);
            ViewLayoutState::of(view)->intrinsicSizeIsStale = false;
            for (const auto kind : contentRows)
                updateOwnRow(view, kind, size);
        }
    } catch (...) {
        dropDone(done);
        throw;
    }
    dropDone(done);
}

bool LayoutContext::needsSolve() const
{
    return !m_pendingSubtrees.empty() || !m_staleIntrinsicSizes.empty() || m_engine.needsSolve();
}

void LayoutContext::solve()
{
    while (!m_pendingSubtrees.empty() || !m_staleIntrinsicSizes.empty()) {
        takeInPending();
        updateIntrinsicSizes();
    }
    if (!m_engine.needsSolve())
        return;
    m_engine.solve();
    markChangedPlaces();
    reportConflicts();
}

void LayoutContext::markChangedPlaces()
{
    // Collected first: marking calls overrides, which may note further changes.
    std::vector<std::shared_ptr<NSView>> toMark;
    for (const LayoutVariable variable : m_engine.changedVariables()) {
        NSView* view = viewOf(m_engine.owner(variable));
        NSView* placing = view == &m_root ? view : view->superview();
        if (toMark.empty() || toMark.back().get() != placing)
            toMark.push_back(shared(*placing));
    }
    for (const auto& view : toMark) {
        if (!view->m_needsLayout)
            view->setNeedsLayout(true);
    }
}

CGRect LayoutContext::solvedFrame(const NSView& view)
{
    solve(); // whatever moves meanwhile is marked, not just moved
    const ViewVariables& variables = liveVariables(view);
    const CGSize size{m_engine.value(variables.width), m_engine.value(variables.height)};
    if (&view == &m_root)
        return {view.frame().origin, size};
    const CGFloat x = m_engine.value(variables.x);
    const CGFloat fromTop = m_engine.value(variables.y);
    const NSView& superview = *view.superview();
    const CGFloat y = superview.isFlipped() ? fromTop : superview.frame().size.height - fromTop - size.height;
    return {x, y, size.width, size.height};
}

bool LayoutContext::isAmbiguous(const NSView& view)
{
    solve();
    const ViewVariables& variables = liveVariables(view);
    for (const LayoutVariable variable : {variables.x, variables.y, variables.width, variables.height}) {
        if (variable.isValid() && m_engine.isAmbiguous(variable))
            return true;
    }
    return false;
}

std::vector<NSLayoutConstraint*> LayoutContext::constraintsAffecting(const NSView& view, bool isVertical)
{
    solve();
    const ViewVariables& variables = liveVariables(view);
    std::vector<NSLayoutConstraint*> result;
    const auto add = [&](std::uint64_t tag) {
        NSLayoutConstraint* constraint = constraintOf(tag);
        if (constraint && std::find(result.begin(), result.end(), constraint) == result.end())
            result.push_back(constraint);
    };
    const LayoutVariable position = isVertical ? variables.y : variables.x;
    const LayoutVariable extent = isVertical ? variables.height : variables.width;
    std::vector<LayoutExplanation> explanations;
    for (const LayoutVariable variable : {position, extent}) {
        if (variable.isValid())
            explanations.push_back(m_engine.explain(variable));
    }
    for (const LayoutExplanation& explanation : explanations) {
        for (const LayoutHolding& holding : explanation.holding)
            add(holding.constraint);
    }
    for (const LayoutExplanation& explanation : explanations) {
        for (const LayoutViolation& violation : explanation.violated)
            add(violation.constraint);
    }
    return result;
}

std::string LayoutContext::describeTag(std::uint64_t tag) const
{
    if (const NSLayoutConstraint* constraint = constraintOf(tag))
        return constraint->description();
    return "the frame of " + viewOf(tag)->description(); // of a view's own rows only these and ≥ 0 are required
}

void LayoutContext::reportConflicts()
{
    for (const LayoutConflict& conflict : m_engine.takeConflicts()) {
        std::string report = "Layout conflict: these required constraints contradict each other:\n";
        for (const std::uint64_t tag : conflict.constraints)
            report += "    " + describeTag(tag) + "\n";
        report += "Left out: " + describeTag(conflict.leftOut) + "\n";
        std::fputs(report.c_str(), stderr);
    }
}

CGSize LayoutContext::fittingSize(NSView& view, NSLayoutPriority priority)
{
    LayoutEngine engine;
    std::unordered_map<const NSView*, ViewVariables> table;
    const VariablesOfView variables = [&](const NSView& known) -> const ViewVariables& { return table.at(&known); };
    forEachInTree(view, [&](NSView& current) {
        table[&current] = {engine.addVariable(0), engine.addVariable(0), engine.addVariable(0),
                           engine.addVariable(0)};
    });
    LayoutRow row;
    const auto install = [&](const LayoutRow& installed) {
        engine.addConstraint(installed.terms, installed.relation, installed.constant, installed.priority, 0);
    };
    std::vector<NSLayoutConstraint*> constraints;
    forEachInTree(view, [&](NSView& current) {
        const CGSize size = checkedIntrinsicSize(current);
        for (std::size_t kind = 0; kind < ViewLayoutState::ownRowCount; ++kind) {
            const auto ownRow = static_cast<ViewLayoutState::OwnRow>(kind);
            const bool isFrameRow =
                std::find(std::begin(frameRows), std::end(frameRows), ownRow) != std::end(frameRows);
            if (isFrameRow && &current == &view)
                continue; // its frame is what is asked for
            if (const auto own = makeOwnRow(current, ownRow, size, false, variables))
                install(*own);
        }
        if (const ViewLayoutState* state = ViewLayoutState::of(current))
            state->forEachHeld([&](NSLayoutConstraint& constraint) { constraints.push_back(&constraint); });
    });
    std::sort(constraints.begin(), constraints.end(),
              [](const auto* left, const auto* right) { return left->m_activation < right->m_activation; });
    for (const NSLayoutConstraint* constraint : constraints) {
        makeConstraintRow(*constraint, *constraint->holder(), variables, row);
        install(row);
    }
    const ViewVariables& asked = table.at(&view);
    for (const LayoutVariable extent : {asked.width, asked.height})
        install({{{extent, 1}}, LayoutRelation::lessThanOrEqual, 0, priority});
    return {engine.value(asked.width), engine.value(asked.height)};
}

} // namespace RVCore
