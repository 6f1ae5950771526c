#pragma once

#include <chrono>
#include <cstdio>

namespace RVCore {

// Each measures one part and prints its results as lines of a name and a number.
void benchmarkMessaging();
void benchmarkLayoutEngine();
void benchmarkGroupLayout();

// One line of the result: "message.send_ns 41.7".
inline void report(const char* name, double value)
{
    std::printf("%s %.3f\n", name, value);
}

// Keeps the compiler from leaving out work whose result nobody looks at.
template <class T> void keep(const T& value)
{
    asm volatile("" : : "g"(&value) : "memory");
}

// Nanoseconds that one run of `work` takes, the best of `rounds`: everything else that the machine does can only
// make a round slower.
template <class Work> double nanoseconds(int rounds, Work&& work)
{
    using Clock = std::chrono::steady_clock;
    double best = 0;
    for (int round = 0; round < rounds; round++) {
        const auto start = Clock::now();
        work();
        const double taken = std::chrono::duration<double, std::nano>(Clock::now() - start).count();
        if (round == 0 || taken < best)
            best = taken;
    }
    return best;
}

} // namespace RVCore
