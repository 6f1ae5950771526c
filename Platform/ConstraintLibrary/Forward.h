#pragma once

#include <AppKit/Forward.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace RVCore {

using LayoutConstraints = std::vector<std::shared_ptr<NSLayoutConstraint>>;

enum class LayoutAxis : std::int8_t;
enum class LayoutDimension : std::int8_t;
enum class LayoutEdge : std::int8_t;

} // namespace RVCore
