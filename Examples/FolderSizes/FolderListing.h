#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

namespace FolderSizes {

enum class EntryKind { folder, file, link, special };

struct Entry {
    std::string name; // as bytes of the file system
    EntryKind kind = EntryKind::file;
    std::uint64_t size = 0; // bytes; of a folder, of all files below it
    bool isComplete = true; // false when something in it has not been read
};

// What a folder holds, the largest entry first; entries of one size by name.
struct FolderListing {
    std::filesystem::path path = {};
    std::vector<Entry> entries = {};
    std::uint64_t totalSize = 0;
    std::size_t unreadableCount = 0; // of files and folders at any depth
    bool isStopped = false;          // before everything was read; then it holds what had been found
};

// How far the reading of a folder has come.
struct FolderProgress {
    std::filesystem::path directory = {}; // that is being read: the folder itself or one at any depth below it
    std::size_t fileCount = 0;            // so far
    std::size_t finishedCount = 0;        // of the folder's own entries
    std::size_t entryCount = 0;           // of those; 0 until they are known
};

struct FolderReading {
    std::function<void(const FolderProgress&)> progress = {}; // with every directory, and every thousand files
    std::stop_token stop = {};                                // looked at before every entry at any depth
};

// Reads the folder and everything below it, without following links: first the folder's own entries, then what is in
// its folders. What cannot be read counts as nothing and is marked, as are folders that a stop leaves unfinished.
// Throws std::filesystem::filesystem_error when the path itself is not a folder that can be listed.
FolderListing listFolder(const std::filesystem::path& path, const FolderReading& reading = {});

} // namespace FolderSizes
