#pragma once

#include <CoreGraphics/Bitmap.h>
#include <CoreGraphics/Canvas.h>

#include <optional>
#include <string>

namespace RVCore {

class NSView;

// Draws the view and everything in it, the view's top left corner at the canvas's origin. Filters, which need
// pixels, are left out.
void paintViewTree(NSView& view, Canvas& canvas);

// The view and everything in it as it is laid out now, `scale` pixels to a point, on the given ground or on none. A
// view without a size gives an empty bitmap. Raises NSInvalidArgumentException where a side has more than 32,767
// pixels.
Bitmap pictureOfView(NSView& view, CGFloat scale, const std::optional<CGColor>& ground = std::nullopt);

// Lays the view out and writes it as a PNG file, `scale` pixels to a point, on the given ground; needs no display.
// Raises NSInvalidArgumentException when the file cannot be written (see Backend::writePicture).
void writeViewPicture(NSView& view, const std::string& path, CGFloat scale, const CGColor& ground);

} // namespace RVCore
