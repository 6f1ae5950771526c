#include <AppKit/EventMonitor.h>

#include <algorithm>
#include <ranges>
#include <vector>

namespace RVCore {

namespace {

std::vector<EventMonitor*>& monitors()
{
    static auto& list = *new std::vector<EventMonitor*>; // for monitors that outlive the statics
    return list;
}

} // namespace

EventMonitor::EventMonitor(std::function<void(NSEvent&)> handler) : m_handler(std::move(handler))
{
    monitors().push_back(this);
}

EventMonitor::~EventMonitor()
{
    std::erase(monitors(), this);
}

void EventMonitor::show(NSEvent& event, AppKitKey)
{
    const auto present = monitors();
    for (EventMonitor* monitor : std::views::reverse(present)) {
        if (std::ranges::find(monitors(), monitor) == monitors().end())
            continue;
        const auto handler = monitor->m_handler; // it may end its own monitor
        handler(event);
    }
}

} // namespace RVCore
