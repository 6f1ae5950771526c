#include <Backend/Backend.h>
#include <Contacts/ContactFile.h>
#include <Contacts/ContactsWindowController.h>
#include <Contacts/Icons.h>
#include <Contacts/Options.h>
#include <Contacts/PreferencesViewController.h>

#include <cstdio>

namespace {

using namespace Contacts;
using namespace RVCore;

constexpr int statusUsage = 2;
constexpr int statusFailure = 1;
constexpr CGFloat problemWidth = 420;
constexpr CGFloat problemMargin = 20;

int fail(int status, const std::string& problem)
{
    std::fprintf(stderr, "Contacts: %s\n", problem.c_str());
    return status;
}

// Ends the program when it has been drawn for the first time.
class LastView : public NSView {
public:
    void draw(Canvas&, const CGRect&) override
    {
        DispatchQueue::main().async([] { NSApplication::shared().terminate(); });
    }
};

// Whoever started the program from the desktop sees no terminal.
void showProblem(const std::string& problem)
{
    auto text = makeLabel(problem);
    text->setLineBreakMode(NSLineBreakMode::wordWrapping);
    text->setPreferredMaxLayoutWidth(problemWidth);
    auto close = makeButton({.title = "Close"});
    close->setKeyEquivalent(NSKey::carriageReturn);
    auto group = makeGroupView({text, close}, {.orientation = RVGroupView::Orientation::vertical,
                                               .spacing = problemMargin,
                                               .alignment = RVGroupView::Edge::trailingParent()});
    group->setPadding(makeEdgeInsets({.horizontal = problemMargin, .vertical = problemMargin}));
    group->setAlignment(group->alignment());
    auto window = makeWindow();
    window->setTitle("Contacts");
    window->contentView()->addSubview(group);
    autoPinEdgesToSuperviewEdges(*group);
    close->setOnAction([&window] { window->close(); });
    window->makeKeyAndOrderFront();
    NSApplication::shared().run();
}

void writeSnapshot(const std::shared_ptr<ContactDocument>& document, const Options& options)
{
    const auto controller =
        options.showsPreferences
            ? defaultWindowController(make<PreferencesViewController>(document->preferences()))
            : std::static_pointer_cast<NSWindowController>(make<ContactsWindowController>(document));
    controller->window()->writePicture(options.snapshot, options.scale);
    std::printf("Wrote the picture to %s\n", options.snapshot.c_str());
}

void runWindow(const std::shared_ptr<ContactDocument>& document, const Options& options)
{
    const auto controller = make<ContactsWindowController>(document);
    if (options.quitsAfterFirstFrame)
        controller->window()->contentView()->addSubview(make<LastView>(CGRect{0, 0, 1, 1}));
    controller->showWindow(nullptr);
    NSApplication::shared().run();
}

int run(const Options& options)
{
    NSApplication::shared().setAppearance(options.appearance);
    registerColorButtonArrow();
    std::shared_ptr<ContactDocument> document;
    try {
        document = std::make_shared<ContactDocument>(options.file);
    } catch (const ContactFileError& error) {
        fail(statusFailure, error.what());
        if (options.snapshot.empty() && Backend::shared().hasDisplay())
            showProblem(error.what());
        return statusFailure;
    }
    if (!options.snapshot.empty())
        writeSnapshot(document, options);
    else if (Backend::shared().hasDisplay() || options.quitsAfterFirstFrame)
        runWindow(document, options);
    else
        return fail(statusFailure, "there is no display to open a window on; see --help for a picture instead");
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const Options options = parseOptions({argv + 1, argv + argc});
        if (options.wantsHelp) {
            std::fputs(usageText().c_str(), stdout);
            return 0;
        }
        return run(options);
    } catch (const UsageError& error) {
        return fail(statusUsage, std::string(error.what()) + "\n" + usageText());
    } catch (const std::exception& error) {
        return fail(statusFailure, error.what());
    }
}
