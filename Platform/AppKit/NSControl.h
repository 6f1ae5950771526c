#pragma once

#include <AppKit/NSView.h>
#include <AppKit/TargetAction.h>
#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/ControlDescription.h>

#include <functional>
#include <optional>

namespace RVCore {

// A view that a user operates and that tells a target about it: it sends its action, the selector of a message that
// takes the control or nothing, to its target. Without a target, the first object on the responder chain that answers
// gets it (see NSApplication::sendAction). The target is not held; once it has died, the action goes nowhere.
//
//     button->setTarget(document);            button->setOnAction([this] { save(); });
//     button->setAction("save:");
class NSControl : public NSView {
    RVCORE_CLASS(NSControl)

public:
    using NSView::init;
    // What a user may have changed is archived, and the action; the target is set again by whoever holds it.
    void init(NSCoder& coder) override;
    void encode(NSCoder& coder) const override;

    ObjectRef target() const { return m_message.target(); } // null when there is none, or once it has died
    virtual void setTarget(const ObjectRef& target);
    const std::optional<Selector>& action() const { return m_message.action(); } // default absent: nothing is sent
    virtual void setAction(const std::optional<Selector>& action);
    // Makes a target of the closure, which the control holds until it gets another target; an empty one leaves the
    // control without target and action.
    void setOnAction(std::function<void()> closure);
    // Sends the action to the target. Returns whether anybody got it; false without an action or when the target has
    // died. Raises NSInvalidArgumentException when the target does not answer; where a user's click or key is behind
    // it, that is printed on standard error.
    bool sendAction();

    // What is not enabled is shown as such, takes neither clicks nor keys, and does not become first responder.
    bool isEnabled() const { return m_isEnabled; } // default yes
    virtual void setEnabled(bool enabled);
    std::int64_t tag() const { return m_tag; } // the host's own number; default 0
    void setTag(std::int64_t tag) { m_tag = tag; }

    bool isFlipped() const override { return true; }
    bool acceptsFirstResponder() const override { return m_isEnabled; }
    AccessibleState accessibilityState() const override;
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;

protected:
    // Whether the keys that its window gets go to it.
    bool hasKeyboardFocus() const;
    // Whether the desktop sends keys to its window; true outside a window.
    bool isWindowActive() const;
    // What the desktop's style has to know of every control, as it is now.
    ControlDescription describeControl(ControlKind kind) const;
    // Of text and templates in a control of that kind.
    CGColor contentColor(ControlKind kind) const;

private:
    TargetAction m_message;
    std::int64_t m_tag = 0;
    bool m_isEnabled = true;
};

} // namespace RVCore
