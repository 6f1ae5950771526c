#pragma once

#include <RVCore.h>

#include <QuartzCore/LayerPresentation.h>

#include <algorithm>
#include <vector>

namespace RVCore {

// What an overlay consists of.
struct OverlayParts {
    explicit OverlayParts(const NSView& overlay)
        : group(dynamic_cast<RVGroupView&>(*overlay.subviews().at(0))),
          title(dynamic_cast<NSTextField&>(*group.views().at(0))),
          message(dynamic_cast<NSTextField&>(*group.views().at(1))),
          spinner(dynamic_cast<NSProgressIndicator&>(*group.views().at(2)))
    {
    }

    RVGroupView& group;
    NSTextField& title;
    NSTextField& message;
    NSProgressIndicator& spinner;
};

// The inputs of the background filters, as set and as seen.
inline CGFloat backgroundInput(const NSView& overlay, std::size_t filter, const char* key)
{
    return overlay.backgroundFilters().at(filter)->valueForKey(key).as<double>();
}
inline CGFloat shownBackgroundInput(const NSView& overlay, std::size_t filter, const char* key)
{
    const LayerPresentation shown(*overlay.layer());
    return shown.filterInput(*overlay.backgroundFilters().at(filter), key)
        .value_or(backgroundInput(overlay, filter, key));
}
inline CGFloat saturation(const NSView& overlay)
{
    return backgroundInput(overlay, 0, "inputSaturation");
}
inline CGFloat blurRadius(const NSView& overlay)
{
    return backgroundInput(overlay, 1, "inputRadius");
}
inline CGFloat shownBlurRadius(const NSView& overlay)
{
    return shownBackgroundInput(overlay, 1, "inputRadius");
}
// Of the content.
inline CGFloat shownAlpha(const NSView& overlay)
{
    return LayerPresentation(*OverlayParts(overlay).group.layer()).opacity();
}

// The overlays among the subviews, in order.
inline std::vector<std::shared_ptr<RVProgressBlockingView>> overlaysIn(const NSView& view)
{
    std::vector<std::shared_ptr<RVProgressBlockingView>> overlays;
    for (const auto& subview : view.subviews()) {
        if (auto overlay = std::dynamic_pointer_cast<RVProgressBlockingView>(subview))
            overlays.push_back(std::move(overlay));
    }
    return overlays;
}

} // namespace RVCore
