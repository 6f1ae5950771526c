#include <AppKit/EventMonitor.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSPopover.h>
#include <AppKit/NSScreen.h>
#include <AppKit/NSView.h>
#include <AppKit/NSViewController.h>
#include <AppKit/PopoverWindow.h>
#include <AppKit/PublishedDelegate.h>
#include <Foundation/NSException.h>

namespace RVCore {

namespace {

// In a flipped view the edge of the smallest y is the upper one.
NSRectEdge onScreen(NSRectEdge edge, const NSView& view)
{
    if (!view.isFlipped())
        return edge;
    if (edge == NSRectEdge::minY)
        return NSRectEdge::maxY;
    return edge == NSRectEdge::maxY ? NSRectEdge::minY : edge;
}

CGRect toScreen(const CGRect& rect, const NSView& view)
{
    const NSWindow& window = *view.window();
    const CGRect inWindow = view.convertRectTo(rect, nullptr);
    const CGPoint origin = window.contentRectForFrameRect(window.frame()).origin;
    return {{origin.x + inWindow.minX(), origin.y + inWindow.minY()}, inWindow.size};
}

// What closes a popover when it happens elsewhere.
bool isInteraction(const NSEvent& event, NSPopoverBehavior behavior)
{
    switch (event.type()) {
    case NSEventType::scrollWheel:
        return behavior == NSPopoverBehavior::transient;
    case NSEventType::leftMouseDown:
    case NSEventType::rightMouseDown:
    case NSEventType::otherMouseDown:
    case NSEventType::keyDown:
        return true;
    default:
        return false;
    }
}

} // namespace

Class& NSPopover::staticClass()
{
    static Class& theClass = defineClass<NSPopover>("NSPopover", NSResponder::staticClass(), [](auto& publish) {
        publish.property("behavior", &NSPopover::behavior, &NSPopover::setBehavior);
        publishDelegate<NSPopoverDelegate, NSPopover>(publish, "NSPopover", "NSPopoverDelegate");
        publish.property("contentViewController", &NSPopover::contentViewController,
                         &NSPopover::setContentViewController);
        publish.method("showRelativeToRect:ofView:preferredEdge:", &NSPopover::showRelativeToRect);
        publish.readOnlyProperty("isShown", &NSPopover::isShown);
        publish.method("close", &NSPopover::close);
        publish.method("performClose", &NSPopover::performClose);
        publish.readOnlyProperty("window", &NSPopover::window);
    });
    return theClass;
}

NSPopover::NSPopover() = default;

NSPopover::~NSPopover()
{
    const auto window = std::exchange(m_window, nullptr);
    if (window && !NSApplication::hasEnded())
        window->close();
}

void NSPopover::setBehavior(NSPopoverBehavior behavior)
{
    if (behavior > NSPopoverBehavior::semitransient)
        raiseInvalidArgument("NSPopover.setBehavior:",
                             "there is no behaviour " + std::to_string(static_cast<int>(behavior)));
    m_behavior = behavior;
}

void NSPopover::setContentViewController(const std::shared_ptr<NSViewController>& controller)
{
    if (controller == m_contentViewController)
        return;
    close();
    m_contentViewController = controller;
}

void NSPopover::showRelativeToRect(const CGRect& rect, NSView& view, NSRectEdge preferredEdge)
{
    const char* operation = "NSPopover.showRelativeToRect:ofView:preferredEdge:";
    requireFinite(operation, "rect", rect);
    if (preferredEdge > NSRectEdge::maxY)
        raiseInvalidArgument(operation, "there is no edge " + std::to_string(static_cast<int>(preferredEdge)));
    if (!m_contentViewController)
        raiseInvalidArgument(operation, "the popover has no content view controller");
    if (!view.window() || !view.window()->isVisible())
        raiseInvalidArgument(operation, view.description() + " is in no visible window");

    // Whoever is told may let go of any of them.
    const auto alive = shared(*this);
    const auto anchor = shared(view);
    m_anchor = anchor;
    m_anchorRect = rect;
    m_preferredEdge = preferredEdge;
    if (m_window && m_window->parentWindow() != view.window())
        close();
    if (m_window) {
        place();
        return;
    }
    if (!canStandAt(view))
        return;
    if (const auto delegate = m_delegate.lock())
        delegate->popoverWillShow(*this);
    const auto controller = m_contentViewController;
    if (m_window || m_anchor.lock() != anchor || !controller || !canStandAt(view))
        return;
    controller->viewWillAppear();
    const auto content = controller->view();
    if (m_window || m_anchor.lock() != anchor || controller != m_contentViewController || !canStandAt(view))
        return;
    const auto window = make<PopoverWindow>(*this, content);
    m_window = window;
    view.window()->addChildWindow(window, NSWindowOrderingMode::above);
    view.window()->addPopover(*this, {});
    window->addPopover(*this, {});
    m_monitor = std::make_unique<EventMonitor>([this](NSEvent& event) { observe(event); });
    if (!place() || m_window != window)
        return close();
    window->makeKeyAndOrderFront();
    if (m_window == window)
        controller->viewDidAppear();
}

bool NSPopover::canStandAt(const NSView& anchor) const
{
    return anchor.window() && anchor.window()->isVisible() && !anchor.isHiddenOrHasHiddenAncestor();
}

// A view of no size of its own gets what its controller prefers.
CGSize NSPopover::contentSize() const
{
    const auto controller = m_contentViewController;
    CGSize size = controller->view()->fittingSize();
    const CGSize preferred = controller->preferredContentSize();
    if (size.width <= 0)
        size.width = preferred.width;
    if (size.height <= 0)
        size.height = preferred.height;
    return size;
}

// Where the anchor is now. Returns whether there still is one.
bool NSPopover::place()
{
    const auto anchor = m_anchor.lock();
    const auto window = m_window;
    if (!anchor || !canStandAt(*anchor) || anchor->window() != window->parentWindow())
        return false;
    const CGSize size = contentSize(); // which may ask code that closes the popover
    if (m_window != window || !canStandAt(*anchor))
        return false;
    const auto screen = anchor->window()->screen();
    const CGRect rect = m_anchorRect == CGRect() ? anchor->bounds() : m_anchorRect;
    const CGRect room = screen ? screen->visibleFrame() : CGRect(-1e6, -1e6, 2e6, 2e6);
    window->place(placePopover(toScreen(rect, *anchor), size, onScreen(m_preferredEdge, *anchor), room));
    return true;
}

void NSPopover::follow(AppKitKey)
{
    const auto alive = shared(*this);
    if (m_window && !place())
        close();
}

void NSPopover::observe(NSEvent& event)
{
    if (m_behavior == NSPopoverBehavior::applicationDefined || !isInteraction(event, m_behavior))
        return;
    const auto target = event.window();
    for (const NSWindow* window = target.get(); window; window = window->parentWindow()) {
        if (window == m_window.get())
            return; // in the popover, or in one that it shows
    }
    // A press on the anchor is the anchor's to answer: mostly by closing what it has opened.
    const auto anchor = m_anchor.lock();
    if (anchor && event.type() != NSEventType::keyDown && target.get() == anchor->window() &&
        anchor->bounds().contains(anchor->convertPointFrom(event.locationInWindow(), nullptr)))
        return;
    performClose();
}

void NSPopover::close()
{
    const auto alive = weak_from_this().lock(); // nothing while it dies
    const auto window = std::exchange(m_window, nullptr);
    if (!window)
        return;
    m_monitor.reset();
    const auto controller = m_contentViewController; // who is told may take another one
    controller->viewWillDisappear();
    window->close();
    if (NSWindow* parent = window->parentWindow())
        parent->removeChildWindow(*window);
    controller->view()->removeFromSuperview();
    controller->viewDidDisappear();
    if (const auto delegate = m_delegate.lock())
        delegate->popoverDidClose(*this);
}

void NSPopover::performClose()
{
    const auto alive = shared(*this);
    const auto delegate = m_delegate.lock();
    if (m_window && (!delegate || delegate->popoverShouldClose(*this)))
        close();
}

std::shared_ptr<NSWindow> NSPopover::window() const
{
    return m_window;
}

NSResponder* NSPopover::nextResponder() const
{
    return m_anchor.lock().get();
}

} // namespace RVCore
