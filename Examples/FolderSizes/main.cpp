#include <Backend/Backend.h>
#include <Common/CommandLine.h>
#include <FolderSizes/FolderListing.h>
#include <FolderSizes/FolderView.h>
#include <FolderSizes/FolderWindowController.h>
#include <FolderSizes/Options.h>
#include <RVCore.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <unistd.h>

namespace {

using namespace FolderSizes;
using namespace RVCore;

const std::string programName = "FolderSizes";

// A line on the terminal that keeps the user informed while a large folder is read.
class ProgressLine {
public:
    ~ProgressLine()
    {
        if (m_isShown)
            std::fputs("\r\033[K", stderr);
    }

    void update(std::size_t fileCount)
    {
        const auto now = std::chrono::steady_clock::now();
        if (!isatty(STDERR_FILENO) || now - m_lastTime < std::chrono::milliseconds(200))
            return;
        m_lastTime = now;
        m_isShown = true;
        std::fprintf(stderr, "\rReading, %zu files so far", fileCount);
    }

private:
    std::chrono::steady_clock::time_point m_lastTime = std::chrono::steady_clock::now();
    bool m_isShown = false;
};

FolderListing readFolder(const std::string& path)
{
    ProgressLine line;
    return listFolder(path, {.progress = [&](const FolderProgress& progress) { line.update(progress.fileCount); }});
}

void writeText(const std::string& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path);
}

void applyVisibility(FolderView& view, const Options& options)
{
    if (!options.hiddenRow)
        return;
    if (*options.hiddenRow > view.rowCount())
        throw Examples::UsageError("there is no row " + std::to_string(*options.hiddenRow) + ", only " +
                                   std::to_string(view.rowCount()));
    view.setRowVisible(*options.hiddenRow - 1, false);
    if (options.showsHiddenRowAgain) {
        view.layoutSubtreeIfNeeded();
        view.setRowVisible(*options.hiddenRow - 1, true);
    }
}

void writeFiles(FolderView& view, const Options& options)
{
    if (!options.snapshot.empty()) {
        writeViewPicture(view, options.snapshot, options.scale,
                         Backend::shared().controlLook().windowColor(NSApplication::shared().effectiveAppearance()));
        std::printf("Wrote the picture to %s\n", options.snapshot.c_str());
    }
    if (!options.diagram.empty()) {
        writeViewDiagram(view, options.diagram, options.scale);
        std::printf("Wrote the picture of the layout to %s\n", options.diagram.c_str());
    }
    if (!options.dump.empty()) {
        writeText(options.dump, describeViewTree(view));
        std::printf("Wrote the views as text to %s\n", options.dump.c_str());
    }
}

bool writesFiles(const Options& options)
{
    return !options.snapshot.empty() || !options.dump.empty() || !options.diagram.empty();
}

void runWindow(const Options& options)
{
    if (options.hiddenRow)
        throw Examples::UsageError("a row is hidden in what --snapshot, --dump and --explain write, not in a window");
    const auto controller = make<FolderWindowController>(
        FolderWindowController::Settings{.folder = options.path, .rows = options.rows, .width = options.width});
    controller->showWindow(nullptr);
    NSApplication::shared().run();
}

void writePictures(const Options& options)
{
    const auto view = make<FolderView>(readFolder(options.path), options.rows);
    view->setFrameSize({options.width, 1}); // as high as its content
    applyVisibility(*view, options);
    view->layoutSubtreeIfNeeded();
    writeFiles(*view, options);
}

int run(Options options)
{
    std::error_code error;
    if (!std::filesystem::is_directory(options.path, error))
        return Examples::fail(programName, Examples::statusUsage,
                              "\"" + options.path + "\" is not a folder" + (error ? ": " + error.message() : ""));
    NSApplication::shared().setAppearance(options.appearance);
    if (!writesFiles(options) && Backend::shared().hasDisplay()) {
        runWindow(options);
        return 0;
    }
    if (!writesFiles(options)) {
        std::printf("There is no display to open a window on.\n");
        options.snapshot = "foldersizes.png";
        options.dump = "foldersizes.txt";
    }
    writePictures(options);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    return Examples::runProgram(programName, usageText(), [&] {
        const Options options = parseOptions({argv + 1, argv + argc});
        if (!options.wantsHelp)
            return run(options);
        std::fputs(usageText().c_str(), stdout);
        return 0;
    });
}
