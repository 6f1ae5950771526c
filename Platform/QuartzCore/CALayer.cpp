#include <Foundation/NSException.h>

#include <QuartzCore/CALayer.h>

namespace RVCore {

namespace {

void requireLength(std::string_view operation, std::string_view name, CGFloat length)
{
    requireFinite(operation, name, length);
    if (length < 0)
        raiseInvalidArgument(operation, std::string(name) + " must not be negative, got " + numberText(length));
}

void requireColor(std::string_view operation, const std::optional<CGColor>& color)
{
    if (!color)
        return;
    for (const double component : {color->red, color->green, color->blue, color->alpha})
        requireFinite(operation, "color", component);
}

} // namespace

Class& CALayer::staticClass()
{
    static Class& theClass = defineClass<CALayer>("CALayer", NSObject::staticClass(), [](auto& publish) {
        publish.property("position", &CALayer::position, &CALayer::setPosition);
        publish.property("bounds", &CALayer::bounds, &CALayer::setBounds);
        publish.property("anchorPoint", &CALayer::anchorPoint, &CALayer::setAnchorPoint);
        publish.property("affineTransform", &CALayer::affineTransform, &CALayer::setAffineTransform);
        publish.property("zPosition", &CALayer::zPosition, &CALayer::setZPosition);
        publish.property("backgroundColor", &CALayer::backgroundColor, &CALayer::setBackgroundColor);
        publish.property("cornerRadius", &CALayer::cornerRadius, &CALayer::setCornerRadius);
        publish.property("borderWidth", &CALayer::borderWidth, &CALayer::setBorderWidth);
        publish.property("borderColor", &CALayer::borderColor, &CALayer::setBorderColor);
        publish.property("masksToBounds", &CALayer::masksToBounds, &CALayer::setMasksToBounds);
    });
    return theClass;
}

void CALayer::setPosition(CGPoint position)
{
    requireFinite("CALayer.setPosition:", "position", position);
    store(m_position, position);
}

void CALayer::setBounds(const CGRect& bounds)
{
    requireFinite("CALayer.setBounds:", "bounds", bounds);
    store(m_bounds, bounds);
}

void CALayer::setAnchorPoint(CGPoint anchorPoint)
{
    requireFinite("CALayer.setAnchorPoint:", "anchorPoint", anchorPoint);
    store(m_anchorPoint, anchorPoint);
}

void CALayer::setAffineTransform(const CGAffineTransform& transform)
{
    requireFinite("CALayer.setAffineTransform:", "transform", transform);
    store(m_affineTransform, transform);
}

void CALayer::setZPosition(CGFloat zPosition)
{
    requireFinite("CALayer.setZPosition:", "zPosition", zPosition);
    store(m_zPosition, zPosition);
}

void CALayer::setBackgroundColor(std::optional<CGColor> color)
{
    requireColor("CALayer.setBackgroundColor:", color);
    store(m_backgroundColor, color);
}

void CALayer::setCornerRadius(CGFloat radius)
{
    requireLength("CALayer.setCornerRadius:", "radius", radius);
    store(m_cornerRadius, radius);
}

void CALayer::setBorderWidth(CGFloat width)
{
    requireLength("CALayer.setBorderWidth:", "width", width);
    store(m_borderWidth, width);
}

void CALayer::setBorderColor(std::optional<CGColor> color)
{
    requireColor("CALayer.setBorderColor:", color);
    store(m_borderColor, color);
}

void CALayer::setMasksToBounds(bool masks)
{
    store(m_masksToBounds, masks);
}

} // namespace RVCore
