#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace RVCore {

// Takes one code point off the front. A byte that starts no well-formed UTF-8 sequence is taken alone, as U+FFFD.
std::uint32_t takeCodePoint(std::string_view& text);

// Puts one code point at the end; one that is none (a surrogate, or beyond U+10FFFF) as U+FFFD.
void appendCodePoint(std::string& text, std::uint32_t codePoint);

// The text with every byte that is not UTF-8 replaced by U+FFFD; the same bytes if there is none.
std::string wellFormedText(std::string_view text);

} // namespace RVCore
