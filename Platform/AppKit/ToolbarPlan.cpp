#include <AppKit/ToolbarPlan.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

using namespace ToolbarMetrics;

// The parts from the left, up to the first one that ends beyond the limit.
std::vector<ToolbarPart> takeFitting(std::size_t count, const std::function<ToolbarPart(std::size_t)>& partAt,
                                     CGFloat limit)
{
    std::vector<ToolbarPart> taken;
    CGFloat x = margin;
    for (std::size_t i = 0; i < count; ++i) {
        const ToolbarPart part = partAt(i);
        if (x + part.width > limit)
            break;
        taken.push_back(part);
        x += part.width + gap;
    }
    return taken;
}

bool isThereMoreThanSpace(std::size_t first, std::size_t count, const std::function<ToolbarPart(std::size_t)>& partAt)
{
    for (std::size_t i = first; i < count; ++i) {
        if (!partAt(i).isSpace)
            return true;
    }
    return false;
}

// Where the parts end, with the gap before what might follow.
CGFloat lengthOf(const std::vector<ToolbarPart>& parts)
{
    CGFloat length = 0;
    for (const ToolbarPart& part : parts)
        length += part.width + gap;
    return length;
}

// Whole points, of which the last ones get the rest.
void stretch(std::vector<ToolbarPart>& parts, CGFloat left)
{
    auto flexible = std::ranges::count_if(parts, &ToolbarPart::isFlexible);
    for (ToolbarPart& part : parts) {
        if (!part.isFlexible)
            continue;
        const CGFloat share = flexible == 1 ? left : std::floor(left / static_cast<CGFloat>(flexible));
        part.width += share;
        left -= share;
        --flexible;
    }
}

} // namespace

ToolbarPlan planToolbar(std::size_t count, const std::function<ToolbarPart(std::size_t)>& partAt, CGFloat width,
                        CGFloat chevronWidth)
{
    ToolbarPlan plan;
    CGFloat end = width - margin;
    std::vector<ToolbarPart> parts = takeFitting(count, partAt, end);
    plan.hasChevron = isThereMoreThanSpace(parts.size(), count, partAt);
    if (plan.hasChevron) {
        plan.chevronX = std::max(margin, width - margin - chevronWidth);
        end = plan.chevronX - gap;
        while (!parts.empty() && margin + lengthOf(parts) - gap > end)
            parts.pop_back();
    }
    stretch(parts, std::max(0.0, end - margin - lengthOf(parts) + gap));
    CGFloat x = margin;
    for (const ToolbarPart& part : parts) {
        plan.shown.push_back({x, part.width});
        x += part.width + gap;
    }
    return plan;
}

} // namespace RVCore
