#include <CoreGraphics/TextDescription.h>

#include <Foundation/NSException.h>

namespace RVCore {

std::string describe(const TextDescription& text)
{
    std::string result = "\"" + text.text + "\" ";
    result += (text.font.family.empty() ? "system" : text.font.family) + " " + numberText(text.font.size);
    if (text.font.bold)
        result += " bold";
    return result + " " + describe(text.color);
}

} // namespace RVCore
