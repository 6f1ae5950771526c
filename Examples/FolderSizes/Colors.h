#pragma once

#include <AppKit/NSColor.h>

#include <memory>

namespace FolderSizes {

// Colours that can be read and told apart on light ground as well as on dark, so that nothing has to be done when the
// desktop changes from one to the other. Texts of first importance keep the desktop's own colour.

inline std::shared_ptr<RVCore::NSColor> secondaryTextColor()
{
    return RVCore::makeColor(0.48, 0.49, 0.52);
}
inline std::shared_ptr<RVCore::NSColor> lineColor()
{
    return RVCore::makeColor(0.70, 0.71, 0.73);
}
// Of every other row, and of the part of a bar that is not filled.
inline std::shared_ptr<RVCore::NSColor> stripeColor()
{
    return RVCore::makeColor(0.5, 0.52, 0.56, 0.1);
}
inline std::shared_ptr<RVCore::NSColor> trackColor()
{
    return RVCore::makeColor(0.5, 0.52, 0.56, 0.2);
}
inline std::shared_ptr<RVCore::NSColor> barColor()
{
    return RVCore::makeColor(0.20, 0.47, 0.90);
}

} // namespace FolderSizes
