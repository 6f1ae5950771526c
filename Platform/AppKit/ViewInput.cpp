#include <AppKit/CoveredViews.h>
#include <AppKit/NSView.h>
#include <AppKit/NSViewController.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ViewExtras.h>
#include <AppKit/ViewInput.h>
#include <AppKit/ViewPlacement.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <ranges>

namespace RVCore {

namespace {

ViewInput::EventDefault eventDefault = nullptr;

void handleByDefault(NSView& view, NSEvent& event, ViewInput::InheritedHandler inherited)
{
    if (eventDefault)
        eventDefault(view, event, inherited);
    else
        inherited(view, event);
}

} // namespace

ViewInput::ViewInput() = default;

ViewInput::~ViewInput() = default;

NSView& ViewInput::self()
{
    return static_cast<NSView&>(*this);
}

const NSView& ViewInput::self() const
{
    return static_cast<const NSView&>(*this);
}

ViewInput::Extras& ViewInput::extras()
{
    if (!m_extras)
        m_extras = std::make_unique<Extras>();
    return *m_extras;
}

const std::string& ViewInput::identifier() const
{
    static const std::string none;
    return m_extras ? m_extras->identifier : none;
}

void ViewInput::setIdentifier(const std::string& identifier)
{
    if (m_extras || !identifier.empty())
        extras().identifier = identifier;
}

NSResponder* ViewInput::nextResponder() const
{
    if (m_extras && m_extras->viewController)
        return m_extras->viewController;
    if (NSView* superview = self().superview())
        return superview;
    return self().isContentView() ? self().window() : nullptr;
}

void ViewInput::setViewController(NSViewController* controller, AppKitKey)
{
    if (m_extras || controller)
        extras().viewController = controller;
}

NSViewController* ViewInput::viewController(AppKitKey) const
{
    return m_extras ? m_extras->viewController : nullptr;
}

void ViewInput::setEventDefault(EventDefault function)
{
    eventDefault = function;
}

void ViewInput::mouseDown(NSEvent& event)
{
    handleByDefault(self(), event, [](NSView& self, NSEvent& e) { self.NSResponder::mouseDown(e); });
}

void ViewInput::mouseUp(NSEvent& event)
{
    handleByDefault(self(), event, [](NSView& self, NSEvent& e) { self.NSResponder::mouseUp(e); });
}

void ViewInput::mouseMoved(NSEvent& event)
{
    handleByDefault(self(), event, [](NSView& self, NSEvent& e) { self.NSResponder::mouseMoved(e); });
}

void ViewInput::mouseDragged(NSEvent& event)
{
    handleByDefault(self(), event, [](NSView& self, NSEvent& e) { self.NSResponder::mouseDragged(e); });
}

void ViewInput::scrollWheel(NSEvent& event)
{
    handleByDefault(self(), event, [](NSView& self, NSEvent& e) { self.NSResponder::scrollWheel(e); });
}

void ViewInput::keyDown(NSEvent& event)
{
    handleByDefault(self(), event, [](NSView& self, NSEvent& e) { self.NSResponder::keyDown(e); });
}

void ViewInput::keyUp(NSEvent& event)
{
    handleByDefault(self(), event, [](NSView& self, NSEvent& e) { self.NSResponder::keyUp(e); });
}

bool ViewInput::performKeyEquivalent(NSEvent& event)
{
    std::vector<std::shared_ptr<NSView>> subviews; // what a shortcut does may take them out
    for (NSView* subview : uncoveredSubviews(self()))
        subviews.push_back(shared(*subview));
    return std::ranges::any_of(subviews, [&](const auto& subview) {
        if (subview->isInvisible())
            return false;
        // One that is covered has no shortcuts of its own, what covers it has.
        return isCovered(*subview) ? subview->ViewInput::performKeyEquivalent(event)
                                   : subview->performKeyEquivalent(event);
    });
}

NSView* ViewInput::hitTest(CGPoint point)
{
    NSView& view = self();
    if (view.isHidden())
        return nullptr;
    const auto inside = pointInside(view, point);
    if (!inside)
        return nullptr;
    for (NSView* subview : std::views::reverse(subviewsInPaintingOrder(view))) {
        NSView* hit = letsPointerFind(*subview) ? subview->hitTest(*inside) : nullptr;
        if (hit)
            return hit;
    }
    return &view;
}

const std::vector<std::shared_ptr<NSTrackingArea>>& ViewInput::trackingAreas() const
{
    static const std::vector<std::shared_ptr<NSTrackingArea>> none;
    return m_extras ? m_extras->trackingAreas : none;
}

void ViewInput::addTrackingArea(const std::shared_ptr<NSTrackingArea>& area)
{
    if (!area)
        raiseInvalidArgument("NSView.addTrackingArea:", "there is no tracking area");
    auto& areas = extras().trackingAreas;
    if (std::ranges::find(areas, area) == areas.end())
        areas.push_back(area);
}

void ViewInput::removeTrackingArea(const std::shared_ptr<NSTrackingArea>& area)
{
    if (m_extras)
        std::erase(m_extras->trackingAreas, area);
}

void ViewInput::addCursorRect(const CGRect& rect, const std::shared_ptr<NSCursor>& cursor)
{
    requireFinite("NSView.addCursorRect:cursor:", "rect", rect);
    if (!cursor)
        raiseInvalidArgument("NSView.addCursorRect:cursor:", "there is no cursor");
    extras().cursorRects.push_back({rect, cursor});
}

void ViewInput::invalidateCursorRects()
{
    if (m_extras)
        m_extras->hasCursorRects = false;
}

NSCursor* ViewInput::cursorAt(CGPoint point, AppKitKey)
{
    if (!extras().hasCursorRects) {
        m_extras->cursorRects.clear();
        m_extras->hasCursorRects = true;
        resetCursorRects();
    }
    for (const auto& [rect, cursor] : std::views::reverse(m_extras->cursorRects)) {
        if (rect.contains(point))
            return cursor.get();
    }
    return nullptr;
}

void ViewInput::letGoOfFocus()
{
    NSWindow* host = self().window();
    const auto* focused = host ? dynamic_cast<const NSView*>(host->firstResponder()) : nullptr;
    if (!focused || !focused->isDescendantOf(self()))
        return;
    const auto alive = shared(*this); // who is told may let go of it
    host->makeFirstResponder(nullptr);
}

} // namespace RVCore
