#include <CoreGraphics/CGAffineTransform.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

CGAffineTransform CGAffineTransform::rotation(CGFloat angle)
{
    const CGFloat sine = std::sin(angle), cosine = std::cos(angle);
    return {cosine, sine, -sine, cosine, 0, 0};
}

CGAffineTransform CGAffineTransform::concatenating(const CGAffineTransform& next) const
{
    return {a * next.a + b * next.c,
            a * next.b + b * next.d,
            c * next.a + d * next.c,
            c * next.b + d * next.d,
            tx * next.a + ty * next.c + next.tx,
            tx * next.b + ty * next.d + next.ty};
}

CGAffineTransform CGAffineTransform::inverted() const
{
    const CGFloat determinant = a * d - b * c;
    if (determinant == 0)
        return *this;
    return {d / determinant,
            -b / determinant,
            -c / determinant,
            a / determinant,
            (c * ty - d * tx) / determinant,
            (b * tx - a * ty) / determinant};
}

CGRect CGAffineTransform::apply(const CGRect& rect) const
{
    const CGPoint corners[] = {apply(CGPoint{rect.minX(), rect.minY()}), apply(CGPoint{rect.maxX(), rect.minY()}),
                               apply(CGPoint{rect.minX(), rect.maxY()}), apply(CGPoint{rect.maxX(), rect.maxY()})};
    const auto [left, right] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
    const auto [top, bottom] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
    return {left, top, right - left, bottom - top};
}

void requireFinite(std::string_view operation, std::string_view name, const CGAffineTransform& transform)
{
    for (const CGFloat component : {transform.a, transform.b, transform.c, transform.d, transform.tx, transform.ty})
        requireFinite(operation, name, component);
}

std::string ValueBoxTraits<CGAffineTransform>::describe(const CGAffineTransform& t)
{
    return "[" + numberText(t.a) + ", " + numberText(t.b) + ", " + numberText(t.c) + ", " + numberText(t.d) + ", " +
           numberText(t.tx) + ", " + numberText(t.ty) + "]";
}

} // namespace RVCore
