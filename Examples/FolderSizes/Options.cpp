#include <FolderSizes/Options.h>

#include <charconv>
#include <cmath>

namespace FolderSizes {

namespace {

template <class Number>
Number parseNumber(const std::string& option, const std::string& text, Number smallest, Number largest)
{
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !(number >= smallest && number <= largest)) {
        const auto digits = [](Number limit) {
            return std::to_string(static_cast<long long>(std::floor(static_cast<double>(limit))));
        };
        throw UsageError(option + " takes a number from " + digits(smallest) + " to " + digits(largest) + ", not \"" +
                         text + "\"");
    }
    return number;
}

RVCore::Appearance parseAppearance(const std::string& text)
{
    if (text != "light" && text != "dark")
        throw UsageError("--appearance takes light or dark, not \"" + text + "\"");
    return text == "dark" ? RVCore::Appearance::dark : RVCore::Appearance::light;
}

} // namespace

Options parseOptions(const std::vector<std::string>& arguments)
{
    Options options;
    bool hasPath = false;
    bool onlyPaths = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 == arguments.size() || arguments[i + 1].empty())
                throw UsageError(argument + " needs a value");
            return arguments[++i];
        };
        const auto row = [&] { return parseNumber<std::size_t>(argument, value(), 1, 200); };
        if (onlyPaths || argument.empty() || argument[0] != '-') {
            if (hasPath)
                throw UsageError("one folder at a time, not also \"" + argument + "\"");
            if (argument.empty())
                throw UsageError("the folder's name is empty");
            options.path = argument;
            hasPath = true;
        } else if (argument == "--") {
            onlyPaths = true;
        } else if (argument == "--help") {
            options.wantsHelp = true;
        } else if (argument == "--snapshot") {
            options.snapshot = value();
        } else if (argument == "--dump") {
            options.dump = value();
        } else if (argument == "--explain") {
            options.diagram = value();
        } else if (argument == "--rows") {
            options.rows = row();
        } else if (argument == "--width") {
            options.width = parseNumber<double>(argument, value(), 640, 4000);
        } else if (argument == "--scale") {
            options.scale = parseNumber<double>(argument, value(), 1, 4);
        } else if (argument == "--appearance") {
            options.appearance = parseAppearance(value());
        } else if (argument == "--hide" || argument == "--hide-and-show") {
            options.hiddenRow = row();
            options.showsHiddenRowAgain = argument == "--hide-and-show";
        } else {
            throw UsageError("there is no option " + argument);
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
           "  --hide N              hide row N\n"
           "  --hide-and-show N     hide row N, lay out, and show it again\n"
           "  --help                this text\n"
           "\n"
           "Without a display, writes foldersizes.png and foldersizes.txt.\n";
}

} // namespace FolderSizes
