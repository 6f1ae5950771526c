#pragma once

#include <AppKit/Forward.h>
#include <CoreGraphics/CGGeometry.h>

#include <functional>
#include <memory>

namespace RVCore {

// Fades of every view and a picture of it, also published by selector (category RVCore). A fade moves the alpha and
// nothing else: a view that has faded out is not hidden, takes part in layout, and is still found by the pointer.
// Fades may overlap; each one's completion comes once, on the main queue, when its own time is over.

struct FadeOptions {
    CGFloat duration = 0.3; // in seconds, at least 0
    std::function<void()> completion = {};
};
// Fades to this alpha by the published `animateAlphaWithAlpha:duration:completion:`, so that a class's own takes the
// place of this one: which makes the view layer-backed and moves its alphaValue along the curve that starts and ends
// slowly. The view lives until the end. Numbers that are not finite and a negative duration raise
// NSInvalidArgumentException and change nothing.
void animateAlpha(NSView& view, CGFloat alpha, const FadeOptions& options = {});
// The same to 1 and to 0, over 0.3 seconds.
void showAnimated(NSView& view, const std::function<void()>& completion = {});
void hideAnimated(NSView& view, const std::function<void()>& completion = {});

// A new image of what the view shows, as large as its bounds, with one representation at the backing scale. A view
// that has no picture, as it has no size, stops the program.
std::shared_ptr<NSImage> screenshot(NSView& view);

// Publishes these operations; runs once, before main.
bool publishViewAnimations();
inline const bool viewAnimationsPublished = publishViewAnimations();

} // namespace RVCore
