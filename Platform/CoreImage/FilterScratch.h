#pragma once

#include <CoreGraphics/AlignedWords.h>

#include <cstdint>

namespace RVCore {

// Working memory that filters share and keep from one use to the next: whoever filters frame after frame holds one,
// and nothing is allocated as long as the pictures do not grow. For one thread at a time.
class FilterScratch {
public:
    // Room for this many words, from a multiple of 64 bytes on; what it holds is not defined. It takes the place of
    // what an earlier call gave.
    std::uint16_t* words(std::size_t count) { return m_words.reserve(count); }
    // How much it holds, in words.
    std::size_t capacity() const { return m_words.capacity(); }

private:
    AlignedWords<std::uint16_t> m_words;
};

} // namespace RVCore
