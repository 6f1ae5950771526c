#include <Dispatch/DispatchClock.h>
#include <Dispatch/DispatchQueue.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <iterator>

namespace RVCore {

DispatchQueue& DispatchQueue::main()
{
    static DispatchQueue& queue = *new DispatchQueue; // for threads that outlive the statics
    return queue;
}

void DispatchQueue::async(std::function<void()> closure)
{
    asyncAfter(DispatchTime::now(), std::move(closure));
}

void DispatchQueue::asyncAfter(DispatchTime deadline, std::function<void()> closure)
{
    if (!closure)
        raiseInvalidArgument("DispatchQueue.async", "there is no closure");
    requireFinite("DispatchQueue.asyncAfter", "deadline", deadline.seconds());
    std::function<void()> waker;
    {
        const std::lock_guard lock(m_mutex);
        // Read under the lock: the order of adding is the order of the times. What comes late does not overtake.
        const double now = DispatchClock::shared().seconds();
        const double time = std::max(deadline.seconds(), now);
        const auto place = m_closures.emplace(Key(time, m_nextNumber++), std::move(closure)).first;
        if (time == now || place == m_closures.begin())
            waker = m_waker;
    }
    if (waker)
        waker();
}

// The first closure that is due and was there before number `end`; empty when there is none.
std::function<void()> DispatchQueue::takeDue(std::uint64_t end)
{
    const std::lock_guard lock(m_mutex);
    const double now = DispatchClock::shared().seconds();
    for (auto entry = m_closures.begin(); entry != m_closures.end() && entry->first.first <= now; ++entry) {
        if (entry->first.second < end) {
            std::function<void()> closure = std::move(entry->second);
            m_closures.erase(entry);
            return closure;
        }
    }
    return {};
}

int DispatchQueue::runDue()
{
    std::uint64_t end = 0;
    {
        const std::lock_guard lock(m_mutex);
        end = m_nextNumber;
    }
    // Called without the lock, and each closure ends its life before the next one's turn.
    int count = 0;
    while (const std::function<void()> closure = takeDue(end)) {
        ++count;
        closure();
    }
    return count;
}

int DispatchQueue::dueCount() const
{
    const std::lock_guard lock(m_mutex);
    const double now = DispatchClock::shared().seconds();
    return static_cast<int>(std::distance(m_closures.begin(), m_closures.upper_bound(Key(now, m_nextNumber))));
}

std::optional<DispatchTime> DispatchQueue::nextDeadline() const
{
    const std::lock_guard lock(m_mutex);
    if (m_closures.empty())
        return std::nullopt;
    return DispatchTime(m_closures.begin()->first.first);
}

void DispatchQueue::setWaker(const std::function<void()>& waker)
{
    bool isWanted = false;
    {
        const std::lock_guard lock(m_mutex);
        m_waker = waker;
        isWanted = waker && !m_closures.empty();
    }
    if (isWanted)
        waker();
}

void DispatchQueue::clockChanged(double difference)
{
    std::function<void()> waker;
    {
        const std::lock_guard lock(m_mutex);
        std::map<Key, std::function<void()>> moved;
        for (auto& [key, closure] : m_closures)
            moved.emplace(Key(key.first + difference, key.second), std::move(closure));
        m_closures = std::move(moved);
        if (!m_closures.empty())
            waker = m_waker;
    }
    if (waker)
        waker();
}

} // namespace RVCore
