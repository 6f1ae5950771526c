#pragma once

#include <CoreGraphics/Bitmap.h>

#include <QImage>
#include <QPainter>
#include <QtBackend/QtCanvas.h>

#include <memory>

namespace RVCore {

// The pixels themselves: the bitmap must outlive the result.
QImage toQImage(Bitmap& bitmap);
QImage toQImage(const Bitmap& bitmap); // for reading

// See Backend::makeCanvas.
std::unique_ptr<Canvas> makeBitmapCanvas(Bitmap& bitmap, int x, int y, CGFloat scale);

} // namespace RVCore
