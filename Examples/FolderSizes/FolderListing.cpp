#include <FolderSizes/FolderListing.h>

#include <algorithm>
#include <limits>
#include <system_error>

namespace FolderSizes {

namespace {

namespace fs = std::filesystem;

void add(std::uint64_t& sum, std::uint64_t size)
{
    sum += std::min(size, std::numeric_limits<std::uint64_t>::max() - sum);
}

class FolderReader {
public:
    explicit FolderReader(const FolderReading& reading) : m_reading(reading) {}

    FolderListing read(const fs::path& path)
    {
        FolderListing listing;
        listing.path = fs::canonical(path);
        enter(listing.path);
        readEntries(listing);
        m_progress.entryCount = listing.entries.size();
        for (Entry& entry : listing.entries) {
            if (entry.kind == EntryKind::folder && entry.isComplete)
                addContents(entry, listing.path / entry.name);
            ++m_progress.finishedCount;
            add(listing.totalSize, entry.size);
        }
        listing.unreadableCount = m_unreadableCount;
        listing.isStopped = m_isStopped;
        return listing;
    }

private:
    // From the first time on that there was something left to read.
    bool stops()
    {
        m_isStopped = m_isStopped || m_reading.stop.stop_requested();
        return m_isStopped;
    }

    void report()
    {
        if (m_reading.progress)
            m_reading.progress(m_progress);
    }

    void enter(const fs::path& directory)
    {
        m_progress.directory = directory;
        report();
    }

    void markUnreadable(Entry& entry)
    {
        entry.isComplete = false;
        ++m_unreadableCount;
    }

    void readEntries(FolderListing& listing)
    {
        for (const auto& item : fs::directory_iterator(listing.path)) {
            if (stops())
                return;
            listing.entries.push_back(readEntry(item));
        }
    }

    // A folder without what is in it.
    Entry readEntry(const fs::directory_entry& item)
    {
        Entry entry;
        entry.name = item.path().filename().string();
        std::error_code error;
        const fs::file_status status = item.symlink_status(error);
        if (error)
            markUnreadable(entry);
        else if (fs::is_symlink(status))
            entry.kind = EntryKind::link;
        else if (fs::is_directory(status))
            entry.kind = EntryKind::folder;
        else if (fs::is_regular_file(status))
            addFile(entry, item);
        else
            entry.kind = EntryKind::special;
        return entry;
    }

    void addFile(Entry& entry, const fs::directory_entry& file)
    {
        std::error_code error;
        const std::uint64_t size = file.file_size(error);
        if (error)
            markUnreadable(entry);
        else
            add(entry.size, size);
        if (++m_progress.fileCount % 1000 == 0)
            report();
    }

    // With a list of its own instead of recursion: folders nest as deep as a path can be long.
    void addContents(Entry& entry, const fs::path& top)
    {
        std::vector<fs::path> open{top};
        while (!open.empty() && !stops()) {
            const fs::path folder = std::move(open.back());
            open.pop_back();
            enter(folder);
            std::error_code error;
            fs::directory_iterator item(folder, error);
            for (; !error && item != fs::directory_iterator() && !stops(); item.increment(error)) {
                std::error_code statusError;
                const fs::file_status status = item->symlink_status(statusError);
                if (statusError)
                    markUnreadable(entry);
                else if (fs::is_directory(status))
                    open.push_back(item->path());
                else if (fs::is_regular_file(status))
                    addFile(entry, *item);
            }
            if (error)
                markUnreadable(entry);
        }
        if (m_isStopped)
            entry.isComplete = false;
    }

    const FolderReading& m_reading;
    FolderProgress m_progress;
    std::size_t m_unreadableCount = 0;
    bool m_isStopped = false;
};

} // namespace

FolderListing listFolder(const fs::path& path, const FolderReading& reading)
{
    FolderListing listing = FolderReader(reading).read(path);
    std::sort(listing.entries.begin(), listing.entries.end(), [](const Entry& left, const Entry& right) {
        return left.size != right.size ? left.size > right.size : left.name < right.name;
    });
    return listing;
}

} // namespace FolderSizes
