#pragma once

#include <FolderSizes/EntryRow.h>
#include <FolderSizes/FolderListing.h>

namespace FolderSizes {

//   name of the folder                        size
//   what it holds
//   Name              Kind     Size   Share
//   entry             Folder   1 MB   ▇▇▇▇   60 %
//   …
//   Total
//
// The whole content of the window, laid out by groups in groups. Names wrap where the column ends.
class FolderView : public RVCore::RVBaseView {
    RVCORE_CLASS(FolderView)

public:
    using RVBaseView::init;
    // Shows at most `rowLimit` entries one by one, at least 1; the smaller ones share a row.
    void init(const FolderListing& listing, std::size_t rowLimit);

    std::size_t rowCount() const { return m_rows.size(); } // entries, the row of smaller ones, not the total
    // Rows count from 0.
    void setRowVisible(std::size_t row, bool visible);

private:
    std::shared_ptr<RVCore::NSView> makeTitle(const FolderListing& listing) const;
    std::shared_ptr<RVCore::RVGroupView> makeHeadings();
    void makeRows(std::size_t entryCount, std::size_t rowLimit);
    void show(const FolderListing& listing);

    std::array<std::shared_ptr<RVCore::NSView>, columnCount> m_headings;
    std::vector<std::shared_ptr<EntryRow>> m_rows;
    std::size_t m_entryRowCount = 0; // of these, before the row of smaller entries
    std::shared_ptr<EntryRow> m_total;
    std::shared_ptr<RVCore::RVGroupView> m_list;
};

} // namespace FolderSizes
