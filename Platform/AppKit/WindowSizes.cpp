#include <AppKit/WindowSizes.h>
#include <Backend/WindowPlacement.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

CGFloat desktopSide(CGFloat side)
{
    return std::clamp(std::ceil(side), 1.0, largestWindowSide);
}

CGSize desktopSize(CGSize size)
{
    return {desktopSide(size.width), desktopSide(size.height)};
}

CGSize requiredDesktopSize(std::string_view operation, CGSize size)
{
    requireFinite(operation, "size", size);
    if (size.width < 1 || size.height < 1)
        raiseInvalidArgument(operation, "a window's content is at least 1 × 1, got " + describe(size));
    return desktopSize(size);
}

void requireWindowOrigin(std::string_view operation, std::string_view name, CGPoint origin)
{
    constexpr CGFloat furthest = 1e6;
    requireFinite(operation, name, origin);
    if (std::abs(origin.x) > furthest || std::abs(origin.y) > furthest)
        raiseInvalidArgument(operation, std::string(name) + " must be within 1000000 points of the screen's, got " +
                                            describe(origin));
}

void requireWindowRect(std::string_view operation, std::string_view name, const CGRect& rect)
{
    requireWindowOrigin(operation, std::string(name) + ".origin", rect.origin);
    requireNotNegative(operation, std::string(name) + ".size", rect.size);
}

} // namespace RVCore
