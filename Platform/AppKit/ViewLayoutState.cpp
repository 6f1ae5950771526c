#include <AppKit/LayoutContext.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewLayoutState.h>

namespace RVCore {

ViewLayoutState::ViewLayoutState(NSView& view) : m_view(view) {}

ViewLayoutState::~ViewLayoutState() = default;

void ViewLayoutState::viewWillDie()
{
    ownedContext.reset();
    while (!m_references.empty()) {
        NSLayoutConstraint& constraint = *m_references.back();
        const auto alive = shared(constraint); // deactivating may release the last reference
        constraint.setActive(false);
        const int item = constraint.m_items[0] == &m_view ? 0 : 1;
        removeReference(constraint, item);
        constraint.m_items[item] = nullptr;
    }
    forEachHeld([](NSLayoutConstraint& constraint) { constraint.m_holder = nullptr; });
}

ViewLayoutState* ViewLayoutState::of(const NSView& view)
{
    return view.m_layoutState.get();
}

ViewLayoutState& ViewLayoutState::make(NSView& view)
{
    if (!view.m_layoutState)
        view.m_layoutState = std::make_unique<ViewLayoutState>(view);
    return *view.m_layoutState;
}

void ViewLayoutState::hold(NSLayoutConstraint& constraint)
{
    constraint.m_holder = &m_view;
    constraint.m_placeInHolder = static_cast<std::uint32_t>(m_held.size());
    m_held.push_back(shared(constraint));
}

void ViewLayoutState::release(NSLayoutConstraint& constraint)
{
    constraint.m_holder = nullptr;
    const auto alive = std::move(m_held[constraint.m_placeInHolder]);
    if (++m_heldGaps * 2 <= m_held.size())
        return;
    std::erase(m_held, nullptr);
    m_heldGaps = 0;
    for (std::size_t place = 0; place < m_held.size(); ++place)
        m_held[place]->m_placeInHolder = static_cast<std::uint32_t>(place);
}

std::vector<std::shared_ptr<NSLayoutConstraint>> ViewLayoutState::heldConstraints() const
{
    auto result = m_held;
    std::erase(result, nullptr);
    return result;
}

void ViewLayoutState::addReference(NSLayoutConstraint& constraint, int item)
{
    constraint.m_placeInItem[item] = static_cast<std::uint32_t>(m_references.size());
    m_references.push_back(&constraint);
}

void ViewLayoutState::removeReference(NSLayoutConstraint& constraint, int item)
{
    const std::uint32_t place = constraint.m_placeInItem[item];
    const auto last = static_cast<std::uint32_t>(m_references.size() - 1);
    if (place != last) {
        NSLayoutConstraint& moved = *m_references[last];
        const bool isFirstItem = moved.m_items[0] == &m_view && moved.m_placeInItem[0] == last;
        moved.m_placeInItem[isFirstItem ? 0 : 1] = place;
        m_references[place] = &moved;
    }
    m_references.pop_back();
}

} // namespace RVCore
