#include <AppKit/KnownValue.h>
#include <AppKit/NSAccessibility.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSProgressIndicator.h>
#include <AppKit/NSWindow.h>
#include <Backend/Backend.h>
#include <CoreGraphics/Canvas.h>
#include <Foundation/NSCoder.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace RVCore {

Class& NSProgressIndicator::staticClass()
{
    static Class& theClass =
        defineClass<NSProgressIndicator>("NSProgressIndicator", NSView::staticClass(), [](auto& publish) {
            using Self = NSProgressIndicator;
            publish.property("style", &Self::style, &Self::setStyle);
            publish.property("controlSize", &Self::controlSize, &Self::setControlSize);
            publish.readOnlyProperty("isIndeterminate", &Self::isIndeterminate);
            publish.method("setIndeterminate:", &Self::setIndeterminate);
            publish.property("doubleValue", &Self::doubleValue, &Self::setDoubleValue);
            publish.method("incrementBy:", &Self::incrementBy);
            publish.property("minValue", &Self::minValue, &Self::setMinValue);
            publish.property("maxValue", &Self::maxValue, &Self::setMaxValue);
        });
    return theClass;
}

void NSProgressIndicator::init(NSCoder& coder)
{
    NSView::init(coder);
    setStyle(coder.decode<NSProgressIndicatorStyle>("style"));
    setControlSize(coder.decode<NSControlSize>("controlSize"));
    setIndeterminate(coder.decode<bool>("indeterminate"));
    setMinValue(coder.decode<double>("minValue"));
    setMaxValue(coder.decode<double>("maxValue"));
    setDoubleValue(coder.decode<double>("doubleValue"));
}

void NSProgressIndicator::encode(NSCoder& coder) const
{
    NSView::encode(coder);
    coder.encode("style", static_cast<int>(m_style));
    coder.encode("controlSize", static_cast<int>(m_controlSize));
    coder.encode("indeterminate", m_isIndeterminate);
    coder.encode("minValue", m_minimum);
    coder.encode("maxValue", m_maximum);
    coder.encode("doubleValue", m_value);
}

void NSProgressIndicator::setStyle(NSProgressIndicatorStyle style)
{
    requireKnown("NSProgressIndicator.setStyle:", style, NSProgressIndicatorStyle::bar,
                 NSProgressIndicatorStyle::spinning);
    if (m_style == style)
        return;
    m_style = style;
    invalidateIntrinsicContentSize();
    setNeedsDisplay(true);
}

void NSProgressIndicator::setControlSize(NSControlSize size)
{
    requireKnown("NSProgressIndicator.setControlSize:", size, NSControlSize::regular, NSControlSize::small);
    if (m_controlSize == size)
        return;
    m_controlSize = size;
    invalidateIntrinsicContentSize();
    setNeedsDisplay(true);
}

void NSProgressIndicator::setIndeterminate(bool indeterminate)
{
    if (m_isIndeterminate == indeterminate)
        return;
    m_isIndeterminate = indeterminate;
    setNeedsDisplay(true);
}

void NSProgressIndicator::setDoubleValue(double value)
{
    // Not std::clamp: limits may be crossed for a while, and what is not a number passes no comparison.
    value = std::max(m_minimum, std::min(m_maximum, std::isnan(value) ? m_minimum : value));
    if (m_value == value)
        return;
    m_value = value;
    setNeedsDisplay(true);
    postAccessibilityChange(*this, AccessibleChange::value);
}

void NSProgressIndicator::setMinValue(double value)
{
    requireFinite("NSProgressIndicator.setMinValue:", "value", value);
    setLimits(value, m_maximum);
}

void NSProgressIndicator::setMaxValue(double value)
{
    requireFinite("NSProgressIndicator.setMaxValue:", "value", value);
    setLimits(m_minimum, value);
}

void NSProgressIndicator::setLimits(double minimum, double maximum)
{
    if (m_minimum == minimum && m_maximum == maximum)
        return;
    m_minimum = minimum;
    m_maximum = maximum;
    setNeedsDisplay(true);
    setDoubleValue(m_value);
}

double NSProgressIndicator::fraction() const
{
    return m_maximum > m_minimum ? std::clamp((m_value - m_minimum) / (m_maximum - m_minimum), 0.0, 1.0) : 0;
}

void NSProgressIndicator::setAnimationPhase(double phase)
{
    requireFinite("NSProgressIndicator.setAnimationPhase", "phase", phase);
    if (m_phase == phase)
        return;
    m_phase = phase;
    setNeedsDisplay(true);
}

CGFloat NSProgressIndicator::wheelSide() const
{
    return m_controlSize == NSControlSize::regular ? 32 : 16;
}

std::string NSProgressIndicator::accessibilityValue() const
{
    return m_isIndeterminate ? std::string() : std::to_string(std::lround(fraction() * 100)) + " %";
}

CGSize NSProgressIndicator::intrinsicContentSize() const
{
    if (m_style == NSProgressIndicatorStyle::spinning)
        return {wheelSide(), wheelSide()};
    ControlDescription bar;
    bar.kind = ControlKind::progressBar;
    return {NSViewNoIntrinsicMetric, Backend::shared().controlLook().sizeForContent(bar, {}).height};
}

void NSProgressIndicator::draw(Canvas& canvas, const CGRect&)
{
    if (m_style == NSProgressIndicatorStyle::bar)
        drawBar(canvas);
    else
        drawWheel(canvas);
}

void NSProgressIndicator::drawBar(Canvas& canvas)
{
    const NSApplication& application = NSApplication::shared();
    ControlDescription bar;
    bar.kind = ControlKind::progressBar;
    bar.appearance = application.effectiveAppearance();
    bar.isWindowActive = !window() || window() == application.keyWindow();
    bar.isIndeterminate = m_isIndeterminate;
    bar.progress = m_isIndeterminate ? m_phase : fraction();
    canvas.drawControl(bar, bounds());
}

// The desktop's style has no wheel. Spokes fade behind the leading one, or light up one by one as things are done.
void NSProgressIndicator::drawWheel(Canvas& canvas)
{
    constexpr int spokeCount = 12;
    constexpr double faintest = 0.2;
    const CGRect room = bounds();
    const CGFloat radius = std::min({room.size.width, room.size.height, wheelSide()}) / 2;
    CGColor color = Backend::shared().controlLook().textColor(NSApplication::shared().effectiveAppearance());
    const double leading = std::floor((m_phase - std::floor(m_phase)) * spokeCount);
    for (int spoke = 0; spoke < spokeCount; ++spoke) {
        const double behind = std::fmod(leading - spoke + spokeCount, spokeCount) / spokeCount; // 0 leads
        const bool isDone = spoke < std::round(fraction() * spokeCount);
        color.alpha = m_isIndeterminate ? 1 - (1 - faintest) * behind : isDone ? 1 : faintest;
        const CanvasState state(canvas);
        canvas.concatenate(CGAffineTransform::translation(room.midX(), room.midY()));
        canvas.concatenate(CGAffineTransform::rotation(2 * std::numbers::pi * spoke / spokeCount));
        const CGFloat width = radius / 6;
        canvas.fill({{-width / 2, -radius, width, radius / 2}, width / 2}, color);
    }
}

} // namespace RVCore
