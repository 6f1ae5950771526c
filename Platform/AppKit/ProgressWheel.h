#pragma once

#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGGeometry.h>

#include <array>
#include <memory>

namespace RVCore {

class CALayer;

// What a wheel looks like at one moment.
struct ProgressWheelLook {
    static constexpr int spokeCount = 12;

    CGSize room;     // of the view; the wheel stands in its middle
    CGFloat side{0}; // of the square that plate and spokes fill where there is room for it, in points
    bool hasPlate = false;
    bool isVisible = true;
    CGColor color;                           // of spokes and plate, without their opacities
    std::array<double, spokeCount> alphas{}; // of the spokes, clockwise from the top

    bool operator==(const ProgressWheelLook&) const = default;
};

// A wheel of spokes, in layers.
//
//   view's layer
//   ├── plate         the first sublayer, so that who hides that one takes the plate away and not the wheel; it is
//   │                 there without a bezel, too, and whether it is hidden is up to others
//   └── spokes
//       └── 12 bars   clockwise from the top
class ProgressWheel {
public:
    ProgressWheel();

    // Puts the layers in below whatever is in the layer.
    void addTo(CALayer& layer);
    void remove();
    // At once, whatever motion is in force.
    void show(const ProgressWheelLook& look);

private:
    void place(const ProgressWheelLook& look);
    void paint(const ProgressWheelLook& look);

    std::shared_ptr<CALayer> m_plate;
    std::shared_ptr<CALayer> m_spokes;
    ProgressWheelLook m_shown;
};

} // namespace RVCore
