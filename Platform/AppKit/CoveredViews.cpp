#include <AppKit/CoveredViews.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewPlacement.h>

#include <algorithm>

namespace RVCore {

namespace {

bool isCover(const NSView* view)
{
    return view->isAccessibilityModal() && !view->isInvisible();
}

} // namespace

std::vector<NSView*> uncoveredSubviews(const NSView& view)
{
    auto subviews = subviewsInPaintingOrder(view);
    const auto topmost = std::find_if(subviews.rbegin(), subviews.rend(), &isCover);
    if (topmost != subviews.rend())
        subviews.erase(subviews.begin(), std::prev(topmost.base()));
    return subviews;
}

std::vector<NSView*> uncoveredSubviewsInKeyOrder(const NSView& view)
{
    auto subviews = view.subviewsInKeyOrder();
    if (!isCovered(view))
        return subviews;
    const auto uncovered = uncoveredSubviews(view);
    std::erase_if(subviews,
                  [&](NSView* subview) { return std::ranges::find(uncovered, subview) == uncovered.end(); });
    return subviews;
}

bool isCovered(const NSView& view)
{
    return std::ranges::any_of(view.subviews(), [](const auto& subview) { return isCover(subview.get()); });
}

NSView* coverOf(const NSView& view)
{
    const NSView* inner = nullptr; // the one that the view is in
    for (const NSView* around = &view; around; inner = around, around = around->superview()) {
        const auto uncovered = uncoveredSubviews(*around);
        const bool reachesInner = inner && std::ranges::find(uncovered, inner) != uncovered.end();
        if (isCovered(*around) && !reachesInner)
            return uncovered.front();
    }
    return nullptr;
}

} // namespace RVCore
