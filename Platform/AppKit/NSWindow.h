#pragma once

#include <AppKit/NSWindowDelegate.h>
#include <AppKit/NSWindowStyle.h>
#include <AppKit/WindowEvents.h>
#include <AppKit/WindowGeometry.h>
#include <AppKit/WindowKeys.h>
#include <Backend/Backend.h>
#include <Dispatch/DispatchTime.h>

namespace RVCore {

class WindowFrameAnimation;
class WindowPainter;

// A window with a content view. The content view has the size of the window's content, and the window is never
// smaller than what the constraints of its content need; it never grows by itself otherwise. A desktop that refuses
// the size that the content needs is asked once. How small the user can make it follows the content at once, or where
// that takes more than two milliseconds to find out, when there have been no frames for a fifth of a second. Main
// thread only.
//
//      ┌─────────────────┐ top        frame: with the title bar and borders, in screen coordinates, whose
//      │    title bar    │            origin is at the main screen's bottom left corner, y upward, in points
//      ├─────────────────┤
//      │     toolbar     │            where there is one; no part of the content
//      ├─────────────────┤
//      │     content     │            A desktop knows whole points from 1 to 32,767 for the sides of the content;
//      │                 │            fractions are rounded up. When the content's size changes, the top left
//      └─────────────────┘            corner stays, unless a whole frame is set.
//    origin
//
// Until a desktop tells what it puts around the content, and where there is none, a title bar is 22 points high. A
// window that nobody has placed is placed by the desktop. One that does not let programs place their windows
// (Wayland) leaves it where it is; what was asked for is then still what the window answers. Who in it has the keys
// is in WindowKeys.h.
class NSWindow : public WindowKeys, private WindowClient {
    RVCORE_CLASS(NSWindow)

public:
    NSWindow();
    ~NSWindow() override;

    void init() override { init(CGSize{480, 320}); }
    // A window with a title bar that the user can close, minimise and resize. Sizes that are not finite or less than
    // 1 × 1 raise NSInvalidArgumentException.
    using NSObject::init;
    void init(CGSize contentSize);
    // A side of 0 is legal: the content takes the size that it needs. With the origin (0, 0) the desktop places the
    // window. Sides that are negative, numbers that are not finite and style bits that are none raise
    // NSInvalidArgumentException. Deferral changes nothing: a desktop's window is made when it is first shown.
    virtual void init(const CGRect& contentRect, NSWindowStyleMask styleMask,
                      NSBackingStoreType backing = NSBackingStoreType::buffered, bool isDeferred = false);

    NSWindowStyleMask styleMask() const { return m_styleMask; }
    bool isResizable() const { return contains(m_styleMask, NSWindowStyleMask::resizable); } // by the user
    virtual bool isOpaque() const { return true; } // otherwise what is behind shows where nothing is painted
    std::shared_ptr<NSWindowDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(const std::weak_ptr<NSWindowDelegate>& delegate) { m_delegate = delegate; } // not owned
    const std::string& title() const { return m_title; }
    void setTitle(const std::string& title);

    // Never null. Replacing it gives the new view the window's content size.
    const std::shared_ptr<NSView>& contentView() const { return m_contentView; }
    void setContentView(const std::shared_ptr<NSView>& view);
    // Setting one gives the window its view for content, in the view's size if that has one, null a plain view;
    // setting another content view takes the controller out. Default null.
    const std::shared_ptr<NSViewController>& contentViewController() const { return m_contentViewController; }
    void setContentViewController(const std::shared_ptr<NSViewController>& controller);
    NSWindowController* windowController() const; // null for none; not owned
    // It comes from the window that it was in. As toolbars come and go, and are hidden and shown, the frame grows and
    // shrinks at the bottom, and the content keeps its size. Default null.
    const std::shared_ptr<NSToolbar>& toolbar() const { return m_toolbar; }
    void setToolbar(const std::shared_ptr<NSToolbar>& toolbar);

    // Geometry. Numbers that are not finite, negative sides, and origins further than 1,000,000 points from that of
    // the screen raise NSInvalidArgumentException. Sizes are kept within the limits of the content.
    CGRect frame() const { return m_geometry.frame(); }
    CGRect frameRectForContentRect(const CGRect& content) const { return m_geometry.frameFor(content); }
    CGRect contentRectForFrameRect(const CGRect& frame) const { return m_geometry.contentFor(frame); }
    // Animated, the frame is on its way for animationResizeTime; whatever else sets frame, origin or size ends that.
    virtual void setFrame(const CGRect& frame, NSWindowFrameChange change = {});
    virtual void setFrameOrigin(CGPoint origin);
    // Seconds that an animated change to this frame takes: 0.2 for every 150 points of its largest change.
    virtual double animationResizeTime(const CGRect& newFrame) const;
    bool isAnimatingFrame() const { return m_animation != nullptr; }
    void center(); // in what is visible of its screen
    CGSize contentSize() const { return m_geometry.contentSize; }
    CGSize areaSize() const { return m_geometry.areaFor(contentSize()); } // of content and toolbar together
    void setContentSize(CGSize size);
    // Limits for the content's size, beside what the content needs, which comes first. Defaults: 0 × 0 and
    // 32,767 × 32,767. Of two that contradict each other the minimum counts.
    CGSize contentMinSize() const { return m_geometry.contentMinSize; }
    void setContentMinSize(CGSize size);
    CGSize contentMaxSize() const { return m_geometry.contentMaxSize; }
    void setContentMaxSize(CGSize size);
    // The screen that most of the window is on; null when that is none.
    std::shared_ptr<NSScreen> screen() const;
    CGFloat backingScaleFactor() const;

    // On the screen. A window is open from when it is first shown until it is closed; the application holds it so
    // long. Visible it is while it is neither ordered out nor minimised.
    bool isVisible() const { return m_isVisible && !m_isMiniaturized; }
    bool isMiniaturized() const { return m_isMiniaturized; }
    // Visible, and not out of sight for a reason of the desktop's, such as another workspace.
    bool isExposed() const { return isVisible() && m_backend && m_backend->isExposed(); }
    // Show the window, with its content laid out, in front of the program's other windows; behind them. A minimised
    // one comes back, without the keys.
    void orderFront();
    void orderBack();
    void orderOut(); // takes it off the screen and leaves it open
    void makeKeyAndOrderFront();
    // Makes keys go to this window if it is visible and can be the key window; otherwise does nothing.
    void makeKeyWindow();
    bool isKeyWindow() const;
    virtual bool canBecomeKeyWindow() const; // default: with a title bar
    // A window that is not open stays as it is. Its child windows leave the screen and come back with it; a popover
    // closes.
    void miniaturize();
    void deminiaturize();
    // Takes the window off the screen and closes its child windows; when it was the last one that was open, the
    // application's run ends. Does nothing to a window that is not open.
    virtual void close();
    // What the user's closing does: closes the window if it is closable and its delegate agrees.
    void performClose();

    // Child windows stay in front of their parent, or behind it, and move with it. The parent holds them. Adding one
    // takes it from the parent it had; it does not show it. A window that is added to itself or to one of its own
    // child windows, and an order that is none, raise NSInvalidArgumentException.
    void addChildWindow(const std::shared_ptr<NSWindow>& child, NSWindowOrderingMode order);
    void removeChildWindow(NSWindow& child); // one that is not there does nothing
    std::vector<std::shared_ptr<NSWindow>> childWindows() const;
    NSWindow* parentWindow() const { return m_parent; }

    NSResponder* nextResponder() const override; // the window controller, or else the application

    // Sends an event to where it belongs: pointer events to the view under the pointer, or to the one where the
    // button was pressed while one is down; keys to the first responder. A window that is not visible drops it.
    virtual void sendEvent(NSEvent& event);
    // Whether the view under the pointer hears of moves without a tracking area. Default no.
    bool acceptsMouseMovedEvents() const { return m_acceptsMouseMovedEvents; }
    void setAcceptsMouseMovedEvents(bool accepts) { m_acceptsMouseMovedEvents = accepts; }
    // Brings layout up to date now, rather than before the next frame.
    void layoutIfNeeded();
    // Writes what the window shows, toolbar and content, as a PNG file, `scale` pixels to a point; it need not be on
    // the screen. Raises NSInvalidArgumentException when the file cannot be written (see Backend::writePicture).
    void writePicture(const std::string& path, CGFloat scale);

    // For AppKit's own classes: what happens in the content.
    void contentNeedsFrame(AppKitKey);
    void setCursor(CursorShape shape, AppKitKey);
    void toolbarHeightChanged(AppKitKey);
    std::vector<std::shared_ptr<NSView>> rootViews(AppKitKey) const; // the content view, then that of the toolbar
    void addPopover(NSPopover& popover, AppKitKey);                  // which follows what is laid out here
    void accessibilityChanged(const std::shared_ptr<AccessibleElement>& element, AccessibleChange change, AppKitKey);
    // See WindowBackend::setTextInput. Without effect before the window is first shown; drawing says it again.
    void setTextInput(const std::shared_ptr<TextEditor>& editor, CGPoint origin, AppKitKey);
    void subtreeWillLeave(NSView& subtree, AppKitKey);
    void setWindowController(NSWindowController* controller, AppKitKey);
    void keyChanged(bool isKey, AppKitKey);

private:
    struct Child {
        std::shared_ptr<NSWindow> window;
        NSWindowOrderingMode order;
    };

    void placeToolbar();
    std::shared_ptr<NSToolbar> releaseToolbar();
    void limitsChanged();
    void animateTo(const CGRect& frame);
    void scheduleStep(DispatchTime time);
    void stepAnimation();
    void applyFrame(const CGRect& frame);
    void applyContentSize(CGSize size);
    void applyGeometry(CGPoint origin, CGSize contentSize);
    void topLeftMoved(CGPoint before);
    void moveBy(CGFloat dx, CGFloat dy);
    void tellDelegate(void (NSWindowDelegate::*notice)(NSWindow&));

    void passOrigin();
    void makeBackend();
    void show(WindowOrder order);
    void leaveScreen();
    void setMiniaturized(bool isMiniaturized);
    void closePopovers();
    void takeDescendantsOut();
    void bringDescendantsBack();
    void addFamily(std::vector<NSWindow*>& backToFront);
    std::vector<NSWindow*> family();
    void orderFamily(WindowOrder order);
    void replaceContent(const std::shared_ptr<NSView>& view, const std::shared_ptr<NSViewController>& controller);
    void takeContentView(const std::shared_ptr<NSView>& view);
    void layoutViews();
    void takeNeededSize();
    void requestNextFrame();
    void updateMinimumContentSize();
    void updateMinimumAtRest();

    void contentSizeChanged(CGSize size) override;
    void closeRequested() override { performClose(); }
    void placementChanged() override;
    void backingScaleChanged() override;
    void activeChanged(bool isActive) override;
    void minimizedChanged(bool isMinimized) override;
    void prepareFrame() override;
    void paint(Canvas& canvas) override;
    WindowPixels paintPixels(CGFloat scale) override;
    void handleInput(const InputEvent& event) override { m_events.handleInput(event); }
    std::vector<std::shared_ptr<AccessibleElement>> accessibleElements() override;

    std::string m_title;
    std::shared_ptr<NSView> m_contentView;
    std::unique_ptr<WindowBackend> m_backend; // made when the window is first shown
    WindowEvents m_events{*this};
    const std::unique_ptr<WindowPainter> m_painter;
    std::shared_ptr<NSViewController> m_contentViewController;
    std::shared_ptr<NSToolbar> m_toolbar;
    std::weak_ptr<NSWindowDelegate> m_delegate;
    NSWindowController* m_windowController = nullptr;
    NSWindow* m_parent = nullptr;
    std::vector<std::weak_ptr<NSPopover>> m_popovers;
    std::vector<Child> m_children; // of each order the lowest first
    std::shared_ptr<const WindowFrameAnimation> m_animation;
    NSWindowStyleMask m_styleMask = NSWindowStyleMask::borderless;
    WindowGeometry m_geometry;
    CGSize m_askedSize;                     // what the content last made the window ask for; 0 where it fits
    std::uint64_t m_constraintRevision = 0; // that the minimum was found for; 0 when there is none
    double m_minimumCost = 0;               // how long that took, in seconds
    DispatchTime m_lastFrame{0};
    bool m_waitsForRest = false; // to find the minimum
    bool m_isPlaced = false;     // by the program or the user
    bool m_isOpen = false;
    bool m_isVisible = false; // or minimised
    bool m_isMiniaturized = false;
    bool m_comesBackWithParent = false; // it left the screen when a parent was minimised
    bool m_acceptsMouseMovedEvents = false;
};

} // namespace RVCore
