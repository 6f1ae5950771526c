#pragma once

#include <AppKit/NSApplication.h>
#include <AppKit/NSColor.h>
#include <Backend/Backend.h>

#include <memory>

namespace FolderSizes {

// Colours that can be told apart on light ground as well as on dark. Texts of first importance keep the desktop's
// own.

// For the ground that the desktop has when it is asked for.
inline std::shared_ptr<RVCore::NSColor> secondaryTextColor()
{
    const bool isDark = RVCore::NSApplication::shared().effectiveAppearance() == RVCore::Appearance::dark;
    return isDark ? RVCore::makeColor(0.68, 0.69, 0.72) : RVCore::makeColor(0.36, 0.38, 0.42);
}
inline std::shared_ptr<RVCore::NSColor> problemColor()
{
    const bool isDark = RVCore::NSApplication::shared().effectiveAppearance() == RVCore::Appearance::dark;
    return isDark ? RVCore::makeColor(1, 0.56, 0.5) : RVCore::makeColor(0.72, 0.13, 0.1);
}
inline std::shared_ptr<RVCore::NSColor> windowColor()
{
    const RVCore::CGColor color =
        RVCore::Backend::shared().controlLook().windowColor(RVCore::NSApplication::shared().effectiveAppearance());
    return RVCore::colorWithCGColor(color);
}
// Of what is chosen, or has the keyboard focus.
inline std::shared_ptr<RVCore::NSColor> accentColor(double alpha = 1)
{
    const RVCore::CGColor color =
        RVCore::Backend::shared().controlLook().accentColor(RVCore::NSApplication::shared().effectiveAppearance());
    return RVCore::makeColor(color.red, color.green, color.blue, alpha);
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
// Of the sign that says which part of a list is seen.
inline std::shared_ptr<RVCore::NSColor> scrollKnobColor()
{
    return RVCore::makeColor(0.5, 0.52, 0.56, 0.6);
}
// Behind what went wrong.
inline std::shared_ptr<RVCore::NSColor> problemGroundColor()
{
    return RVCore::makeColor(0.85, 0.2, 0.16, 0.12);
}

} // namespace FolderSizes
