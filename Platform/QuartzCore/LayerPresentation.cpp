#include <QuartzCore/LayerPresentation.h>

#include <algorithm>

namespace RVCore {

template <class T> T LayerPresentation::valueOf(LayerProperty property, const T& model) const
{
    const LayerAnimation* animation = m_layer.animationOf(property, m_time);
    return animation ? std::get<T>(animation->valueAt(m_time)) : model;
}

CGFloat LayerPresentation::length(LayerProperty property, CGFloat model) const
{
    return std::max(valueOf(property, model), 0.0);
}

std::optional<CGColor> LayerPresentation::color(LayerProperty property, const std::optional<CGColor>& model) const
{
    const LayerAnimation* animation = m_layer.animationOf(property, m_time);
    if (!animation)
        return model;
    auto color = std::get<CGColor>(animation->valueAt(m_time));
    for (double* component : {&color.red, &color.green, &color.blue, &color.alpha})
        *component = std::clamp(*component, 0.0, 1.0);
    return color;
}

CGPoint LayerPresentation::position() const
{
    return valueOf(LayerProperty::position, m_layer.position());
}

CGRect LayerPresentation::bounds() const
{
    const LayerAnimation* animation = m_layer.animationOf(LayerProperty::bounds, m_time);
    if (!animation)
        return m_layer.bounds();
    auto bounds = std::get<CGRect>(animation->valueAt(m_time));
    bounds.size = {std::max(bounds.size.width, 0.0), std::max(bounds.size.height, 0.0)};
    return bounds;
}

CGAffineTransform LayerPresentation::affineTransform() const
{
    return valueOf(LayerProperty::affineTransform, m_layer.affineTransform());
}

CGFloat LayerPresentation::zPosition() const
{
    return valueOf(LayerProperty::zPosition, m_layer.zPosition());
}

CGFloat LayerPresentation::opacity() const
{
    return std::clamp(valueOf(LayerProperty::opacity, m_layer.opacity()), 0.0, 1.0);
}

std::optional<CGColor> LayerPresentation::backgroundColor() const
{
    return color(LayerProperty::backgroundColor, m_layer.backgroundColor());
}

CGFloat LayerPresentation::cornerRadius() const
{
    return length(LayerProperty::cornerRadius, m_layer.cornerRadius());
}

CGFloat LayerPresentation::borderWidth() const
{
    return length(LayerProperty::borderWidth, m_layer.borderWidth());
}

std::optional<CGColor> LayerPresentation::borderColor() const
{
    return color(LayerProperty::borderColor, m_layer.borderColor());
}

std::optional<double> LayerPresentation::filterInput(const CIFilter& filter, std::string_view input) const
{
    const LayerAnimation* animation = m_layer.animationOf(LayerProperty::filterInput, m_time, &filter, input);
    return animation ? std::optional(std::get<CGFloat>(animation->valueAt(m_time))) : std::nullopt;
}

} // namespace RVCore
