#pragma once

#include <AppKit/NSCursor.h>
#include <AppKit/NSTrackingArea.h>
#include <AppKit/ViewInput.h>

namespace RVCore {

// What few views have, kept apart so that the many others stay small.
struct ViewInput::Extras {
    struct CursorRect {
        CGRect rect;
        std::shared_ptr<NSCursor> cursor;
    };

    std::string identifier;
    std::vector<std::shared_ptr<NSTrackingArea>> trackingAreas;
    std::vector<CursorRect> cursorRects;
    bool hasCursorRects = false; // resetCursorRects has run for the present size
    std::weak_ptr<NSView> nextKeyView;
    std::string accessibilityLabel;
    bool isAccessibilityModal = false;
    NSViewController* viewController = nullptr; // whose view this is
};

} // namespace RVCore
