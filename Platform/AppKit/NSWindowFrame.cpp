#include <AppKit/NSApplication.h>
#include <AppKit/NSScreen.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/WindowFrameAnimation.h>
#include <AppKit/WindowSizes.h>
#include <Dispatch/DispatchQueue.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

constexpr double stepInterval = 1.0 / 60; // seconds

// Adding and taking away heights may end beside the place where it began by a rounding error.
bool differs(CGPoint a, CGPoint b)
{
    constexpr CGFloat noticeable = 1e-6;
    return std::abs(a.x - b.x) > noticeable || std::abs(a.y - b.y) > noticeable;
}

// Positions on the desktop count from the top of the main screen.
CGPoint toDesktop(CGPoint point)
{
    return {point.x, Backend::shared().screens().front().frame.size.height - point.y};
}

} // namespace

// --- Limits

void NSWindow::setContentMinSize(CGSize size)
{
    requireNotNegative("NSWindow.setContentMinSize:", "size", size);
    m_geometry.contentMinSize = size;
    limitsChanged();
}

void NSWindow::setContentMaxSize(CGSize size)
{
    requireNotNegative("NSWindow.setContentMaxSize:", "size", size);
    m_geometry.contentMaxSize = size;
    limitsChanged();
}

void NSWindow::limitsChanged()
{
    if (m_backend) {
        m_backend->setMinimumContentSize(m_geometry.areaFor(m_geometry.smallest()));
        m_backend->setMaximumContentSize(m_geometry.areaFor(m_geometry.largest()));
    }
    const bool isEmpty =
        m_geometry.contentSize.width == 0 || m_geometry.contentSize.height == 0; // waits for its content
    if (!isEmpty && m_geometry.limited(m_geometry.contentSize) != m_geometry.contentSize)
        setContentSize(m_geometry.limited(m_geometry.contentSize));
}

// --- Setting

void NSWindow::setFrame(const CGRect& frame, NSWindowFrameChange change)
{
    requireWindowRect("NSWindow.setFrame:", "frame", frame);
    const auto alive = shared(*this);
    m_animation.reset();
    const CGRect target = m_geometry.limited(frame);
    if (change.animate)
        animateTo(target);
    else
        applyFrame(target);
    if (change.display && !change.animate)
        layoutIfNeeded();
}

void NSWindow::setFrameOrigin(CGPoint origin)
{
    requireWindowOrigin("NSWindow.setFrameOrigin:", "origin", origin);
    m_animation.reset();
    applyFrame({origin, frame().size});
}

void NSWindow::setContentSize(CGSize size)
{
    const CGSize possible = m_geometry.limited(requiredDesktopSize("NSWindow.setContentSize:", size));
    m_animation.reset();
    if (m_geometry.contentSize == possible)
        return;
    const auto alive = shared(*this);
    applyContentSize(possible);
    if (m_backend)
        m_backend->setContentSize(m_geometry.areaFor(possible));
}

void NSWindow::center()
{
    layoutIfNeeded();
    const auto present = screen();
    const CGRect area = (present ? present : NSScreen::mainScreen())->visibleFrame();
    const CGSize size = frame().size;
    setFrameOrigin({std::round(area.midX() - size.width / 2), std::round(area.midY() - size.height / 2)});
}

void NSWindow::applyFrame(const CGRect& frame)
{
    const auto alive = shared(*this);
    m_isPlaced = true;
    const bool isResized = frame.size != this->frame().size;
    applyGeometry(frame.origin, isResized ? contentRectForFrameRect(frame).size : m_geometry.contentSize);
    if (!m_backend)
        return;
    if (isResized)
        m_backend->setContentSize(m_geometry.areaFor(m_geometry.contentSize));
    passOrigin();
}

void NSWindow::passOrigin()
{
    m_backend->setOrigin(toDesktop(m_geometry.topLeft()));
}

// The top left corner stays.
void NSWindow::applyContentSize(CGSize size)
{
    applyGeometry({m_geometry.origin.x, m_geometry.origin.y + m_geometry.contentSize.height - size.height}, size);
}

void NSWindow::applyGeometry(CGPoint origin, CGSize contentSize)
{
    const CGPoint before = m_geometry.topLeft();
    const bool isResized = contentSize != m_geometry.contentSize;
    m_geometry.origin = origin;
    m_geometry.contentSize = contentSize;
    if (isResized) {
        const auto content = m_contentView;
        content->setFrame({{}, contentSize});
        placeToolbar();
        contentNeedsFrame({});
        tellDelegate(&NSWindowDelegate::windowDidResize);
    }
    topLeftMoved(before);
}

void NSWindow::topLeftMoved(CGPoint before)
{
    const CGPoint now = m_geometry.topLeft();
    if (!differs(before, now))
        return;
    for (const auto& child : childWindows())
        child->moveBy(now.x - before.x, now.y - before.y);
    tellDelegate(&NSWindowDelegate::windowDidMove);
}

// A child window that was on its way is there at once.
void NSWindow::moveBy(CGFloat dx, CGFloat dy)
{
    const CGRect present = m_animation ? m_animation->end() : frame();
    m_animation.reset();
    applyFrame({{present.minX() + dx, present.minY() + dy}, present.size});
}

void NSWindow::tellDelegate(void (NSWindowDelegate::*notice)(NSWindow&))
{
    if (const auto listener = delegate())
        ((*listener).*notice)(*this);
}

// --- Moving there

double NSWindow::animationResizeTime(const CGRect& newFrame) const
{
    return WindowFrameAnimation::durationFor(frame(), newFrame);
}

void NSWindow::animateTo(const CGRect& target)
{
    const double duration = animationResizeTime(target);
    if (!(duration > 0) || NSApplication::shared().reducesMotion()) {
        applyFrame(target);
        return;
    }
    m_animation = std::make_shared<const WindowFrameAnimation>(frame(), target, duration);
    // The end is in the queue first, before anything that waits for it.
    scheduleStep(m_animation->endTime());
    scheduleStep(std::min(DispatchTime::now() + stepInterval, m_animation->endTime()));
}

void NSWindow::scheduleStep(DispatchTime time)
{
    const std::weak_ptr<NSWindow> window = shared(*this);
    const std::weak_ptr<const WindowFrameAnimation> animation = m_animation;
    DispatchQueue::main().asyncAfter(time, [window, animation] {
        const auto alive = window.lock();
        // Another one may have taken its place.
        if (alive && !animation.expired() && alive->m_animation == animation.lock())
            alive->stepAnimation();
    });
}

void NSWindow::stepAnimation()
{
    const auto animation = m_animation;
    const DispatchTime now = DispatchTime::now();
    if (now >= animation->endTime())
        m_animation.reset();
    else if (now + stepInterval < animation->endTime())
        scheduleStep(now + stepInterval);
    applyFrame(animation->frameAt(now));
}

// --- What the desktop tells

// The desktop knows of no toolbar. Where it leaves less than that needs, the content has its smallest height.
void NSWindow::contentSizeChanged(CGSize area)
{
    const auto alive = shared(*this);
    if (area.width < 1 || area.height < 1)
        return;
    const CGSize size{area.width, std::max(1.0, area.height - m_geometry.toolbarHeight)};
    if (size != m_geometry.contentSize)
        applyContentSize(size);
}

void NSWindow::placementChanged()
{
    const auto alive = shared(*this);
    const WindowPlacement placement = m_backend->placement();
    const CGPoint before = m_geometry.topLeft();
    CGPoint told = toDesktop(placement.origin); // the way back is the same
    // A desktop rounds: what it tells is then what it was asked for.
    if (std::abs(told.x - before.x) < 1 && std::abs(told.y - before.y) < 1)
        told = before;
    m_geometry.margins = placement.margins;
    m_geometry.origin = {told.x, told.y - frame().size.height};
    topLeftMoved(before);
}

std::shared_ptr<NSScreen> NSWindow::screen() const
{
    const auto area = [this](const NSScreen& screen) {
        const CGSize common = screen.frame().intersection(frame()).size;
        return common.width * common.height;
    };
    const auto screens = NSScreen::screens();
    const auto best = std::max_element(screens.begin(), screens.end(),
                                       [&](const auto& a, const auto& b) { return area(*a) < area(*b); });
    return area(**best) > 0 ? *best : nullptr;
}

CGFloat NSWindow::backingScaleFactor() const
{
    return m_backend ? m_backend->backingScale() : NSScreen::mainScreen()->backingScaleFactor();
}

void NSWindow::backingScaleChanged()
{
    const auto alive = shared(*this);
    contentNeedsFrame({});
    tellDelegate(&NSWindowDelegate::windowDidChangeBackingProperties);
}

} // namespace RVCore
