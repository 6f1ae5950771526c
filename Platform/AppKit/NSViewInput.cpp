#include <AppKit/NSViewController.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ViewExtras.h>
#include <AppKit/ViewPlacement.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <ranges>

namespace RVCore {

namespace {

NSView::EventDefault eventDefault = nullptr;

void handleByDefault(NSView& view, NSEvent& event, NSView::InheritedHandler inherited)
{
    if (eventDefault)
        eventDefault(view, event, inherited);
    else
        inherited(view, event);
}

} // namespace

NSView::Extras& NSView::extras()
{
    if (!m_extras)
        m_extras = std::make_unique<Extras>();
    return *m_extras;
}

const std::string& NSView::identifier() const
{
    static const std::string none;
    return m_extras ? m_extras->identifier : none;
}

void NSView::setIdentifier(const std::string& identifier)
{
    if (m_extras || !identifier.empty())
        extras().identifier = identifier;
}

NSResponder* NSView::nextResponder() const
{
    if (m_extras && m_extras->viewController)
        return m_extras->viewController;
    if (m_superview)
        return m_superview;
    return m_hostWindow;
}

void NSView::setViewController(NSViewController* controller, AppKitKey)
{
    if (m_extras || controller)
        extras().viewController = controller;
}

NSViewController* NSView::viewController(AppKitKey) const
{
    return m_extras ? m_extras->viewController : nullptr;
}

void NSView::setEventDefault(EventDefault function)
{
    eventDefault = function;
}

void NSView::mouseDown(NSEvent& event)
{
    handleByDefault(*this, event, [](NSView& self, NSEvent& e) { self.NSResponder::mouseDown(e); });
}

void NSView::mouseUp(NSEvent& event)
{
    handleByDefault(*this, event, [](NSView& self, NSEvent& e) { self.NSResponder::mouseUp(e); });
}

void NSView::mouseMoved(NSEvent& event)
{
    handleByDefault(*this, event, [](NSView& self, NSEvent& e) { self.NSResponder::mouseMoved(e); });
}

void NSView::mouseDragged(NSEvent& event)
{
    handleByDefault(*this, event, [](NSView& self, NSEvent& e) { self.NSResponder::mouseDragged(e); });
}

void NSView::scrollWheel(NSEvent& event)
{
    handleByDefault(*this, event, [](NSView& self, NSEvent& e) { self.NSResponder::scrollWheel(e); });
}

void NSView::keyDown(NSEvent& event)
{
    handleByDefault(*this, event, [](NSView& self, NSEvent& e) { self.NSResponder::keyDown(e); });
}

void NSView::keyUp(NSEvent& event)
{
    handleByDefault(*this, event, [](NSView& self, NSEvent& e) { self.NSResponder::keyUp(e); });
}

bool NSView::performKeyEquivalent(NSEvent& event)
{
    const auto subviews = m_subviews; // what a shortcut does may change the list
    return std::ranges::any_of(subviews, [&](const auto& subview) {
        return !subview->isInvisible() && subview->performKeyEquivalent(event);
    });
}

std::optional<CGPoint> NSView::pointInside(CGPoint point, AppKitKey) const
{
    // On the canvas, from the visible top left corner downward; first the superview's, then this view's.
    if (m_superview) {
        const CGRect outer = m_superview->bounds();
        const CGPoint onCanvas{point.x - outer.minX(),
                               m_superview->isFlipped() ? point.y - outer.minY() : outer.maxY() - point.y};
        const CGAffineTransform placement = placementInSuperview(*this);
        if (placement.a * placement.d == placement.b * placement.c)
            return std::nullopt; // squeezed to nothing
        point = placement.inverted().apply(onCanvas);
    } else {
        point = {point.x - m_frame.minX(), m_frame.maxY() - point.y};
    }
    if (!CGRect({}, m_frame.size).contains(point))
        return std::nullopt;
    const CGRect inner = bounds();
    return CGPoint{point.x + inner.minX(), isFlipped() ? point.y + inner.minY() : inner.maxY() - point.y};
}

NSView* NSView::hitTest(CGPoint point)
{
    if (m_isHidden)
        return nullptr;
    const auto inside = pointInside(point, {});
    if (!inside)
        return nullptr;
    for (NSView* subview : std::views::reverse(subviewsInPaintingOrder(*this))) {
        NSView* hit = letsPointerFind(*subview) ? subview->hitTest(*inside) : nullptr;
        if (hit)
            return hit;
    }
    return this;
}

bool NSView::isHiddenOrHasHiddenAncestor() const
{
    for (const NSView* view = this; view; view = view->m_superview) {
        if (view->m_isHidden)
            return true;
    }
    return false;
}

bool NSView::canBeSeen() const
{
    for (const NSView* view = this; view; view = view->m_superview) {
        if (view->isInvisible())
            return false;
    }
    return true;
}

const std::vector<std::shared_ptr<NSTrackingArea>>& NSView::trackingAreas() const
{
    static const std::vector<std::shared_ptr<NSTrackingArea>> none;
    return m_extras ? m_extras->trackingAreas : none;
}

void NSView::addTrackingArea(const std::shared_ptr<NSTrackingArea>& area)
{
    if (!area)
        raiseInvalidArgument("NSView.addTrackingArea:", "there is no tracking area");
    auto& areas = extras().trackingAreas;
    if (std::ranges::find(areas, area) == areas.end())
        areas.push_back(area);
}

void NSView::removeTrackingArea(const std::shared_ptr<NSTrackingArea>& area)
{
    if (m_extras)
        std::erase(m_extras->trackingAreas, area);
}

void NSView::addCursorRect(const CGRect& rect, const std::shared_ptr<NSCursor>& cursor)
{
    requireFinite("NSView.addCursorRect:cursor:", "rect", rect);
    if (!cursor)
        raiseInvalidArgument("NSView.addCursorRect:cursor:", "there is no cursor");
    extras().cursorRects.push_back({rect, cursor});
}

void NSView::invalidateCursorRects()
{
    m_hasCursorRects = false;
}

NSCursor* NSView::cursorAt(CGPoint point, AppKitKey)
{
    if (!m_hasCursorRects) {
        if (m_extras)
            m_extras->cursorRects.clear();
        m_hasCursorRects = true;
        resetCursorRects();
    }
    if (!m_extras)
        return nullptr;
    for (const auto& [rect, cursor] : std::views::reverse(m_extras->cursorRects)) {
        if (rect.contains(point))
            return cursor.get();
    }
    return nullptr;
}

} // namespace RVCore
