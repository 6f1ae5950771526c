#pragma once

#include "LayoutCheck.h"
#include "LayoutInlineList.h"
#include "LayoutSparse.h"

#include <array>
#include <bit>
#include <cstddef>
#include <iterator>
#include <span>
#include <vector>

namespace RVCore::LayoutInternal {

// A term of a linear form: a number of a variable, a column or a row, and its coefficient. Packed, since there may be
// many.
struct [[gnu::packed, gnu::aligned(4)]] Term {
    Index column = 0;
    double coefficient = 0.0;

    friend bool operator==(const Term&, const Term&) = default;
};

// Forms are kept in words of 32 bits. Nearly all terms of layout are one word: the number, and in the lowest bits
// which of the usual coefficients stands with it. The code of any other coefficient has the coefficient itself in the
// next two words.
namespace Packing {

constexpr std::uint32_t codeBits = 3;
constexpr std::uint32_t codeMask = (1u << codeBits) - 1;
constexpr std::uint32_t unusual = codeMask;
constexpr std::array<double, 6> usualCoefficients{1.0, -1.0, 0.5, -0.5, 0.25, -0.25};

inline std::uint32_t word(Index number, std::uint32_t code)
{
    check(number < (1u << (32 - codeBits)), "there are too many variables or constraints");
    return number << codeBits | code;
}
inline std::uint32_t codeOf(double coefficient)
{
    for (std::uint32_t code = 0; code < usualCoefficients.size(); ++code) {
        if (usualCoefficients[code] == coefficient)
            return code;
    }
    return unusual;
}
inline std::uint32_t codeIn(std::uint32_t word)
{
    return word & codeMask;
}
inline Index numberIn(std::uint32_t word)
{
    return word >> codeBits;
}

} // namespace Packing

// The terms of a form that is kept in words.
class PackedTerms {
public:
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Term;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = Term;

        explicit Iterator(const std::uint32_t* word) : m_word(word) {}
        Term operator*() const
        {
            const std::uint32_t code = Packing::codeIn(*m_word);
            return {Packing::numberIn(*m_word),
                    code != Packing::unusual
                        ? Packing::usualCoefficients[code]
                        : std::bit_cast<double>(std::uint64_t(m_word[2]) << 32 | std::uint64_t(m_word[1]))};
        }
        Iterator& operator++()
        {
            m_word += Packing::codeIn(*m_word) == Packing::unusual ? 3 : 1;
            return *this;
        }
        bool operator==(const Iterator& other) const { return m_word == other.m_word; }

    private:
        const std::uint32_t* m_word;
    };

    PackedTerms(std::span<const std::uint32_t> words) : m_words(words) {}
    Iterator begin() const { return Iterator(m_words.data()); }
    Iterator end() const { return Iterator(m_words.data() + m_words.size()); }
    Term front() const { return *begin(); }
    Index size() const
    {
        Index count = 0;
        for (Iterator term = begin(); !(term == end()); ++term)
            ++count;
        return count;
    }

private:
    std::span<const std::uint32_t> m_words;
};

inline void appendPacked(const Term& term, std::vector<std::uint32_t>& words)
{
    const std::uint32_t code = Packing::codeOf(term.coefficient);
    words.push_back(Packing::word(term.column, code));
    if (code != Packing::unusual)
        return;
    const auto bits = std::bit_cast<std::uint64_t>(double(term.coefficient));
    words.push_back(std::uint32_t(bits));
    words.push_back(std::uint32_t(bits >> 32));
}

} // namespace RVCore::LayoutInternal
