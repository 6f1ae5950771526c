#include <AppKit/NSImage.h>
#include <AppKit/NSToolbarItem.h>
#include <AppKit/ToolbarItemButton.h>
#include <Backend/Backend.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

constexpr CGFloat imageSide = 20;

} // namespace

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

CGFloat ToolbarItemButton::usualHeight()
{
    ControlDescription description;
    description.kind = ControlKind::toolButton;
    const CGFloat text = Backend::shared().measureText({.text = "x"}, 0).size.height;
    const CGFloat content = std::max(text, imageSide);
    return Backend::shared().controlLook().sizeForContent(description, {content, content}).height;
}

// With the picture as large as it is drawn.
CGSize ToolbarItemButton::intrinsicContentSize() const
{
    CGFloat width = NSButton::intrinsicContentSize().width;
    if (image()) {
        const CGSize natural = image()->size();
        const CGSize drawn = scaledImageSize(natural, {imageSide, imageSide}, NSImageScaling::proportionallyDown);
        width -= natural.width - drawn.width;
    }
    return {std::ceil(width), usualHeight()};
}

} // namespace RVCore
