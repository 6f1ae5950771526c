#pragma once

#include <AppKit/Forward.h>

#include <memory>
#include <span>

namespace RVCore {

// The subviews that a modal one does not cover (see ViewInput::setAccessibilityModal): from the last visible modal
// one on, or all of them where there is none. Valid until the list changes.
std::span<const std::shared_ptr<NSView>> uncoveredSubviews(const NSView& view);
// Whether a subview covers the view itself.
bool isCovered(const NSView& view);

} // namespace RVCore
