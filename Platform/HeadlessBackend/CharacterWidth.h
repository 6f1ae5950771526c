#pragma once

#include <cstdint>
#include <string_view>

namespace RVCore {

// How many ordinary advances a code point takes: 0, 1, or 2 for East Asian wide ones; a tab takes 4.
int characterWidth(std::uint32_t codePoint);

// Takes one code point off the front. A byte that starts no well-formed UTF-8 sequence is taken alone, as U+FFFD.
std::uint32_t takeCodePoint(std::string_view& text);

} // namespace RVCore
