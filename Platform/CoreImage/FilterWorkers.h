#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <vector>

namespace RVCore {

// Threads that wait to do a share of the work on a large picture each, so that it takes all the cores there are.
//
//     workers.runBands(width, height, [&](int first, int end) { … the rows from first to before end … });
class FilterWorkers {
public:
    static constexpr int most = 4;

    // This many shares, from 1 to `most`; any other number stops the program. The first is the caller's, the others
    // have a thread each.
    explicit FilterWorkers(int shareCount);
    ~FilterWorkers();
    FilterWorkers(const FilterWorkers&) = delete;
    FilterWorkers& operator=(const FilterWorkers&) = delete;

    // A share for every core of the machine, at most `most`. Made when first asked for, gone at the program's exit.
    static FilterWorkers& shared();

    int shareCount() const { return static_cast<int>(m_threads.size()) + 1; }
    // Calls the work with every share from 0 on, and returns when all are done. The work must not raise nor call this
    // again, and shares must not wait for each other: while another thread has its work done here, the caller does
    // all of its own. It allocates nothing.
    template <class Work> void run(Work&& work)
    {
        runShares([](void* context, int share) { (*static_cast<std::remove_reference_t<Work>*>(context))(share); },
                  const_cast<void*>(static_cast<const void*>(std::addressof(work))));
    }

    // In how many bands of rows a picture of these sides is done soonest: one for each share where that outweighs the
    // hundredths of a millisecond that threads cost, otherwise one.
    int bandCount(int width, int height) const;
    // Calls the work with the first row of every band and the one behind its last, as `run` does.
    template <class Work> void runBands(int width, int height, Work&& work)
    {
        const int count = bandCount(width, height);
        if (count == 1)
            work(0, height);
        else
            run([&](int share) { work(height * share / count, height * (share + 1) / count); });
    }

private:
    using Call = void (*)(void* context, int share);

    void runShares(Call call, void* context);
    void serve(int share);

    std::vector<std::thread> m_threads;
    std::mutex m_caller; // held by whoever has its work done
    std::mutex m_lock;   // of all that follows
    std::condition_variable m_begin;
    std::condition_variable m_end;
    Call m_call = nullptr;
    void* m_context = nullptr;
    unsigned m_round = 0; // how many works there have been
    int m_unfinished = 0; // threads that have not done their share of the present one
    bool m_isOver = false;
};

} // namespace RVCore
