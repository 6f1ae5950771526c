#include <AppKit/NSApplication.h>
#include <AppKit/NSProgressIndicator.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ProgressWheel.h>
#include <Backend/Backend.h>
#include <Dispatch/DispatchQueue.h>

#include <QuartzCore/CALayer.h>
#include <QuartzCore/LayerPresentation.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

constexpr double wheelTurn = 1; // in seconds
constexpr double barTurn = 2;   // there and back
constexpr double barStepsPerSecond = 30;
constexpr double slowness = 4; // how much longer a turn takes where people want less movement

// A spoke that has not been reached, or that the leading one has left longest ago.
constexpr double faintest = 0.2;

// The indicators that turn or are wheels, to be told before they are painted.
std::vector<NSProgressIndicator*>& preparedIndicators()
{
    static auto& indicators = *new std::vector<NSProgressIndicator*>; // for views that outlive the statics
    return indicators;
}

void prepareFrom(NSProgressIndicator& indicator)
{
    auto& indicators = preparedIndicators();
    if (std::ranges::count(indicators, &indicator) == 0)
        indicators.push_back(&indicator);
}

// From 0 up to 1.
double wrapped(double phase)
{
    return phase - std::floor(phase);
}

// Spokes fade behind the leading one.
double alphaBehind(int spoke, double phase)
{
    constexpr int count = ProgressWheelLook::spokeCount;
    const int leading = static_cast<int>(wrapped(phase) * count + 1e-6) % count;
    return 1 - (1 - faintest) * ((leading - spoke + count) % count) / count;
}

} // namespace

NSProgressIndicator::~NSProgressIndicator()
{
    std::erase(preparedIndicators(), this);
}

// --- The wheel

void NSProgressIndicator::makeWheel()
{
    m_wheel = std::make_unique<ProgressWheel>();
    prepareFrom(*this);
    if (layer())
        m_wheel->addTo(*layer());
    else
        setWantsLayer(true); // which adds it
}

void NSProgressIndicator::removeWheel()
{
    m_wheel->remove();
    m_wheel = nullptr;
}

std::shared_ptr<CALayer> NSProgressIndicator::makeBackingLayer()
{
    auto layer = NSView::makeBackingLayer();
    if (m_wheel)
        m_wheel->addTo(*layer);
    return layer;
}

CGFloat NSProgressIndicator::wheelSide() const
{
    switch (m_controlSize) {
    case NSControlSize::small:
        return 16;
    case NSControlSize::mini:
        return 10;
    case NSControlSize::regular:
        break;
    }
    return 32;
}

// One that knows how far it is lights its spokes up one by one.
void NSProgressIndicator::updateWheel()
{
    ProgressWheelLook look{
        .room = bounds().size,
        .side = wheelSide(),
        .hasPlate = m_isBezeled,
        .isVisible = isDisplayed(),
        .color = Backend::shared().controlLook().textColor(NSApplication::shared().effectiveAppearance())};
    const auto done = std::lround(fraction() * ProgressWheelLook::spokeCount);
    for (int spoke = 0; spoke < ProgressWheelLook::spokeCount; ++spoke)
        look.alphas[static_cast<std::size_t>(spoke)] = m_isIndeterminate ? alphaBehind(spoke, m_phase)
                                                       : spoke < done    ? 1
                                                                         : faintest;
    m_wheel->show(look);
}

// --- Movement

void NSProgressIndicator::startAnimation(const ObjectRef&)
{
    if (m_isAnimating)
        return;
    m_isAnimating = true;
    prepareFrom(*this);
    moveFromHere();
    lookChanged();
}

void NSProgressIndicator::stopAnimation(const ObjectRef&)
{
    if (!m_isAnimating)
        return;
    m_isAnimating = false;
    if (!m_wheel)
        std::erase(preparedIndicators(), this);
    lookChanged();
}

NSProgressIndicator::Pace NSProgressIndicator::pace() const
{
    const double factor = NSApplication::shared().reducesMotion() ? slowness : 1;
    if (m_wheel)
        return {factor * wheelTurn, factor * wheelTurn / ProgressWheelLook::spokeCount};
    return {factor * barTurn, 1 / barStepsPerSecond};
}

// How many places the sign has moved on by then. What is due at a moment has come at that moment, also where the
// division falls a little short.
double NSProgressIndicator::stepsAt(DispatchTime time) const
{
    return std::floor((time - m_begin) / m_pace.interval + 1e-3);
}

void NSProgressIndicator::moveFromHere()
{
    m_begin = DispatchTime::now();
    m_firstPhase = m_phase;
    m_pace = pace();
    moveLater();
}

void NSProgressIndicator::move()
{
    setAnimationPhase(wrapped(m_firstPhase + stepsAt(DispatchTime::now()) * m_pace.interval / m_pace.turn));
    if (m_pace != pace())
        moveFromHere(); // at the new pace
    else
        moveLater();
}

// When the sign is in its next place. A queue that holds a step already keeps it: there is never more than one.
void NSProgressIndicator::moveLater()
{
    if (m_willMove || !canBeSeenMoving())
        return;
    m_willMove = true;
    const DispatchTime next = m_begin + (stepsAt(DispatchTime::now()) + 1) * m_pace.interval;
    DispatchQueue::main().asyncAfter(next, [indicator = std::weak_ptr(shared(*this))] {
        const auto alive = indicator.lock();
        if (!alive)
            return;
        alive->m_willMove = false;
        if (alive->canBeSeenMoving())
            alive->move();
    });
}

// By what is seen now, as views that fade out have no alpha any more.
bool NSProgressIndicator::canBeSeenMoving() const
{
    const NSWindow* host = window();
    if (!isMoving() || !host || !host->isExposed() || bounds().isEmpty())
        return false;
    for (const NSView* view = this; view; view = view->superview()) {
        const CALayer* layer = view->layer().get();
        if (view->isHidden() || (layer && layer->isHidden()) ||
            (layer ? LayerPresentation(*layer).opacity() : view->alphaValue()) <= 0)
            return false;
    }
    return true;
}

void NSProgressIndicator::prepareFrame(const NSView& root, AppKitKey)
{
    auto& indicators = preparedIndicators();
    // By index and from the end, as overrides that are called below may add and remove some.
    for (std::size_t index = indicators.size(); index-- > 0;) {
        if (index >= indicators.size() || !indicators[index]->isDescendantOf(root))
            continue;
        const auto indicator = shared(*indicators[index]);
        if (indicator->m_wheel) {
            indicator->setWantsLayer(true); // a wheel without is none
            indicator->updateWheel();
        }
        if (indicator->isMoving())
            indicator->move();
    }
}

} // namespace RVCore
