#include <AppKit/NSToolbar.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ToolbarView.h>
#include <Foundation/NSException.h>

namespace RVCore {

Class& NSToolbar::staticClass()
{
    static Class& theClass = defineClass<NSToolbar>("NSToolbar", NSObject::staticClass(), [](auto& publish) {
        publish.initializer("initWithIdentifier:",
                            [](NSToolbar& self, const std::string& identifier) { self.init(identifier); });
        publish.readOnlyProperty("identifier", &NSToolbar::identifier);
        publish.readOnlyProperty("items", &NSToolbar::items);
        publish.method("insertItem:atIndex:", &NSToolbar::insertItem);
        publish.method("removeItemAtIndex:", &NSToolbar::removeItem);
        publish.readOnlyProperty("visibleItems", &NSToolbar::visibleItems);
        publish.method("validateVisibleItems", &NSToolbar::validateVisibleItems);
        publish.readOnlyProperty("isVisible", &NSToolbar::isVisible);
        publish.method("setVisible:", &NSToolbar::setVisible);
        publish.readOnlyProperty("window",
                                 [](NSToolbar& self) { return self.window() ? shared(*self.window()) : nullptr; });
    });
    return theClass;
}

NSToolbar::NSToolbar() = default;

NSToolbar::~NSToolbar()
{
    for (const auto& item : m_items)
        item->setToolbar(nullptr, {});
    if (m_view)
        m_view->toolbarEnds();
}

void NSToolbar::init(const std::string& identifier)
{
    m_identifier = identifier;
    m_view = make<ToolbarView>(*this);
}

void NSToolbar::insertItem(const std::shared_ptr<NSToolbarItem>& item, std::size_t index)
{
    constexpr std::string_view operation = "NSToolbar.insertItem:atIndex:";
    if (!item)
        raiseInvalidArgument(operation, "there is no item");
    if (item->toolbar())
        raiseInvalidArgument(operation, item->description() + " is in " +
                                            (item->toolbar() == this ? "this" : "another") + " toolbar already");
    if (index > m_items.size())
        raiseInvalidArgument(operation, "index " + std::to_string(index) + " is beyond the end of " +
                                            std::to_string(m_items.size()) + " items");
    const auto kept = item;
    m_items.insert(m_items.begin() + static_cast<std::ptrdiff_t>(index), kept);
    kept->setToolbar(this, {});
    m_view->itemsChanged();
}

void NSToolbar::removeItem(std::size_t index)
{
    if (index >= m_items.size())
        raiseInvalidArgument("NSToolbar.removeItemAtIndex:", "there is no index " + std::to_string(index) +
                                                                 " among " + std::to_string(m_items.size()) +
                                                                 " items");
    const auto place = m_items.begin() + static_cast<std::ptrdiff_t>(index);
    const auto item = *place;
    m_items.erase(place);
    item->setToolbar(nullptr, {});
    m_view->itemsChanged();
}

std::vector<std::shared_ptr<NSToolbarItem>> NSToolbar::visibleItems()
{
    if (!window())
        return m_items;
    window()->layoutIfNeeded();
    const auto count = static_cast<std::ptrdiff_t>(std::min(m_view->shownCount(), m_items.size()));
    return {m_items.begin(), m_items.begin() + count};
}

void NSToolbar::validateVisibleItems()
{
    for (const auto& item : visibleItems()) {
        if (!item->isSpace())
            item->validate();
    }
}

void NSToolbar::setVisible(bool visible)
{
    if (m_isVisible == visible)
        return;
    m_isVisible = visible;
    m_view->setHidden(!visible);
    if (NSWindow* host = window())
        host->toolbarHeightChanged({});
}

NSWindow* NSToolbar::window() const
{
    return m_view->window();
}

void NSToolbar::itemChanged(NSToolbarItem& item, AppKitKey)
{
    m_view->itemChanged(item);
}

} // namespace RVCore
