#pragma once

#include <fstream>
#include <string>

namespace RVCore {

// Where slow frames are found: the file that the environment variable RVCORE_FRAME_LOG names gets a line for every
// frame of a window that was painted.
//
//     1.734218 4.113 /usr – FolderSizes
//     seconds from the program's start until painting began, milliseconds that it took, the window's title
class QtFrameLog {
public:
    // Null unless the variable is set. A file that cannot be written is told about once, on standard error.
    static QtFrameLog* shared();

    static double now(); // in seconds since the program's start, on a clock that never goes back
    void add(double begin, double end, const std::string& title);

private:
    explicit QtFrameLog(const std::string& path);

    std::ofstream m_file;
};

} // namespace RVCore
