#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cstddef>
#include <functional>
#include <vector>

namespace RVCore {

// What stands in a toolbar, as far as its layout goes.
struct ToolbarPart {
    CGFloat width = 0; // of a flexible space the least
    bool isSpace = false;
    bool isFlexible = false;
};

// Where along a toolbar the first so many parts are, and whether the others are behind the chevron.
//
//   │◂margin▸┌──────┐◂gap▸┌──────┐  flexible space   ┌──────┐ ┌─┐◂margin▸│
//   │        └──────┘     └──────┘◂·················▸└──────┘ └─┘        │
//                                                           chevron, only with overflow
struct ToolbarPlan {
    struct Span {
        CGFloat x = 0;
        CGFloat width = 0;
        bool operator==(const Span&) const = default;
    };

    std::vector<Span> shown;
    bool hasChevron = false;
    CGFloat chevronX = 0;

    bool operator==(const ToolbarPlan&) const = default;
};

namespace ToolbarMetrics {
inline constexpr CGFloat margin = 6; // at both ends
inline constexpr CGFloat gap = 2;    // between neighbours
} // namespace ToolbarMetrics

// Asks for parts in order, and for no more of them than it needs: measuring is dear and toolbars may be long. Gaps at
// the end that do not fit are left out without a chevron.
ToolbarPlan planToolbar(std::size_t count, const std::function<ToolbarPart(std::size_t)>& partAt, CGFloat width,
                        CGFloat chevronWidth);

} // namespace RVCore
