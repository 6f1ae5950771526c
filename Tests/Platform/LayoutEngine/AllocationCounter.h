#pragma once

#include <cstddef>

namespace RVCore {

// How often this program has asked operator new for memory. Counting replaces that operator, so a program that counts
// is one of its own.
std::size_t allocationCount();

} // namespace RVCore
