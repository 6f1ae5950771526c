#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace RVCore {

// Memory for words that starts at a multiple of 64 bytes, as wide as a cache line and as any vector. It keeps what it
// has, so whoever asks again and again for no more than before allocates nothing. A moved-from one holds nothing.
template <class Word> class AlignedWords {
public:
    static constexpr std::size_t alignment = 64; // in bytes

    AlignedWords() = default;
    AlignedWords(AlignedWords&& other) noexcept
        : m_words(std::move(other.m_words)), m_capacity(std::exchange(other.m_capacity, 0))
    {
    }
    AlignedWords& operator=(AlignedWords&& other) noexcept
    {
        m_words = std::move(other.m_words);
        m_capacity = std::exchange(other.m_capacity, 0);
        return *this;
    }

    // Room for this many; what it holds is not defined unless there was enough already, and what was handed out
    // before is no more then.
    Word* reserve(std::size_t count)
    {
        if (count > m_capacity) {
            m_words.reset(); // first: both at once may be more than there is
            m_capacity = 0;
            m_words.reset(static_cast<Word*>(::operator new(count * sizeof(Word), std::align_val_t{alignment})));
            m_capacity = count;
        }
        return m_words.get();
    }
    // Null before room is asked for.
    Word* data() const { return m_words.get(); }
    std::size_t capacity() const { return m_capacity; } // in words

private:
    struct Free {
        void operator()(Word* words) const { ::operator delete(words, std::align_val_t{alignment}); }
    };

    std::unique_ptr<Word[], Free> m_words;
    std::size_t m_capacity = 0;
};

} // namespace RVCore
