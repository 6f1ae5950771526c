#pragma once

#include <CoreGraphics/ControlDescription.h>

#include <optional>
#include <string>
#include <vector>

namespace FolderSizes {

struct Options {
    std::string path = ".";
    std::string snapshot; // PNG file to write; empty for none
    std::string dump;     // text file to write; empty for none
    std::string diagram;  // PNG file that explains the layout; empty for none
    std::size_t rows = 20;
    double width = 760;                           // points
    double scale = 2;                             // pixels to a point, of the picture
    std::optional<RVCore::Appearance> appearance; // absent: as the desktop
    std::optional<std::size_t> hiddenRow;         // counted from 1
    bool showsHiddenRowAgain = false;
    bool wantsHelp = false;
};

// Reads the arguments after the program's name. Throws Examples::UsageError.
Options parseOptions(const std::vector<std::string>& arguments);

std::string usageText();

} // namespace FolderSizes
