#include <AppKit/LayoutContext.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewLayoutState.h>

namespace RVCore {

ViewLayoutState::ViewLayoutState()
{
    m_usualRows.fill(noRow);
}

ViewLayoutState::~ViewLayoutState() = default;

void ViewLayoutState::viewWillDie(const NSView& view)
{
    dropContext();
    for (std::uint32_t place = m_references.placeCount(); place-- > 0 && !m_references.isEmpty();) {
        NSLayoutConstraint* constraint = m_references.at(place);
        if (!constraint)
            continue;
        const auto alive = shared(*constraint); // deactivating may release the last reference
        constraint->setActive(false);
        const int item =
            constraint->bookkeeping({}).placeInItem[0] == place && constraint->firstItem() == &view ? 0 : 1;
        removeReference(*constraint, item);
        constraint->forgetItem(item, {});
    }
    forEachHeld([](NSLayoutConstraint& constraint) { constraint.forgetHolder({}); });
}

void ViewLayoutState::dropContext()
{
    if (!m_rare || !m_rare->ownedContext)
        return;
    m_rare->ownedContext->retire();
    m_rare->ownedContext.reset();
}

void ViewLayoutState::setOwnedContext(std::shared_ptr<LayoutContext> owned)
{
    rare().ownedContext = std::move(owned);
}

ViewLayoutState::Rare& ViewLayoutState::rare()
{
    if (!m_rare)
        m_rare = std::make_unique<Rare>();
    return *m_rare;
}

std::uint32_t ViewLayoutState::ownRow(OwnRow kind) const
{
    if (!isFrameRow(kind))
        return m_usualRows[placeOfUsualRow(kind)];
    return m_rare ? m_rare->frameRows[kind - horizontalPosition] : noRow;
}

void ViewLayoutState::setOwnRow(OwnRow kind, std::uint32_t row)
{
    if (!isFrameRow(kind))
        m_usualRows[placeOfUsualRow(kind)] = row;
    else if (row != noRow || m_rare)
        rare().frameRows[kind - horizontalPosition] = row;
}

void ViewLayoutState::forgetOwnRows()
{
    m_usualRows.fill(noRow);
    if (m_rare)
        m_rare->frameRows.fill(noRow);
}

ViewLayoutState* ViewLayoutState::of(const NSView& view)
{
    return view.layoutState({}).get();
}

ViewLayoutState& ViewLayoutState::make(NSView& view)
{
    auto& state = view.layoutState({});
    if (!state)
        state = std::make_unique<ViewLayoutState>();
    return *state;
}

void ViewLayoutState::hold(NSLayoutConstraint& constraint)
{
    if (m_heldGaps * 2 > m_held.size())
        closeGaps();
    constraint.bookkeeping({}).placeInHolder = static_cast<std::uint32_t>(m_held.size());
    m_held.push_back(shared(constraint));
}

std::shared_ptr<NSLayoutConstraint> ViewLayoutState::release(NSLayoutConstraint& constraint)
{
    ++m_heldGaps;
    return std::move(m_held[constraint.bookkeeping({}).placeInHolder]);
}

void ViewLayoutState::closeGaps()
{
    std::erase(m_held, nullptr);
    m_heldGaps = 0;
    for (std::size_t place = 0; place < m_held.size(); ++place)
        m_held[place]->bookkeeping({}).placeInHolder = static_cast<std::uint32_t>(place);
}

std::vector<std::shared_ptr<NSLayoutConstraint>> ViewLayoutState::heldConstraints() const
{
    auto result = m_held;
    std::erase(result, nullptr);
    return result;
}

void ViewLayoutState::addReference(NSLayoutConstraint& constraint, int item)
{
    constraint.bookkeeping({}).placeInItem[item] = m_references.add(constraint);
}

void ViewLayoutState::removeReference(NSLayoutConstraint& constraint, int item)
{
    m_references.remove(constraint.bookkeeping({}).placeInItem[item]);
}

} // namespace RVCore
