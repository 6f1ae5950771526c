#include <AppKit/KnownValue.h>
#include <AppKit/NSImageView.h>
#include <CoreGraphics/Canvas.h>
#include <Foundation/NSCoder.h>

namespace RVCore {

namespace {

// From 0 at the left and the top to 1 at the right and the bottom.
CGPoint placeOf(NSImageAlignment alignment)
{
    switch (alignment) {
    case NSImageAlignment::center:
        return {0.5, 0.5};
    case NSImageAlignment::top:
        return {0.5, 0};
    case NSImageAlignment::topLeft:
        return {0, 0};
    case NSImageAlignment::topRight:
        return {1, 0};
    case NSImageAlignment::left:
        return {0, 0.5};
    case NSImageAlignment::bottom:
        return {0.5, 1};
    case NSImageAlignment::bottomLeft:
        return {0, 1};
    case NSImageAlignment::bottomRight:
        return {1, 1};
    case NSImageAlignment::right:
        return {1, 0.5};
    }
    return {0.5, 0.5};
}

} // namespace

Class& NSImageView::staticClass()
{
    static Class& theClass = defineClass<NSImageView>("NSImageView", NSControl::staticClass(), [](auto& publish) {
        publish.property("image", &NSImageView::image, &NSImageView::setImage);
        publish.property("imageAlignment", &NSImageView::imageAlignment, &NSImageView::setImageAlignment);
        publish.property("imageScaling", &NSImageView::imageScaling, &NSImageView::setImageScaling);
    });
    return theClass;
}

void NSImageView::init(NSCoder& coder)
{
    NSControl::init(coder);
    setImageAlignment(coder.decode<NSImageAlignment>("imageAlignment"));
    setImageScaling(coder.decode<NSImageScaling>("imageScaling"));
}

void NSImageView::encode(NSCoder& coder) const
{
    NSControl::encode(coder);
    coder.encode("imageAlignment", static_cast<int>(m_alignment));
    coder.encode("imageScaling", static_cast<int>(m_scaling));
}

void NSImageView::setImage(const std::shared_ptr<NSImage>& image)
{
    if (m_image == image)
        return;
    m_image = image;
    invalidateIntrinsicContentSize();
    setNeedsDisplay(true);
}

void NSImageView::setImageAlignment(NSImageAlignment alignment)
{
    requireKnown("NSImageView.setImageAlignment:", alignment, NSImageAlignment::center, NSImageAlignment::right);
    if (m_alignment == alignment)
        return;
    m_alignment = alignment;
    setNeedsDisplay(true);
}

void NSImageView::setImageScaling(NSImageScaling scaling)
{
    requireKnown("NSImageView.setImageScaling:", scaling, NSImageScaling::proportionallyDown,
                 NSImageScaling::proportionallyUpOrDown);
    if (m_scaling == scaling)
        return;
    m_scaling = scaling;
    setNeedsDisplay(true);
}

CGSize NSImageView::intrinsicContentSize() const
{
    return m_image ? m_image->size() : CGSize{NSViewNoIntrinsicMetric, NSViewNoIntrinsicMetric};
}

AccessibleRole NSImageView::accessibilityRole() const
{
    return accessibilityLabel().empty() ? AccessibleRole::none : AccessibleRole::image;
}

void NSImageView::draw(Canvas& canvas, const CGRect&)
{
    if (!m_image)
        return;
    const CGRect room = bounds();
    const CGSize size = scaledImageSize(m_image->size(), room.size, m_scaling);
    const CGPoint place = placeOf(m_alignment);
    const CanvasState state(canvas);
    canvas.clip({room, 0}); // what is not scaled may be larger
    m_image->draw(canvas,
                  {{room.minX() + place.x * (room.size.width - size.width),
                    room.minY() + place.y * (room.size.height - size.height)},
                   size},
                  contentColor(ControlKind::checkBox));
}

} // namespace RVCore
