#include <AppKit/NSAccessibility.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSToolbar.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ToolbarItemButton.h>
#include <AppKit/ToolbarOverflow.h>
#include <AppKit/ToolbarView.h>
#include <CoreGraphics/Canvas.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

constexpr CGFloat marginY = 3;            // above and below the buttons
constexpr CGFloat spaceWidth = 16;        // of a gap
constexpr CGFloat largestItemWidth = 180; // longer labels get an ellipsis
constexpr const char* chevronTitle = "»";

} // namespace

Class& ToolbarView::staticClass()
{
    static Class& theClass = defineClass<ToolbarView>("ToolbarView", NSView::staticClass(), [](auto&) {});
    return theClass;
}

ToolbarView::ToolbarView() = default;
ToolbarView::~ToolbarView() = default;

void ToolbarView::init(NSToolbar& toolbar)
{
    NSView::init(CGRect());
    m_toolbar = &toolbar;
}

CGFloat ToolbarView::barHeight()
{
    return ToolbarItemButton::usualHeight() + 2 * marginY;
}

void ToolbarView::itemsChanged()
{
    std::erase_if(m_buttons, [&](const auto& entry) {
        const auto item = entry.second->item();
        const bool isThere = item && item->toolbar() == m_toolbar;
        if (!isThere)
            entry.second->removeFromSuperview();
        return !isThere;
    });
    close(); // it lists what was
    setNeedsLayout(true);
}

void ToolbarView::itemChanged(NSToolbarItem& item)
{
    const auto button = m_buttons.find(&item);
    if (button != m_buttons.end())
        button->second->update();
    if (m_overflow)
        m_overflow->itemChanged(item);
    setNeedsLayout(true);
}

void ToolbarView::toolbarEnds()
{
    m_toolbar = nullptr;
    close();
}

std::vector<std::shared_ptr<NSToolbarItem>> ToolbarView::overflowingItems() const
{
    std::vector<std::shared_ptr<NSToolbarItem>> items;
    if (m_toolbar && m_plan.hasChevron) {
        const auto& all = m_toolbar->items();
        const auto first = all.begin() + static_cast<std::ptrdiff_t>(std::min(shownCount(), all.size()));
        std::copy_if(first, all.end(), std::back_inserter(items), [](const auto& item) { return !item->isSpace(); });
    }
    return items;
}

std::shared_ptr<NSButton> ToolbarView::chevron() const
{
    return m_plan.hasChevron ? m_chevron : nullptr;
}

void ToolbarView::toggleOverflow()
{
    if (!m_chevron || !window() || !window()->isVisible())
        return;
    if (!m_overflow)
        m_overflow = std::make_unique<ToolbarOverflow>();
    if (m_overflow->isShown())
        m_overflow->close();
    else
        m_overflow->show(overflowingItems(), *m_chevron);
}

void ToolbarView::close()
{
    if (m_overflow)
        m_overflow->close();
}

ToolbarItemButton& ToolbarView::buttonOf(NSToolbarItem& item)
{
    auto& button = m_buttons[&item];
    if (!button)
        button = make<ToolbarItemButton>(item, ToolbarItemButton::Place::bar);
    return *button;
}

NSButton& ToolbarView::chevronButton()
{
    if (m_chevron)
        return *m_chevron;
    m_chevron = make<NSButton>();
    m_chevron->setBezelStyle(NSBezelStyle::toolbar);
    m_chevron->setTitle(chevronTitle);
    m_chevron->setAccessibilityLabel("More");
    m_chevron->setOnAction([this] { toggleOverflow(); });
    return *m_chevron;
}

// What may be asked for while it is laid out depends on the items alone, so this settles at once.
ToolbarPlan ToolbarView::makePlan()
{
    const auto partAt = [this](std::size_t index) -> ToolbarPart {
        NSToolbarItem& item = *m_toolbar->items()[index];
        if (item.isSpace())
            return {item.isFlexibleSpace() ? 0 : spaceWidth, true, item.isFlexibleSpace()};
        return {std::min(buttonOf(item).intrinsicContentSize().width, largestItemWidth)};
    };
    return planToolbar(m_toolbar->items().size(), partAt, frame().size.width,
                       chevronButton().intrinsicContentSize().width);
}

void ToolbarView::layout()
{
    NSView::layout();
    if (!m_toolbar)
        return;
    const bool hadChevron = m_plan.hasChevron;
    const std::size_t before = shownCount();
    m_plan = makePlan();
    if (before != shownCount() || hadChevron != m_plan.hasChevron)
        close();
    apply();
}

void ToolbarView::apply()
{
    const auto subviewsBefore = subviews();
    std::vector<NSView*> wanted;
    for (std::size_t i = 0; i < m_plan.shown.size(); ++i) {
        NSToolbarItem& item = *m_toolbar->items()[i];
        if (item.isSpace())
            continue;
        place(buttonOf(item), m_plan.shown[i]);
        wanted.push_back(&buttonOf(item));
    }
    if (m_plan.hasChevron) {
        place(*m_chevron, {m_plan.chevronX, m_chevron->intrinsicContentSize().width});
        wanted.push_back(m_chevron.get());
    }
    std::ranges::sort(wanted);
    for (const auto& subview : subviewsBefore) {
        if (!std::ranges::binary_search(wanted, subview.get()))
            subview->removeFromSuperview();
    }
    if (subviews() != subviewsBefore)
        postAccessibilityChange(*this, AccessibleChange::children);
}

void ToolbarView::place(NSButton& button, const ToolbarPlan::Span& span)
{
    const CGFloat height = ToolbarItemButton::usualHeight();
    button.setFrame({span.x, std::floor((frame().size.height - height) / 2), span.width, height});
    if (button.superview() != this)
        addSubview(shared(button));
}

void ToolbarView::draw(Canvas& canvas, const CGRect&)
{
    const NSApplication& application = NSApplication::shared();
    ControlDescription ground;
    ground.kind = ControlKind::toolbar;
    ground.appearance = application.effectiveAppearance();
    ground.isWindowActive = !window() || application.keyWindow() == window();
    canvas.drawControl(ground, bounds());
}

} // namespace RVCore
