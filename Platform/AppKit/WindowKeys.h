#pragma once

#include <AppKit/AppKitKey.h>
#include <AppKit/NSResponder.h>

#include <memory>

namespace RVCore {

// Who in a window has the keys: the part of NSWindow, and of nothing else, that the first responder and the key view
// loop meet. Main thread only.
class WindowKeys : public NSResponder {
public:
    // The object that keys go to; initially the window itself, and again when the object dies or leaves the window.
    NSResponder* firstResponder() const;
    // Makes it the first responder if it accepts, which a view does in its own window only and while no modal view
    // covers it, and if the present one lets go, which one that is covered has to; null makes it the window. One that
    // is told that it is so no more may choose another. Returns whether it is now.
    bool makeFirstResponder(NSResponder* responder);
    // The first responder moves on by one in the key view loop, or back.
    void selectNextKeyView();
    void selectPreviousKeyView();

    // What keys do that nobody else takes: shortcuts without a modifier (Return, Escape), then Tab and Shift-Tab.
    void keyDown(NSEvent& event) override;
    // Asks the content.
    bool performKeyEquivalent(NSEvent& event) override;

private:
    friend class NSWindow; // the only class that is one: it is always a window
    WindowKeys() = default;

    NSWindow& self();
    const NSWindow& self() const;
    bool canHoldKeys(NSResponder& responder) const;
    // The view is about to be taken out: the first responder, if it is in it, lets go.
    void releaseKeysIn(NSView& subtree);

    std::weak_ptr<NSResponder> m_firstResponder; // expired for the window itself
};

} // namespace RVCore
