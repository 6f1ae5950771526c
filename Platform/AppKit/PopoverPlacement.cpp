#include <AppKit/PopoverPlacement.h>

#include <algorithm>
#include <array>

namespace RVCore {

namespace {

using namespace PopoverMetrics;

bool isHorizontal(NSRectEdge edge)
{
    return edge == NSRectEdge::minX || edge == NSRectEdge::maxX;
}

// From one that would like to begin there, as near as keeps the length between the limits; their start where it is
// too long.
CGFloat shifted(CGFloat start, CGFloat length, CGFloat low, CGFloat high)
{
    return std::max(low, std::min(start, high - length));
}

CGRect frameAt(NSRectEdge edge, const CGRect& anchor, CGSize content, const CGRect& screen)
{
    CGSize size{content.width + 2 * borderWidth, content.height + 2 * borderWidth};
    (isHorizontal(edge) ? size.width : size.height) += arrowHeight;
    const CGFloat x = shifted(anchor.midX() - size.width / 2, size.width, screen.minX(), screen.maxX());
    const CGFloat y = shifted(anchor.midY() - size.height / 2, size.height, screen.minY(), screen.maxY());
    switch (edge) {
    case NSRectEdge::minX:
        return {{anchor.minX() - size.width, y}, size};
    case NSRectEdge::maxX:
        return {{anchor.maxX(), y}, size};
    case NSRectEdge::minY:
        return {{x, anchor.minY() - size.height}, size};
    case NSRectEdge::maxY:
        break;
    }
    return {{x, anchor.maxY()}, size};
}

bool fits(const CGRect& frame, const CGRect& screen)
{
    return frame.minX() >= screen.minX() && frame.maxX() <= screen.maxX() && frame.minY() >= screen.minY() &&
           frame.maxY() <= screen.maxY();
}

std::array<NSRectEdge, 4> candidates(NSRectEdge preferred)
{
    using enum NSRectEdge;
    switch (preferred) {
    case minX:
        return {minX, maxX, minY, maxY};
    case maxX:
        return {maxX, minX, minY, maxY};
    case minY:
        return {minY, maxY, maxX, minX};
    case maxY:
        break;
    }
    return {maxY, minY, maxX, minX};
}

} // namespace

PopoverPlacement placePopover(const CGRect& anchor, CGSize content, NSRectEdge preferred, const CGRect& screen)
{
    const auto edges = candidates(preferred);
    const auto* edge = std::ranges::find_if(
        edges, [&](NSRectEdge candidate) { return fits(frameAt(candidate, anchor, content, screen), screen); });
    PopoverPlacement placement;
    placement.edge = edge == edges.end() ? preferred : *edge;
    placement.frame = frameAt(placement.edge, anchor, content, screen);
    const bool isBeside = isHorizontal(placement.edge);
    const CGFloat length = isBeside ? placement.frame.size.height : placement.frame.size.width;
    const CGFloat wanted = isBeside ? anchor.midY() - placement.frame.minY() : anchor.midX() - placement.frame.minX();
    const CGFloat margin = std::min(cornerRadius + arrowWidth / 2, length / 2);
    placement.tip = std::clamp(wanted, margin, length - margin);
    return placement;
}

} // namespace RVCore
