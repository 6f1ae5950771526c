#include <Foundation/NSException.h>

#include <QuartzCore/CAMediaTimingFunction.h>

#include <cmath>

namespace RVCore {

namespace {

constexpr double accuracy = 1e-13; // of the parameter; well below what is promised of the progress

// One coordinate of the curve, whose ends are 0 and 1, at the parameter t.
double coordinate(double c1, double c2, double t)
{
    const double rest = 1 - t;
    return 3 * rest * rest * t * c1 + 3 * rest * t * t * c2 + t * t * t;
}

double slope(double c1, double c2, double t)
{
    const double rest = 1 - t;
    return 3 * rest * rest * c1 + 6 * rest * t * (c2 - c1) + 3 * t * t * (1 - c2);
}

void requireTime(std::string_view name, double x)
{
    if (!(x >= 0 && x <= 1))
        raiseInvalidArgument("CAMediaTimingFunction.init",
                             std::string(name) + " must be from 0 to 1, got " + numberText(x));
}

struct NamedCurve {
    std::string_view name;
    std::array<double, 4> points;
};

// The control points of CSS Easing Functions Level 1, section 2.2.1, which are those of every desktop.
constexpr NamedCurve namedCurves[] = {
    {kCAMediaTimingFunctionLinear, {0, 0, 1, 1}},          {kCAMediaTimingFunctionEaseIn, {0.42, 0, 1, 1}},
    {kCAMediaTimingFunctionEaseOut, {0, 0, 0.58, 1}},      {kCAMediaTimingFunctionEaseInEaseOut, {0.42, 0, 0.58, 1}},
    {kCAMediaTimingFunctionDefault, {0.25, 0.1, 0.25, 1}},
};
constexpr std::size_t namedCurveCount = std::size(namedCurves);

} // namespace

Class& CAMediaTimingFunction::staticClass()
{
    static Class& theClass =
        defineClass<CAMediaTimingFunction>("CAMediaTimingFunction", NSObject::staticClass(), [](auto& publish) {
            publish.classMethod("functionWithName:",
                                [](const Class&, std::string_view name) { return functionWithName(name); });
            publish.initializer("initWithControlPoints::::",
                                [](CAMediaTimingFunction& self, double c1x, double c1y, double c2x, double c2y) {
                                    self.init(c1x, c1y, c2x, c2y);
                                });
            publish.method("controlPointAtIndex:", &CAMediaTimingFunction::controlPoint);
            publish.method("valueAtTime:", &CAMediaTimingFunction::value);
        });
    return theClass;
}

std::shared_ptr<CAMediaTimingFunction> CAMediaTimingFunction::functionWithName(std::string_view name)
{
    static const auto functions = [] {
        std::array<std::shared_ptr<CAMediaTimingFunction>, namedCurveCount> made;
        for (std::size_t index = 0; index < namedCurveCount; ++index) {
            const auto& [c1x, c1y, c2x, c2y] = namedCurves[index].points;
            made[index] = make<CAMediaTimingFunction>(c1x, c1y, c2x, c2y);
        }
        return made;
    }();
    for (std::size_t index = 0; index < namedCurveCount; ++index) {
        if (namedCurves[index].name == name)
            return functions[index];
    }
    raiseInvalidArgument("CAMediaTimingFunction.functionWithName:",
                         "no curve is named \"" + std::string(name) + "\"");
}

void CAMediaTimingFunction::init(double c1x, double c1y, double c2x, double c2y)
{
    requireTime("c1x", c1x);
    requireFinite("CAMediaTimingFunction.init", "c1y", c1y);
    requireTime("c2x", c2x);
    requireFinite("CAMediaTimingFunction.init", "c2y", c2y);
    m_c1 = {c1x, c1y};
    m_c2 = {c2x, c2y};
}

CGPoint CAMediaTimingFunction::controlPoint(int index) const
{
    const CGPoint points[] = {{0, 0}, m_c1, m_c2, {1, 1}};
    if (index < 0 || index > 3)
        throw NSException(NSRangeException,
                          "CAMediaTimingFunction.controlPointAtIndex:: index must be from 0 to 3, got " +
                              std::to_string(index));
    return points[index];
}

// Time grows along the curve, so its parameter is between the ends of a range that shrinks. Newton's step is taken
// while it stays in that range; where the curve is nearly flat in time it does not, and the range is halved.
double CAMediaTimingFunction::parameterAt(double time) const
{
    double low = 0;
    double high = 1;
    double t = time;
    for (int round = 0; round < 100; ++round) {
        const double miss = coordinate(m_c1.x, m_c2.x, t) - time;
        if (miss == 0)
            break;
        (miss > 0 ? high : low) = t;
        const double newton = t - miss / slope(m_c1.x, m_c2.x, t);
        const double next = newton > low && newton < high ? newton : (low + high) / 2;
        const bool isThere = std::abs(next - t) < accuracy;
        t = next;
        if (isThere)
            break;
    }
    return t;
}

double CAMediaTimingFunction::value(double time) const
{
    if (std::isnan(time))
        raiseInvalidArgument("CAMediaTimingFunction.value", "time must be a number, got nan");
    if (time <= 0)
        return 0;
    if (time >= 1)
        return 1;
    if (m_c1.x == m_c1.y && m_c2.x == m_c2.y)
        return time; // exactly, and without a search
    return coordinate(m_c1.y, m_c2.y, parameterAt(time));
}

bool CAMediaTimingFunction::isEqual(const NSObject& other) const
{
    const auto* function = dynamic_cast<const CAMediaTimingFunction*>(&other);
    return function && function->m_c1 == m_c1 && function->m_c2 == m_c2;
}

std::size_t CAMediaTimingFunction::hash() const
{
    std::size_t result = 0;
    for (const double number : {m_c1.x, m_c1.y, m_c2.x, m_c2.y})
        result = result * 31 + std::hash<double>()(number);
    return result;
}

} // namespace RVCore
