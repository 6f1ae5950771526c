#pragma once

#include <cstdint>

namespace RVCore {

class CALayer;
class CAMediaTimingFunction;
class LayerPresentation;
enum class LayerProperty : std::uint8_t;
struct LayerAnimation;
struct LayerMotion;

} // namespace RVCore
