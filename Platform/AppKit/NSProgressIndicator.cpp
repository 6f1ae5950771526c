#include <AppKit/KnownValue.h>
#include <AppKit/NSAccessibility.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSProgressIndicator.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ProgressWheel.h>
#include <Backend/Backend.h>
#include <CoreGraphics/Canvas.h>
#include <Dispatch/DispatchQueue.h>
#include <Foundation/NSCoder.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace RVCore {

namespace {

constexpr double shortestTimeBetweenValues = 1.0 / 60; // in seconds: what a display has time to show

} // namespace

Class& NSProgressIndicator::staticClass()
{
    static Class& theClass =
        defineClass<NSProgressIndicator>("NSProgressIndicator", NSView::staticClass(), [](auto& publish) {
            using Self = NSProgressIndicator;
            publish.property("style", &Self::style, &Self::setStyle);
            publish.property("controlSize", &Self::controlSize, &Self::setControlSize);
            publish.readOnlyProperty("isIndeterminate", &Self::isIndeterminate);
            publish.method("setIndeterminate:", &Self::setIndeterminate);
            publish.readOnlyProperty("isBezeled", &Self::isBezeled);
            publish.method("setBezeled:", &Self::setBezeled);
            publish.readOnlyProperty("isDisplayedWhenStopped", &Self::isDisplayedWhenStopped);
            publish.method("setDisplayedWhenStopped:", &Self::setDisplayedWhenStopped);
            publish.property("doubleValue", &Self::doubleValue, &Self::setDoubleValue);
            publish.method("incrementBy:", &Self::incrementBy);
            publish.property("minValue", &Self::minValue, &Self::setMinValue);
            publish.property("maxValue", &Self::maxValue, &Self::setMaxValue);
            publish.property("usesThreadedAnimation", &Self::usesThreadedAnimation, &Self::setUsesThreadedAnimation);
            publish.method("startAnimation:", &Self::startAnimation);
            publish.method("stopAnimation:", &Self::stopAnimation);
        });
    return theClass;
}

NSProgressIndicator::NSProgressIndicator() : m_valueShownAt(-std::numeric_limits<double>::infinity()) {}

void NSProgressIndicator::init(NSCoder& coder)
{
    NSView::init(coder);
    setStyle(coder.decode<NSProgressIndicatorStyle>("style"));
    setControlSize(coder.decode<NSControlSize>("controlSize"));
    setIndeterminate(coder.decode<bool>("indeterminate"));
    setBezeled(coder.decode<bool>("bezeled"));
    setDisplayedWhenStopped(coder.decode<bool>("displayedWhenStopped"));
    setUsesThreadedAnimation(coder.decode<bool>("usesThreadedAnimation"));
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
    coder.encode("bezeled", m_isBezeled);
    coder.encode("displayedWhenStopped", m_isDisplayedWhenStopped);
    coder.encode("usesThreadedAnimation", m_usesThreadedAnimation);
    coder.encode("minValue", minValue());
    coder.encode("maxValue", maxValue());
    coder.encode("doubleValue", doubleValue());
}

// --- What it looks like

void NSProgressIndicator::setStyle(NSProgressIndicatorStyle style)
{
    requireKnown("NSProgressIndicator.setStyle:", style, NSProgressIndicatorStyle::bar,
                 NSProgressIndicatorStyle::spinning);
    if (m_style == style)
        return;
    m_style = style;
    if (style == NSProgressIndicatorStyle::spinning)
        makeWheel();
    else
        removeWheel();
    moveFromHere();
    invalidateIntrinsicContentSize();
    lookChanged();
}

void NSProgressIndicator::setControlSize(NSControlSize size)
{
    requireKnown("NSProgressIndicator.setControlSize:", size, NSControlSize::regular, NSControlSize::mini);
    if (m_controlSize == size)
        return;
    m_controlSize = size;
    invalidateIntrinsicContentSize();
    lookChanged();
}

void NSProgressIndicator::setIndeterminate(bool indeterminate)
{
    if (m_isIndeterminate == indeterminate)
        return;
    m_isIndeterminate = indeterminate;
    moveFromHere();
    lookChanged();
    announceValue();
}

void NSProgressIndicator::setBezeled(bool bezeled)
{
    if (m_isBezeled == bezeled)
        return;
    m_isBezeled = bezeled;
    lookChanged();
}

void NSProgressIndicator::setDisplayedWhenStopped(bool displayed)
{
    if (m_isDisplayedWhenStopped == displayed)
        return;
    m_isDisplayedWhenStopped = displayed;
    lookChanged();
}

void NSProgressIndicator::setAnimationPhase(double phase)
{
    requireFinite("NSProgressIndicator.setAnimationPhase", "phase", phase);
    if (m_phase == phase)
        return;
    m_phase = phase;
    if (m_isIndeterminate)
        lookChanged();
}

bool NSProgressIndicator::isDisplayed() const
{
    return m_isAnimating || m_isDisplayedWhenStopped || !m_isIndeterminate;
}

void NSProgressIndicator::lookChanged()
{
    if (m_wheel)
        updateWheel();
    else
        setNeedsDisplay(true);
}

void NSProgressIndicator::frameSizeDidChange()
{
    NSView::frameSizeDidChange();
    lookChanged();
}

CGSize NSProgressIndicator::intrinsicContentSize() const
{
    if (m_style == NSProgressIndicatorStyle::spinning)
        return {wheelSide(), wheelSide()};
    ControlDescription bar;
    bar.kind = ControlKind::progressBar;
    return {NSViewNoIntrinsicMetric, Backend::shared().controlLook().sizeForContent(bar, {}).height};
}

// --- The value

double NSProgressIndicator::doubleValue() const
{
    const std::lock_guard lock(m_valueMutex);
    return m_value;
}

double NSProgressIndicator::minValue() const
{
    const std::lock_guard lock(m_valueMutex);
    return m_minimum;
}

double NSProgressIndicator::maxValue() const
{
    const std::lock_guard lock(m_valueMutex);
    return m_maximum;
}

double NSProgressIndicator::fraction() const
{
    const std::lock_guard lock(m_valueMutex);
    return m_maximum > m_minimum ? std::clamp((m_value - m_minimum) / (m_maximum - m_minimum), 0.0, 1.0) : 0;
}

// Not std::clamp: limits may be crossed for a while, and what is not a number passes no comparison.
double NSProgressIndicator::clamped(double value) const
{
    return std::max(m_minimum, std::min(m_maximum, std::isnan(value) ? m_minimum : value));
}

void NSProgressIndicator::setDoubleValue(double value)
{
    {
        const std::lock_guard lock(m_valueMutex);
        value = clamped(value);
        if (m_value == value)
            return;
        m_value = value;
    }
    valueChanged();
}

void NSProgressIndicator::setMinValue(double value)
{
    requireFinite("NSProgressIndicator.setMinValue:", "value", value);
    setLimit(&NSProgressIndicator::m_minimum, value);
}

void NSProgressIndicator::setMaxValue(double value)
{
    requireFinite("NSProgressIndicator.setMaxValue:", "value", value);
    setLimit(&NSProgressIndicator::m_maximum, value);
}

void NSProgressIndicator::setLimit(double NSProgressIndicator::*limit, double value)
{
    {
        const std::lock_guard lock(m_valueMutex);
        if (this->*limit == value)
            return;
        this->*limit = value;
        m_value = clamped(m_value);
    }
    valueChanged();
}

// On any thread. However often this is called, the main queue holds one call, and it is not woken more often than a
// display has frames.
void NSProgressIndicator::valueChanged()
{
    if (m_valueIsNew.exchange(true))
        return;
    const DispatchTime now = DispatchTime::now();
    // A clock that was replaced may have shown any time before.
    const double wait =
        std::clamp(m_valueShownAt + shortestTimeBetweenValues - now.seconds(), 0.0, shortestTimeBetweenValues);
    DispatchQueue::main().asyncAfter(now + wait, [indicator = weak_from_this()] {
        if (const auto alive = std::static_pointer_cast<NSProgressIndicator>(indicator.lock()))
            alive->showValue();
    });
}

void NSProgressIndicator::showValue()
{
    m_valueShownAt = DispatchTime::now().seconds();
    m_valueIsNew = false; // first: what is set from now on is not seen to below
    if (!m_isIndeterminate)
        lookChanged();
    announceValue();
}

// Only what can be told apart: assistive technology speaks of whole percents.
void NSProgressIndicator::announceValue()
{
    std::string value = accessibilityValue();
    if (value == m_announcedValue)
        return;
    m_announcedValue = std::move(value);
    postAccessibilityChange(*this, AccessibleChange::value);
}

std::string NSProgressIndicator::accessibilityValue() const
{
    return m_isIndeterminate ? std::string() : std::to_string(std::lround(fraction() * 100)) + " %";
}

// --- The bar

void NSProgressIndicator::draw(Canvas& canvas, const CGRect&)
{
    if (m_style == NSProgressIndicatorStyle::bar && isDisplayed())
        drawBar(canvas);
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

} // namespace RVCore
