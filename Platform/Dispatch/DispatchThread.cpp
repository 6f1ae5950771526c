#include <Dispatch/DispatchClock.h>
#include <Dispatch/DispatchThread.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace RVCore {

struct DispatchThread::Registry {
    std::mutex mutex;
    std::condition_variable changed; // a thread's state, or the clock
    std::vector<DispatchThread*> threads;

    // Every thread has ended or waits for its turn.
    bool isSettled() const
    {
        return std::ranges::all_of(threads, [](const DispatchThread* thread) {
            return thread->m_state == State::ended || (thread->m_state == State::waiting && !thread->m_isCancelled);
        });
    }
    void settle(std::unique_lock<std::mutex>& lock)
    {
        changed.wait(lock, [this] { return isSettled(); });
    }
    // Of those that wait for the same moment the one that was made first; null when none waits.
    DispatchThread* next() const
    {
        DispatchThread* first = nullptr;
        for (DispatchThread* thread : threads) {
            if (thread->m_state == State::waiting && (!first || thread->m_deadline < first->m_deadline))
                first = thread;
        }
        return first;
    }
};

DispatchThread::Registry& DispatchThread::registry()
{
    static Registry& registry = *new Registry; // for threads that outlive the statics
    return registry;
}

DispatchThread::DispatchThread(std::function<void(DispatchThread&)> work) : m_work(std::move(work))
{
    if (!m_work)
        raiseInvalidArgument("DispatchThread", "there is no work");
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    all.threads.push_back(this);
    try {
        m_thread = std::thread([this] { run(); });
    } catch (...) {
        all.threads.pop_back();
        throw;
    }
}

DispatchThread::~DispatchThread()
{
    cancel();
    m_thread.join();
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    std::erase(all.threads, this);
}

void DispatchThread::run()
{
    Registry& all = registry();
    {
        const std::lock_guard lock(all.mutex); // the constructor has stored m_thread when it lets go
    }
    m_work(*this);
    const std::lock_guard lock(all.mutex);
    m_state = State::ended;
    all.changed.notify_all();
}

// Where the clock stands, a thread waits until it is its turn, so that two never have theirs at the same time.
bool DispatchThread::hasCome(DispatchTime time) const
{
    const DispatchClock& clock = DispatchClock::shared();
    return m_state == State::released || (clock.isRunning() && clock.seconds() >= time.seconds());
}

std::optional<DispatchTime> DispatchThread::waitUntil(DispatchTime time)
{
    constexpr double longest = 3600; // in seconds; what a condition variable can count has an end
    Registry& all = registry();
    std::unique_lock lock(all.mutex);
    if (DispatchTime::now() < time) {
        m_state = State::waiting;
        m_deadline = time;
        all.changed.notify_all();
        while (!m_isCancelled && !hasCome(m_deadline)) {
            if (DispatchClock::shared().isRunning())
                all.changed.wait_for(
                    lock, std::chrono::duration<double>(std::min(m_deadline - DispatchTime::now(), longest)));
            else
                all.changed.wait(lock);
        }
        m_state = State::working;
    }
    return m_isCancelled ? std::nullopt : std::optional(DispatchTime::now());
}

void DispatchThread::cancel()
{
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    m_isCancelled = true;
    all.changed.notify_all();
}

void DispatchThread::changeClock(const std::function<double()>& change)
{
    Registry& all = registry();
    std::unique_lock lock(all.mutex);
    all.settle(lock);
    const double difference = change();
    for (DispatchThread* thread : all.threads)
        thread->m_deadline = thread->m_deadline + difference;
    all.changed.notify_all();
}

std::optional<DispatchTime> DispatchThread::nextTurn()
{
    Registry& all = registry();
    std::unique_lock lock(all.mutex);
    all.settle(lock);
    const DispatchThread* next = all.next();
    return next ? std::optional(next->m_deadline) : std::nullopt;
}

void DispatchThread::runTurn()
{
    Registry& all = registry();
    std::unique_lock lock(all.mutex);
    all.settle(lock);
    if (DispatchThread* next = all.next()) {
        next->m_state = State::released;
        all.changed.notify_all();
        all.settle(lock);
    }
}

} // namespace RVCore
