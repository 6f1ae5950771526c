#include <CoreImage/FilterWorkers.h>
#include <Foundation/Stop.h>

#include <algorithm>
#include <string>

namespace RVCore {

FilterWorkers::FilterWorkers(int shareCount)
{
    if (shareCount < 1 || shareCount > most)
        fatalError("FilterWorkers have from 1 to " + std::to_string(most) + " shares, got " +
                   std::to_string(shareCount));
    for (int share = 1; share < shareCount; ++share)
        m_threads.emplace_back([this, share] { serve(share); });
}

FilterWorkers::~FilterWorkers()
{
    {
        const std::lock_guard lock(m_lock);
        m_isOver = true;
    }
    m_begin.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

FilterWorkers& FilterWorkers::shared()
{
    // Where the number of cores is not known it is 0.
    static FilterWorkers workers(std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, most));
    return workers;
}

int FilterWorkers::bandCount(int width, int height) const
{
    constexpr int leastPixels = 1 << 16;
    constexpr int leastRows = 32; // of a band
    return width * height >= leastPixels && height >= leastRows * shareCount() ? shareCount() : 1;
}

void FilterWorkers::runShares(Call call, void* context)
{
    const std::unique_lock caller(m_caller, std::try_to_lock);
    if (!caller || m_threads.empty()) {
        for (int share = 0; share < shareCount(); ++share)
            call(context, share);
        return;
    }
    {
        const std::lock_guard lock(m_lock);
        m_call = call;
        m_context = context;
        m_unfinished = static_cast<int>(m_threads.size());
        ++m_round;
    }
    m_begin.notify_all();
    call(context, 0);
    std::unique_lock lock(m_lock);
    m_end.wait(lock, [this] { return m_unfinished == 0; });
}

void FilterWorkers::serve(int share)
{
    unsigned round = 0;
    std::unique_lock lock(m_lock);
    for (;;) {
        m_begin.wait(lock, [&] { return m_isOver || m_round != round; });
        if (m_isOver)
            return;
        round = m_round;
        const Call call = m_call;
        void* const context = m_context;
        lock.unlock();
        call(context, share);
        lock.lock();
        if (--m_unfinished == 0)
            m_end.notify_one();
    }
}

} // namespace RVCore
