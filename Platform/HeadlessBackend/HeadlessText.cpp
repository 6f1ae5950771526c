#include <Foundation/NSException.h>
#include <Foundation/Utf8.h>
#include <HeadlessBackend/CharacterWidth.h>
#include <HeadlessBackend/HeadlessText.h>

#include <algorithm>
#include <cmath>
#include <span>

namespace RVCore {

namespace {

struct Character {
    std::string_view bytes;
    int width = 0; // in ordinary advances
    bool isBlank = false;
};

using Characters = std::span<const Character>;

std::vector<Character> charactersOf(std::string_view text)
{
    std::vector<Character> characters;
    characters.reserve(text.size());
    while (!text.empty()) {
        const std::string_view before = text;
        const std::uint32_t codePoint = takeCodePoint(text);
        characters.push_back({before.substr(0, before.size() - text.size()), characterWidth(codePoint),
                              codePoint == ' ' || codePoint == '\t' || codePoint == 0x200B});
    }
    return characters;
}

int widthOf(Characters line)
{
    int width = 0;
    for (const Character& character : line)
        width += character.width;
    return width;
}

// The room of one line. Whole numbers are multiplied before the one division, so that no rounding error ever makes a
// width a little larger than it is, and what was measured fits into its own measure.
struct Room {
    const FontDescription& font;
    CGFloat maximum; // 0 or less, or not a number: without limit

    CGFloat points(int width) const { return font.size * (width * (font.bold ? 6 : 5)) / 10; }
    bool fits(int width) const { return !(maximum > 0) || points(width) <= maximum; }
};

Characters withoutTrailingBlanks(Characters line)
{
    while (!line.empty() && line.back().isBlank)
        line = line.first(line.size() - 1);
    return line;
}

// How many characters the first line of a wrapping paragraph takes, the blanks at its end included: those hang over
// the edge.
std::size_t firstLineCount(Characters paragraph, const Room& room, NSLineBreakMode mode)
{
    int width = 0;
    std::size_t lineBreak = 0; // the last place where a line may end; none at 0
    for (std::size_t i = 0; i < paragraph.size(); ++i) {
        const Character& character = paragraph[i];
        const bool overflows = character.width > 0 && width > 0 && !room.fits(width + character.width);
        if (overflows && !character.isBlank)
            return mode == NSLineBreakMode::charWrapping || lineBreak == 0 ? i : lineBreak;
        width += character.width;
        if (character.isBlank || (character.width == 0 && lineBreak == i))
            lineBreak = i + 1;
    }
    return paragraph.size();
}

// The bytes of neighbouring characters are neighbours in the text.
std::string textOf(Characters line)
{
    std::string text;
    for (const Character& character : line)
        text += character.bytes;
    return text;
}

struct Line {
    std::string text;
    int width = 0; // in ordinary advances
};

// The last line that is left, with an ellipsis instead of what follows it.
Line elided(Characters line, const Room& room)
{
    constexpr int ellipsis = 1;
    std::size_t count = 0;
    for (int width = ellipsis; count < line.size() && room.fits(width + line[count].width); ++count)
        width += line[count].width;
    return {textOf(line.first(count)) + "…", widthOf(line.first(count)) + ellipsis};
}

std::vector<Line> linesOf(const TextDescription& text, const Room& room)
{
    const auto maximum = static_cast<std::size_t>(std::max(text.maximumNumberOfLines, 0));
    std::vector<Line> lines;
    std::string_view rest = text.text;
    for (bool isLastParagraph = false; !isLastParagraph;) {
        const std::size_t feed = rest.find('\n');
        isLastParagraph = feed == std::string_view::npos;
        const std::vector<Character> characters = charactersOf(rest.substr(0, feed));
        Characters paragraph = characters;
        do {
            const std::size_t count =
                text.wraps() ? firstLineCount(paragraph, room, text.lineBreakMode) : paragraph.size();
            const bool isLast = isLastParagraph && count == paragraph.size();
            if (maximum > 0 && lines.size() + 1 == maximum && !isLast) {
                lines.push_back(elided(paragraph, room));
                return lines;
            }
            const Characters line = paragraph.first(count);
            const Characters shown = text.wraps() ? withoutTrailingBlanks(line) : line;
            lines.push_back({textOf(shown), widthOf(shown)});
            paragraph = paragraph.subspan(count);
        } while (!paragraph.empty());
        if (!isLastParagraph)
            rest.remove_prefix(feed + 1);
    }
    return lines;
}

} // namespace

std::vector<std::string> headlessLines(const TextDescription& text, CGFloat maximumWidth)
{
    std::vector<std::string> result;
    for (Line& line : linesOf(text, {text.font, maximumWidth}))
        result.push_back(std::move(line.text));
    return result;
}

TextMetrics headlessTextMetrics(const TextDescription& text, CGFloat maximumWidth)
{
    requireFinite("Backend.measureText", "font.size", text.font.size);
    if (text.font.size <= 0)
        raiseInvalidArgument("Backend.measureText", "font.size must be above 0, got " + numberText(text.font.size));
    const Room room{text.font, maximumWidth};
    const std::vector<Line> lines = linesOf(text, room);
    int widest = 0;
    for (const Line& line : lines)
        widest = std::max(widest, line.width);
    CGFloat width = room.points(widest);
    if (maximumWidth > 0)
        width = std::min(width, maximumWidth);
    const CGFloat lineHeight = std::ceil(1.25 * text.font.size);
    return {{std::ceil(width), lineHeight * static_cast<CGFloat>(lines.size())}, std::ceil(text.font.size)};
}

} // namespace RVCore
