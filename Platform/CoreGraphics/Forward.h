#pragma once

namespace RVCore {

class Canvas;
struct CGAffineTransform;
struct CGColor;
struct CGPoint;
struct CGRect;
struct CGSize;
struct EdgeInsets;
struct FontDescription;
struct RoundedRect;
struct TextDescription;

} // namespace RVCore
