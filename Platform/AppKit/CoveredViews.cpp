#include <AppKit/CoveredViews.h>
#include <AppKit/NSView.h>

#include <algorithm>

namespace RVCore {

std::span<const std::shared_ptr<NSView>> uncoveredSubviews(const NSView& view)
{
    const auto& subviews = view.subviews();
    const auto last = std::find_if(subviews.rbegin(), subviews.rend(), [](const auto& subview) {
        return subview->isAccessibilityModal() && !subview->isInvisible();
    });
    return last == subviews.rend() ? std::span(subviews) : std::span(std::prev(last.base()), subviews.end());
}

bool isCovered(const NSView& view)
{
    const auto uncovered = uncoveredSubviews(view);
    return !uncovered.empty() && uncovered.front()->isAccessibilityModal() && !uncovered.front()->isInvisible();
}

} // namespace RVCore
