#pragma once

#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/PopoverPlacement.h>

namespace RVCore {

// The border and arrow of a popover, with its content inside.
class PopoverFrameView : public NSView {
    RVCORE_CLASS(PopoverFrameView)

public:
    using NSView::init;
    void setContent(const std::shared_ptr<NSView>& content);
    void setPlacement(const PopoverPlacement& placement);

    bool isFlipped() const override { return true; }
    AccessibleRole accessibilityRole() const override { return AccessibleRole::popover; }
    void draw(Canvas& canvas, const CGRect& dirtyRect) override;

private:
    CGRect box() const;
    CGPoint arrowBase() const;

    PopoverPlacement m_placement;
    std::vector<std::shared_ptr<NSLayoutConstraint>> m_insets; // left, top, right, bottom
};

// The window of a popover: without a title bar, and the keys go to it all the same.
class PopoverWindow : public NSWindow {
    RVCORE_CLASS(PopoverWindow)

public:
    using NSWindow::init;
    void init(NSPopover& popover, const std::shared_ptr<NSView>& content);
    void place(const PopoverPlacement& placement);

    bool canBecomeKeyWindow() const override { return true; }
    bool isOpaque() const override { return false; }
    void keyDown(NSEvent& event) override; // Escape closes the popover
    void close() override;                 // tells the popover
    NSResponder* nextResponder() const override;

private:
    std::weak_ptr<NSPopover> m_popover;
    std::shared_ptr<PopoverFrameView> m_frameView;
    std::optional<PopoverPlacement> m_placement; // the latest
};

} // namespace RVCore
