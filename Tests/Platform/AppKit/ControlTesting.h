#pragma once

#include <AppKit/NSControl.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>

#include <string>
#include <vector>

namespace RVCore {

// Takes actions and notes from whom.
class ActionLog : public NSObject {
    RVCORE_CLASS(ActionLog)

public:
    void take(const ObjectRef& sender) { senders.push_back(sender); }
    void takeNothing() { ++plainCount; }

    std::vector<ObjectRef> senders;
    int plainCount = 0;
};

inline Class& ActionLog::staticClass()
{
    static Class& theClass = defineClass<ActionLog>("ActionLog", NSObject::staticClass(), [](auto& publish) {
        publish.method("take:", &ActionLog::take);
        publish.method("takeNothing", &ActionLog::takeNothing);
    });
    return theClass;
}

// A window's content that takes the same action.
class ActionView : public NSView {
    RVCORE_CLASS(ActionView)

public:
    bool acceptsFirstResponder() const override { return true; }
    void take(const ObjectRef&) { ++count; }

    int count = 0;
};

inline Class& ActionView::staticClass()
{
    static Class& theClass = defineClass<ActionView>(
        "ActionView", NSView::staticClass(), [](auto& publish) { publish.method("takeInView:", &ActionView::take); });
    return theClass;
}

// Events at a place in a view's own coordinates.
inline std::shared_ptr<NSEvent> mouseEvent(NSEventType type, const NSView& view, CGPoint point)
{
    NSEventContent content;
    content.type = type;
    content.locationInWindow = view.convertPointTo(point, nullptr);
    content.clickCount = 1;
    return make<NSEvent>(content);
}

inline std::shared_ptr<NSEvent> keyEvent(const std::string& characters,
                                         NSEventModifierFlags modifiers = NSEventModifierFlags::none)
{
    NSEventContent content;
    content.type = NSEventType::keyDown;
    content.characters = content.charactersIgnoringModifiers = characters;
    content.modifierFlags = modifiers;
    return make<NSEvent>(content);
}

inline std::shared_ptr<NSEvent> repeatedKeyEvent(const std::string& characters)
{
    NSEventContent content;
    content.type = NSEventType::keyDown;
    content.characters = content.charactersIgnoringModifiers = characters;
    content.isARepeat = true;
    return make<NSEvent>(content);
}

} // namespace RVCore
