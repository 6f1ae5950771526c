#include <CoreGraphics/CGGeometry.h>
#include <Foundation/NSException.h>

#include <algorithm>

namespace RVCore {

CGRect CGRect::intersection(const CGRect& other) const
{
    const CGFloat left = std::max(minX(), other.minX()), right = std::min(maxX(), other.maxX());
    const CGFloat top = std::max(minY(), other.minY()), bottom = std::min(maxY(), other.maxY());
    if (left >= right || top >= bottom)
        return {};
    return {left, top, right - left, bottom - top};
}

CGRect CGRect::unionWith(const CGRect& other) const
{
    if (isEmpty())
        return other;
    if (other.isEmpty())
        return *this;
    const CGFloat left = std::min(minX(), other.minX()), right = std::max(maxX(), other.maxX());
    const CGFloat top = std::min(minY(), other.minY()), bottom = std::max(maxY(), other.maxY());
    return {left, top, right - left, bottom - top};
}

namespace {

std::string part(std::string_view name, std::string_view component)
{
    return std::string(name) + "." + std::string(component);
}

} // namespace

void requireFinite(std::string_view operation, std::string_view name, const CGPoint& point)
{
    requireFinite(operation, part(name, "x"), point.x);
    requireFinite(operation, part(name, "y"), point.y);
}

void requireFinite(std::string_view operation, std::string_view name, const CGSize& size)
{
    requireFinite(operation, part(name, "width"), size.width);
    requireFinite(operation, part(name, "height"), size.height);
}

void requireFinite(std::string_view operation, std::string_view name, const CGRect& rect)
{
    requireFinite(operation, name, rect.origin);
    requireFinite(operation, name, rect.size);
}

void requireFinite(std::string_view operation, std::string_view name, const EdgeInsets& insets)
{
    requireFinite(operation, part(name, "top"), insets.top);
    requireFinite(operation, part(name, "left"), insets.left);
    requireFinite(operation, part(name, "bottom"), insets.bottom);
    requireFinite(operation, part(name, "right"), insets.right);
}

void requireNotNegative(std::string_view operation, std::string_view name, const CGSize& size)
{
    requireFinite(operation, name, size);
    if (size.width < 0 || size.height < 0)
        raiseInvalidArgument(operation, std::string(name) + " must not be negative, got " + describe(size));
}

std::string ValueBoxTraits<CGPoint>::describe(const CGPoint& point)
{
    return "(" + numberText(point.x) + ", " + numberText(point.y) + ")";
}

std::string ValueBoxTraits<CGSize>::describe(const CGSize& size)
{
    return numberText(size.width) + " × " + numberText(size.height);
}

std::string ValueBoxTraits<CGRect>::describe(const CGRect& rect)
{
    return ValueBoxTraits<CGPoint>::describe(rect.origin) + " " + ValueBoxTraits<CGSize>::describe(rect.size);
}

std::string ValueBoxTraits<EdgeInsets>::describe(const EdgeInsets& insets)
{
    return "top " + numberText(insets.top) + ", left " + numberText(insets.left) + ", bottom " +
           numberText(insets.bottom) + ", right " + numberText(insets.right);
}

} // namespace RVCore
