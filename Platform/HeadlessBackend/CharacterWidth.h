#pragma once

#include <cstdint>

namespace RVCore {

// How many ordinary advances a code point takes: 0, 1, or 2 for East Asian wide ones; a tab takes 4.
int characterWidth(std::uint32_t codePoint);

} // namespace RVCore
