#include <AppKit/ViewQueue.h>

namespace RVCore {

NSView* ViewQueue::front()
{
    if (m_count == 0)
        return nullptr;
    while (!m_views[m_first])
        ++m_first;
    return m_views[m_first];
}

bool ViewQueue::contains(const NSView& view) const
{
    const ViewLayoutState* state = ViewLayoutState::of(view);
    return state && state->*m_place != ViewLayoutState::noPlace;
}

void ViewQueue::add(NSView& view)
{
    std::uint32_t& place = ViewLayoutState::make(view).*m_place;
    if (place != ViewLayoutState::noPlace)
        return;
    // A view that waits for long must not keep the places of all that come and go meanwhile.
    if (m_views.size() >= 2 * m_count + 64)
        closeGaps();
    place = static_cast<std::uint32_t>(m_views.size());
    m_views.push_back(&view);
    ++m_count;
}

void ViewQueue::closeGaps()
{
    std::erase(m_views, nullptr);
    m_first = 0;
    for (std::size_t i = 0; i < m_views.size(); ++i)
        ViewLayoutState::of(*m_views[i])->*m_place = static_cast<std::uint32_t>(i);
}

void ViewQueue::remove(NSView& view)
{
    ViewLayoutState* state = ViewLayoutState::of(view);
    if (!state || state->*m_place == ViewLayoutState::noPlace)
        return;
    m_views[state->*m_place] = nullptr;
    state->*m_place = ViewLayoutState::noPlace;
    if (--m_count == 0) {
        constexpr std::size_t usual = 256; // more than this is what making a tree took
        m_views.clear();
        if (m_views.capacity() > usual)
            m_views.shrink_to_fit();
        m_first = 0;
    }
}

} // namespace RVCore
