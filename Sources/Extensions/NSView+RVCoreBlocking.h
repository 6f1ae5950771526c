#pragma once

#include <AppKit/Forward.h>
#include <Views/RVProgressBlockingView.h>

namespace RVCore {

// A progress overlay over any view, also published by selector (category RVCore).
//
//     showBlockingView(*list, {.title = "Reading"});
//     … a background thread works; showBlockingView again changes the texts …
//     hideBlockingView(*list);

// Makes the view layer-backed, covers it with a new overlay and fades that in. A view that is covered gets the
// message and the title; whether there is a spinner stays as it is.
void showBlockingView(NSView& view, const BlockingViewContent& content = {});
// The view is free at once, and can be covered anew. The overlay fades out as soon as it has been there for a second,
// so that a short operation does not make it flicker, and is taken out. Does nothing to a view that is not covered;
// an overlay without a time at which it was put up stops the program.
void hideBlockingView(NSView& view);

// The overlay that covers the view; null when it is free.
std::shared_ptr<RVProgressBlockingView> progressBlockingView(const NSView& view);
void setProgressBlockingView(NSView& view, const std::shared_ptr<RVProgressBlockingView>& overlay);
// When it was put up, in seconds since 1970. Not published.
std::optional<double> progressBlockingViewStartTime(const NSView& view);
void setProgressBlockingViewStartTime(NSView& view, std::optional<double> startTime);

// Publishes these operations; runs once, before main.
bool publishViewBlocking();
inline const bool viewBlockingPublished = publishViewBlocking();

} // namespace RVCore
