#pragma once

#include <CoreGraphics/ControlDescription.h>

#include <optional>
#include <string>
#include <vector>

namespace Contacts {

struct Options {
    std::string file;                               // empty only when help is wanted
    std::string snapshot;                           // PNG file to write instead of opening a window; empty for none
    double scale = 2;                               // pixels to a point, of the picture
    std::optional<RVCore::Appearance> appearance{}; // absent: as the desktop
    bool showsPreferences = false;                  // in the picture instead of the list
    bool quitsAfterFirstFrame = false;
    bool wantsHelp = false;
};

// Reads the arguments after the program's name. Throws Examples::UsageError.
Options parseOptions(const std::vector<std::string>& arguments);

std::string usageText();

} // namespace Contacts
