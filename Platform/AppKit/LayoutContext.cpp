#include <AppKit/LayoutConflictReport.h>
#include <AppKit/LayoutContext.h>
#include <AppKit/LayoutTag.h>
#include <AppKit/NSView.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <unordered_map>
#include <unordered_set>

namespace RVCore {

namespace {

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
    if (!std::isfinite(size.width) || !std::isfinite(size.height))
        requireFinite(view.classObject().name() + ".intrinsicContentSize", "size", size);
    return size;
}

constexpr ViewLayoutState::OwnRow contentRows[] = {ViewLayoutState::widthHugging, ViewLayoutState::widthResistance,
                                                   ViewLayoutState::heightHugging, ViewLayoutState::heightResistance};
constexpr ViewLayoutState::OwnRow frameRows[] = {ViewLayoutState::horizontalPosition,
                                                 ViewLayoutState::horizontalExtent, ViewLayoutState::verticalPosition,
                                                 ViewLayoutState::verticalExtent};

constexpr std::uint32_t noRow = NSLayoutConstraint::Bookkeeping::noRow;

constexpr auto liveVariables = [](const NSView& view) -> const ViewVariables& {
    return ViewLayoutState::of(view)->variables;
};

// Enters the view whose `layout` gives this one its place, unless it was the last one entered.
void addPlacing(NSView& view, std::vector<std::shared_ptr<NSView>>& placing)
{
    NSView& superview = view.superview() ? *view.superview() : view;
    if (placing.empty() || placing.back().get() != &superview)
        placing.push_back(shared(superview));
}

} // namespace

LayoutContext::LayoutContext(NSView& root) : m_root(root)
{
    m_pendingSubtrees.add(root);
}

void LayoutContext::retire()
{
    forEachInTree(m_root, [this](NSView& view) {
        m_pendingSubtrees.remove(view);
        m_staleIntrinsicSizes.remove(view);
        m_movedViews.remove(view);
        ViewLayoutState* state = ViewLayoutState::of(view);
        if (!state)
            return;
        state->context = nullptr;
        state->variables = {};
        state->forgetOwnRows();
        state->hasIntrinsicRows = false;
        state->forEachHeld([](NSLayoutConstraint& constraint) { constraint.bookkeeping({}).row = noRow; });
    });
    m_engine = {};
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
    if (!state.ownedContext())
        state.setOwnedContext(std::make_shared<LayoutContext>(root));
    state.ownedContext()->takeInPending();
    return *state.ownedContext();
}

void LayoutContext::subtreeAdded(NSView& subtree)
{
    m_pendingSubtrees.add(subtree);
    ++m_revision;
}

void LayoutContext::subtreeWillBeRemoved(NSView& subtree)
{
    ++m_revision;
    if (!of(subtree)) {
        m_pendingSubtrees.remove(subtree);
        return;
    }
    // All rows go before the variables that they are over.
    forEachInTree(subtree, [&](NSView& view) {
        m_pendingSubtrees.remove(view); // a subtree inside this one
        ViewLayoutState* state = ViewLayoutState::of(view);
        if (state && state->context)
            removeRows(*state);
    });
    forEachInTree(subtree, [&](NSView& view) { letGo(view); });
}

void LayoutContext::removeRows(ViewLayoutState& state)
{
    state.forEachHeld([&](NSLayoutConstraint& constraint) {
        std::uint32_t& row = constraint.bookkeeping({}).row;
        if (row != noRow)
            m_engine.removeConstraint(m_engine.handle(row));
        row = noRow;
    });
    state.forEachOwnRow([&](std::uint32_t row) { m_engine.removeConstraint(m_engine.handle(row)); });
    state.forgetOwnRows();
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
    state->hasIntrinsicRows = false;
    m_staleIntrinsicSizes.remove(view);
    m_movedViews.remove(view);
    state->context = nullptr;
}

void LayoutContext::takeInPending()
{
    // Taking one in marks views, whose overrides may add others.
    while (NSView* subtree = m_pendingSubtrees.front()) {
        m_pendingSubtrees.remove(*subtree);
        takeIn(*subtree);
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
        const std::uint64_t tag = LayoutTag::of(*view);
        if (view != &m_root) {
            state.variables.x = m_engine.addVariable(tag);
            state.variables.y = m_engine.addVariable(tag);
        }
        state.variables.width = m_engine.addVariable(tag);
        state.variables.height = m_engine.addVariable(tag);
        state.forEachHeld([&](NSLayoutConstraint& constraint) { constraints.push_back(&constraint); });
        m_staleIntrinsicSizes.add(*view);
        m_movedViews.add(*view);
    }
    for (NSView* view : views) {
        installOwnRow(*view, ViewLayoutState::widthNotNegative, {});
        installOwnRow(*view, ViewLayoutState::heightNotNegative, {});
        for (const auto kind : frameRows)
            installOwnRow(*view, kind, {});
    }
    sortByActivation(constraints);
    for (NSLayoutConstraint* constraint : constraints)
        install(*constraint);
    Views placing;
    for (NSView* view : views)
        addPlacing(*view, placing);
    markForLayout(placing);
}

// The order of installation decides which of contradicting constraints is left out.
void LayoutContext::sortByActivation(std::vector<NSLayoutConstraint*>& constraints)
{
    std::vector<std::pair<std::uint64_t, NSLayoutConstraint*>> order; // beside each other, not behind pointers
    order.reserve(constraints.size());
    for (NSLayoutConstraint* constraint : constraints)
        order.emplace_back(constraint->activation({}), constraint);
    std::stable_sort(order.begin(), order.end()); // by merging, for what each view holds is in order already
    std::transform(order.begin(), order.end(), constraints.begin(), [](const auto& entry) { return entry.second; });
}

// Calls overrides, which may change the tree: that is why the views were collected first.
void LayoutContext::markForLayout(const Views& views)
{
    for (const auto& view : views) {
        if (!view->layoutMarks({}).layout)
            view->setNeedsLayout(true);
    }
}

// The row that was made last. Who keeps it keeps its index, which is enough to get at it while it is there.
std::uint32_t LayoutContext::addRow(std::uint64_t tag)
{
    return m_engine.addConstraint(m_row.terms, m_row.relation, m_row.constant, m_row.priority, tag).index;
}

void LayoutContext::install(NSLayoutConstraint& constraint)
{
    makeConstraintRow(constraint, *constraint.holder(), liveVariables, m_row);
    constraint.bookkeeping({}).row = addRow(LayoutTag::of(constraint));
}

void LayoutContext::constraintActivated(NSLayoutConstraint& constraint)
{
    takeInPending();
    ++m_revision;
    // It may have come in with a pending subtree, or have been taken out by an override meanwhile.
    if (constraint.isActive() && constraint.bookkeeping({}).row == noRow)
        install(constraint);
}

void LayoutContext::constraintWillBeDeactivated(NSLayoutConstraint& constraint)
{
    ++m_revision;
    std::uint32_t& row = constraint.bookkeeping({}).row;
    if (row != noRow)
        m_engine.removeConstraint(m_engine.handle(row));
    row = noRow;
}

void LayoutContext::constraintChanged(NSLayoutConstraint& constraint)
{
    ++m_revision;
    const LayoutConstraintHandle handle = m_engine.handle(constraint.bookkeeping({}).row);
    m_engine.setConstant(handle, constraint.constant());
    m_engine.setPriority(handle, constraint.priority());
}

void LayoutContext::installOwnRow(NSView& view, ViewLayoutState::OwnRow kind, CGSize intrinsicSize)
{
    if (makeOwnRow(view, kind, intrinsicSize, &view == &m_root, liveVariables, m_row))
        ViewLayoutState::of(view)->setOwnRow(kind, addRow(LayoutTag::of(view, kind)));
}

void LayoutContext::updateOwnRow(NSView& view, ViewLayoutState::OwnRow kind, CGSize intrinsicSize)
{
    ViewLayoutState& state = *ViewLayoutState::of(view);
    const std::uint32_t before = state.ownRow(kind);
    const bool isThere = makeOwnRow(view, kind, intrinsicSize, &view == &m_root, liveVariables, m_row);
    const bool onlyNumbersChange =
        std::find(std::begin(frameRows), std::end(frameRows), kind) == std::end(frameRows) || &view == &m_root;
    if (before != noRow && isThere && onlyNumbersChange) {
        m_engine.setConstant(m_engine.handle(before), m_row.constant);
        m_engine.setPriority(m_engine.handle(before), m_row.priority);
        return;
    }
    if (before != noRow)
        m_engine.removeConstraint(m_engine.handle(before));
    state.setOwnRow(kind, isThere ? addRow(LayoutTag::of(view, kind)) : noRow);
}

void LayoutContext::intrinsicSizeInvalidated(NSView& view)
{
    ++m_revision;
    m_staleIntrinsicSizes.add(view);
}

void LayoutContext::contentPriorityChanged(NSView& view, NSLayoutConstraintOrientation orientation)
{
    ++m_revision;
    const bool isVertical = orientation == NSLayoutConstraintOrientation::vertical;
    const ViewLayoutState& state = *ViewLayoutState::of(view);
    const auto update = [&](ViewLayoutState::OwnRow kind, NSLayoutPriority priority) {
        if (const std::uint32_t row = state.ownRow(kind); row != noRow)
            m_engine.setPriority(m_engine.handle(row), priority);
    };
    update(isVertical ? ViewLayoutState::heightHugging : ViewLayoutState::widthHugging,
           view.contentHuggingPriority(orientation));
    update(isVertical ? ViewLayoutState::heightResistance : ViewLayoutState::widthResistance,
           view.contentCompressionResistancePriority(orientation));
}

void LayoutContext::frameGiven(NSView& view)
{
    if (&view != &m_root) { // whose frame is not what its content needs
        ++m_revision;
        m_movedViews.add(view);
    }
    for (const auto kind : frameRows)
        updateOwnRow(view, kind, {});
}

void LayoutContext::updateIntrinsicSizes()
{
    for (std::size_t left = m_staleIntrinsicSizes.count(); left > 0 && m_staleIntrinsicSizes.front(); --left) {
        const auto view = shared(*m_staleIntrinsicSizes.front());
        // One that raises stays first in the queue, so that the next pass raises again rather than lay out nonsense.
        const CGSize size = checkedIntrinsicSize(*view);
        if (of(*view) != this)
            continue; // it has left the tree meanwhile
        m_staleIntrinsicSizes.remove(*view);
        ViewLayoutState& state = *ViewLayoutState::of(*view);
        if (std::exchange(state.hasIntrinsicRows, true) && state.installedIntrinsicSize == size)
            continue;
        state.installedIntrinsicSize = size;
        for (const auto kind : contentRows)
            updateOwnRow(*view, kind, size);
    }
}

bool LayoutContext::needsSolve() const
{
    return m_pendingSubtrees.count() > 0 || m_staleIntrinsicSizes.count() > 0 || m_engine.needsSolve();
}

void LayoutContext::solve()
{
    if (!needsSolve())
        return;
    const auto alive = shared_from_this();
    // Asking a view for its size may make others stale. Views that do so to each other without end must not keep us
    // here; they have their turn again in the next round of the pass.
    constexpr int maximumSweeps = 4;
    for (int sweep = 0; sweep < maximumSweeps && m_pendingSubtrees.count() + m_staleIntrinsicSizes.count() > 0;
         ++sweep) {
        takeInPending();
        updateIntrinsicSizes();
    }
    if (!m_engine.needsSolve())
        return;
    m_engine.solve();
    const auto toMark = noteMovedViews();
    reportConflicts(); // before overrides run, which may end a constraint
    markForLayout(toMark);
}

LayoutContext::Views LayoutContext::noteMovedViews()
{
    Views result;
    for (const LayoutVariable variable : m_engine.changedVariables()) {
        NSView& view = LayoutTag::view(m_engine.owner(variable));
        m_movedViews.add(view);
        addPlacing(view, result);
    }
    m_engine.forgetChangedVariables();
    return result;
}

void LayoutContext::subviewsFollowHeight(NSView& view)
{
    for (const auto& subview : view.subviews()) {
        if (of(*subview) == this)
            m_movedViews.add(*subview);
    }
}

LayoutContext::Views LayoutContext::movedSubviews(const NSView& view) const
{
    Views result;
    // Through whichever list is the shorter one.
    if (m_movedViews.places().size() < view.subviews().size()) {
        for (NSView* moved : m_movedViews.places()) {
            if (moved && moved->superview() == &view)
                result.push_back(shared(*moved));
        }
    } else {
        for (const auto& subview : view.subviews()) {
            if (m_movedViews.contains(*subview))
                result.push_back(subview);
        }
    }
    return result;
}

std::vector<LayoutContext::Placement> LayoutContext::takePlacements(NSView& view)
{
    const auto alive = shared_from_this(); // overrides run in a solve
    solve();
    std::vector<Placement> result;
    for (const auto& moved : movedSubviews(view)) {
        m_movedViews.remove(*moved);
        result.push_back({moved, solvedFrame(*moved)});
    }
    return result;
}

CGRect LayoutContext::solvedFrame(const NSView& view)
{
    solve(); // whatever moves meanwhile is marked, not just moved
    if (of(view) != this)
        return view.frame(); // an override took it out of the tree
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
    if (of(view) != this)
        return false;
    const ViewVariables& variables = liveVariables(view);
    for (const LayoutVariable variable : {variables.x, variables.y, variables.width, variables.height}) {
        if (variable.isValid() && m_engine.isAmbiguous(variable))
            return true;
    }
    return false;
}

LayoutEngine& LayoutContext::solvedEngine()
{
    solve();
    return m_engine;
}

std::vector<NSLayoutConstraint*> LayoutContext::constraintsAffecting(const NSView& view, bool isVertical)
{
    solve();
    if (of(view) != this)
        return {};
    const ViewVariables& variables = liveVariables(view);
    std::vector<NSLayoutConstraint*> result;
    std::unordered_set<NSLayoutConstraint*> known;
    const auto add = [&](std::uint64_t tag) {
        NSLayoutConstraint* constraint = LayoutTag::constraint(tag);
        if (constraint && known.insert(constraint).second)
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

void LayoutContext::reportConflicts()
{
    for (const LayoutConflict& conflict : m_engine.takeConflicts())
        std::fputs(describeConflict(conflict, m_root, m_engine).c_str(), stderr);
}

CGSize LayoutContext::fittingSize(NSView& view, NSLayoutPriority priority)
{
    LayoutEngine engine;
    std::unordered_map<const NSView*, ViewVariables> table;
    const auto variables = [&](const NSView& known) -> const ViewVariables& { return table.at(&known); };
    forEachInTree(view, [&](NSView& current) {
        table[&current] = {engine.addVariable(0), engine.addVariable(0), engine.addVariable(0),
                           engine.addVariable(0)};
    });
    LayoutRow row;
    // Whatever is no stronger gives way, so it may as well not be there.
    const auto install = [&](const LayoutRow& installed) {
        if (installed.priority > priority)
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
            if (makeOwnRow(current, ownRow, size, false, variables, row))
                install(row);
        }
        if (const ViewLayoutState* state = ViewLayoutState::of(current))
            state->forEachHeld([&](NSLayoutConstraint& constraint) { constraints.push_back(&constraint); });
    });
    sortByActivation(constraints);
    for (const NSLayoutConstraint* constraint : constraints) {
        makeConstraintRow(*constraint, *constraint->holder(), variables, row);
        install(row);
    }
    const ViewVariables& asked = table.at(&view);
    for (const LayoutVariable extent : {asked.width, asked.height})
        engine.addConstraint(std::array{LayoutTerm{extent, 1}}, LayoutRelation::lessThanOrEqual, 0, priority, 0);
    return {engine.value(asked.width), engine.value(asked.height)};
}

} // namespace RVCore
