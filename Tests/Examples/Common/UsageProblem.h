#pragma once

#include <Common/CommandLine.h>

#include <string>

namespace Examples {

// What a UsageError that leaves the closure says; "none" when there is none.
template <class Closure> std::string usageProblem(const Closure& closure)
{
    try {
        closure();
    } catch (const UsageError& error) {
        return error.what();
    }
    return "none";
}

} // namespace Examples
