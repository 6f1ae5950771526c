#include <AppKit/CoveredViews.h>
#include <AppKit/KeyViewLoop.h>
#include <AppKit/NSAccessibility.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/WindowKeys.h>

namespace RVCore {

NSWindow& WindowKeys::self()
{
    return static_cast<NSWindow&>(*this);
}

const NSWindow& WindowKeys::self() const
{
    return static_cast<const NSWindow&>(*this);
}

bool WindowKeys::performKeyEquivalent(NSEvent& event)
{
    const auto content = self().contentView(); // a shortcut may put in another one
    return content->performKeyEquivalent(event);
}

void WindowKeys::keyDown(NSEvent& event)
{
    const std::string& key = event.charactersIgnoringModifiers();
    const NSEventModifierFlags flags = event.modifierFlags();
    if (isShortcut(event)) {
        NSResponder::keyDown(event); // the views have had their chance, see WindowEvents
        return;
    }
    if (performKeyEquivalent(event))
        return;
    if (key == NSKey::backTab || (key == NSKey::tab && contains(flags, NSEventModifierFlags::shift)))
        selectPreviousKeyView();
    else if (key == NSKey::tab)
        selectNextKeyView();
    else
        NSResponder::keyDown(event);
}

bool WindowKeys::makeFirstResponder(NSResponder* responder)
{
    NSWindow& window = self();
    if (!responder)
        responder = this;
    NSResponder* const present = firstResponder();
    if (responder == present)
        return true;
    if (responder != this && (!responder->acceptsFirstResponder() || !canHoldKeys(*responder)))
        return false;
    const auto alive = shared(*this); // who is told may close it
    const auto keptNext = shared(*responder);
    const auto keptPresent = shared(*present);
    m_firstResponder.reset(); // so that a choice that is made while the present one lets go can be told
    const bool letsGo = present == this || present->resignFirstResponder();
    if (!m_firstResponder.expired())
        return firstResponder() == responder;
    if (!letsGo && canHoldKeys(*present)) {
        m_firstResponder = keptPresent;
        return false;
    }
    window.contentNeedsFrame({});
    if (responder != this && responder->acceptsFirstResponder() && canHoldKeys(*responder)) {
        m_firstResponder = keptNext;
        if (!responder->becomeFirstResponder())
            m_firstResponder.reset();
    }
    if (auto* focused = dynamic_cast<NSView*>(firstResponder()))
        postAccessibilityChange(*focused, AccessibleChange::focus);
    return firstResponder() == responder;
}

// A view does in its own window only, and while no modal view covers it.
bool WindowKeys::canHoldKeys(NSResponder& responder) const
{
    const auto* view = dynamic_cast<const NSView*>(&responder);
    return !view || (view->window() == &self() && !coverOf(*view));
}

NSResponder* WindowKeys::firstResponder() const
{
    const auto responder = m_firstResponder.lock();
    return responder ? responder.get() : const_cast<WindowKeys*>(this);
}

void WindowKeys::selectNextKeyView()
{
    if (NSView* next = keyViewAfter(self().rootViews({}), dynamic_cast<NSView*>(firstResponder())))
        makeFirstResponder(next);
}

void WindowKeys::selectPreviousKeyView()
{
    if (NSView* previous = keyViewBefore(self().rootViews({}), dynamic_cast<NSView*>(firstResponder())))
        makeFirstResponder(previous);
}

void WindowKeys::releaseKeysIn(NSView& subtree)
{
    const auto responder = m_firstResponder.lock();
    const auto* view = dynamic_cast<const NSView*>(responder.get());
    if (!view || !view->isDescendantOf(subtree))
        return;
    m_firstResponder.reset();
    responder->resignFirstResponder(); // whatever it says: it goes
}

} // namespace RVCore
