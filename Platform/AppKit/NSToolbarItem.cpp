#include <AppKit/NSApplication.h>
#include <AppKit/NSImage.h>
#include <AppKit/NSToolbar.h>
#include <AppKit/NSToolbarItem.h>
#include <AppKit/NSWindow.h>

namespace RVCore {

Class& NSToolbarItem::staticClass()
{
    static Class& theClass = defineClass<NSToolbarItem>("NSToolbarItem", NSObject::staticClass(), [](auto& publish) {
        publish.initializer("initWithItemIdentifier:",
                            [](NSToolbarItem& self, const std::string& identifier) { self.init(identifier); });
        publish.readOnlyProperty("itemIdentifier", &NSToolbarItem::itemIdentifier);
        publish.property("label", &NSToolbarItem::label, &NSToolbarItem::setLabel);
        publish.property("image", &NSToolbarItem::image, &NSToolbarItem::setImage);
        publish.property("target", &NSToolbarItem::target, &NSToolbarItem::setTarget);
        publish.property("action", &NSToolbarItem::action, &NSToolbarItem::setAction);
        publish.method("setOnAction:", &NSToolbarItem::setOnAction);
        publish.method("sendAction", &NSToolbarItem::sendAction);
        publish.readOnlyProperty("isEnabled", &NSToolbarItem::isEnabled);
        publish.method("setEnabled:", &NSToolbarItem::setEnabled);
        publish.method("validate", &NSToolbarItem::validate);
        publish.readOnlyProperty(
            "toolbar", [](NSToolbarItem& self) { return self.toolbar() ? shared(*self.toolbar()) : nullptr; });
    });
    return theClass;
}

void NSToolbarItem::init(const std::string& itemIdentifier)
{
    m_itemIdentifier = itemIdentifier;
}

void NSToolbarItem::setLabel(const std::string& label)
{
    if (m_label == label)
        return;
    m_label = label;
    changed();
}

void NSToolbarItem::setImage(const std::shared_ptr<NSImage>& image)
{
    if (m_image == image)
        return;
    m_image = image;
    changed();
}

void NSToolbarItem::setTarget(const ObjectRef& target)
{
    m_message.setTarget(target);
}

void NSToolbarItem::setAction(const std::optional<Selector>& action)
{
    m_message.setAction(action, classObject().name() + ".setAction:");
}

void NSToolbarItem::setOnAction(std::function<void()> closure)
{
    const ObjectRef caller = TargetAction::makeClosureTarget(std::move(closure));
    setTarget(caller);
    setAction(caller ? std::optional(TargetAction::closureAction()) : std::nullopt);
}

void NSToolbarItem::setEnabled(bool enabled)
{
    if (m_isEnabled == enabled)
        return;
    m_isEnabled = enabled;
    changed();
}

// Who gets the action; null for nobody. A target gets it whether or not it answers.
ObjectRef NSToolbarItem::receiver() const
{
    if (!action() || m_message.hasLostTarget())
        return nullptr;
    if (ObjectRef own = target())
        return own;
    NSApplication& application = NSApplication::shared();
    const NSWindow* window = m_toolbar && m_toolbar->window() ? m_toolbar->window() : application.keyWindow();
    NSResponder* responder = window ? window->firstResponder() : &application;
    while (responder && !responder->respondsToSelector(*action()))
        responder = responder->nextResponder();
    return responder ? shared(*responder) : nullptr;
}

bool NSToolbarItem::sendAction()
{
    const ObjectRef to = receiver();
    return to && NSApplication::shared().sendAction(*action(), to, shared(*this));
}

void NSToolbarItem::validate()
{
    const ObjectRef to = receiver();
    setEnabled(to && to->respondsToSelector(*action()));
}

void NSToolbarItem::changed()
{
    if (m_toolbar)
        m_toolbar->itemChanged(*this, {});
}

} // namespace RVCore
