#pragma once

#include <Extensions/NSView+RVCoreBlocking.h>
#include <Extensions/NSWindow+RVCoreBlocking.h>
#include <Foundation/AssociatedObjects.h>

namespace RVCore {

// What covering a view and covering a window have in common; not for applications.

inline constexpr CGFloat overlayZPosition = 1.0; // above its siblings' layers

// A new overlay, over everything that is in the view, and as large; it shows nothing yet, whatever is moved around
// it.
std::shared_ptr<RVProgressBlockingView> putOverlayOver(NSView& covered, const BlockingViewContent& content);
// Gives an overlay that is there its texts, and nothing else.
void updateTexts(RVProgressBlockingView& overlay, const BlockingViewContent& content);

// Publishes the operations of a host, NSView or NSWindow.
template <class Host, class Publisher> void publishBlocking(Publisher& publish)
{
    using Text = std::optional<std::string>;
    using Overlay = std::shared_ptr<RVProgressBlockingView>;
    publish.property("progressBlockingView", static_cast<Overlay (*)(const Host&)>(&progressBlockingView),
                     static_cast<void (*)(Host&, const Overlay&)>(&setProgressBlockingView));
    publish.method("showBlockingViewWithTitle:message:showProgress:",
                   [](Host& self, const Text& title, const Text& message, bool showProgress) {
                       showBlockingView(self, {.title = title, .message = message, .showProgress = showProgress});
                   });
    publish.method("hideBlockingView", [](Host& self) { hideBlockingView(self); });
}

} // namespace RVCore
