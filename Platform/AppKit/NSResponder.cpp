#include <AppKit/NSEvent.h>
#include <AppKit/NSResponder.h>
#include <Foundation/Message.h>

namespace RVCore {

namespace {

void handOn(const NSResponder& responder, void (NSResponder::*handler)(NSEvent&), NSEvent& event)
{
    if (NSResponder* next = responder.nextResponder()) {
        const auto alive = shared(*next); // its handler may let go of it
        (next->*handler)(event);
    }
}

} // namespace

Class& NSResponder::staticClass()
{
    static Class& theClass = defineClass<NSResponder>("NSResponder", NSObject::staticClass(), [](auto& publish) {
        publish.readOnlyProperty("nextResponder", [](NSResponder& self) {
            return self.nextResponder() ? shared(*self.nextResponder()) : nullptr;
        });
        publish.readOnlyProperty("acceptsFirstResponder", &NSResponder::acceptsFirstResponder);
        publish.method("becomeFirstResponder", &NSResponder::becomeFirstResponder);
        publish.method("resignFirstResponder", &NSResponder::resignFirstResponder);
        publish.method("mouseDown:", &NSResponder::mouseDown);
        publish.method("mouseUp:", &NSResponder::mouseUp);
        publish.method("mouseMoved:", &NSResponder::mouseMoved);
        publish.method("mouseDragged:", &NSResponder::mouseDragged);
        publish.method("mouseEntered:", &NSResponder::mouseEntered);
        publish.method("mouseExited:", &NSResponder::mouseExited);
        publish.method("rightMouseDown:", &NSResponder::rightMouseDown);
        publish.method("rightMouseUp:", &NSResponder::rightMouseUp);
        publish.method("rightMouseDragged:", &NSResponder::rightMouseDragged);
        publish.method("otherMouseDown:", &NSResponder::otherMouseDown);
        publish.method("otherMouseUp:", &NSResponder::otherMouseUp);
        publish.method("otherMouseDragged:", &NSResponder::otherMouseDragged);
        publish.method("scrollWheel:", &NSResponder::scrollWheel);
        publish.method("keyDown:", &NSResponder::keyDown);
        publish.method("keyUp:", &NSResponder::keyUp);
        publish.method("flagsChanged:", &NSResponder::flagsChanged);
        publish.method("cursorUpdate:", &NSResponder::cursorUpdate);
        publish.method("performKeyEquivalent:", &NSResponder::performKeyEquivalent);
        publish.method("tryToPerform:with:", &NSResponder::tryToPerform);
    });
    return theClass;
}

void NSResponder::mouseDown(NSEvent& event)
{
    handOn(*this, &NSResponder::mouseDown, event);
}

void NSResponder::mouseUp(NSEvent& event)
{
    handOn(*this, &NSResponder::mouseUp, event);
}

void NSResponder::mouseMoved(NSEvent& event)
{
    handOn(*this, &NSResponder::mouseMoved, event);
}

void NSResponder::mouseDragged(NSEvent& event)
{
    handOn(*this, &NSResponder::mouseDragged, event);
}

void NSResponder::mouseEntered(NSEvent& event)
{
    handOn(*this, &NSResponder::mouseEntered, event);
}

void NSResponder::mouseExited(NSEvent& event)
{
    handOn(*this, &NSResponder::mouseExited, event);
}

void NSResponder::rightMouseDown(NSEvent& event)
{
    handOn(*this, &NSResponder::rightMouseDown, event);
}

void NSResponder::rightMouseUp(NSEvent& event)
{
    handOn(*this, &NSResponder::rightMouseUp, event);
}

void NSResponder::rightMouseDragged(NSEvent& event)
{
    handOn(*this, &NSResponder::rightMouseDragged, event);
}

void NSResponder::otherMouseDown(NSEvent& event)
{
    handOn(*this, &NSResponder::otherMouseDown, event);
}

void NSResponder::otherMouseUp(NSEvent& event)
{
    handOn(*this, &NSResponder::otherMouseUp, event);
}

void NSResponder::otherMouseDragged(NSEvent& event)
{
    handOn(*this, &NSResponder::otherMouseDragged, event);
}

void NSResponder::scrollWheel(NSEvent& event)
{
    handOn(*this, &NSResponder::scrollWheel, event);
}

void NSResponder::keyDown(NSEvent& event)
{
    handOn(*this, &NSResponder::keyDown, event);
}

void NSResponder::keyUp(NSEvent& event)
{
    handOn(*this, &NSResponder::keyUp, event);
}

void NSResponder::flagsChanged(NSEvent& event)
{
    handOn(*this, &NSResponder::flagsChanged, event);
}

void NSResponder::cursorUpdate(NSEvent& event)
{
    handOn(*this, &NSResponder::cursorUpdate, event);
}

bool NSResponder::performKeyEquivalent(NSEvent&)
{
    return false;
}

bool NSResponder::tryToPerform(Selector action, const ObjectRef& sender)
{
    for (NSResponder* responder = this; responder; responder = responder->nextResponder()) {
        if (responder->respondsToSelector(action)) {
            send(shared(*responder), action, sender);
            return true;
        }
    }
    return false;
}

} // namespace RVCore
