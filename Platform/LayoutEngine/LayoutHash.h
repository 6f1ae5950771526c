#pragma once

#include <cstdint>

namespace RVCore::LayoutInternal {

// A hash that takes one more value in. (The finaliser of SplitMix64; Steele, Lea, Flood, OOPSLA 2014.)
inline std::uint64_t mixed(std::uint64_t hash, std::uint64_t value)
{
    hash = (hash ^ value) + 0x9e3779b97f4a7c15u;
    hash = (hash ^ (hash >> 30)) * 0xbf58476d1ce4e5b9u;
    hash = (hash ^ (hash >> 27)) * 0x94d049bb133111ebu;
    return hash ^ (hash >> 31);
}

} // namespace RVCore::LayoutInternal
