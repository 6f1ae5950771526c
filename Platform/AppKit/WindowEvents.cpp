#include <AppKit/AppKitKey.h>
#include <AppKit/ExceptionReport.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSCursor.h>
#include <AppKit/NSTrackingArea.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ViewPlacement.h>
#include <AppKit/WindowEvents.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ranges>

namespace RVCore {

namespace {

// Clicks follow each other when no more than this lies between their presses.
constexpr double clickInterval = 0.5; // seconds
constexpr CGFloat clickDistance = 4;  // points, in each direction

// The types of button events, for the left and the right button and all others.
struct ButtonTypes {
    NSEventType down;
    NSEventType up;
    NSEventType dragged;
};
constexpr std::array<ButtonTypes, 3> buttonTypes{{
    {NSEventType::leftMouseDown, NSEventType::leftMouseUp, NSEventType::leftMouseDragged},
    {NSEventType::rightMouseDown, NSEventType::rightMouseUp, NSEventType::rightMouseDragged},
    {NSEventType::otherMouseDown, NSEventType::otherMouseUp, NSEventType::otherMouseDragged},
}};

const ButtonTypes& typesOf(int button)
{
    return buttonTypes[button == 0 || button == 1 ? static_cast<std::size_t>(button) : 2];
}

} // namespace

void WindowEvents::handleInput(const InputEvent& input)
{
    const auto alive = shared(m_window); // handlers may close it
    m_time = input.time;
    if (input.kind == InputKind::pointerLeft) {
        m_pointer.reset();
        callReportingExceptions([this] { updateTracking(); });
        return;
    }
    const auto event = makeEvent(input);
    callReportingExceptions([&] { NSApplication::shared().sendEvent(*event); });
}

std::shared_ptr<NSEvent> WindowEvents::makeEvent(const InputEvent& input)
{
    NSEventContent content;
    content.locationInWindow = {input.location.x, m_window.areaSize().height - input.location.y};
    content.modifierFlags = static_cast<NSEventModifierFlags>(input.modifiers);
    content.timestamp = input.time;
    content.window = shared(m_window);
    content.buttonNumber = input.button;
    switch (input.kind) {
    case InputKind::pointerMoved:
    case InputKind::pointerLeft:
        content.type = NSEventType::mouseMoved;
        if (!m_pressed.empty()) {
            content.buttonNumber = m_pressed.front().button;
            content.type = typesOf(content.buttonNumber).dragged;
        }
        break;
    case InputKind::buttonPressed:
        content.type = typesOf(input.button).down;
        content.clickCount = countClick(input);
        break;
    case InputKind::buttonReleased:
        content.type = typesOf(input.button).up;
        content.clickCount = input.button == m_click.button ? m_click.count : 1;
        break;
    case InputKind::scrolled:
        content.type = NSEventType::scrollWheel;
        content.scrollingDelta = input.scroll;
        content.hasPreciseScrollingDeltas = input.isPreciseScroll;
        break;
    case InputKind::keyPressed:
    case InputKind::keyReleased:
    case InputKind::modifiersChanged:
        content.type = input.kind == InputKind::keyPressed    ? NSEventType::keyDown
                       : input.kind == InputKind::keyReleased ? NSEventType::keyUp
                                                              : NSEventType::flagsChanged;
        content.locationInWindow = m_pointer.value_or(CGPoint());
        content.characters = input.characters;
        content.charactersIgnoringModifiers = input.charactersIgnoringModifiers;
        content.keyCode = input.keyCode;
        content.isARepeat = input.isRepeat;
        break;
    }
    return make<NSEvent>(std::move(content));
}

int WindowEvents::countClick(const InputEvent& input)
{
    const bool follows = input.button == m_click.button && input.time - m_click.time <= clickInterval &&
                         std::abs(input.location.x - m_click.location.x) <= clickDistance &&
                         std::abs(input.location.y - m_click.location.y) <= clickDistance;
    m_click = {input.button, follows ? m_click.count + 1 : 1, input.time, input.location};
    return m_click.count;
}

void WindowEvents::dispatch(NSEvent& event)
{
    const auto alive = shared(m_window);
    const auto eventAlive = shared(event);
    const int button = std::max(event.buttonNumber(), 2); // of neither the left nor the right one
    switch (event.type()) {
    case NSEventType::leftMouseDown:
        return press(event, 0, &NSResponder::mouseDown);
    case NSEventType::leftMouseDragged:
        return drag(event, 0, &NSResponder::mouseDragged);
    case NSEventType::leftMouseUp:
        return release(event, 0, &NSResponder::mouseUp);
    case NSEventType::rightMouseDown:
        return press(event, 1, &NSResponder::rightMouseDown);
    case NSEventType::rightMouseDragged:
        return drag(event, 1, &NSResponder::rightMouseDragged);
    case NSEventType::rightMouseUp:
        return release(event, 1, &NSResponder::rightMouseUp);
    case NSEventType::otherMouseDown:
        return press(event, button, &NSResponder::otherMouseDown);
    case NSEventType::otherMouseDragged:
        return drag(event, button, &NSResponder::otherMouseDragged);
    case NSEventType::otherMouseUp:
        return release(event, button, &NSResponder::otherMouseUp);
    case NSEventType::mouseMoved:
        return move(event);
    case NSEventType::scrollWheel:
        return responderAt(event.locationInWindow())->scrollWheel(event);
    case NSEventType::keyDown:
        return pressKey(event);
    case NSEventType::keyUp:
        return shared(*m_window.firstResponder())->keyUp(event);
    case NSEventType::flagsChanged:
        return shared(*m_window.firstResponder())->flagsChanged(event);
    case NSEventType::mouseEntered:
    case NSEventType::mouseExited:
    case NSEventType::cursorUpdate:
        return; // the window's own to send, where its tracking areas are entered and left
    }
}

NSView* WindowEvents::hitTest(CGPoint location) const
{
    for (const auto& root : m_window.rootViews({})) {
        if (NSView* view = root->hitTest(location))
            return view;
    }
    return nullptr;
}

std::shared_ptr<NSResponder> WindowEvents::responderAt(CGPoint location) const
{
    if (NSView* view = hitTest(location))
        return shared(*view);
    return shared(m_window);
}

// What is pressed there works on what has the keyboard focus, and leaves it where it is.
bool WindowEvents::isInToolbar(NSResponder& responder) const
{
    auto* view = dynamic_cast<NSView*>(&responder);
    return view && m_window.toolbar() && &view->rootView() != m_window.contentView().get();
}

void WindowEvents::press(NSEvent& event, int button, Handler handler)
{
    m_pointer = event.locationInWindow();
    const auto responder = responderAt(event.locationInWindow());
    std::erase_if(m_pressed, [&](const Pressed& pressed) { return pressed.button == button; });
    m_pressed.push_back({button, responder});
    if (button == 0 && responder->acceptsFirstResponder() && !isInToolbar(*responder))
        m_window.makeFirstResponder(responder.get());
    ((*responder).*handler)(event);
}

void WindowEvents::drag(NSEvent& event, int button, Handler handler)
{
    m_pointer = event.locationInWindow();
    updateTracking();
    dropLostCaptures();
    const auto pressed = std::ranges::find(m_pressed, button, &Pressed::button);
    if (pressed == m_pressed.end())
        return;
    if (const auto responder = pressed->responder.lock())
        ((*responder).*handler)(event);
}

// Views that have left the window do not hold the pointer any more. One that was put elsewhere in it does.
void WindowEvents::dropLostCaptures()
{
    std::vector<std::shared_ptr<NSView>> lost;
    for (Pressed& pressed : m_pressed) {
        auto view = std::dynamic_pointer_cast<NSView>(pressed.responder.lock());
        if (!view || (view->window() == &m_window && m_window.isVisible()))
            continue;
        pressed.responder.reset();
        lost.push_back(std::move(view));
    }
    for (const auto& view : lost)
        view->mouseCaptureLost();
}

void WindowEvents::release(NSEvent& event, int button, Handler handler)
{
    if (m_pointer)
        m_pointer = event.locationInWindow();
    dropLostCaptures();
    const auto pressed = std::ranges::find(m_pressed, button, &Pressed::button);
    if (pressed == m_pressed.end())
        return; // it was pressed elsewhere
    const auto responder = pressed->responder.lock();
    m_pressed.erase(pressed);
    if (responder)
        ((*responder).*handler)(event);
    contentMoved();
}

void WindowEvents::move(NSEvent& event)
{
    m_pointer = event.locationInWindow();
    updateTracking();
    if (!m_pointer)
        return; // a handler has closed the window
    updateCursor();
    // Those that asked for moves, each once.
    std::vector<std::shared_ptr<NSResponder>> listeners;
    const auto listen = [&](const std::shared_ptr<NSResponder>& listener) {
        if (listener && std::ranges::find(listeners, listener) == listeners.end())
            listeners.push_back(listener);
    };
    for (const Inside& inside : m_inside) {
        if (contains(inside.area->options(), NSTrackingAreaOptions::mouseMoved))
            listen(inside.area->owner());
    }
    if (m_window.acceptsMouseMovedEvents())
        listen(responderAt(event.locationInWindow()));
    for (const auto& listener : listeners)
        listener->mouseMoved(event);
}

void WindowEvents::pressKey(NSEvent& event)
{
    if (isShortcut(event) && m_window.performKeyEquivalent(event))
        return;
    shared(*m_window.firstResponder())->keyDown(event);
}

void WindowEvents::contentMoved()
{
    const auto alive = shared(m_window);
    dropLostCaptures();
    if (!m_pressed.empty())
        return;
    updateTracking();
    if (m_pointer)
        updateCursor();
}

void WindowEvents::windowClosed()
{
    dropLostCaptures();
    m_pressed.clear();
    m_pointer.reset();
    updateTracking();
}

void WindowEvents::subtreeWillLeave(const NSView& subtree)
{
    const auto isInSubtree = [&](const Inside& inside) {
        const auto view = inside.view.lock();
        return view && view->isDescendantOf(subtree);
    };
    for (;;) { // handlers may change the list; the innermost ones are left first
        const auto found = std::ranges::find_if(m_inside.rbegin(), m_inside.rend(), isInSubtree);
        if (found == m_inside.rend())
            return;
        const Inside inside = *found;
        m_inside.erase(std::next(found).base());
        tell(inside, NSEventType::mouseExited);
    }
}

// While a button is down, only areas that want to hear of it then are entered and left.
std::vector<WindowEvents::Inside> WindowEvents::areasToBeIn() const
{
    auto now = m_pointer ? areasAt(*m_pointer) : std::vector<Inside>();
    if (!m_pressed.empty()) {
        const auto isDeaf = [](const Inside& inside) {
            return !contains(inside.area->options(), NSTrackingAreaOptions::enabledDuringMouseDrag);
        };
        std::erase_if(now, isDeaf);
        std::ranges::copy_if(m_inside, std::back_inserter(now), isDeaf);
    }
    return now;
}

// Leaves tracking areas, then enters others. Handlers may come back here, by closing the window for one thing: what
// is told is noted first, and the last call to begin has the rest to do.
void WindowEvents::updateTracking()
{
    auto now = areasToBeIn();
    const std::uint64_t count = ++m_trackingCount;
    const auto isIn = [](const std::vector<Inside>& list, const Inside& inside) {
        return std::ranges::find(list, inside.area, &Inside::area) != list.end();
    };
    for (;;) {
        const auto left =
            std::ranges::find_if(m_inside.rbegin(), m_inside.rend(), [&](const auto& it) { return !isIn(now, it); });
        if (left == m_inside.rend())
            break;
        const Inside inside = *left;
        m_inside.erase(std::next(left).base());
        tell(inside, NSEventType::mouseExited);
        if (count != m_trackingCount)
            return;
    }
    for (const Inside& inside : now) {
        const auto view = inside.view.lock();
        if (!view || view->window() != &m_window || isIn(m_inside, inside))
            continue;
        m_inside.push_back(inside);
        tell(inside, NSEventType::mouseEntered);
        if (count != m_trackingCount)
            return;
    }
    std::erase_if(now, [&](const Inside& inside) { return !isIn(m_inside, inside); });
    m_inside = std::move(now); // the same ones, from the outermost in
}

// Not of an area that was taken out, nor of a view that left the window.
void WindowEvents::tell(const Inside& inside, NSEventType type)
{
    const auto view = inside.view.lock();
    const auto owner = inside.area->owner();
    if (!owner || !view || view->window() != &m_window ||
        std::ranges::find(view->trackingAreas(), inside.area) == view->trackingAreas().end())
        return;
    NSEventContent content;
    content.type = type;
    content.locationInWindow = m_pointer.value_or(CGPoint());
    content.timestamp = m_time;
    content.window = shared(m_window);
    content.trackingArea = inside.area;
    const NSTrackingAreaOptions options = inside.area->options();
    if (contains(options, NSTrackingAreaOptions::mouseEnteredAndExited)) {
        const auto event = make<NSEvent>(content);
        type == NSEventType::mouseEntered ? owner->mouseEntered(*event) : owner->mouseExited(*event);
    }
    if (type == NSEventType::mouseEntered && contains(options, NSTrackingAreaOptions::cursorUpdate)) {
        content.type = NSEventType::cursorUpdate;
        owner->cursorUpdate(*make<NSEvent>(content));
    }
}

// Those of the views that the point is in, from the outermost in.
std::vector<WindowEvents::Inside> WindowEvents::areasAt(CGPoint location) const
{
    struct Visit {
        NSView* view;
        CGPoint point; // in its superview
    };
    std::vector<Inside> result;
    std::vector<Visit> open;
    for (const auto& root : m_window.rootViews({}))
        open.push_back({root.get(), location});
    while (!open.empty()) {
        const Visit visit = open.back();
        open.pop_back();
        const auto point = visit.view->isHidden() ? std::nullopt : pointInside(*visit.view, visit.point);
        if (!point)
            continue;
        for (const auto& area : visit.view->trackingAreas()) {
            const bool isInside =
                contains(area->options(), NSTrackingAreaOptions::inVisibleRect) || area->rect().contains(*point);
            if (isInside && isActive(*area, *visit.view))
                result.push_back({area, shared(*visit.view)});
        }
        for (const auto& subview : visit.view->subviews()) {
            if (visit.view->letsPointerFind(*subview))
                open.push_back({subview.get(), *point});
        }
    }
    return result;
}

bool WindowEvents::isActive(const NSTrackingArea& area, const NSView& view) const
{
    const bool isActive = NSApplication::shared().isActive();
    if (contains(area.options(), NSTrackingAreaOptions::activeWhenFirstResponder))
        return m_window.firstResponder() == &view;
    if (contains(area.options(), NSTrackingAreaOptions::activeInKeyWindow))
        return isActive && m_window.isKeyWindow();
    if (contains(area.options(), NSTrackingAreaOptions::activeInActiveApp))
        return isActive;
    return true;
}

// The look that the innermost view under the pointer has a rectangle for.
void WindowEvents::updateCursor()
{
    std::vector<NSView*> path;
    for (NSView* view = hitTest(*m_pointer); view; view = view->superview())
        path.push_back(view);
    CursorShape shape = CursorShape::arrow;
    CGPoint point = *m_pointer;
    for (NSView* view : std::views::reverse(path)) {
        const auto inside = pointInside(*view, point);
        if (!inside)
            break; // a hit test of a view's own goes elsewhere than where views are
        point = *inside;
        if (const NSCursor* cursor = view->cursorAt(point, {}))
            shape = cursor->shape();
    }
    if (shape == m_cursor)
        return;
    m_cursor = shape;
    m_window.setCursor(shape, {});
}

} // namespace RVCore
