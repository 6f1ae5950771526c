#include <Foundation/Utf8.h>

namespace RVCore {

namespace {

constexpr std::uint32_t replacement = 0xFFFD;

bool isCodePoint(std::uint32_t value)
{
    return value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

char byteOf(std::uint32_t value)
{
    return static_cast<char>(static_cast<std::uint8_t>(value));
}

} // namespace

std::uint32_t takeCodePoint(std::string_view& text)
{
    const auto byte = [&](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
    const std::uint8_t lead = byte(0);
    std::size_t length = 1;
    if (lead >= 0xF0 && lead <= 0xF4)
        length = 4;
    else if (lead >= 0xE0 && lead < 0xF0)
        length = 3;
    else if (lead >= 0xC2 && lead < 0xE0)
        length = 2;

    std::uint32_t codePoint = length == 1 ? (lead < 0x80 ? lead : replacement) : lead & (0xFFU >> (length + 1));
    bool isWellFormed = length <= text.size();
    for (std::size_t i = 1; i < length && isWellFormed; ++i) {
        isWellFormed = (byte(i) & 0xC0U) == 0x80;
        codePoint = codePoint << 6 | (byte(i) & 0x3FU);
    }
    // Longer than needed, half of a surrogate pair, or beyond the last code point.
    constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    isWellFormed = isWellFormed && codePoint >= smallest[length] && isCodePoint(codePoint);
    if (!isWellFormed) {
        codePoint = replacement;
        length = 1;
    }
    text.remove_prefix(length);
    return codePoint;
}

void appendCodePoint(std::string& text, std::uint32_t codePoint)
{
    if (!isCodePoint(codePoint))
        codePoint = replacement;
    if (codePoint < 0x80) {
        text += byteOf(codePoint);
        return;
    }
    const int following = codePoint < 0x800 ? 1 : codePoint < 0x10000 ? 2 : 3;
    constexpr std::uint32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
    text += byteOf(leads[following] | codePoint >> (6 * following));
    for (int i = following - 1; i >= 0; --i)
        text += byteOf(0x80U | (codePoint >> (6 * i) & 0x3FU));
}

std::string wellFormedText(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty())
        appendCodePoint(result, takeCodePoint(text));
    return result;
}

} // namespace RVCore
