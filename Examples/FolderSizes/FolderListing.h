#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace FolderSizes {

enum class EntryKind { folder, file, link, special };

struct Entry {
    std::string name; // as bytes of the file system
    EntryKind kind = EntryKind::file;
    std::uint64_t size = 0; // bytes; of a folder, of all files below it
    bool isComplete = true; // false when something in it could not be read
};

// What a folder holds, the largest entry first; entries of one size by name.
struct FolderListing {
    std::filesystem::path path;
    std::vector<Entry> entries;
    std::uint64_t totalSize = 0;
    std::size_t unreadableCount = 0; // of files and folders at any depth
};

// Reads the folder and everything below it, without following links. What cannot be read counts as nothing and is
// marked. Throws std::filesystem::filesystem_error when the path itself is not a folder that can be listed.
// `progress` is called after every thousand files with how many there were so far.
FolderListing listFolder(const std::filesystem::path& path, const std::function<void(std::size_t)>& progress = {});

} // namespace FolderSizes
