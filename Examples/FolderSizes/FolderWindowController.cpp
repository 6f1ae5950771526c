#include <Common/ToolbarItem.h>
#include <FolderSizes/Colors.h>
#include <FolderSizes/FolderWindowController.h>
#include <FolderSizes/Icons.h>
#include <FolderSizes/SizeText.h>

namespace FolderSizes {

using namespace RVCore;
using Examples::makeToolbarItem;

namespace {

constexpr CGFloat windowHeight = 480;
constexpr CGSize smallestSize{480, 360}; // has room for all that is over the list
constexpr CGFloat controlsMargin = 24;
constexpr std::size_t nameLimit = 40; // characters
constexpr std::size_t messageLimit = 64;

const std::string f5 = "\xef\x9c\x88"; // see NSKey::f1

std::string nameOf(const std::filesystem::path& folder)
{
    const std::string name = folder.filename().string();
    return displayName(name.empty() ? folder.string() : name);
}

// Where it is in the folder; the folder itself as it is called.
std::string messageFor(const std::filesystem::path& directory, const std::filesystem::path& folder)
{
    const auto place = directory.lexically_relative(folder);
    const bool isInside = !place.empty() && place != ".";
    return shortenedInMiddle(displayName((isInside ? place : directory).string()), messageLimit);
}

} // namespace

Class& FolderWindowController::staticClass()
{
    static Class& theClass = defineClass<FolderWindowController>(
        "FolderSizes.FolderWindowController", NSWindowController::staticClass(), [](auto& publish) {
            publish.method("openEnclosingFolder", &FolderWindowController::openEnclosingFolder);
            publish.method("readAgain", &FolderWindowController::readAgain);
        });
    return theClass;
}

void FolderWindowController::init(const Settings& settings)
{
    NSWindowController::init(make<NSWindow>(CGSize{settings.width, windowHeight}));
    std::error_code error;
    m_folder = std::filesystem::canonical(settings.folder, error);
    if (error)
        m_folder = settings.folder; // reading it says what is wrong with it
    m_rows = settings.rows;
    m_reader = settings.reader;
    window()->setContentMinSize(smallestSize);
    window()->setTitle(displayName(m_folder.string()) + " – FolderSizes");
    window()->setDelegate(std::static_pointer_cast<FolderWindowController>(shared(*this)));
    makeContent();
    makeToolbar();
}

void FolderWindowController::makeContent()
{
    auto content = make<RVBaseView>();
    content->setTranslatesAutoresizingMaskIntoConstraints(false);
    m_host = makeView<ListHost>(*content);
    for (const LayoutEdge edge : {LayoutEdge::left, LayoutEdge::right, LayoutEdge::bottom})
        autoPinEdgeToSuperviewEdge(*m_host, edge);

    m_problemText = makeLabel("");
    m_problemText->setIdentifier("problem");
    m_problemText->setLineBreakMode(NSLineBreakMode::wordWrapping);
    m_problemText->setContentCompressionResistancePriority(yieldingPriority,
                                                           NSLayoutConstraintOrientation::horizontal);
    m_problem = makeGroupView({m_problemText}, {.alignment = RVGroupView::Edge::centerParent()});
    m_problem->setContentCompressionResistancePriority(yieldingPriority, NSLayoutConstraintOrientation::horizontal);
    m_problem->setPadding(makeEdgeInsets({.horizontal = 28, .vertical = 10}));
    m_problem->setAlignment(m_problem->alignment()); // padding across the axis comes with the constraints
    content->addSubview(m_problem);
    for (const LayoutEdge edge : {LayoutEdge::left, LayoutEdge::right, LayoutEdge::top})
        autoPinEdgeToSuperviewEdge(*m_problem, edge);
    showProblem("");
    window()->setContentView(content);
}

void FolderWindowController::makeToolbar()
{
    const auto self = shared(*this);
    m_toolbar = make<NSToolbar>("folder");
    m_toolbar->insertItem(
        makeToolbarItem("Enclosing Folder", makeIcon(Icon::enclosingFolder), self, "openEnclosingFolder"), 0);
    m_toolbar->insertItem(makeToolbarItem("Read Again", makeIcon(Icon::readAgain), self, "readAgain"), 1);
    window()->setToolbar(m_toolbar);
    updateToolbar();
}

void FolderWindowController::updateToolbar()
{
    m_toolbar->items()[0]->setEnabled(!enclosingFolder().empty());
}

std::filesystem::path FolderWindowController::enclosingFolder() const
{
    const auto enclosing = m_folder.parent_path();
    return enclosing == m_folder ? std::filesystem::path() : enclosing;
}

void FolderWindowController::showWindow(const ObjectRef& sender)
{
    NSWindowController::showWindow(sender);
    if (!list() && !m_scan)
        read(m_folder, Cover::window);
}

void FolderWindowController::openEnclosingFolder()
{
    if (!enclosingFolder().empty())
        read(enclosingFolder(), Cover::window);
}

void FolderWindowController::readAgain()
{
    const auto stillThere = m_listOverlay.lock();
    if (!stillThere || !stillThere->superview())
        read(m_folder, Cover::list);
}

void FolderWindowController::stop()
{
    if (m_scan)
        m_scan->stop();
}

void FolderWindowController::read(const std::filesystem::path& folder, Cover cover)
{
    if (m_scan)
        return;
    m_folderToRead = folder;
    m_cover = cover;
    m_host->holdKeys();
    // An overlay that is fading out goes on doing so, below the new one.
    setProgressBlockingView(*window(), nullptr);
    coverWith(messageFor(folder, folder));
    if (cover == Cover::list)
        m_listOverlay = overlay();
    addControls();
    m_scan = std::make_unique<FolderScan>(
        folder,
        FolderScan::Handlers{.progress = [this](const FolderProgress& progress) { progressed(progress); },
                             .finished = [this](const FolderListing& listing) { finished(listing); },
                             .failed = [this](const std::string& problem) { failed(problem); }},
        m_reader);
}

void FolderWindowController::coverWith(const std::string& message)
{
    const BlockingViewContent content{.title = "Reading " + shortenedInMiddle(nameOf(m_folderToRead), nameLimit),
                                      .message = message};
    if (m_cover == Cover::window)
        showBlockingView(*window(), content);
    else
        showBlockingView(*m_host, content);
}

std::shared_ptr<RVProgressBlockingView> FolderWindowController::overlay() const
{
    return m_cover == Cover::window ? progressBlockingView(*m_host->window()) : progressBlockingView(*m_host);
}

void FolderWindowController::addControls()
{
    const auto controls = make<ReadingControls>([this] { stop(); });
    overlay()->addSubview(controls);
    autoAlignAxis(*controls, LayoutAxis::vertical, *overlay());
    autoPinEdgeToSuperviewEdge(*controls, LayoutEdge::bottom, controlsMargin);
    setAlpha(*controls, 0);
    showAnimated(*controls);
    m_controls = controls;
}

void FolderWindowController::progressed(const FolderProgress& progress)
{
    coverWith(messageFor(progress.directory, m_folderToRead));
    const auto controls = m_controls.lock();
    if (controls && progress.entryCount > 0)
        controls->setFraction(static_cast<double>(progress.finishedCount) / static_cast<double>(progress.entryCount));
}

void FolderWindowController::finished(const FolderListing& listing)
{
    const bool isSame = list() && listing.path == m_folder;
    const std::string chosen = isSame ? list()->chosenName() : m_folder.filename().string(); // or where we come from
    const CGFloat offset = isSame ? m_host->offset() : 0;
    const auto next = make<FolderView>(listing, m_rows);
    next->makeChoosable({.open = [this](const std::string& name) { read(m_folder / name, Cover::window); },
                         .choose = [this](NSView& row) { m_host->showRow(row); }});
    next->choose(chosen);
    m_folder = listing.path;
    window()->setTitle(displayName(m_folder.string()) + " – FolderSizes");
    showProblem("");
    m_host->show(next);
    m_host->setOffset(offset);
    endReading();
}

void FolderWindowController::failed(const std::string& problem)
{
    showProblem(problem);
    endReading();
}

void FolderWindowController::endReading()
{
    m_scan.reset();
    if (const auto controls = m_controls.lock())
        controls->finish();
    m_host->releaseKeys();
    if (m_cover == Cover::window)
        hideBlockingView(*window());
    else
        hideBlockingView(*m_host);
    updateToolbar();
}

void FolderWindowController::showProblem(const std::string& problem)
{
    m_problemText->setStringValue(problem);
    m_problemText->setTextColor(problemColor());
    setBackgroundColor(*m_problem, problemGroundColor());
    m_problem->setHidden(problem.empty());
    if (m_hostTop)
        m_hostTop->setActive(false);
    m_hostTop = problem.empty() ? autoPinEdgeToSuperviewEdge(*m_host, LayoutEdge::top)
                                : autoPinEdge(*m_host, LayoutEdge::top, LayoutEdge::bottom, *m_problem);
}

// Keys that nothing in the window has taken.
void FolderWindowController::keyDown(NSEvent& event)
{
    const std::string& key = event.charactersIgnoringModifiers();
    if (key == f5 || (isShortcut(event) && key == "r"))
        readAgain();
    else if (key == NSKey::up && contains(event.modifierFlags(), NSEventModifierFlags::option))
        openEnclosingFolder();
    else
        NSWindowController::keyDown(event);
}

// The overlay gives back what it took from the toolbar, this controller among it.
void FolderWindowController::windowWillClose(NSWindow&)
{
    if (m_scan)
        endReading();
}

} // namespace FolderSizes
