#pragma once

#include <cstdio>
#include <cstdlib>

namespace RVCore::LayoutInternal {

// Stops the program on a mistake of the caller. The engine stands below everything that could report better.
inline void check(bool condition, const char* message)
{
    if (condition)
        return;
    std::fprintf(stderr, "LayoutEngine: %s\n", message);
    std::abort();
}

} // namespace RVCore::LayoutInternal
