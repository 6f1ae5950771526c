#pragma once

#include <AppKit/Forward.h>
#include <Views/RVProgressBlockingView.h>

namespace RVCore {

// A progress overlay over a window's content, also published by selector (category RVCore). The content view can have
// one of its own beside it, see NSView+RVCoreBlocking.h.

// Covers the content with a new overlay, takes target and action from those items of the toolbar that have both,
// which disables them, and fades the overlay in. A window that is covered gets the message and the title. One without
// a content view stays as it is.
void showBlockingView(NSWindow& window, const BlockingViewContent& content = {});
// Gives the items their targets and actions back at once, and fades the overlay out; the window is free when that is
// over. Until then it holds the targets. Does nothing to a window that is not covered.
void hideBlockingView(NSWindow& window);

// The overlay that covers the window's content, or is on its way out; null when the window is free.
std::shared_ptr<RVProgressBlockingView> progressBlockingView(const NSWindow& window);
void setProgressBlockingView(NSWindow& window, const std::shared_ptr<RVProgressBlockingView>& overlay);

// Publishes these operations; runs once, before main.
bool publishWindowBlocking();
inline const bool windowBlockingPublished = publishWindowBlocking();

} // namespace RVCore
