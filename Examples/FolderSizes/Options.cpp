#include <Common/CommandLine.h>
#include <FolderSizes/Options.h>

namespace FolderSizes {

namespace {

constexpr std::size_t mostRows = 200;

} // namespace

Options parseOptions(const std::vector<std::string>& arguments)
{
    Options options;
    bool hasPath = false;
    Examples::CommandLine line(arguments);
    while (line.next()) {
        if (!line.isOption()) {
            if (hasPath)
                throw Examples::UsageError("one folder at a time, not also \"" + line.argument() + "\"");
            if (line.argument().empty())
                throw Examples::UsageError("the folder's name is empty");
            options.path = line.argument();
            hasPath = true;
        } else if (line.is("--help")) {
            options.wantsHelp = true;
        } else if (line.is("--snapshot")) {
            options.snapshot = line.value();
        } else if (line.is("--dump")) {
            options.dump = line.value();
        } else if (line.is("--explain")) {
            options.diagram = line.value();
        } else if (line.is("--rows")) {
            options.rows = line.count(1, mostRows);
        } else if (line.is("--width")) {
            options.width = line.number(640, 4000);
        } else if (line.is("--scale")) {
            options.scale = line.number(1, 4);
        } else if (line.is("--appearance")) {
            options.appearance = line.appearance();
        } else if (line.is("--hide") || line.is("--hide-and-show")) {
            options.showsHiddenRowAgain = line.is("--hide-and-show");
            options.hiddenRow = line.count(1, mostRows);
        } else {
            line.refuse();
        }
    }
    return options;
}

std::string usageText()
{
    return "Usage: FolderSizes [options] [folder]\n"
           "Shows what takes up the space in a folder (by default, this one), largest first.\n"
           "\n"
           "  --snapshot FILE.png   write a picture instead of opening a window\n"
           "  --dump FILE.txt       write the views with their frames and constraints as text\n"
           "  --explain FILE.png    write a picture with frames, padding and gaps drawn in\n"
           "  --rows N              show the N largest entries one by one (default 20, at most 200)\n"
           "  --width POINTS        width of the content (default 760)\n"
           "  --scale N             pixels to a point in the picture (default 2)\n"
           "  --appearance LOOK     light or dark (default: as the desktop)\n"
           "  --hide N              hide row N in what is written\n"
           "  --hide-and-show N     hide row N, lay out, and show it again\n"
           "  --help                this text\n"
           "\n"
           "Without a display, writes foldersizes.png and foldersizes.txt.\n";
}

} // namespace FolderSizes
