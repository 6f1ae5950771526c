#pragma once

#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/ControlDescription.h>

namespace RVCore {

// What the desktop's style knows of controls; Canvas::drawControl draws them. Lengths are in points.
//
//   ┌───────────────────┐  size for content     ┌───────────────────┐
//   │  ┌ ─ ─ ─ ─ ─ ─ ┐  │                       │ ┌─┐ ┌ ─ ─ ─ ─ ─ ┐ │
//   │      content      │                       │ └─┘    content    │
//   │  └ ─ ─ ─ ─ ─ ─ ┘  │                       │     └ ─ ─ ─ ─ ─ ┘ │
//   └───────────────────┘                       └───────────────────┘
class ControlLook {
public:
    virtual ~ControlLook() = default;

    // The size of a control around content (text and picture) of this size; whole points, at least the content's.
    virtual CGSize sizeForContent(const ControlDescription& control, CGSize content) = 0;
    // Where the content goes in a control of this size, from the top left corner; empty where there is no room.
    virtual CGRect contentRect(const ControlDescription& control, CGSize size) = 0;
    // The colour of text (and of pictures that are templates) in the control.
    virtual CGColor contentColor(const ControlDescription& control) = 0;

    // What the desktop itself looks like, the colours of its windows and of text on them.
    virtual Appearance desktopAppearance() = 0;
    virtual CGColor windowColor(Appearance appearance) = 0;
    virtual CGColor textColor(Appearance appearance) = 0;
    // Of what has the keyboard focus, or is chosen.
    virtual CGColor accentColor(Appearance appearance) = 0;
};

} // namespace RVCore
