#pragma once

#include <AppKit/NSPopover.h>
#include <AppKit/NSView.h>

#include <functional>

namespace RVCore {

class ToolbarItemButton;

// The items that a toolbar has no room for, one below the other. Up and Down move among those that can be pressed; of
// a long list a part is shown, which follows them and the scroll wheel.
class ToolbarOverflowList : public NSView {
    RVCORE_CLASS(ToolbarOverflowList)

public:
    using NSView::init;
    // `close` closes the list.
    void init(const std::vector<std::shared_ptr<NSToolbarItem>>& items, const std::function<void()>& close);
    void itemChanged(const NSToolbarItem& item);
    // To the next item that can be pressed, or back by one with -1.
    void moveFocus(int step);

    bool isFlipped() const override { return true; }
    CGSize intrinsicContentSize() const override;
    void layout() override;
    void scrollWheel(NSEvent& event) override;
    void keyDown(NSEvent& event) override;
    // Brings the row into sight.
    void reveal(const NSView& row);

private:
    CGFloat contentHeight() const;
    void scrollTo(CGFloat y);

    std::vector<std::shared_ptr<ToolbarItemButton>> m_rows;
    CGSize m_rowSize;
};

// The popover that shows them.
class ToolbarOverflow {
public:
    bool isShown() const { return m_popover && m_popover->isShown(); }
    void show(const std::vector<std::shared_ptr<NSToolbarItem>>& items, NSView& anchor);
    void close();
    void itemChanged(const NSToolbarItem& item);

private:
    std::shared_ptr<NSPopover> m_popover;
    std::shared_ptr<ToolbarOverflowList> m_list;
};

} // namespace RVCore
