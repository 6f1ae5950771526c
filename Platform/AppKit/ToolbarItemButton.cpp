#include <AppKit/NSImage.h>
#include <AppKit/NSToolbarItem.h>
#include <AppKit/ToolbarItemButton.h>

namespace RVCore {

Class& ToolbarItemButton::staticClass()
{
    static Class& theClass =
        defineClass<ToolbarItemButton>("ToolbarItemButton", NSButton::staticClass(), [](auto&) {});
    return theClass;
}

void ToolbarItemButton::init(NSToolbarItem& item, Place place)
{
    NSButton::init(CGRect());
    m_item = shared(item);
    m_place = place;
    setBezelStyle(NSBezelStyle::toolbar);
    setOnAction([item = m_item] {
        if (const auto pressed = item.lock())
            pressed->sendAction();
    });
    update();
}

void ToolbarItemButton::update()
{
    const auto shown = m_item.lock();
    if (!shown)
        return;
    setTitle(shown->label());
    setImage(shown->image());
    const bool hasBoth = shown->image() && !shown->label().empty();
    setImagePosition(hasBoth          ? NSCellImagePosition::imageLeft
                     : shown->image() ? NSCellImagePosition::imageOnly
                                      : NSCellImagePosition::noImage);
    setEnabled(shown->isEnabled());
}

// With the picture as large as it is drawn, in a bar that has one height for all.
CGSize ToolbarItemButton::intrinsicContentSize() const
{
    CGSize size = NSButton::intrinsicContentSize();
    if (!image())
        return size;
    const CGSize natural = image()->size();
    const CGSize drawn = scaledImageSize(natural, {imageSide, imageSide}, NSImageScaling::proportionallyDown);
    size.width -= natural.width - drawn.width;
    return size;
}

} // namespace RVCore
