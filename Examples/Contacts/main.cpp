#include <Backend/Backend.h>
#include <Common/CommandLine.h>
#include <Contacts/ContactFile.h>
#include <Contacts/ContactsWindowController.h>
#include <Contacts/Icons.h>
#include <Contacts/Options.h>
#include <Contacts/PreferencesViewController.h>

#include <cstdio>

namespace {

using namespace Contacts;
using namespace RVCore;

constexpr CGFloat problemWidth = 420;
constexpr CGFloat problemMargin = 20;

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

void run(const Options& options)
{
    NSApplication::shared().setAppearance(options.appearance);
    registerColorButtonArrow();
    std::shared_ptr<ContactDocument> document;
    try {
        document = std::make_shared<ContactDocument>(options.file);
    } catch (const ContactFileError& error) {
        if (options.snapshot.empty() && Backend::shared().hasDisplay())
            showProblem(error.what());
        throw;
    }
    if (!options.snapshot.empty())
        writeSnapshot(document, options);
    else if (Backend::shared().hasDisplay() || options.quitsAfterFirstFrame)
        runWindow(document, options);
    else
        throw std::runtime_error("there is no display to open a window on; see --help for a picture instead");
}

} // namespace

int main(int argc, char** argv)
{
    return Examples::runProgram("Contacts", usageText(), [&] {
        const Options options = parseOptions({argv + 1, argv + argc});
        if (options.wantsHelp)
            std::fputs(usageText().c_str(), stdout);
        else
            run(options);
        return 0;
    });
}
