#pragma once

#include <Foundation/Value.h>

namespace RVCore {

// A plain value that travels in a box.
struct SamplePair {
    int left = 0;
    int right = 0;
    bool operator==(const SamplePair&) const = default;
};

template <> struct ValueBoxTraits<SamplePair> {
    static constexpr std::string_view name = "SamplePair";
    static std::string describe(const SamplePair& pair)
    {
        return std::to_string(pair.left) + "/" + std::to_string(pair.right);
    }
};

// Equal content, but another type.
struct OtherPair {
    int left = 0;
    int right = 0;
    bool operator==(const OtherPair&) const = default;
};

template <> struct ValueBoxTraits<OtherPair> {
    static constexpr std::string_view name = "OtherPair";
    static std::string describe(const OtherPair&) { return "other"; }
};

} // namespace RVCore
