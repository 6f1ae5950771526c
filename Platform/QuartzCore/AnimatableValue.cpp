#include <QuartzCore/AnimatableValue.h>

#include <cmath>
#include <numbers>

namespace RVCore {

namespace {

CGFloat between(CGFloat from, CGFloat to, double progress)
{
    return from + (to - from) * progress;
}

CGPoint between(CGPoint from, CGPoint to, double progress)
{
    return {between(from.x, to.x, progress), between(from.y, to.y, progress)};
}

CGRect between(const CGRect& from, const CGRect& to, double progress)
{
    return {between(from.origin, to.origin, progress),
            {between(from.size.width, to.size.width, progress), between(from.size.height, to.size.height, progress)}};
}

CGColor between(const CGColor& from, const CGColor& to, double progress)
{
    return {between(from.red, to.red, progress), between(from.green, to.green, progress),
            between(from.blue, to.blue, progress), between(from.alpha, to.alpha, progress)};
}

// A transform taken apart: stretched, then slanted along x, then turned, then shifted.
struct TransformParts {
    CGFloat scaleX;
    CGFloat scaleY;
    CGFloat slant;
    CGFloat angle; // in radians
    CGPoint shift;

    explicit TransformParts(const CGAffineTransform& transform)
        : scaleX(std::hypot(transform.a, transform.b)),
          scaleY((transform.a * transform.d - transform.b * transform.c) / scaleX),
          slant((transform.a * transform.c + transform.b * transform.d) / scaleX),
          angle(std::atan2(transform.b, transform.a)), shift{transform.tx, transform.ty}
    {
    }

    CGAffineTransform together() const
    {
        const CGFloat cosine = std::cos(angle);
        const CGFloat sine = std::sin(angle);
        return {scaleX * cosine, scaleX * sine, slant * cosine - scaleY * sine, slant * sine + scaleY * cosine,
                shift.x,         shift.y};
    }
};

// Without a first column there is no direction to turn; with both determinants of one sign nothing has to flip.
bool canBeTakenApart(const CGAffineTransform& from, const CGAffineTransform& to)
{
    const auto determinant = [](const CGAffineTransform& transform) {
        return transform.a * transform.d - transform.b * transform.c;
    };
    return determinant(from) * determinant(to) > 0;
}

CGAffineTransform between(const CGAffineTransform& from, const CGAffineTransform& to, double progress)
{
    if (!canBeTakenApart(from, to))
        return {between(from.a, to.a, progress),   between(from.b, to.b, progress),
                between(from.c, to.c, progress),   between(from.d, to.d, progress),
                between(from.tx, to.tx, progress), between(from.ty, to.ty, progress)};
    TransformParts parts(from);
    const TransformParts end(to);
    parts.scaleX = between(parts.scaleX, end.scaleX, progress);
    parts.scaleY = between(parts.scaleY, end.scaleY, progress);
    parts.slant = between(parts.slant, end.slant, progress);
    parts.angle += std::remainder(end.angle - parts.angle, 2 * std::numbers::pi) * progress;
    parts.shift = between(parts.shift, end.shift, progress);
    return parts.together();
}

} // namespace

AnimatableValue valueBetween(const AnimatableValue& from, const AnimatableValue& to, double progress)
{
    if (progress == 0 && from.index() == to.index())
        return from;
    if (progress == 1 || from.index() != to.index())
        return to;
    return std::visit(
        [&](const auto& start) -> AnimatableValue {
            return between(start, std::get<std::decay_t<decltype(start)>>(to), progress);
        },
        from);
}

} // namespace RVCore
