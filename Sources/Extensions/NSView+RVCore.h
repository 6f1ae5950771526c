#pragma once

#include <AppKit/NSView.h>

namespace RVCore {

// Operations on every view, also published by selector (category RVCore). A class that has members of these names
// calls them from inside with the namespace: RVCore::setNeedsLayout(*this).

// Geometry, from the frame: points in the superview's coordinates. `top` is the frame's smallest y and `bottom` the
// largest, so they are what the eye calls top and bottom only in a flipped superview.
CGFloat left(const NSView& view);
CGFloat top(const NSView& view);
CGFloat right(const NSView& view);
CGFloat bottom(const NSView& view);
CGFloat width(const NSView& view);
CGFloat height(const NSView& view);

// The size from content; an absent metric is RVViewNoIntrinsicMetric.
CGFloat intrinsicWidth(const NSView& view);
CGFloat intrinsicHeight(const NSView& view);
// Whether neither is absent. The height is not asked for when the width is absent.
bool hasIntrinsicSize(const NSView& view);

// A view made with its plain initialiser and added to the superview. By name: initWithSuperview:.
template <std::derived_from<NSView> T = NSView> std::shared_ptr<T> makeView(NSView& superview)
{
    auto view = make<T>();
    superview.addSubview(view);
    return view;
}

// Appearance. Everything here but the getter of the background colour makes the view layer-backed first, and
// nothing ever takes that back. Numbers that are not finite raise NSInvalidArgumentException and change nothing.

// Absent when the view has no layer or its layer no colour.
std::shared_ptr<NSColor> backgroundColor(const NSView& view);
void setBackgroundColor(NSView& view, const std::shared_ptr<NSColor>& color);
// The layer's position. Setting the one that it has writes nothing.
CGPoint center(NSView& view);
void setCenter(NSView& view, CGPoint center);
// The layer's affine transform, about its anchor point. Setting the one that it has writes nothing.
CGAffineTransform transform(NSView& view);
void setTransform(NSView& view, const CGAffineTransform& transform);
// The view's alphaValue.
CGFloat alpha(NSView& view);
void setAlpha(NSView& view, CGFloat alpha);
// Also lets the layer be drawn again only on setNeedsDisplay.
void wantsAnimations(NSView& view);

// Whether the view's window has a first responder, be it this view or any other object.
bool isFirstResponder(const NSView& view);

// The platform's setters of the same names, with true.
void setNeedsLayout(NSView& view);
void setNeedsUpdateConstraints(NSView& view);

// Whether the view keeps the clicks, moves, drags, scrolls and keys that reach it instead of handing them on. Stored
// as a number beside the view; it holds only while the view is not hidden and its alpha, which this reads and so
// makes the view layer-backed, is above 0. A subclass's own handler of an event comes first, and other events are
// handed on.
bool disableEventPropagation(NSView& view);
void setDisableEventPropagation(NSView& view, bool disable);

// Publishes these operations; runs once, before main.
bool publishViewOperations();
inline const bool viewOperationsPublished = publishViewOperations();

} // namespace RVCore
