#pragma once

namespace RVCore {

class Bitmap;
class CGImage;
class Canvas;
struct CGAffineTransform;
struct CGColor;
struct CGPoint;
struct CGRect;
struct CGSize;
struct ControlDescription;
struct EdgeInsets;
struct FontDescription;
struct PixelRect;
struct RoundedRect;
struct TextDescription;

} // namespace RVCore
