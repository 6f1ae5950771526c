#pragma once

#include <AppKit/NSPopover.h>

namespace RVCore {

// Where a popover goes: its frame with border and arrow, the edge of the anchor that it stands at, and where along
// that edge the arrow's tip is, from the frame's left or bottom side.
struct PopoverPlacement {
    CGRect frame;
    NSRectEdge edge = NSRectEdge::maxY;
    CGFloat tip = 0;

    bool operator==(const PopoverPlacement&) const = default;
};

namespace PopoverMetrics {
inline constexpr CGFloat arrowHeight = 9;
inline constexpr CGFloat arrowWidth = 18;
inline constexpr CGFloat cornerRadius = 6;
inline constexpr CGFloat borderWidth = 1;
} // namespace PopoverMetrics

// All in screen coordinates, y upward; `content` is the size inside border and arrow.
//
//        ┌───────────────┐
//        │    popover    │      edge maxY: above the anchor, the tip of the arrow at the middle of its top edge
//        └──────┐ ┌──────┘
//               └┬┘
//           ┌────┴────┐
//           │ anchor  │
//
// Where there is no room at the preferred edge, the opposite one is taken, then the two others, and where there is
// none at any, the preferred one. Along the edge the popover is centred, and moved as little as keeps it on the
// screen; the arrow stays away from its corners.
PopoverPlacement placePopover(const CGRect& anchor, CGSize content, NSRectEdge preferred, const CGRect& screen);

} // namespace RVCore
