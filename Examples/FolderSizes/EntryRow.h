#pragma once

#include <FolderSizes/FolderListing.h>
#include <FolderSizes/ProportionalBar.h>

#include <array>
#include <functional>

namespace FolderSizes {

inline constexpr std::size_t columnCount = 5; // name, kind, size, bar, share

// One line of the list: a horizontal group of cells. A cell is a group of its own around one view, which it aligns
// with the heading of its column, so that columns line up however wide the content of a row is.
//
// A row that has been made choosable takes the keys when it is clicked or the list says so, and is the chosen one
// from then on; a double click opens it. Keys themselves are the list's (see FolderView).
class EntryRow : public RVCore::RVGroupView {
    RVCORE_CLASS(EntryRow)

public:
    using RVGroupView::init;
    void init() override;

    void show(const Entry& entry, std::uint64_t totalSize);
    // What stands in for the entries that have no row, and for all of them.
    void showSummary(const std::string& name, const std::string& kind, std::uint64_t size, std::uint64_t totalSize);
    void emphasise();
    void addStripe(); // a ground of its own

    struct Actions {
        std::function<void()> choose; // the row has got the keys
        std::function<void()> open;
    };
    void makeChoosable(Actions actions);
    bool isChosen() const { return m_isChosen; } // default no
    void setChosen(bool chosen);
    void setTabStop(bool isTabStop) { m_isTabStop = isTabStop; } // of all rows, Tab goes to one. Default no

    RVCore::NSView* hitTest(RVCore::CGPoint point) override; // the whole of a choosable row, or what is in it
    void mouseDown(RVCore::NSEvent& event) override;
    bool acceptsFirstResponder() const override { return isChoosable(); }
    bool canBecomeKeyView() const override { return m_isTabStop && RVGroupView::canBecomeKeyView(); }
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    // A choosable row is a button with its name; pressing it opens it.
    RVCore::AccessibleRole accessibilityRole() const override;
    RVCore::AccessibleState accessibilityState() const override;
    bool accessibilityPerformPress() override;

    // Aligns every cell with the heading of its column; all of them must be in one view tree by now.
    void alignWith(const std::array<std::shared_ptr<RVCore::NSView>, columnCount>& headings);

private:
    bool isChoosable() const { return m_actions.choose != nullptr; }
    void updateLook();

    std::shared_ptr<RVCore::NSTextField> m_name, m_kind, m_size, m_share;
    std::shared_ptr<ProportionalBar> m_bar;
    Actions m_actions; // empty unless choosable
    bool m_isStriped = false;
    bool m_isChosen = false;
    bool m_isTabStop = false;
};

// How strongly what may be narrower than its content resists being so: less than a window keeps its size.
inline constexpr RVCore::NSLayoutPriority yieldingPriority = 200;

} // namespace FolderSizes
