#include <CoreGraphics/CGColor.h>
#include <Foundation/NSException.h>

namespace RVCore {

std::string ValueBoxTraits<CGColor>::describe(const CGColor& color)
{
    return "rgba(" + numberText(color.red) + ", " + numberText(color.green) + ", " + numberText(color.blue) + ", " +
           numberText(color.alpha) + ")";
}

} // namespace RVCore
