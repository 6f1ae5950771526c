#pragma once

#include <AppKit/AppKitKey.h>
#include <AppKit/NSResponder.h>
#include <AppKit/WindowEvents.h>
#include <Backend/Backend.h>

namespace RVCore {

class NSView;

// A window with a content view. The content view has the size of the window's content, and the window is never
// smaller than what the constraints of its content need; it never grows by itself otherwise. Sizes are of the
// content, in points: a desktop knows whole ones from 1 to 32,767, and fractions are rounded up. A desktop that
// refuses the size that the content needs is asked once. Main thread only.
class NSWindow : public NSResponder, private WindowClient {
    RVCORE_CLASS(NSWindow)

public:
    NSWindow();
    ~NSWindow() override;

    void init() override { init(CGSize{480, 320}); }
    // Sizes that are not finite or less than 1 × 1 raise NSInvalidArgumentException.
    using NSObject::init;
    void init(CGSize contentSize);

    const std::string& title() const { return m_title; }
    void setTitle(const std::string& title);

    // Never null. Replacing it gives the new view the window's content size.
    const std::shared_ptr<NSView>& contentView() const { return m_contentView; }
    void setContentView(const std::shared_ptr<NSView>& view);
    CGSize contentSize() const { return m_contentSize; }
    void setContentSize(CGSize size);
    CGFloat backingScaleFactor() const;

    bool isVisible() const { return m_isVisible; }
    // Shows the window above the others and lays out its content. The application holds it until it is closed.
    void makeKeyAndOrderFront();
    // Takes the window off the screen; when it was the last one, the application's run ends.
    void close();

    // Sends an event to where it belongs: pointer events to the view under the pointer, or to the one where the
    // button was pressed while one is down; keys to the first responder. A window that is not visible drops it.
    virtual void sendEvent(NSEvent& event);
    // Whether the view under the pointer hears of moves without a tracking area. Default no.
    bool acceptsMouseMovedEvents() const { return m_acceptsMouseMovedEvents; }
    void setAcceptsMouseMovedEvents(bool accepts) { m_acceptsMouseMovedEvents = accepts; }
    // What keys do that nobody else takes: shortcuts without a modifier (Return, Escape), then Tab and Shift-Tab.
    void keyDown(NSEvent& event) override;
    bool performKeyEquivalent(NSEvent& event) override;

    // The object that keys go to; initially the window itself, and again when the object dies or leaves the window.
    NSResponder* firstResponder() const;
    // Makes it the first responder if it accepts, which a view does in its own window only, and if the present one
    // lets go; null makes it the window. Returns whether it is now.
    bool makeFirstResponder(NSResponder* responder);
    // The first responder moves on by one in the key view loop, or back.
    void selectNextKeyView();
    void selectPreviousKeyView();

    // Brings layout up to date now, rather than before the next frame.
    void layoutIfNeeded();

    // For AppKit's own classes: what happens in the content.
    void contentNeedsFrame(AppKitKey);
    void setCursor(CursorShape shape, AppKitKey);
    void accessibilityChanged(const std::shared_ptr<AccessibleElement>& element, AccessibleChange change, AppKitKey);
    void subtreeWillLeave(NSView& subtree, AppKitKey);

private:
    void applyContentSize(CGSize size);
    void takeNeededSize();
    void updateMinimumContentSize();

    void contentSizeChanged(CGSize size) override;
    void closeRequested() override { close(); }
    void prepareFrame() override;
    void paint(Canvas& canvas) override;
    void handleInput(const InputEvent& event) override { m_events.handleInput(event); }
    std::vector<std::shared_ptr<AccessibleElement>> accessibleElements() override;

    std::string m_title;
    std::shared_ptr<NSView> m_contentView;
    std::unique_ptr<WindowBackend> m_backend;    // made when the window is first shown
    std::weak_ptr<NSResponder> m_firstResponder; // expired for the window itself
    WindowEvents m_events{*this};
    CGSize m_contentSize;
    CGSize m_minimumContentSize{1, 1};
    CGSize m_askedSize;                     // what the content last made the window ask for; 0 where it fits
    std::uint64_t m_constraintRevision = 0; // that the minimum was found for; 0 when there is none
    bool m_isVisible = false;
    bool m_acceptsMouseMovedEvents = false;
};

} // namespace RVCore
