#include <Backend/CallQueue.h>

namespace RVCore {

bool CallQueue::add(std::function<void()> closure)
{
    bool wasEmpty = false;
    {
        const std::lock_guard lock(m_mutex);
        wasEmpty = m_closures.empty();
        m_closures.push_back(std::move(closure));
    }
    m_added.notify_one();
    return wasEmpty;
}

bool CallQueue::isEmpty() const
{
    const std::lock_guard lock(m_mutex);
    return m_closures.empty();
}

// Empty when nothing waits. A turn inside a closure's own nested turn may have taken what the outer one counted.
std::function<void()> CallQueue::take()
{
    const std::lock_guard lock(m_mutex);
    if (m_closures.empty())
        return {};
    std::function<void()> closure = std::move(m_closures.front());
    m_closures.pop_front();
    return closure;
}

void CallQueue::runTurn(const bool& isStopped)
{
    std::size_t count = 0;
    {
        const std::lock_guard lock(m_mutex);
        count = m_closures.size();
    }
    for (; count > 0 && !isStopped; --count) {
        // Called without the lock, and the closure ends its life here and not at the next one's turn.
        if (const std::function<void()> closure = take())
            closure();
    }
}

void CallQueue::wait()
{
    std::unique_lock lock(m_mutex);
    m_added.wait(lock, [this] { return !m_closures.empty(); });
}

void CallQueue::wait(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    m_added.wait_for(lock, limit, [this] { return !m_closures.empty(); });
}

} // namespace RVCore
