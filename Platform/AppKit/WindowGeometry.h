#pragma once

#include <Backend/WindowPlacement.h>

namespace RVCore {

// Where a window is and how large, as numbers; the sketch is at NSWindow. Lengths in points, y upward.
struct WindowGeometry {
    CGPoint origin;     // of the frame
    EdgeInsets margins; // of the frame around content and toolbar
    CGFloat toolbarHeight = 0;
    CGSize contentSize;
    CGSize contentMinSize;
    CGSize contentMaxSize{largestWindowSide, largestWindowSide};
    CGSize neededSize{1, 1}; // by the content; stands above the largest size

    CGRect frame() const { return {origin, frameFor({{}, contentSize}).size}; }
    CGPoint topLeft() const { return {frame().minX(), frame().maxY()}; }
    CGRect frameFor(const CGRect& content) const;
    CGRect contentFor(const CGRect& frame) const; // no side below 0
    // What the desktop calls the window's content: content and toolbar.
    CGSize areaFor(CGSize content) const { return {content.width, content.height + toolbarHeight}; }

    // The limits that the desktop is told, for the content.
    CGSize smallest() const;
    CGSize largest() const;
    // The size that this one becomes within the limits, in whole points.
    CGSize limited(CGSize content) const;
    // The frame that this one becomes within the limits, with the same top left corner.
    CGRect limited(const CGRect& frame) const;
};

} // namespace RVCore
