#pragma once

#include <AppKit/AppKitKey.h>
#include <AppKit/NSToolbarItem.h>

#include <string>
#include <vector>

namespace RVCore {

// A row of items above the content of one window (see NSWindow::setToolbar). Items that the window has no room for
// are in a list that a button at the right end opens. Main thread only.
class NSToolbar : public NSObject {
    RVCORE_CLASS(NSToolbar)

public:
    NSToolbar();
    ~NSToolbar() override;
    void init() override { init(std::string()); }
    using NSObject::init;
    virtual void init(const std::string& identifier);

    const std::string& identifier() const { return m_identifier; } // the program's own name; default empty

    // From the left.
    const std::vector<std::shared_ptr<NSToolbarItem>>& items() const { return m_items; }
    // Puts it before the item of that index, or at the end with the number of items. No item, one that is in this or
    // another toolbar already, and a larger index raise NSInvalidArgumentException.
    virtual void insertItem(const std::shared_ptr<NSToolbarItem>& item, std::size_t index);
    // An index that no item has raises NSInvalidArgumentException.
    virtual void removeItem(std::size_t index);
    // Those that have room in the window, gaps included; all of them while there is no window.
    std::vector<std::shared_ptr<NSToolbarItem>> visibleItems();
    void validateVisibleItems();

    // Whether the window shows it. Default yes.
    bool isVisible() const { return m_isVisible; }
    virtual void setVisible(bool visible);
    NSWindow* window() const; // null for none; not owned

    // For AppKit's own classes.
    const std::shared_ptr<ToolbarView>& view(AppKitKey) const { return m_view; }
    void itemChanged(NSToolbarItem& item, AppKitKey);

private:
    std::string m_identifier;
    std::vector<std::shared_ptr<NSToolbarItem>> m_items;
    std::shared_ptr<ToolbarView> m_view;
    bool m_isVisible = true;
};

} // namespace RVCore
