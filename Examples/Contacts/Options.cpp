#include <Contacts/Options.h>

#include <charconv>

namespace Contacts {

namespace {

double parseScale(const std::string& text)
{
    double scale = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), scale);
    if (error != std::errc() || end != text.data() + text.size() || !(scale >= 1 && scale <= 4))
        throw UsageError("--scale takes a number from 1 to 4, not \"" + text + "\"");
    return scale;
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
    bool onlyFiles = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 == arguments.size() || arguments[i + 1].empty())
                throw UsageError(argument + " needs a value");
            return arguments[++i];
        };
        if (onlyFiles || argument.empty() || argument[0] != '-') {
            if (argument.empty())
                throw UsageError("the file's name is empty");
            if (!options.file.empty())
                throw UsageError("one file at a time, not also \"" + argument + "\"");
            options.file = argument;
        } else if (argument == "--") {
            onlyFiles = true;
        } else if (argument == "--help") {
            options.wantsHelp = true;
        } else if (argument == "--snapshot") {
            options.snapshot = value();
        } else if (argument == "--scale") {
            options.scale = parseScale(value());
        } else if (argument == "--appearance") {
            options.appearance = parseAppearance(value());
        } else if (argument == "--preferences") {
            options.showsPreferences = true;
        } else if (argument == "--quit-after-first-frame") {
            options.quitsAfterFirstFrame = true;
        } else {
            throw UsageError("there is no option " + argument);
        }
    }
    if (options.file.empty() && !options.wantsHelp)
        throw UsageError("no file was named");
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
