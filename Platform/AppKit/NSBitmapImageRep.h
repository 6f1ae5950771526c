#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGImage.h>
#include <Foundation/NSObject.h>

namespace RVCore {

class Bitmap;
class Canvas;
struct CGColor;

// One form of an image (see NSImage): pixels, and how large they are in points.
class NSBitmapImageRep : public NSObject {
    RVCORE_CLASS(NSBitmapImageRep)

public:
    using NSObject::init;
    // Transparent pixels, as many as the size takes at `scale` of them to a point; sides that fall between pixels are
    // rounded up. Raises NSInvalidArgumentException for sides that are not finite or above 0, or that come to more
    // than 32,767 pixels, and for a scale that is not finite or above 0.
    void init(CGSize size, CGFloat scale);
    // Pixels that there are. No image, and sides that are not finite or negative, raise.
    void init(const CGImageRef& image, CGSize size);

    CGSize size() const { return m_size; } // in points
    int pixelsWide() const { return m_pixelsWide; }
    int pixelsHigh() const { return m_pixelsHigh; }
    CGFloat scale() const { return m_extent.width > 0 ? m_pixelsWide / m_extent.width : 1; } // pixels to a point
    CGImageRef image() const; // null when there are no pixels
    // Other pixels of the same number; raises NSInvalidArgumentException for any other bitmap.
    void setPixels(const Bitmap& pixels);

    // Fills the rectangle with the size in points; with a colour, that takes the place of the pixels' own.
    void draw(Canvas& canvas, const CGRect& rect, const CGColor* color = nullptr) const;

private:
    CGSize m_size;
    CGSize m_extent; // of the pixels, in points: up to one of them more than the size
    int m_pixelsWide = 0;
    int m_pixelsHigh = 0;
    mutable CGImageRef m_image; // null while nothing has been drawn into it
};

} // namespace RVCore
