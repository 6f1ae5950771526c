#pragma once

#include <CoreGraphics/TextDescription.h>

#include <string>
#include <vector>

namespace RVCore {

class NSView;

// What a diagram of a view tree shows over the picture, in the root's points from its top left corner, downward.
struct ViewDiagramPlan {
    enum class Kind : std::uint8_t { frame, padding, gap, open, container };

    struct Area {
        CGRect rect;
        Kind kind;
    };
    struct Label {
        std::string text;
        CGRect rect; // as large as the text
        Kind kind;
    };

    std::vector<Area> areas;
    std::vector<CGRect> lines; // of the lengths of gaps, with their ticks
    std::vector<Label> labels; // none covers another one, or a text of the view that it is in
    CGRect extent;             // the root with what sticks out of it, as far as that is near
};

// Of the view as it is laid out.
ViewDiagramPlan makeViewDiagramPlan(NSView& root);

inline constexpr CGFloat diagramLineWidth = 0.75;
inline constexpr CGFloat diagramMarkWidth = 1.5; // of what is not settled

// A text as diagrams set it.
TextDescription diagramText(const std::string& text, const CGColor& color = {});

} // namespace RVCore
