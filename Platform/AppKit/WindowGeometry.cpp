#include <AppKit/WindowGeometry.h>
#include <AppKit/WindowSizes.h>

#include <algorithm>

namespace RVCore {

namespace {

CGSize larger(CGSize a, CGSize b)
{
    return {std::max(a.width, b.width), std::max(a.height, b.height)};
}

} // namespace

CGRect WindowGeometry::frameFor(const CGRect& content) const
{
    return {content.minX() - margins.left, content.minY() - margins.bottom,
            content.size.width + margins.left + margins.right,
            content.size.height + margins.top + toolbarHeight + margins.bottom};
}

CGRect WindowGeometry::contentFor(const CGRect& frame) const
{
    return {frame.minX() + margins.left, frame.minY() + margins.bottom,
            std::max(0.0, frame.size.width - margins.left - margins.right),
            std::max(0.0, frame.size.height - margins.top - toolbarHeight - margins.bottom)};
}

CGSize WindowGeometry::smallest() const
{
    return larger(neededSize, desktopSize(contentMinSize));
}

CGSize WindowGeometry::largest() const
{
    return larger(smallest(), contentMaxSize);
}

CGSize WindowGeometry::limited(CGSize content) const
{
    const CGSize most = larger(contentMaxSize, neededSize);
    const auto side = [](CGFloat value, CGFloat least, CGFloat greatest) {
        return desktopSide(std::max(std::min(value, greatest), least));
    };
    return {side(content.width, contentMinSize.width, most.width),
            side(content.height, contentMinSize.height, most.height)};
}

CGRect WindowGeometry::limited(const CGRect& frame) const
{
    const CGSize size = frameFor({{}, limited(contentFor(frame).size)}).size;
    return size == frame.size ? frame : CGRect({frame.minX(), frame.maxY() - size.height}, size);
}

} // namespace RVCore
