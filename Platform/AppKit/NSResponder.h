#pragma once

#include <AppKit/Forward.h>
#include <Foundation/NSObject.h>

namespace RVCore {

// Anything that events go to. What it does not handle it hands on to its next responder: a view to its superview,
// then to its window, and so on to the application; what nobody handles is dropped. Overriding a handler takes the
// event; calling the inherited one hands it on. Main thread only.
class NSResponder : public NSObject {
    RVCORE_CLASS(NSResponder)

public:
    using NSObject::init;

    // Null at the end of the chain.
    virtual NSResponder* nextResponder() const { return nullptr; }

    // Whether a window may make this its first responder. Default no.
    virtual bool acceptsFirstResponder() const { return false; }
    // Asked when it is about to become the first responder, or to be so no more. Default yes.
    virtual bool becomeFirstResponder() { return true; }
    virtual bool resignFirstResponder() { return true; }

    virtual void mouseDown(NSEvent& event);
    virtual void mouseUp(NSEvent& event);
    virtual void mouseMoved(NSEvent& event);
    virtual void mouseDragged(NSEvent& event);
    virtual void mouseEntered(NSEvent& event);
    virtual void mouseExited(NSEvent& event);
    virtual void rightMouseDown(NSEvent& event);
    virtual void rightMouseUp(NSEvent& event);
    virtual void rightMouseDragged(NSEvent& event);
    virtual void otherMouseDown(NSEvent& event);
    virtual void otherMouseUp(NSEvent& event);
    virtual void otherMouseDragged(NSEvent& event);
    virtual void scrollWheel(NSEvent& event);
    virtual void keyDown(NSEvent& event);
    virtual void keyUp(NSEvent& event);
    virtual void flagsChanged(NSEvent& event);
    virtual void cursorUpdate(NSEvent& event);

    // Does what a shortcut stands for. Returns whether it was one; default no.
    virtual bool performKeyEquivalent(NSEvent& event);
    // Sends the message with the sender to itself or to the first responder on the chain that answers it. Returns
    // whether there was one.
    bool tryToPerform(Selector action, const ObjectRef& sender);
};

} // namespace RVCore
