#pragma once

#include <AppKit/NSResponder.h>
#include <Backend/Backend.h>

namespace RVCore {

class NSView;

// A window with a content view. The content view has the size of the window's content, and the window is never
// smaller than what the constraints of its content need; it never grows by itself otherwise. Main thread only.
class NSWindow : public NSResponder, private WindowClient {
    RVCORE_CLASS(NSWindow)

public:
    NSWindow();
    ~NSWindow() override;

    void init() override { init(CGSize{480, 320}); }
    // The size of the content, in points: finite and at least 1 × 1, else NSInvalidArgumentException.
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

    // The object that keys go to; initially the window itself, never null while the window lives.
    NSResponder* firstResponder() const { return m_firstResponder; }
    // Makes it the first responder if it accepts; null makes it the window. Returns whether it is now.
    bool makeFirstResponder(NSResponder* responder);

    // Brings layout up to date now, rather than before the next frame.
    void layoutIfNeeded();

private:
    friend class NSView; // tells of changes below
    void contentNeedsFrame();
    void contentViewWillDetach(NSView& subtree); // a first responder that leaves the window gives it back
    void applyContentSize(CGSize size);

    void contentSizeChanged(CGSize size) override;
    void closeRequested() override { close(); }
    void prepareFrame() override { layoutIfNeeded(); }
    void paint(Canvas& canvas) override;

    std::string m_title;
    std::shared_ptr<NSView> m_contentView;
    std::unique_ptr<WindowBackend> m_backend; // made when the window is first shown
    NSResponder* m_firstResponder = this;
    CGSize m_contentSize;
    CGSize m_minimumContentSize;
    std::uint64_t m_constraintRevision = 0;
    bool m_isVisible = false;
};

} // namespace RVCore
