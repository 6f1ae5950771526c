#include <AppKit/NSBitmapImageRep.h>
#include <CoreGraphics/Bitmap.h>
#include <CoreGraphics/Canvas.h>
#include <Foundation/NSException.h>

namespace RVCore {

Class& NSBitmapImageRep::staticClass()
{
    static Class& theClass =
        defineClass<NSBitmapImageRep>("NSBitmapImageRep", NSObject::staticClass(), [](auto& publish) {
            publish.readOnlyProperty("size", &NSBitmapImageRep::size);
            publish.readOnlyProperty("pixelsWide", &NSBitmapImageRep::pixelsWide);
            publish.readOnlyProperty("pixelsHigh", &NSBitmapImageRep::pixelsHigh);
        });
    return theClass;
}

void NSBitmapImageRep::init(CGSize size, CGFloat scale)
{
    constexpr std::string_view operation = "NSBitmapImageRep.init";
    requireFinite(operation, "size", size);
    requireFinite(operation, "scale", scale);
    const auto pixels = pictureBounds(size, scale);
    if (!pixels || pixels->isEmpty())
        raiseInvalidArgument(operation,
                             describe(size) + " points at the scale " + numberText(scale) + " are no picture");
    m_size = size;
    m_extent = {pixels->width / scale, pixels->height / scale};
    m_pixelsWide = pixels->width;
    m_pixelsHigh = pixels->height;
}

void NSBitmapImageRep::init(const CGImageRef& image, CGSize size)
{
    constexpr std::string_view operation = "NSBitmapImageRep.init";
    if (!image)
        raiseInvalidArgument(operation, "there is no image");
    requireNotNegative(operation, "size", size);
    m_size = m_extent = size;
    m_pixelsWide = image->width();
    m_pixelsHigh = image->height();
    m_image = image;
}

CGImageRef NSBitmapImageRep::image() const
{
    if (!m_image && m_pixelsWide > 0)
        m_image = makeImage(Bitmap(m_pixelsWide, m_pixelsHigh));
    return m_image;
}

void NSBitmapImageRep::setPixels(const Bitmap& pixels)
{
    if (pixels.isEmpty() || pixels.width() != m_pixelsWide || pixels.height() != m_pixelsHigh)
        raiseInvalidArgument("NSBitmapImageRep.setPixels", "expected " + std::to_string(m_pixelsWide) + " × " +
                                                               std::to_string(m_pixelsHigh) + " pixels, got " +
                                                               std::to_string(pixels.width()) + " × " +
                                                               std::to_string(pixels.height()));
    m_image = makeImage(pixels);
}

// Where a side falls between pixels, the last one reaches beyond the size, so that none of the others is stretched.
void NSBitmapImageRep::draw(Canvas& canvas, const CGRect& rect, const CGColor* color) const
{
    const CGImageRef pixels = image();
    if (!pixels || m_size.width <= 0 || m_size.height <= 0)
        return;
    const CGSize shown{rect.size.width * m_extent.width / m_size.width,
                       rect.size.height * m_extent.height / m_size.height};
    if (color)
        canvas.drawMask(*pixels, {rect.origin, shown}, *color);
    else
        canvas.drawImage(*pixels, {rect.origin, shown});
}

} // namespace RVCore
