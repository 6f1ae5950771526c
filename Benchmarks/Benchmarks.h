#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

namespace RVCore {

// Each measures one part and prints its results as lines of a name and a number.
void benchmarkMessaging();
void benchmarkLayoutEngine();
void benchmarkGroupLayout();
void benchmarkLayoutSamples();
void benchmarkApplication();
void benchmarkBlur();
void benchmarkOverlay();

// One line of the result: "message.send_ns 41.7".
inline void report(const std::string& name, double value)
{
    std::printf("%s %.3f\n", name.c_str(), value);
    std::fflush(stdout);
}

// The value below which this part of them lies, from 0 to 1; 0.5 is the median.
inline double percentile(std::vector<double> values, double part)
{
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

// Keeps the compiler from leaving out work whose result nobody looks at.
template <class T> void keep(const T& value)
{
    asm volatile("" : : "g"(&value) : "memory");
}

// Milliseconds of the processor's time, not the clock's, that the work takes once: what other programs do meanwhile
// would favour whoever takes less of it.
template <class Work> double processorMilliseconds(Work&& work)
{
    const std::clock_t start = std::clock();
    work();
    return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// Nanoseconds that one run of `work` takes, the median of `rounds`. `prepare` runs before each, not measured.
template <class Prepare, class Work> double nanoseconds(int rounds, Prepare&& prepare, Work&& work)
{
    using Clock = std::chrono::steady_clock;
    std::vector<double> taken;
    for (int round = 0; round < rounds; round++) {
        prepare();
        const auto start = Clock::now();
        work();
        taken.push_back(std::chrono::duration<double, std::nano>(Clock::now() - start).count());
    }
    return percentile(taken, 0.5);
}

template <class Work> double nanoseconds(int rounds, Work&& work)
{
    return nanoseconds(
        rounds, [] {}, work);
}

} // namespace RVCore
