#include <AppKit/MovingViews.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <Dispatch/DispatchTime.h>

#include <QuartzCore/CALayer.h>

#include <algorithm>
#include <vector>

namespace RVCore {

namespace {

std::vector<NSView*>& movingViews()
{
    static auto& views = *new std::vector<NSView*>; // for views that outlive the statics
    return views;
}

} // namespace

void MovingViews::add(NSView& view)
{
    auto& views = movingViews();
    if (std::ranges::count(views, &view) > 0)
        return;
    // Views that nobody shows do not come to a last frame.
    if (views.size() == views.capacity())
        std::erase_if(views, [](const NSView* other) { return !other->window() && !other->layer()->animationEnd(); });
    views.push_back(&view);
}

void MovingViews::remove(const NSView& view)
{
    std::erase(movingViews(), &view);
}

void MovingViews::prepareFrame(const NSWindow& window)
{
    auto& views = movingViews();
    const DispatchTime now = DispatchTime::now();
    // By index and from the end, as who hears of it may take views away; one that is looked at twice is no harm.
    for (std::size_t index = views.size(); index-- > 0;) {
        if (index >= views.size() || views[index]->window() != &window)
            continue;
        const auto view = shared(*views[index]);
        const auto layer = view->layer(); // which the view may have lost by then
        // Who hears of an end may have set something else going.
        if (!layer->prepareFrame(now) && view->layer() == layer && !layer->animationEnd(now))
            remove(*view);
    }
}

bool MovingViews::areSeenIn(const NSWindow& window)
{
    return window.isVisible() && std::ranges::any_of(movingViews(), [&](const NSView* view) {
               return view->window() == &window && !view->isHiddenOrHasHiddenAncestor();
           });
}

} // namespace RVCore
