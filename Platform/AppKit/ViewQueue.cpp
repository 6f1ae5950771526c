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
    place = static_cast<std::uint32_t>(m_views.size());
    m_views.push_back(&view);
    ++m_count;
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
