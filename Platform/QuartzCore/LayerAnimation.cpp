#include <QuartzCore/LayerAnimation.h>

namespace RVCore {

std::string_view keyOf(LayerProperty property)
{
    switch (property) {
    case LayerProperty::position:
        return "position";
    case LayerProperty::bounds:
        return "bounds";
    case LayerProperty::affineTransform:
        return "affineTransform";
    case LayerProperty::zPosition:
        return "zPosition";
    case LayerProperty::opacity:
        return "opacity";
    case LayerProperty::backgroundColor:
        return "backgroundColor";
    case LayerProperty::cornerRadius:
        return "cornerRadius";
    case LayerProperty::borderWidth:
        return "borderWidth";
    case LayerProperty::borderColor:
        return "borderColor";
    case LayerProperty::filterInput:
        break;
    }
    return "filterInput";
}

} // namespace RVCore
