#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <functional>
#include <string>

namespace RVCore {

class Canvas;

// Backend.writePicture.
void writePicture(const std::string& path, const Bitmap& picture, CGFloat scale);

} // namespace RVCore
