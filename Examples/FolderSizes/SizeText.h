#pragma once

#include <FolderSizes/FolderListing.h>

#include <cstdint>
#include <string>

namespace FolderSizes {

// "0 bytes", "1 byte", "999 bytes", "1.0 kB", "12.3 MB": decimal units, one decimal, rounded.
std::string sizeText(std::uint64_t bytes);

// "42 %", "< 1 %" for more than nothing, "0 %".
std::string shareText(std::uint64_t part, std::uint64_t whole);

// "1 file", "2 files".
std::string countText(std::size_t count, const std::string& singular, const std::string& plural);

std::string kindText(const Entry& entry);

// A file name as text to show: bytes that are not UTF-8 and control characters become the replacement character.
std::string displayName(const std::string& name);

// A text of at most this many characters, at least 3: an ellipsis stands for what is left out in the middle.
std::string shortenedInMiddle(const std::string& text, std::size_t characterLimit);

} // namespace FolderSizes
