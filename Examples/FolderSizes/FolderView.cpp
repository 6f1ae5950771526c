#include <FolderSizes/Colors.h>
#include <FolderSizes/FolderView.h>
#include <FolderSizes/SizeText.h>

#include <algorithm>

namespace FolderSizes {

using namespace RVCore;

namespace {

constexpr CGFloat margin = 16;
constexpr CGFloat smallestNameWidth = 156;
constexpr CGFloat breathingSpace = 4; // between a line and the row below it

std::shared_ptr<NSView> makeLine()
{
    auto line = make<RVSpacerView>(CGSize{1, 1});
    line->setContentHuggingPriority(RVLayoutPriorityDefaultLow, NSLayoutConstraintOrientation::horizontal);
    setBackgroundColor(*line, lineColor());
    return line;
}

std::shared_ptr<NSTextField> makeText(const std::string& string, const std::shared_ptr<NSFont>& font)
{
    auto text = makeLabel(string);
    text->setFont(font);
    return text;
}

std::shared_ptr<NSTextField> makeSecondaryText(const std::string& string, const std::shared_ptr<NSFont>& font)
{
    auto text = makeText(string, font);
    text->setTextColor(secondaryTextColor());
    return text;
}

std::string contentsText(const FolderListing& listing)
{
    const auto folders =
        static_cast<std::size_t>(std::count_if(listing.entries.begin(), listing.entries.end(),
                                               [](const Entry& entry) { return entry.kind == EntryKind::folder; }));
    std::string text = countText(folders, "folder", "folders") + ", " +
                       countText(listing.entries.size() - folders, "other entry", "other entries");
    if (listing.unreadableCount > 0)
        text += " — " + std::to_string(listing.unreadableCount) + " could not be read";
    if (listing.isStopped)
        text += " — reading was stopped";
    return text;
}

std::string folderName(const FolderListing& listing)
{
    const std::string name = listing.path.filename().string();
    return displayName(name.empty() ? listing.path.string() : name);
}

} // namespace

Class& FolderView::staticClass()
{
    static Class& theClass =
        defineClass<FolderView>("FolderSizes.FolderView", RVBaseView::staticClass(), [](auto& publish) {
            publish.readOnlyProperty("rowCount", &FolderView::rowCount);
            publish.method("setRow:visible:", &FolderView::setRowVisible);
        });
    return theClass;
}

void FolderView::init(const FolderListing& listing, std::size_t rowLimit)
{
    RVBaseView::init();
    setTranslatesAutoresizingMaskIntoConstraints(false);
    m_entries.assign(listing.entries.begin(), listing.entries.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                                            rowLimit, listing.entries.size())));
    makeRows(listing.entries.size());

    RVGroupView::Views members{makeTitle(listing), makeHeadings(), makeLine()};
    members.insert(members.end(), m_rows.begin(), m_rows.end());
    members.push_back(makeLine());
    members.push_back(m_total);
    m_list = makeGroupView(members, {.orientation = RVGroupView::Orientation::vertical,
                                     .alignment = RVGroupView::Edge::fillParent(),
                                     .resizePolicy = RVGroupView::ResizePolicy::trailingEdge});
    m_list->setContentCompressionResistancePriority(yieldingPriority, NSLayoutConstraintOrientation::horizontal);
    m_list->offsetViews([&] {
        RVGroupView::PerView<RVGroupView::Offset> offsets{{m_total, {.x = 0, .y = breathingSpace}}};
        if (!m_rows.empty())
            offsets[m_rows.front()] = {.x = 0, .y = breathingSpace};
        return offsets;
    });
    addSubview(m_list);
    for (const LayoutEdge edge : {LayoutEdge::top, LayoutEdge::left, LayoutEdge::right})
        autoPinEdgeToSuperviewEdge(*m_list, edge, margin);
    // There may be room below the list, but not above it.
    autoPinEdgeToSuperviewEdge(*m_list, LayoutEdge::bottom, margin, NSLayoutRelation::greaterThanOrEqual);

    for (const auto& row : m_rows)
        row->alignWith(m_headings);
    m_total->alignWith(m_headings);
    show(listing);
}

std::shared_ptr<NSView> FolderView::makeTitle(const FolderListing& listing) const
{
    auto name = makeText(folderName(listing), boldSystemFontOfSize(20));
    name->setLineBreakMode(NSLineBreakMode::truncatingMiddle);
    auto contents = makeSecondaryText(contentsText(listing), systemFontOfSize(12));
    contents->setLineBreakMode(NSLineBreakMode::truncatingTail);
    auto size = makeText(sizeText(listing.totalSize), boldSystemFontOfSize(20));
    auto texts = makeGroupView({name, contents}, {.orientation = RVGroupView::Orientation::vertical,
                                                  .spacing = 2,
                                                  .alignment = RVGroupView::Edge::fillParent(),
                                                  .resizePolicy = RVGroupView::ResizePolicy::trailingEdge});
    auto title =
        makeGroupView({texts, size}, {.spacing = 16, .resizePolicy = RVGroupView::ResizePolicy::leadingView});
    for (const std::shared_ptr<NSView>& yielding : RVGroupView::Views{name, contents, texts, title})
        yielding->setContentCompressionResistancePriority(yieldingPriority,
                                                          NSLayoutConstraintOrientation::horizontal);
    title->setPadding({.top = 4, .left = 12, .bottom = 14, .right = 12});
    title->setAlignment(title->alignment());
    return title;
}

std::shared_ptr<RVGroupView> FolderView::makeHeadings()
{
    struct Column {
        const char* title;
        NSTextAlignment alignment;
        CGFloat width;
        bool stretches;
    };
    constexpr std::array<Column, columnCount> columns{{{"Name", NSTextAlignment::left, smallestNameWidth, true},
                                                       {"Kind", NSTextAlignment::left, 124, false},
                                                       {"Size", NSTextAlignment::right, 76, false},
                                                       {"Share", NSTextAlignment::left, 120, false},
                                                       {"", NSTextAlignment::right, 44, false}}};
    for (std::size_t i = 0; i < columnCount; ++i) {
        auto heading = makeSecondaryText(columns[i].title, boldSystemFontOfSize(11));
        heading->setAlignment(columns[i].alignment);
        autoSetDimension(*heading, LayoutDimension::width, columns[i].width,
                         columns[i].stretches ? NSLayoutRelation::greaterThanOrEqual : NSLayoutRelation::equal);
        m_headings[i] = heading;
    }
    auto group = makeGroupView({m_headings.begin(), m_headings.end()},
                               {.spacing = 16, .resizePolicy = RVGroupView::ResizePolicy::leadingView});
    group->setPadding({.top = 0, .left = 12, .bottom = 6, .right = 12});
    group->setAlignment(group->alignment());
    return group;
}

void FolderView::makeRows(std::size_t entryCount)
{
    const std::size_t rowCount = m_entries.size() + (m_entries.size() < entryCount ? 1 : 0);
    for (std::size_t i = 0; i < rowCount; ++i) {
        auto row = make<EntryRow>();
        if (i % 2 == 0)
            row->addStripe();
        m_rows.push_back(row);
    }
    m_total = make<EntryRow>();
    m_total->emphasise();
}

void FolderView::show(const FolderListing& listing)
{
    std::uint64_t rest = listing.totalSize;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        m_rows[i]->show(m_entries[i], listing.totalSize);
        rest -= m_entries[i].size;
    }
    if (m_entries.size() < m_rows.size())
        m_rows.back()->showSummary(
            countText(listing.entries.size() - m_entries.size(), "smaller entry", "smaller entries"), "", rest,
            listing.totalSize);
    m_total->showSummary("Total", countText(listing.entries.size(), "entry", "entries"), listing.totalSize,
                         listing.totalSize);
}

void FolderView::setRowVisible(std::size_t row, bool visible)
{
    m_list->setVisibility(m_rows.at(row), visible);
}

void FolderView::makeChoosable(Actions actions)
{
    m_actions = std::move(actions);
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        m_rows[i]->makeChoosable({.choose =
                                      [this, i] {
                                          setChosenRow(i);
                                          m_actions.choose(*m_rows[i]);
                                      },
                                  .open = [this, i] { open(i); }});
    if (!m_entries.empty())
        setChosenRow(0);
}

void FolderView::setChosenRow(std::size_t row)
{
    for (const auto& other : {m_rows[m_chosenRow], m_rows[row]}) {
        other->setChosen(other == m_rows[row]);
        other->setTabStop(other == m_rows[row]);
    }
    m_chosenRow = row;
}

std::string FolderView::chosenName() const
{
    return m_entries.empty() ? std::string() : m_entries[m_chosenRow].name;
}

void FolderView::choose(const std::string& name)
{
    const auto entry = std::ranges::find(m_entries, name, &Entry::name);
    if (entry != m_entries.end())
        setChosenRow(static_cast<std::size_t>(entry - m_entries.begin()));
}

void FolderView::takeKeys()
{
    if (!m_entries.empty())
        chooseAndTakeKeys(m_chosenRow);
}

void FolderView::chooseAndTakeKeys(std::size_t row)
{
    if (NSWindow* host = window())
        host->makeFirstResponder(m_rows[row].get());
}

void FolderView::open(std::size_t row)
{
    const Entry entry = m_entries[row]; // a copy, as that of the closure: the list may be replaced
    if (entry.kind == EntryKind::folder)
        std::function(m_actions.open)(entry.name);
}

void FolderView::keyDown(NSEvent& event)
{
    const bool isForOthers =
        m_entries.empty() || isShortcut(event) || contains(event.modifierFlags(), NSEventModifierFlags::option);
    const std::string key = isForOthers ? "" : event.charactersIgnoringModifiers();
    if (key == NSKey::down)
        chooseAndTakeKeys(std::min(m_chosenRow + 1, m_entries.size() - 1));
    else if (key == NSKey::up)
        chooseAndTakeKeys(m_chosenRow - std::min<std::size_t>(m_chosenRow, 1));
    else if (key == NSKey::home)
        chooseAndTakeKeys(0);
    else if (key == NSKey::end)
        chooseAndTakeKeys(m_entries.size() - 1);
    else if ((key == NSKey::carriageReturn || key == NSKey::enter) && !event.isARepeat())
        open(m_chosenRow);
    else
        RVBaseView::keyDown(event);
}

} // namespace FolderSizes
