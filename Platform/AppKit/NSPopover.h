#pragma once

#include <AppKit/AppKitKey.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSResponder.h>
#include <CoreGraphics/CGGeometry.h>

namespace RVCore {

class EventMonitor;
class PopoverWindow;

// A side of a rectangle in the coordinates of a view: minY is the bottom one unless the view is flipped.
enum class NSRectEdge : std::uint8_t { minX = 0, minY = 1, maxX = 2, maxY = 3 };

// When a popover closes by itself, beside Escape and the end of its anchor.
enum class NSPopoverBehavior : std::uint8_t {
    applicationDefined = 0, // never
    transient = 1,          // when the user presses, types or scrolls in another of the program's windows
    semitransient = 2       // when the user presses or types there
};

// What a popover tells and asks; every operation may be left out.
class NSPopoverDelegate {
public:
    virtual ~NSPopoverDelegate() = default;
    virtual bool popoverShouldClose(NSPopover&) { return true; } // asked when the user closes it
    virtual void popoverWillShow(NSPopover&) {}
    virtual void popoverDidClose(NSPopover&) {}
};

// A view controller's view in a small window of its own with an arrow that points at its anchor, a rectangle of a
// view of another window. It is as large as the view's constraints make it, or along a side where they make it
// nothing, as the controller prefers; it stands at the preferred edge where there is room on the screen, and follows
// the anchor. It closes when its anchor or the window of that leaves the screen. Nobody holds it while it is shown:
// one that its owner lets go of closes. Main thread only.
class NSPopover : public NSResponder {
    RVCORE_CLASS(NSPopover)

public:
    NSPopover();
    ~NSPopover() override;
    using NSObject::init;

    NSPopoverBehavior behavior() const { return m_behavior; } // default applicationDefined
    virtual void setBehavior(NSPopoverBehavior behavior);     // one that is none raises NSInvalidArgumentException
    std::shared_ptr<NSPopoverDelegate> delegate() const { return m_delegate.lock(); }
    virtual void setDelegate(const std::weak_ptr<NSPopoverDelegate>& delegate) { m_delegate = delegate; } // not owned
    const std::shared_ptr<NSViewController>& contentViewController() const { return m_contentViewController; }
    virtual void setContentViewController(const std::shared_ptr<NSViewController>& controller);

    // Shows it at the edge of the rectangle, which is in the view's coordinates; CGRect() stands for the view's
    // bounds. One that is shown moves there. What its delegate does when it is told may leave it closed. Raises
    // NSInvalidArgumentException, and shows nothing, without a content view controller, for a view that is in no
    // visible window, and for numbers that are not finite.
    virtual void showRelativeToRect(const CGRect& rect, NSView& view, NSRectEdge preferredEdge);
    bool isShown() const { return m_window != nullptr; }
    // Closes it if it is shown; as the user does, if its delegate agrees.
    void close();
    void performClose();
    // The window that it is shown in; null while it is not.
    std::shared_ptr<NSWindow> window() const;

    NSResponder* nextResponder() const override; // the anchor

    // For AppKit's own classes: the window of the anchor, or the popover's own, has been laid out.
    void follow(AppKitKey);

private:
    void observe(NSEvent& event);
    bool canStandAt(const NSView& anchor) const;
    CGSize contentSize() const;
    bool place();

    NSPopoverBehavior m_behavior = NSPopoverBehavior::applicationDefined;
    std::weak_ptr<NSPopoverDelegate> m_delegate;
    std::shared_ptr<NSViewController> m_contentViewController;
    // While it is shown.
    std::shared_ptr<PopoverWindow> m_window;
    std::unique_ptr<EventMonitor> m_monitor;
    std::weak_ptr<NSView> m_anchor;
    CGRect m_anchorRect;
    NSRectEdge m_preferredEdge = NSRectEdge::maxY;
};

} // namespace RVCore
