#pragma once

#include <AppKit/NSView.h>
#include <AppKit/ToolbarPlan.h>

#include <unordered_map>

namespace RVCore {

class ToolbarItemButton;
class ToolbarOverflow;

// What a toolbar is in a window: a bar above the content view, as wide as it, and like that a root. It has a button
// for each item that has room, and at the right end one that opens the list of the others.
class ToolbarView : public NSView {
    RVCORE_CLASS(ToolbarView)

public:
    ToolbarView();
    ~ToolbarView() override;
    using NSView::init;
    void init(NSToolbar& toolbar);

    // The height of every toolbar, whole points: one row of pictures with labels beside them.
    static CGFloat barHeight();

    // For the toolbar: its items are others, or in another order; one of them is to look different; it dies.
    void itemsChanged();
    void itemChanged(NSToolbarItem& item);
    void toolbarEnds();

    // As of the last layout.
    std::size_t shownCount() const { return m_plan.shown.size(); }
    std::vector<std::shared_ptr<NSToolbarItem>> overflowingItems() const;
    // Null while everything has room.
    std::shared_ptr<NSButton> chevron() const;
    void toggleOverflow();
    void close(); // the list of the others

    bool isFlipped() const override { return true; }
    AccessibleRole accessibilityRole() const override { return AccessibleRole::toolbar; }
    void layout() override;
    void draw(Canvas& canvas, const CGRect& dirtyRect) override;

private:
    ToolbarPlan makePlan();
    void apply();
    void place(NSButton& button, const ToolbarPlan::Span& span);
    ToolbarItemButton& buttonOf(NSToolbarItem& item);
    NSButton& chevronButton();

    NSToolbar* m_toolbar = nullptr;
    std::unordered_map<const NSToolbarItem*, std::shared_ptr<ToolbarItemButton>> m_buttons; // of those measured
    std::shared_ptr<NSButton> m_chevron;                                                    // made when first needed
    std::unique_ptr<ToolbarOverflow> m_overflow;
    ToolbarPlan m_plan;
};

} // namespace RVCore
