#pragma once

#include <Dispatch/DispatchTime.h>

#include <QuartzCore/CALayer.h>
#include <QuartzCore/LayerAnimation.h>

namespace RVCore {

// A layer as it is seen at one moment: what stands still has its model value, what is on its way is where its
// animation has it then. Reading allocates nothing, so a compositor can ask for each frame:
//
//     const LayerPresentation shown(*layer, frameTime);
//     canvas.beginTransparencyLayer(shown.opacity());
//     for (const auto& filter : layer->backgroundFilters())
//         radius = shown.filterInput(*filter, "inputRadius").value_or(radiusOf(*filter));
//
// Curves that go beyond their ends do not take values out of their range: opacity and colours stay between 0 and 1,
// lengths at 0 or above. For use while the layer lives.
class LayerPresentation {
public:
    explicit LayerPresentation(const CALayer& layer, DispatchTime time = DispatchTime::now())
        : m_layer(layer), m_time(time)
    {
    }

    CGPoint position() const;
    CGRect bounds() const;
    CGAffineTransform affineTransform() const;
    CGFloat zPosition() const;
    CGFloat opacity() const;
    std::optional<CGColor> backgroundColor() const;
    CGFloat cornerRadius() const;
    CGFloat borderWidth() const;
    std::optional<CGColor> borderColor() const;
    // A number of one of the layer's filters while it is on its way; nothing while it stands, that is when the filter
    // itself has the value.
    std::optional<double> filterInput(const CIFilter& filter, std::string_view input) const;

private:
    template <class T> T valueOf(LayerProperty property, const T& model) const;
    CGFloat length(LayerProperty property, CGFloat model) const;
    std::optional<CGColor> color(LayerProperty property, const std::optional<CGColor>& model) const;

    const CALayer& m_layer;
    DispatchTime m_time;
};

} // namespace RVCore
