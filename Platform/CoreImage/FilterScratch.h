#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace RVCore {

// Working memory that filters share and keep from one use to the next: whoever filters frame after frame holds one,
// and nothing is allocated as long as the pictures do not grow. For one thread at a time.
class FilterScratch {
public:
    // Room for this many words, from a multiple of 64 bytes on; what it holds is not defined. It takes the place of
    // what an earlier call gave.
    std::uint16_t* words(std::size_t count);
    // How much it holds, in words.
    std::size_t capacity() const { return m_capacity; }

private:
    static constexpr std::align_val_t alignment{64};
    struct Free {
        void operator()(std::uint16_t* words) const { ::operator delete(words, alignment); }
    };

    std::unique_ptr<std::uint16_t[], Free> m_words;
    std::size_t m_capacity = 0;
};

} // namespace RVCore
