#pragma once

#include <AppKit/AppKitKey.h>
#include <AppKit/NSResponder.h>
#include <Backend/Accessibility.h>
#include <CoreGraphics/CGGeometry.h>

#include <memory>
#include <string>
#include <vector>

namespace RVCore {

// What a view has to do with its user: the part of NSView, and of nothing else, that events, the pointer, the
// keyboard and assistive technology meet. Main thread only.
class ViewInput : public NSResponder {
public:
    ~ViewInput() override;

    // Its view controller if it has one, or else the superview, of a content view the window.
    NSResponder* nextResponder() const override;
    void mouseDown(NSEvent& event) override;
    void mouseUp(NSEvent& event) override;
    void mouseMoved(NSEvent& event) override;
    void mouseDragged(NSEvent& event) override;
    void scrollWheel(NSEvent& event) override;
    void keyDown(NSEvent& event) override;
    void keyUp(NSEvent& event) override;
    // What every view does with the seven events above unless a subclass overrides the handler: the function gets the
    // inherited handler, which hands the event on. There is one for the program; null (the default) hands on.
    using InheritedHandler = void (*)(NSView& view, NSEvent& event);
    using EventDefault = void (*)(NSView& view, NSEvent& event, InheritedHandler inherited);
    static void setEventDefault(EventDefault function);
    // The button that was pressed here will not be released here: the view left its window, or the window the screen.
    virtual void mouseCaptureLost() {}
    // Asks the subviews that can be seen, in order.
    bool performKeyEquivalent(NSEvent& event) override;

    // The pointer.
    // The topmost view at a point of the superview's coordinates (a root's: the window's): this one or one in it,
    // null for none. Views are hit where they are painted, transforms included, inside the bounds of every view
    // around them; hidden ones are not.
    virtual NSView* hitTest(CGPoint point);
    // Whether the pointer can find the subview, apart from being hidden. Default yes.
    virtual bool letsPointerFind(const NSView&) const { return true; }
    const std::vector<std::shared_ptr<NSTrackingArea>>& trackingAreas() const;
    void addTrackingArea(const std::shared_ptr<NSTrackingArea>& area);    // adding one twice does nothing
    void removeTrackingArea(const std::shared_ptr<NSTrackingArea>& area); // one that is not there does nothing
    // The pointer's look over a part of the view, in its own coordinates; of overlapping parts the later one counts.
    // Called from resetCursorRects, which runs again when the view's size has changed.
    void addCursorRect(const CGRect& rect, const std::shared_ptr<NSCursor>& cursor);
    virtual void resetCursorRects() {}
    void invalidateCursorRects();

    // The keyboard.
    // Asks the first responder to let go if it is this view or in it.
    void letGoOfFocus();
    // Whether Tab can make this the first responder. Default: if it accepts that and can be seen.
    virtual bool canBecomeKeyView() const;
    // The view that Tab goes to from here instead of the next one in layout order; null (the default) for that one.
    std::shared_ptr<NSView> nextKeyView() const;
    void setNextKeyView(const std::shared_ptr<NSView>& view);
    // The subviews in the order in which Tab visits them. Default: in lines from the top, each from the left.
    virtual std::vector<NSView*> subviewsInKeyOrder() const;

    // Assistive technology. What a view without a role contains takes its place; a label makes it a group. A view
    // with neither a label nor a text of its own is named by the label next to it (see NSAccessibility.h).
    virtual AccessibleRole accessibilityRole() const;
    virtual std::string accessibilityLabel() const; // default: the one that was set, else empty
    void setAccessibilityLabel(const std::string& label);
    virtual std::string accessibilityValue() const;              // default empty
    virtual bool setAccessibilityValue(const std::string& text); // returns whether it could; default no
    virtual AccessibleState accessibilityState() const;
    virtual bool accessibilityPerformPress(); // returns whether it did; default no
    // While it is visible, neither assistive technology nor the keyboard reaches the views below it in its superview,
    // and the keyboard does not reach the superview itself. Default no.
    bool isAccessibilityModal() const;
    void setAccessibilityModal(bool modal);

    // A name of the host's own, for dumps and look-ups. Default empty.
    const std::string& identifier() const;
    void setIdentifier(const std::string& identifier);

    // For AppKit's own classes.
    void setViewController(NSViewController* controller, AppKitKey); // whose view this is; null for none
    NSViewController* viewController(AppKitKey) const;
    // Null where no cursor rectangle is.
    NSCursor* cursorAt(CGPoint point, AppKitKey);

private:
    friend class NSView; // the only class that is one: a view input is always a view
    ViewInput();

    NSView& self();
    const NSView& self() const;
    struct Extras;
    Extras& extras();

    std::unique_ptr<Extras> m_extras; // what few views have
};

} // namespace RVCore
