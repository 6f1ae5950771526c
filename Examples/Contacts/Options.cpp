#include <Common/CommandLine.h>
#include <Contacts/Options.h>

namespace Contacts {

Options parseOptions(const std::vector<std::string>& arguments)
{
    Options options;
    Examples::CommandLine line(arguments);
    while (line.next()) {
        if (!line.isOption()) {
            if (line.argument().empty())
                throw Examples::UsageError("the file's name is empty");
            if (!options.file.empty())
                throw Examples::UsageError("one file at a time, not also \"" + line.argument() + "\"");
            options.file = line.argument();
        } else if (line.is("--help")) {
            options.wantsHelp = true;
        } else if (line.is("--snapshot")) {
            options.snapshot = line.value();
        } else if (line.is("--scale")) {
            options.scale = line.number(1, 4);
        } else if (line.is("--appearance")) {
            options.appearance = line.appearance();
        } else if (line.is("--preferences")) {
            options.showsPreferences = true;
        } else if (line.is("--quit-after-first-frame")) {
            options.quitsAfterFirstFrame = true;
        } else {
            line.refuse();
        }
    }
    if (options.file.empty() && !options.wantsHelp)
        throw Examples::UsageError("no file was named");
    return options;
}

std::string usageText()
{
    return "Usage: Contacts [options] FILE.json\n"
           "Keeps names, e-mail addresses and phone numbers in a file. One that does not exist is made on saving.\n"
           "\n"
           "  --appearance LOOK           light or dark (default: as the desktop)\n"
           "  --snapshot FILE.png         write a picture instead of opening a window\n"
           "  --scale N                   pixels to a point in the picture (default 2)\n"
           "  --preferences               the preferences in the picture\n"
           "  --quit-after-first-frame    for measurements\n"
           "  --help                      this text\n";
}

} // namespace Contacts
