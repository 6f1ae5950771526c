#include <AppKit/NSEvent.h>
#include <AppKit/NSToolbarItem.h>
#include <AppKit/NSViewController.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ToolbarItemButton.h>
#include <AppKit/ToolbarOverflow.h>

#include <QuartzCore/CALayer.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

constexpr CGFloat margin = 4;
constexpr CGFloat smallestWidth = 100;
constexpr CGFloat largestWidth = 320;
// The half one tells that there are more.
constexpr CGFloat mostRowsInSight = 12.5;

// A row of the list.
class ToolbarOverflowRow : public ToolbarItemButton {
    RVCORE_CLASS(ToolbarOverflowRow)

public:
    using ToolbarItemButton::init;
    void init(NSToolbarItem& item, ToolbarOverflowList& list, const std::function<void()>& close)
    {
        ToolbarItemButton::init(item, Place::list);
        m_list = &list;
        // First the list closes: what the item does belongs to the toolbar's window.
        setOnAction([own = std::weak_ptr(shared(item)), close] {
            const auto pressed = own.lock();
            close();
            if (pressed)
                pressed->sendAction();
        });
    }
    bool becomeFirstResponder() override
    {
        m_list->reveal(*this);
        return ToolbarItemButton::becomeFirstResponder();
    }

private:
    ToolbarOverflowList* m_list = nullptr; // the superview
};

Class& ToolbarOverflowRow::staticClass()
{
    static Class& theClass =
        defineClass<ToolbarOverflowRow>("ToolbarOverflowRow", ToolbarItemButton::staticClass(), [](auto&) {});
    return theClass;
}

} // namespace

Class& ToolbarOverflowList::staticClass()
{
    static Class& theClass =
        defineClass<ToolbarOverflowList>("ToolbarOverflowList", NSView::staticClass(), [](auto&) {});
    return theClass;
}

void ToolbarOverflowList::init(const std::vector<std::shared_ptr<NSToolbarItem>>& items,
                               const std::function<void()>& close)
{
    NSView::init(CGRect());
    setWantsLayer(true);
    layer()->setMasksToBounds(true);
    for (const auto& item : items) {
        const auto row = make<ToolbarOverflowRow>(*item, *this, close);
        const CGSize size = row->intrinsicContentSize();
        m_rowSize = {std::clamp(std::max(m_rowSize.width, size.width), smallestWidth, largestWidth),
                     std::max(m_rowSize.height, size.height)};
        m_rows.push_back(row);
        addSubview(row);
    }
}

void ToolbarOverflowList::itemChanged(const NSToolbarItem& item)
{
    for (const auto& row : m_rows) {
        if (row->item().get() == &item)
            row->update();
    }
}

CGSize ToolbarOverflowList::intrinsicContentSize() const
{
    const CGFloat rows = std::min(static_cast<CGFloat>(m_rows.size()), mostRowsInSight);
    return {m_rowSize.width + 2 * margin, std::ceil(rows * m_rowSize.height) + 2 * margin};
}

CGFloat ToolbarOverflowList::contentHeight() const
{
    return static_cast<CGFloat>(m_rows.size()) * m_rowSize.height + 2 * margin;
}

void ToolbarOverflowList::layout()
{
    NSView::layout();
    CGFloat y = margin;
    for (const auto& row : m_rows) {
        row->setFrame({margin, y, std::max(0.0, frame().size.width - 2 * margin), m_rowSize.height});
        y += m_rowSize.height;
    }
}

void ToolbarOverflowList::scrollTo(CGFloat y)
{
    setBoundsOrigin({0, std::clamp(y, 0.0, std::max(0.0, contentHeight() - frame().size.height))});
}

void ToolbarOverflowList::scrollWheel(NSEvent& event)
{
    scrollTo(bounds().minY() - event.scrollingDeltaY());
}

void ToolbarOverflowList::reveal(const NSView& row)
{
    const CGRect seen = bounds();
    if (row.frame().minY() - margin < seen.minY())
        scrollTo(row.frame().minY() - margin);
    else if (row.frame().maxY() + margin > seen.maxY())
        scrollTo(row.frame().maxY() + margin - seen.size.height);
}

void ToolbarOverflowList::keyDown(NSEvent& event)
{
    const std::string& key = event.charactersIgnoringModifiers();
    if (key == NSKey::down)
        moveFocus(1);
    else if (key == NSKey::up)
        moveFocus(-1);
    else
        NSView::keyDown(event);
}

// Round the ends. Without a focus yet, down goes to the first row and up to the last.
void ToolbarOverflowList::moveFocus(int step)
{
    std::vector<NSView*> open;
    for (const auto& row : m_rows) {
        if (row->isEnabled())
            open.push_back(row.get());
    }
    if (open.empty() || !window())
        return;
    const auto count = static_cast<std::ptrdiff_t>(open.size());
    const auto place = std::ranges::find(open, window()->firstResponder());
    const std::ptrdiff_t from = place != open.end() ? place - open.begin() : step > 0 ? -1 : count;
    window()->makeFirstResponder(open[static_cast<std::size_t>((from + step + count) % count)]);
}

void ToolbarOverflow::show(const std::vector<std::shared_ptr<NSToolbarItem>>& items, NSView& anchor)
{
    const auto popover = make<NSPopover>();
    m_popover = popover;
    m_list = make<ToolbarOverflowList>(items, [shown = std::weak_ptr(popover)] {
        if (const auto open = shown.lock())
            open->close();
    });
    const auto controller = make<NSViewController>();
    controller->setView(m_list);
    popover->setBehavior(NSPopoverBehavior::transient);
    popover->setContentViewController(controller);
    popover->showRelativeToRect({}, anchor, anchor.isFlipped() ? NSRectEdge::maxY : NSRectEdge::minY);
    if (popover->isShown()) {
        popover->window()->layoutIfNeeded();
        m_list->moveFocus(1);
    }
}

void ToolbarOverflow::close()
{
    m_list = nullptr;
    if (const auto popover = std::exchange(m_popover, nullptr))
        popover->close();
}

void ToolbarOverflow::itemChanged(const NSToolbarItem& item)
{
    if (m_list)
        m_list->itemChanged(item);
}

} // namespace RVCore
