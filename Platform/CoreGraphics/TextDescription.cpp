#include <CoreGraphics/TextDescription.h>
#include <Foundation/NSException.h>

namespace RVCore {

namespace {

// Quotes and line feeds are escaped, so that a dump stays one line and tells where the text ends.
std::string quoted(const std::string& text)
{
    std::string result = "\"";
    for (const char character : text) {
        if (character == '\n') {
            result += "\\n";
            continue;
        }
        if (character == '"' || character == '\\')
            result += '\\';
        result += character;
    }
    return result + "\"";
}

} // namespace

std::string describe(const TextDescription& text)
{
    std::string result = quoted(text.text) + " ";
    result += (text.font.family.empty() ? "system" : text.font.family) + " " + numberText(text.font.size);
    if (text.font.bold)
        result += " bold";
    if (text.font.monospacedDigits)
        result += " monospaced digits";
    return result + " " + describe(text.color);
}

} // namespace RVCore
