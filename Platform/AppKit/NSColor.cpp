#include <AppKit/NSColor.h>
#include <CoreGraphics/CGGeometry.h>
#include <Foundation/NSException.h>

namespace RVCore {

Class& NSColor::staticClass()
{
    static Class& theClass = defineClass<NSColor>("NSColor", NSObject::staticClass(), [](auto& publish) {
        publish.readOnlyProperty("CGColor", [](NSColor& self) { return self.cgColor(); });
        publish.classMethod("colorWithCGColor:",
                            [](const Class&, const CGColor& color) { return colorWithCGColor(color); });
        publish.classMethod("whiteColor", [](const Class&) { return whiteColor(); });
        publish.classMethod("grayColor", [](const Class&) { return grayColor(); });
        publish.classMethod("darkGrayColor", [](const Class&) { return darkGrayColor(); });
        publish.classMethod("blackColor", [](const Class&) { return blackColor(); });
        publish.classMethod("clearColor", [](const Class&) { return clearColor(); });
    });
    return theClass;
}

void NSColor::init(const CGColor& color)
{
    for (const double component : {color.red, color.green, color.blue, color.alpha}) {
        if (!(component >= 0 && component <= 1))
            raiseInvalidArgument("NSColor.init", "components must lie between 0 and 1, got " + numberText(component));
    }
    m_color = color;
}

bool NSColor::isEqual(const NSObject& other) const
{
    const auto* color = dynamic_cast<const NSColor*>(&other);
    return color && color->m_color == m_color;
}

std::size_t NSColor::hash() const
{
    const std::hash<double> hash;
    return ((hash(m_color.red) * 31 + hash(m_color.green)) * 31 + hash(m_color.blue)) * 31 + hash(m_color.alpha);
}

std::string NSColor::description() const
{
    return "<NSColor: " + describe(m_color) + ">";
}

std::shared_ptr<NSColor> makeColor(double red, double green, double blue, double alpha)
{
    return make<NSColor>(CGColor{red, green, blue, alpha});
}

std::shared_ptr<NSColor> colorWithCGColor(const CGColor& color)
{
    return make<NSColor>(color);
}

std::shared_ptr<NSColor> whiteColor()
{
    return makeColor(1, 1, 1);
}

std::shared_ptr<NSColor> grayColor()
{
    return makeColor(0.5, 0.5, 0.5);
}

std::shared_ptr<NSColor> darkGrayColor()
{
    constexpr double third = 1.0 / 3.0;
    return makeColor(third, third, third);
}

std::shared_ptr<NSColor> blackColor()
{
    return makeColor(0, 0, 0);
}

std::shared_ptr<NSColor> clearColor()
{
    return makeColor(0, 0, 0, 0);
}

} // namespace RVCore
