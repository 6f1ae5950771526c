#include <FolderSizes/Colors.h>
#include <FolderSizes/EntryRow.h>
#include <FolderSizes/SizeText.h>

namespace FolderSizes {

using namespace RVCore;

namespace {

constexpr CGFloat columnSpacing = 16;
constexpr CGFloat cornerRadius = 6;
constexpr CGFloat focusWidth = 2;
constexpr double chosenOpacity = 0.25;
const EdgeInsets rowPadding{.top = 6, .left = 12, .bottom = 6, .right = 12};

std::shared_ptr<NSTextField> makeCellText(NSTextAlignment alignment, const std::shared_ptr<NSFont>& font)
{
    auto text = makeLabel("");
    text->setAlignment(alignment);
    text->setFont(font);
    return text;
}

} // namespace

Class& EntryRow::staticClass()
{
    static Class& theClass = defineClass<EntryRow>("FolderSizes.EntryRow", RVGroupView::staticClass(), [](auto&) {});
    return theClass;
}

// A member's smallest size is the one that it has when it joins its group, so texts join empty and are set later.
void EntryRow::init()
{
    m_name = makeCellText(NSTextAlignment::left, systemFontOfSize(13));
    m_name->setLineBreakMode(NSLineBreakMode::wordWrapping);
    m_kind = makeCellText(NSTextAlignment::left, systemFontOfSize(13));
    m_kind->setTextColor(secondaryTextColor());
    m_kind->setLineBreakMode(NSLineBreakMode::truncatingTail);
    m_size = makeCellText(NSTextAlignment::right, monospacedDigitSystemFontOfSize(13));
    m_bar = make<ProportionalBar>();
    m_share = makeCellText(NSTextAlignment::right, monospacedDigitSystemFontOfSize(13));
    m_share->setTextColor(secondaryTextColor());

    Views cells;
    for (const std::shared_ptr<NSView>& content : Views{m_name, m_kind, m_size, m_bar, m_share}) {
        content->setContentCompressionResistancePriority(yieldingPriority, NSLayoutConstraintOrientation::horizontal);
        cells.push_back(makeGroupView(
            {content}, {.orientation = Orientation::vertical, .resizePolicy = ResizePolicy::trailingEdge}));
        cells.back()->setContentCompressionResistancePriority(yieldingPriority,
                                                              NSLayoutConstraintOrientation::horizontal);
    }
    init(cells, {.spacing = columnSpacing, .resizePolicy = ResizePolicy::leadingView});
    setContentCompressionResistancePriority(yieldingPriority, NSLayoutConstraintOrientation::horizontal);
    setPadding(rowPadding);
    setAlignment(alignment()); // padding across the axis comes with the constraints
}

void EntryRow::show(const Entry& entry, std::uint64_t totalSize)
{
    const bool isKnown = entry.isComplete || entry.size > 0;
    showSummary(displayName(entry.name), kindText(entry), entry.size, totalSize);
    if (!isKnown) {
        m_size->setStringValue("–");
        m_share->setStringValue("–");
    }
}

void EntryRow::showSummary(const std::string& name, const std::string& kind, std::uint64_t size,
                           std::uint64_t totalSize)
{
    setIdentifier(name);
    m_name->setStringValue(name);
    m_kind->setStringValue(kind);
    m_size->setStringValue(sizeText(size));
    m_share->setStringValue(shareText(size, totalSize));
    m_bar->setFraction(totalSize == 0 ? 0 : static_cast<double>(size) / static_cast<double>(totalSize));
}

void EntryRow::emphasise()
{
    for (const auto& text : {m_name, m_size})
        text->setFont(boldSystemFontOfSize(13));
    m_bar->setHidden(true);
}

void EntryRow::addStripe()
{
    m_isStriped = true;
    updateLook();
}

void EntryRow::makeChoosable(Actions actions)
{
    m_actions = std::move(actions);
    setAccessibilityLabel(m_name->stringValue());
}

void EntryRow::setChosen(bool chosen)
{
    if (m_isChosen == chosen)
        return;
    m_isChosen = chosen;
    updateLook();
}

void EntryRow::updateLook()
{
    const bool hasKeys = window() && window()->firstResponder() == this;
    setBackgroundColor(*this, m_isChosen ? accentColor(chosenOpacity) : m_isStriped ? stripeColor() : clearColor());
    layer()->setCornerRadius(cornerRadius);
    layer()->setBorderColor(accentColor()->cgColor());
    layer()->setBorderWidth(hasKeys ? focusWidth : 0);
}

NSView* EntryRow::hitTest(CGPoint point)
{
    NSView* hit = RVGroupView::hitTest(point);
    return hit && isChoosable() ? this : hit;
}

// The first click has given it the keys.
void EntryRow::mouseDown(NSEvent& event)
{
    if (isChoosable() && event.clickCount() == 2)
        std::function(m_actions.open)(); // a copy: the list may be replaced
    else if (!isChoosable())
        RVGroupView::mouseDown(event);
}

bool EntryRow::becomeFirstResponder()
{
    m_actions.choose();
    updateLook();
    return RVGroupView::becomeFirstResponder();
}

bool EntryRow::resignFirstResponder()
{
    updateLook();
    return RVGroupView::resignFirstResponder();
}

AccessibleRole EntryRow::accessibilityRole() const
{
    return isChoosable() ? AccessibleRole::button : RVGroupView::accessibilityRole();
}

AccessibleState EntryRow::accessibilityState() const
{
    AccessibleState state = RVGroupView::accessibilityState();
    state.isPressable = isChoosable();
    return state;
}

bool EntryRow::accessibilityPerformPress()
{
    if (!isChoosable())
        return false;
    std::function(m_actions.open)();
    return true;
}

void EntryRow::alignWith(const std::array<std::shared_ptr<NSView>, columnCount>& headings)
{
    for (std::size_t column = 0; column < columnCount; ++column)
        static_cast<RVGroupView&>(*views()[column]).setAlignment(Edge::fill(headings[column]));
}

} // namespace FolderSizes
