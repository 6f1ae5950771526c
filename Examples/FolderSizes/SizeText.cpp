#include <FolderSizes/SizeText.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <vector>

namespace FolderSizes {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

// The number of bytes of the well-formed UTF-8 sequence at the start of the text, 0 when there is none. Table 3-7 of
// the Unicode Standard, version 15.
std::size_t sequenceLength(std::string_view text)
{
    const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const auto isIn = [&](std::size_t index, unsigned low, unsigned high) {
        return index < text.size() && byte(index) >= low && byte(index) <= high;
    };
    const unsigned first = byte(0);
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first <= 0xDF)
        return isIn(1, 0x80, 0xBF) ? 2 : 0;
    if (first >= 0xE0 && first <= 0xEF) {
        const unsigned low = first == 0xE0 ? 0xA0 : 0x80;
        const unsigned high = first == 0xED ? 0x9F : 0xBF;
        return isIn(1, low, high) && isIn(2, 0x80, 0xBF) ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const unsigned low = first == 0xF0 ? 0x90 : 0x80;
        const unsigned high = first == 0xF4 ? 0x8F : 0xBF;
        return isIn(1, low, high) && isIn(2, 0x80, 0xBF) && isIn(3, 0x80, 0xBF) ? 4 : 0;
    }
    return 0;
}

} // namespace

std::string sizeText(std::uint64_t bytes)
{
    if (bytes < 1000)
        return countText(static_cast<std::size_t>(bytes), "byte", "bytes");
    constexpr std::array units{"kB", "MB", "GB", "TB", "PB", "EB"};
    double amount = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    while (amount >= 999.95 && unit + 1 < units.size()) { // what would be printed as 1000.0
        amount /= 1000;
        ++unit;
    }
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.1f %s", amount, units[unit]);
    return text.data();
}

std::string shareText(std::uint64_t part, std::uint64_t whole)
{
    if (part == 0 || whole == 0)
        return "0 %";
    const double percent = 100 * static_cast<double>(part) / static_cast<double>(whole);
    return percent < 1 ? "< 1 %" : std::to_string(std::lround(percent)) + " %";
}

std::string countText(std::size_t count, const std::string& singular, const std::string& plural)
{
    return std::to_string(count) + " " + (count == 1 ? singular : plural);
}

std::string kindText(const Entry& entry)
{
    if (!entry.isComplete && entry.kind == EntryKind::folder)
        return entry.size > 0 ? "Folder, partly read" : "Folder, not read";
    if (!entry.isComplete)
        return "Unreadable";
    switch (entry.kind) {
    case EntryKind::folder:
        return "Folder";
    case EntryKind::file:
        return "File";
    case EntryKind::link:
        return "Link";
    case EntryKind::special:
        return "Device";
    }
    return {};
}

std::string displayName(const std::string& name)
{
    std::string result;
    for (std::string_view rest = name; !rest.empty();) {
        const std::size_t length = sequenceLength(rest);
        const auto first = static_cast<unsigned char>(rest[0]);
        const bool isControl = length == 1 && (first < 0x20 || first == 0x7F);
        result += length == 0 || isControl ? replacementCharacter : rest.substr(0, length);
        rest.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

std::string shortenedInMiddle(const std::string& text, std::size_t characterLimit)
{
    std::vector<std::size_t> starts; // of the characters, as bytes
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool continues = (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
        if (!continues)
            starts.push_back(i);
    }
    if (starts.size() <= characterLimit)
        return text;
    const std::size_t kept = characterLimit - 1;
    const std::size_t keptAtEnd = kept / 2;
    return text.substr(0, starts[kept - keptAtEnd]) + "…" + text.substr(starts[starts.size() - keptAtEnd]);
}

} // namespace FolderSizes
