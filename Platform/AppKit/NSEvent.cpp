#include <AppKit/NSEvent.h>
#include <AppKit/NSTrackingArea.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSException.h>

namespace RVCore {

namespace {

std::string_view nameOf(NSEventType type)
{
    switch (type) {
    case NSEventType::leftMouseDown:
        return "leftMouseDown";
    case NSEventType::leftMouseUp:
        return "leftMouseUp";
    case NSEventType::rightMouseDown:
        return "rightMouseDown";
    case NSEventType::rightMouseUp:
        return "rightMouseUp";
    case NSEventType::mouseMoved:
        return "mouseMoved";
    case NSEventType::leftMouseDragged:
        return "leftMouseDragged";
    case NSEventType::rightMouseDragged:
        return "rightMouseDragged";
    case NSEventType::mouseEntered:
        return "mouseEntered";
    case NSEventType::mouseExited:
        return "mouseExited";
    case NSEventType::keyDown:
        return "keyDown";
    case NSEventType::keyUp:
        return "keyUp";
    case NSEventType::flagsChanged:
        return "flagsChanged";
    case NSEventType::cursorUpdate:
        return "cursorUpdate";
    case NSEventType::scrollWheel:
        return "scrollWheel";
    case NSEventType::otherMouseDown:
        return "otherMouseDown";
    case NSEventType::otherMouseUp:
        return "otherMouseUp";
    case NSEventType::otherMouseDragged:
        return "otherMouseDragged";
    }
    return "";
}

} // namespace

Class& NSEvent::staticClass()
{
    static Class& theClass = defineClass<NSEvent>("NSEvent", NSObject::staticClass(), [](auto& publish) {
        publish.readOnlyProperty("type", &NSEvent::type);
        publish.readOnlyProperty("locationInWindow", &NSEvent::locationInWindow);
        publish.readOnlyProperty("modifierFlags", &NSEvent::modifierFlags);
        publish.readOnlyProperty("timestamp", &NSEvent::timestamp);
        publish.readOnlyProperty("window", &NSEvent::window);
        publish.readOnlyProperty("clickCount", &NSEvent::clickCount);
        publish.readOnlyProperty("buttonNumber", &NSEvent::buttonNumber);
        publish.readOnlyProperty("scrollingDeltaX", &NSEvent::scrollingDeltaX);
        publish.readOnlyProperty("scrollingDeltaY", &NSEvent::scrollingDeltaY);
        publish.readOnlyProperty("hasPreciseScrollingDeltas", &NSEvent::hasPreciseScrollingDeltas);
        publish.readOnlyProperty("characters", &NSEvent::characters);
        publish.readOnlyProperty("charactersIgnoringModifiers", &NSEvent::charactersIgnoringModifiers);
        publish.readOnlyProperty("keyCode", &NSEvent::keyCode);
        publish.readOnlyProperty("isARepeat", &NSEvent::isARepeat);
        publish.readOnlyProperty("trackingArea", &NSEvent::trackingArea);
    });
    return theClass;
}

void NSEvent::init(NSEventContent content)
{
    if (nameOf(content.type).empty())
        raiseInvalidArgument("NSEvent.init",
                             "there is no event type " + std::to_string(static_cast<int>(content.type)));
    requireFinite("NSEvent.init", "locationInWindow", content.locationInWindow);
    requireFinite("NSEvent.init", "timestamp", content.timestamp);
    requireFinite("NSEvent.init", "scrollingDelta", content.scrollingDelta);
    m_content = std::move(content);
}

// One that was never set and one that has died both give null; they own different things.
bool NSEvent::hasWindow() const
{
    const std::weak_ptr<NSWindow> none;
    return m_content.window.owner_before(none) || none.owner_before(m_content.window);
}

std::string NSEvent::description() const
{
    std::string text = NSObject::description();
    text.pop_back();
    text += " " + std::string(nameOf(type()));
    if (!m_content.characters.empty())
        text += " '" + m_content.characters + "'";
    else
        text += " at " + describe(m_content.locationInWindow);
    return text + ">";
}

bool isShortcut(const NSEvent& event)
{
    return event.type() == NSEventType::keyDown && (contains(event.modifierFlags(), NSEventModifierFlags::command) ||
                                                    contains(event.modifierFlags(), NSEventModifierFlags::control));
}

} // namespace RVCore
