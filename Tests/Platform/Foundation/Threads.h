#pragma once

#include <latch>
#include <thread>
#include <vector>

namespace RVCore {

// Runs the operation with 0, 1, … on as many threads, which all set off together, and waits for their end.
template <class Operation> void onThreads(int count, const Operation& operation)
{
    std::latch start(count);
    std::vector<std::jthread> threads;
    for (int index = 0; index < count; ++index) {
        threads.emplace_back([&operation, &start, index] {
            start.arrive_and_wait();
            operation(index);
        });
    }
}

} // namespace RVCore
