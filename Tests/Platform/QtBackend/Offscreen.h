#pragma once

#include <CoreGraphics/Canvas.h>

#include <QImage>
#include <QRect>

#include <functional>
#include <string>

namespace RVCore {

// Test programs that link Offscreen.cpp use Qt's platform without a screen, also on a machine that has one.

// A folder of this test program's own; removed at its end.
std::string temporaryPath(const std::string& name);

// Paints through Backend.writePicture and reads the file back.
QImage paintedPicture(CGSize size, CGFloat scale, const std::function<void(Canvas&)>& paint);

// The smallest rectangle around all pixels that are not fully transparent, in pixels; empty when there are none.
QRect inkBounds(const QImage& picture);

// The sum of all pixels' opacity: the painted area, in pixels.
double inkArea(const QImage& picture);

// The largest difference between two pixels' components; 255 for pictures of different sizes.
int largestDifference(const QImage& a, const QImage& b);

} // namespace RVCore
