#pragma once

namespace RVCore {

class CALayer;
class CAMediaTimingFunction;
class LayerPresentation;
struct LayerAnimation;
struct LayerMotion;

} // namespace RVCore
