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
// Laid out by groups in groups; names wrap where the column ends. Rows of entries can be made something to choose
// and, where they are folders, to open: with Up, Down, Home, End and Return, or by the pointer.
class FolderView : public RVCore::RVBaseView {
    RVCORE_CLASS(FolderView)

public:
    using RVBaseView::init;
    // Shows at most `rowLimit` entries one by one, at least 1; the smaller ones share a row.
    void init(const FolderListing& listing, std::size_t rowLimit);

    std::size_t rowCount() const { return m_rows.size(); } // entries, the row of smaller ones, not the total
    // Rows count from 0.
    void setRowVisible(std::size_t row, bool visible);

    // Makes rows choosable. `open` is called with the name of the folder that the user opens, `choose` with every row
    // that gets the keys.
    struct Actions {
        std::function<void(const std::string& folder)> open;
        std::function<void(RVCore::NSView& row)> choose;
    };
    void makeChoosable(Actions actions);
    // Of the chosen entry; empty where there is none. At first that is the first one.
    std::string chosenName() const;
    // Without the keys. A name that is not there leaves the choice as it is.
    void choose(const std::string& name);
    // Gives the chosen row its window's keys. Without choosable rows, or while they are covered, does nothing.
    void takeKeys();
    const std::vector<std::shared_ptr<EntryRow>>& rows() const { return m_rows; }

    void keyDown(RVCore::NSEvent& event) override;

private:
    std::shared_ptr<RVCore::NSView> makeTitle(const FolderListing& listing) const;
    std::shared_ptr<RVCore::RVGroupView> makeHeadings();
    void makeRows(std::size_t entryCount);
    void show(const FolderListing& listing);
    void setChosenRow(std::size_t row);
    void chooseAndTakeKeys(std::size_t row);
    void open(std::size_t row);

    std::vector<Entry> m_entries; // of the first rows
    Actions m_actions;
    std::size_t m_chosenRow = 0;
    std::array<std::shared_ptr<RVCore::NSView>, columnCount> m_headings;
    std::vector<std::shared_ptr<EntryRow>> m_rows;
    std::shared_ptr<EntryRow> m_total;
    std::shared_ptr<RVCore::RVGroupView> m_list;
};

} // namespace FolderSizes
