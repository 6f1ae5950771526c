#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGImage.h>

#include <QImage>

#include <string>

class QPainter;

namespace RVCore {

// Backend.readImage.
CGImageRef readImage(const std::string& path);

// The pixels themselves: the image must outlive the result.
QImage toQImage(const CGImage& image);

// Draws the image in the rectangle, in the painter's coordinates: pixel onto pixel where it is as large there as
// snappedToDevice says, otherwise smoothly.
void drawPixels(QPainter& painter, const QImage& image, const CGRect& rect);

} // namespace RVCore
