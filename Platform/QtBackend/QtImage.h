#pragma once

#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGImage.h>

#include <QImage>
#include <QRect>

#include <optional>
#include <string>

class QPainter;
class QTransform;

namespace RVCore {

// Backend.readImage.
CGImageRef readImage(const std::string& path);

// The pixels themselves: the image must outlive the result.
QImage toQImage(const CGImage& image);

// Where a rectangle lies on a device whose pixels its edges are moved to; nothing where it does not lie straight and
// upright.
std::optional<QRect> snappedToDevice(const QTransform& toDevice, const CGRect& rect);

// Draws the image in the rectangle, in the painter's coordinates: pixel onto pixel where it is as large there as
// snappedToDevice says, otherwise smoothly.
void drawPixels(QPainter& painter, const QImage& image, const CGRect& rect);

} // namespace RVCore
