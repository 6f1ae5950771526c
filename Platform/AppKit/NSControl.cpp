#include <AppKit/NSAccessibility.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSControl.h>
#include <AppKit/NSWindow.h>
#include <Backend/Backend.h>
#include <Foundation/NSCoder.h>

namespace RVCore {

Class& NSControl::staticClass()
{
    static Class& theClass = defineClass<NSControl>("NSControl", NSView::staticClass(), [](auto& publish) {
        publish.property("target", &NSControl::target, &NSControl::setTarget);
        publish.property("action", &NSControl::action, &NSControl::setAction);
        publish.method("setOnAction:", &NSControl::setOnAction);
        publish.method("sendAction", &NSControl::sendAction);
        publish.readOnlyProperty("isEnabled", &NSControl::isEnabled);
        publish.method("setEnabled:", &NSControl::setEnabled);
        publish.property("tag", &NSControl::tag, &NSControl::setTag);
    });
    return theClass;
}

void NSControl::init(NSCoder& coder)
{
    NSView::init(coder);
    setAction(coder.decode<std::optional<Selector>>("action"));
    setTag(coder.decode<std::int64_t>("tag"));
    setEnabled(coder.decode<bool>("enabled"));
}

void NSControl::encode(NSCoder& coder) const
{
    NSView::encode(coder);
    // A closure is not archived, so neither is the action that reaches it.
    coder.encode("action",
                 ValueConversion<std::optional<Selector>>::wrap(m_message.callsClosure() ? std::nullopt : action()));
    coder.encode("tag", m_tag);
    coder.encode("enabled", m_isEnabled);
}

void NSControl::setTarget(const ObjectRef& target)
{
    m_message.setTarget(target);
}

void NSControl::setAction(const std::optional<Selector>& action)
{
    m_message.setAction(action, classObject().name() + ".setAction:");
}

void NSControl::setOnAction(std::function<void()> closure)
{
    const ObjectRef caller = TargetAction::makeClosureTarget(std::move(closure));
    setTarget(caller);
    setAction(caller ? std::optional(TargetAction::closureAction()) : std::nullopt);
}

bool NSControl::sendAction()
{
    if (!action() || m_message.hasLostTarget())
        return false;
    return NSApplication::shared().sendAction(*action(), target(), shared(*this));
}

void NSControl::setEnabled(bool enabled)
{
    if (m_isEnabled == enabled)
        return;
    m_isEnabled = enabled;
    setNeedsDisplay(true);
    postAccessibilityChange(*this, AccessibleChange::state);
    NSWindow* host = window();
    if (!enabled && host && host->firstResponder() == this)
        host->makeFirstResponder(nullptr); // keys would go to something that does not take them
}

AccessibleState NSControl::accessibilityState() const
{
    AccessibleState state = NSView::accessibilityState();
    state.isEnabled = m_isEnabled;
    return state;
}

bool NSControl::becomeFirstResponder()
{
    setNeedsDisplay(true);
    return NSView::becomeFirstResponder();
}

bool NSControl::resignFirstResponder()
{
    setNeedsDisplay(true);
    return NSView::resignFirstResponder();
}

bool NSControl::hasKeyboardFocus() const
{
    const NSWindow* host = window();
    return host && host->firstResponder() == this;
}

bool NSControl::isWindowActive() const
{
    const NSWindow* host = window();
    return !host || (host->isKeyWindow() && NSApplication::shared().isActive());
}

ControlDescription NSControl::describeControl(ControlKind kind) const
{
    ControlDescription description;
    description.kind = kind;
    description.appearance = NSApplication::shared().effectiveAppearance();
    description.isEnabled = m_isEnabled;
    description.isWindowActive = isWindowActive();
    description.hasFocus = hasKeyboardFocus();
    return description;
}

CGColor NSControl::contentColor(ControlKind kind) const
{
    return Backend::shared().controlLook().contentColor(describeControl(kind));
}

} // namespace RVCore
