#pragma once

#include <AppKit/NSButton.h>

namespace RVCore {

// A toolbar's item as a user sees it: in the bar, or in the list of those that have no room there.
class ToolbarItemButton : public NSButton {
    RVCORE_CLASS(ToolbarItemButton)

public:
    enum class Place { bar, list };

    // The height of each of them, in points: room for a label and for a picture of 20 × 20, the largest there is.
    static CGFloat usualHeight();

    using NSButton::init;
    void init(NSToolbarItem& item, Place place);
    // Shows the item as it is now.
    void update();
    // Null once it has died.
    std::shared_ptr<NSToolbarItem> item() const { return m_item.lock(); }

    CGSize intrinsicContentSize() const override;

protected:
    bool isContentCentered() const override { return m_place == Place::bar; }

private:
    std::weak_ptr<NSToolbarItem> m_item;
    Place m_place = Place::bar;
};

} // namespace RVCore
