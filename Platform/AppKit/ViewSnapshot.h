#pragma once

#include <CoreGraphics/Canvas.h>

#include <string>

namespace RVCore {

class NSView;

// Draws the view and everything in it, the view's top left corner at the canvas's origin.
void paintViewTree(NSView& view, Canvas& canvas);

// Lays the view out and writes it as a PNG file, `scale` pixels to a point, on the given ground; needs no display.
// Raises NSInvalidArgumentException when the file cannot be written (see Backend::writePicture).
void writeViewPicture(NSView& view, const std::string& path, CGFloat scale, const CGColor& ground);

} // namespace RVCore
