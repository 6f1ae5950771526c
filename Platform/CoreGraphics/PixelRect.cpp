#include <CoreGraphics/PixelRect.h>

#include <algorithm>

namespace RVCore {

bool PixelRect::contains(const PixelRect& other) const
{
    return other.isEmpty() || (other.x >= x && other.y >= y && other.maxX() <= maxX() && other.maxY() <= maxY());
}

PixelRect PixelRect::intersection(const PixelRect& other) const
{
    const int left = std::max(x, other.x);
    const int top = std::max(y, other.y);
    const PixelRect common{left, top, std::min(maxX(), other.maxX()) - left, std::min(maxY(), other.maxY()) - top};
    return common.isEmpty() ? PixelRect() : common;
}

PixelRect PixelRect::unionWith(const PixelRect& other) const
{
    if (isEmpty())
        return other.isEmpty() ? PixelRect() : other;
    if (other.isEmpty())
        return *this;
    const int left = std::min(x, other.x);
    const int top = std::min(y, other.y);
    return {left, top, std::max(maxX(), other.maxX()) - left, std::max(maxY(), other.maxY()) - top};
}

std::ostream& operator<<(std::ostream& stream, const PixelRect& rect)
{
    return stream << '(' << rect.x << ", " << rect.y << ") " << rect.width << " × " << rect.height;
}

} // namespace RVCore
