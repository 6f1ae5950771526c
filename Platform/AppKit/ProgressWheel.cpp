#include <AppKit/ProgressWheel.h>

#include <QuartzCore/CALayer.h>
#include <QuartzCore/LayerMotion.h>

#include <algorithm>
#include <numbers>

namespace RVCore {

namespace {

constexpr double plateAlpha = 0.1;
constexpr double spokesShare = 0.7; // of the plate's side

} // namespace

ProgressWheel::ProgressWheel() : m_plate(make<CALayer>()), m_spokes(make<CALayer>())
{
    for (int spoke = 0; spoke < ProgressWheelLook::spokeCount; ++spoke)
        m_spokes->addSublayer(make<CALayer>());
}

void ProgressWheel::addTo(CALayer& layer)
{
    layer.insertSublayer(m_plate, 0);
    layer.insertSublayer(m_spokes, 1);
}

void ProgressWheel::remove()
{
    m_plate->removeFromSuperlayer();
    m_spokes->removeFromSuperlayer();
}

void ProgressWheel::show(const ProgressWheelLook& look)
{
    if (m_shown == look)
        return;
    m_shown = look;
    const LayerMotion::Scope none(nullptr);
    place(look);
    paint(look);
}

void ProgressWheel::place(const ProgressWheelLook& look)
{
    const CGPoint middle{look.room.width / 2, look.room.height / 2};
    const CGFloat side = std::min({look.room.width, look.room.height, look.side});
    m_plate->setBounds({0, 0, side, side});
    m_plate->setPosition(middle);
    m_plate->setCornerRadius(side / 5);

    const CGFloat diameter = look.hasPlate ? side * spokesShare : side;
    const CGFloat length = diameter * 0.26;
    const CGFloat width = diameter / 12;
    m_spokes->setBounds({0, 0, diameter, diameter});
    m_spokes->setPosition(middle);
    for (std::size_t spoke = 0; spoke < look.alphas.size(); ++spoke) {
        CALayer& bar = *m_spokes->sublayers()[spoke];
        bar.setBounds({0, 0, width, length});
        bar.setCornerRadius(width / 2);
        // Each hangs from the hub, half a diameter below its outer end, and is turned about it.
        bar.setAnchorPoint({0.5, diameter / 2 / std::max(length, 1e-9)});
        bar.setPosition({diameter / 2, diameter / 2});
        bar.setAffineTransform(CGAffineTransform::rotation(2 * std::numbers::pi * static_cast<double>(spoke) /
                                                           ProgressWheelLook::spokeCount));
    }
}

void ProgressWheel::paint(const ProgressWheelLook& look)
{
    CGColor color = look.color;
    color.alpha *= plateAlpha;
    m_plate->setBackgroundColor(look.hasPlate && look.isVisible ? std::optional(color) : std::nullopt);
    m_spokes->setHidden(!look.isVisible);
    for (std::size_t spoke = 0; spoke < look.alphas.size(); ++spoke) {
        color.alpha = look.color.alpha * look.alphas[spoke];
        m_spokes->sublayers()[spoke]->setBackgroundColor(color);
    }
}

} // namespace RVCore
