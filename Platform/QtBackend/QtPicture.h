#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <functional>
#include <string>

namespace RVCore {

class Canvas;

// Backend.writePicture.
void writePicture(const std::string& path, CGSize size, CGFloat scale, const std::function<void(Canvas&)>& paint);

} // namespace RVCore
