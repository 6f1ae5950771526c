#include <FolderSizes/FolderListing.h>

#include <algorithm>
#include <limits>
#include <system_error>

namespace FolderSizes {

namespace {

namespace fs = std::filesystem;

class FolderReader {
public:
    explicit FolderReader(const std::function<void(std::size_t)>& progress) : m_progress(progress) {}

    Entry read(const fs::directory_entry& item)
    {
        Entry entry;
        entry.name = item.path().filename().string();
        std::error_code error;
        const fs::file_status status = item.symlink_status(error);
        if (error) {
            markUnreadable(entry);
            return entry;
        }
        if (fs::is_symlink(status)) {
            entry.kind = EntryKind::link;
        } else if (fs::is_directory(status)) {
            entry.kind = EntryKind::folder;
            addContents(entry, item.path());
        } else if (fs::is_regular_file(status)) {
            addFile(entry, item);
        } else {
            entry.kind = EntryKind::special;
        }
        return entry;
    }

    std::size_t unreadableCount() const { return m_unreadableCount; }

private:
    void markUnreadable(Entry& entry)
    {
        entry.isComplete = false;
        ++m_unreadableCount;
    }

    void addFile(Entry& entry, const fs::directory_entry& file)
    {
        std::error_code error;
        const std::uint64_t size = file.file_size(error);
        if (error)
            markUnreadable(entry);
        else
            entry.size += std::min(size, std::numeric_limits<std::uint64_t>::max() - entry.size);
        if (++m_fileCount % 1000 == 0 && m_progress)
            m_progress(m_fileCount);
    }

    // With a list of its own instead of recursion: folders nest as deep as a path can be long.
    void addContents(Entry& entry, const fs::path& top)
    {
        std::vector<fs::path> open{top};
        while (!open.empty()) {
            const fs::path folder = std::move(open.back());
            open.pop_back();
            std::error_code error;
            fs::directory_iterator item(folder, error);
            for (; !error && item != fs::directory_iterator(); item.increment(error)) {
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
    }

    const std::function<void(std::size_t)>& m_progress;
    std::size_t m_fileCount = 0;
    std::size_t m_unreadableCount = 0;
};

} // namespace

FolderListing listFolder(const fs::path& path, const std::function<void(std::size_t)>& progress)
{
    FolderListing listing;
    listing.path = fs::canonical(path);
    FolderReader reader(progress);
    for (const auto& item : fs::directory_iterator(listing.path)) {
        listing.entries.push_back(reader.read(item));
        const std::uint64_t size = listing.entries.back().size;
        listing.totalSize += std::min(size, std::numeric_limits<std::uint64_t>::max() - listing.totalSize);
    }
    listing.unreadableCount = reader.unreadableCount();
    std::sort(listing.entries.begin(), listing.entries.end(), [](const Entry& left, const Entry& right) {
        return left.size != right.size ? left.size > right.size : left.name < right.name;
    });
    return listing;
}

} // namespace FolderSizes
