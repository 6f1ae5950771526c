#pragma once

#include <FolderSizes/FolderScan.h>
#include <FolderSizes/ListHost.h>
#include <FolderSizes/ReadingControls.h>

#include <optional>

namespace FolderSizes {

// The window: its toolbar and shortcuts, the list, and what lies over that while a folder is read.
//
//     ┌──────────────────────────────┐
//     │ Enclosing Folder  Read Again │
//     ├──────────────────────────────┤
//     │ what went wrong last         │   as long as it matters
//     │ list                         │
//     └──────────────────────────────┘
//
// Folders are read on a thread. Another folder covers the whole window and disables the toolbar; the same one again
// covers the list, for a second at least. Whatever is asked for while a folder is read is ignored.
class FolderWindowController : public RVCore::NSWindowController, public RVCore::NSWindowDelegate {
    RVCORE_CLASS(FolderWindowController)

public:
    struct Settings {
        std::filesystem::path folder;
        std::size_t rows = 20;       // entries that are shown one by one
        RVCore::CGFloat width = 760; // of the content, in points
        FolderReader reader = &listFolder;
    };

    using NSWindowController::init;
    void init(const Settings& settings);

    // The folder is read when the window is first shown.
    void showWindow(const RVCore::ObjectRef& sender) override;

    void openEnclosingFolder(); // of the one whose list is shown; does nothing without one
    void readAgain();
    // What has been read until now is shown.
    void stop();

    FolderScan* scan() const { return m_scan.get(); }                          // null while nothing is being read
    const std::shared_ptr<FolderView>& list() const { return m_host->list(); } // null at first

    void keyDown(RVCore::NSEvent& event) override;
    void windowWillClose(RVCore::NSWindow& window) override;

private:
    enum class Cover { window, list };

    void makeContent();
    void makeToolbar();
    void updateToolbar();
    void read(const std::filesystem::path& folder, Cover cover);
    void coverWith(const std::string& message);
    std::shared_ptr<RVCore::RVProgressBlockingView> overlay() const;
    void addControls();
    void progressed(const FolderProgress& progress);
    void finished(const FolderListing& listing);
    void failed(const std::string& problem);
    void endReading();
    void showProblem(const std::string& problem); // empty for none
    std::filesystem::path enclosingFolder() const;

    std::filesystem::path m_folder; // that is shown, or before there is a list, the first one
    std::size_t m_rows = 0;
    FolderReader m_reader;
    std::shared_ptr<RVCore::NSToolbar> m_toolbar;
    std::shared_ptr<RVCore::RVGroupView> m_problem;
    std::shared_ptr<RVCore::NSTextField> m_problemText;
    std::shared_ptr<ListHost> m_host;
    std::shared_ptr<RVCore::NSLayoutConstraint> m_hostTop;
    // Of the reading that is under way, or was last.
    std::filesystem::path m_folderToRead;
    Cover m_cover = Cover::window;
    std::weak_ptr<ReadingControls> m_controls;
    std::weak_ptr<RVCore::NSView> m_listOverlay; // stays for a while after the end
    std::unique_ptr<FolderScan> m_scan;          // last: its thread ends before the rest does
};

} // namespace FolderSizes
