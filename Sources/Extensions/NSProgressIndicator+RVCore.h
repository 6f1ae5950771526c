#pragma once

#include <AppKit/NSProgressIndicator.h>

namespace RVCore {

// A determinate bar that moves to its values instead of jumping, also published by selector (category RVCore).

// Moves the indicator from the value that it has to this one, evenly within 0.2 seconds. Of the values that come
// while it is on its way, only the last one counts, and it goes there afterwards, unless that is where it just went.
// Each step sets doubleValue, which keeps to the indicator's limits, from a thread of the animation's own. On the
// main thread. By name: setDoubleValueAnimatedWithValue:.
void setDoubleValueAnimated(NSProgressIndicator& indicator, double value);

// What the animation tells its delegate, which is the indicator, in the end: however it came, the value that waits is
// next. Which animation it was makes no difference: the indicator knows its own, and without one nothing happens.
// By name, in the category RVCore1: animationDidEnd: and animationDidStop:.
void animationDidEnd(NSProgressIndicator& indicator, const ObjectRef& animation = nullptr);
void animationDidStop(NSProgressIndicator& indicator, const ObjectRef& animation = nullptr);

// Publishes these operations; runs once, before main.
bool publishProgressIndicatorOperations();
inline const bool progressIndicatorOperationsPublished = publishProgressIndicatorOperations();

} // namespace RVCore
