#pragma once

#include <FolderSizes/FolderListing.h>
#include <FolderSizes/ProportionalBar.h>

#include <array>

namespace FolderSizes {

inline constexpr std::size_t columnCount = 5; // name, kind, size, bar, share

// One line of the list: a horizontal group of cells. A cell is a group of its own around one view, which it aligns
// with the heading of its column, so that columns line up however wide the content of a row is.
class EntryRow : public RVCore::RVGroupView {
    RVCORE_CLASS(EntryRow)

public:
    using RVGroupView::init;
    void init() override;

    void show(const Entry& entry, std::uint64_t totalSize);
    // What stands in for the entries that have no row, and for all of them.
    void showSummary(const std::string& name, const std::string& kind, std::uint64_t size, std::uint64_t totalSize);
    void emphasise();

    // Aligns every cell with the heading of its column; all of them must be in one view tree by now.
    void alignWith(const std::array<std::shared_ptr<RVCore::NSView>, columnCount>& headings);

private:
    std::shared_ptr<RVCore::NSTextField> m_name, m_kind, m_size, m_share;
    std::shared_ptr<ProportionalBar> m_bar;
};

// How strongly what may be narrower than its content resists being so: less than a window keeps its size.
inline constexpr RVCore::NSLayoutPriority yieldingPriority = 200;

} // namespace FolderSizes
