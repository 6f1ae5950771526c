#pragma once

#include <Views/RVGroupView.h>

namespace RVCore {

// What takes part in a group's layout at one moment.
struct RVGroupView::Elements {
    Views views;     // the visible members, in order
    Spacers spacers; // the spacers that no hidden member has taken with it, in order
    Views layout;    // both, interleaved and ending in the last spacer: s0, m0, s1, m1, s2

    const NSView* leadingView() const { return views.empty() ? nullptr : views.front().get(); }
    const NSView* trailingView() const { return views.empty() ? nullptr : views.back().get(); }
    const RVSpacerView* leadingSpacer() const { return spacers.empty() ? nullptr : spacers.front().get(); }
    const RVSpacerView* trailingSpacer() const { return spacers.empty() ? nullptr : spacers.back().get(); }
};

} // namespace RVCore
