#include <AppKit/LayoutContext.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewLayoutState.h>

namespace RVCore {

ViewLayoutState::ViewLayoutState(NSView& view) : m_view(view) {}

ViewLayoutState::~ViewLayoutState() = default;

void ViewLayoutState::viewWillDie()
{
    dropContext();
    while (!m_references.empty()) {
        NSLayoutConstraint& constraint = *m_references.back();
        const auto alive = shared(constraint); // deactivating may release the last reference
        constraint.setActive(false);
        const int item = constraint.firstItem() == &m_view ? 0 : 1;
        removeReference(constraint, item);
        constraint.forgetItem(item, {});
    }
    forEachHeld([](NSLayoutConstraint& constraint) { constraint.bookkeeping({}).holder = nullptr; });
}

void ViewLayoutState::dropContext()
{
    if (ownedContext)
        ownedContext->retire();
    ownedContext.reset();
}

ViewLayoutState* ViewLayoutState::of(const NSView& view)
{
    return view.layoutState({}).get();
}

ViewLayoutState& ViewLayoutState::make(NSView& view)
{
    auto& state = view.layoutState({});
    if (!state)
        state = std::make_unique<ViewLayoutState>(view);
    return *state;
}

void ViewLayoutState::hold(NSLayoutConstraint& constraint)
{
    constraint.bookkeeping({}).holder = &m_view;
    constraint.bookkeeping({}).placeInHolder = static_cast<std::uint32_t>(m_held.size());
    m_held.push_back(shared(constraint));
}

std::shared_ptr<NSLayoutConstraint> ViewLayoutState::release(NSLayoutConstraint& constraint)
{
    constraint.bookkeeping({}).holder = nullptr;
    auto released = std::move(m_held[constraint.bookkeeping({}).placeInHolder]);
    if (++m_heldGaps * 2 <= m_held.size())
        return released;
    std::erase(m_held, nullptr);
    m_heldGaps = 0;
    for (std::size_t place = 0; place < m_held.size(); ++place)
        m_held[place]->bookkeeping({}).placeInHolder = static_cast<std::uint32_t>(place);
    return released;
}

std::vector<std::shared_ptr<NSLayoutConstraint>> ViewLayoutState::heldConstraints() const
{
    auto result = m_held;
    std::erase(result, nullptr);
    return result;
}

void ViewLayoutState::addReference(NSLayoutConstraint& constraint, int item)
{
    constraint.bookkeeping({}).placeInItem[item] = static_cast<std::uint32_t>(m_references.size());
    m_references.push_back(&constraint);
}

void ViewLayoutState::removeReference(NSLayoutConstraint& constraint, int item)
{
    const std::uint32_t place = constraint.bookkeeping({}).placeInItem[item];
    const auto last = static_cast<std::uint32_t>(m_references.size() - 1);
    if (place != last) {
        NSLayoutConstraint& moved = *m_references[last];
        std::uint32_t(&places)[2] = moved.bookkeeping({}).placeInItem;
        places[moved.firstItem() == &m_view && places[0] == last ? 0 : 1] = place;
        m_references[place] = &moved;
    }
    m_references.pop_back();
}

} // namespace RVCore
