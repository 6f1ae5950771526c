#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <QuartzCore/CAMediaTimingFunction.h>

#include <cmath>
#include <limits>
#include <random>

namespace RVCore::CAMediaTimingFunctionTests {
namespace {

using testing::HasSubstr;

constexpr std::string_view names[] = {kCAMediaTimingFunctionLinear, kCAMediaTimingFunctionEaseIn,
                                      kCAMediaTimingFunctionEaseOut, kCAMediaTimingFunctionEaseInEaseOut,
                                      kCAMediaTimingFunctionDefault};

// The curve by its definition, interpolated between points instead of multiplied out.
CGPoint pointOfCurve(const CAMediaTimingFunction& curve, double t)
{
    std::vector<CGPoint> points;
    for (int index = 0; index < 4; ++index)
        points.push_back(curve.controlPoint(index));
    for (std::size_t count = 3; count > 0; --count) {
        for (std::size_t index = 0; index < count; ++index)
            points[index] = {std::lerp(points[index].x, points[index + 1].x, t),
                             std::lerp(points[index].y, points[index + 1].y, t)};
    }
    return points[0];
}

TEST(CAMediaTimingFunction, TheNamedCurvesHaveTheUsualControlPoints)
{
    const std::pair<std::string_view, std::array<double, 4>> curves[] = {
        {"linear", {0, 0, 1, 1}},          {"easeIn", {0.42, 0, 1, 1}},
        {"easeOut", {0, 0, 0.58, 1}},      {"easeInEaseOut", {0.42, 0, 0.58, 1}},
        {"default", {0.25, 0.1, 0.25, 1}},
    };
    for (const auto& [name, points] : curves) {
        const auto curve = CAMediaTimingFunction::functionWithName(name);
        EXPECT_EQ(curve->controlPoint(0), (CGPoint{0, 0})) << name;
        EXPECT_EQ(curve->controlPoint(1), (CGPoint{points[0], points[1]})) << name;
        EXPECT_EQ(curve->controlPoint(2), (CGPoint{points[2], points[3]})) << name;
        EXPECT_EQ(curve->controlPoint(3), (CGPoint{1, 1})) << name;
        EXPECT_EQ(curve, CAMediaTimingFunction::functionWithName(name)) << "made twice";
    }
}

TEST(CAMediaTimingFunction, EveryCurveStartsAt0AndEndsAt1AndStaysThere)
{
    for (const std::string_view name : names) {
        const auto curve = CAMediaTimingFunction::functionWithName(name);
        EXPECT_EQ(curve->value(0), 0) << name;
        EXPECT_EQ(curve->value(1), 1) << name;
        EXPECT_EQ(curve->value(-5), 0) << name;
        EXPECT_EQ(curve->value(HUGE_VAL), 1) << name;
    }
}

TEST(CAMediaTimingFunction, TheProgressIsThatOfTheCurveTo9Digits)
{
    for (const std::string_view name : names) {
        const auto curve = CAMediaTimingFunction::functionWithName(name);
        for (int step = 1; step < 1000; ++step) {
            const CGPoint point = pointOfCurve(*curve, step / 1000.0);
            ASSERT_NEAR(curve->value(point.x), point.y, 1e-9) << name << " at " << point.x;
        }
    }
}

TEST(CAMediaTimingFunction, AnyCurveIsMetTo9Digits)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> time(0, 1);
    std::uniform_real_distribution<double> progress(-2, 3);
    for (int round = 0; round < 500; ++round) {
        const auto curve =
            make<CAMediaTimingFunction>(time(random), progress(random), time(random), progress(random));
        for (int step = 1; step < 20; ++step) {
            const CGPoint point = pointOfCurve(*curve, step / 20.0);
            ASSERT_NEAR(curve->value(point.x), point.y, 1e-9)
                << describe(curve->controlPoint(1)) << describe(curve->controlPoint(2)) << " at " << point.x;
        }
    }
}

TEST(CAMediaTimingFunction, ACurveThatStandsInTimeOrRunsStraightUpIsMetToo)
{
    const auto stands = make<CAMediaTimingFunction>(0.0, 1.0, 1.0, 0.0);
    EXPECT_EQ(stands->value(0.5), 0.5);
    const auto runsUp = make<CAMediaTimingFunction>(1.0, 0.0, 0.0, 1.0);
    EXPECT_NEAR(runsUp->value(0.5), 0.5, 1e-9);
    EXPECT_NEAR(runsUp->value(pointOfCurve(*runsUp, 0.3).x), pointOfCurve(*runsUp, 0.3).y, 1e-9);
    EXPECT_NEAR(runsUp->value(pointOfCurve(*runsUp, 0.7).x), pointOfCurve(*runsUp, 0.7).y, 1e-9);
    const auto flat = make<CAMediaTimingFunction>(0.0, 0.0, 0.0, 0.0); // time is t³, progress too
    EXPECT_NEAR(flat->value(1e-6), 1e-6, 1e-9);
}

TEST(CAMediaTimingFunction, EaseInIsSlowAtFirstAndEaseOutIsItsMirrorImage)
{
    const auto easeIn = CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseIn);
    const auto easeOut = CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseOut);
    for (int step = 1; step < 100; ++step) {
        const double time = step / 100.0;
        EXPECT_LT(easeIn->value(time), time);
        EXPECT_NEAR(easeOut->value(1 - time), 1 - easeIn->value(time), 1e-9);
    }
}

TEST(CAMediaTimingFunction, LinearIsTheTimeItself)
{
    const auto linear = make<CAMediaTimingFunction>();
    for (const double time : {0.1, 0.25, 1.0 / 3, 0.7})
        EXPECT_EQ(linear->value(time), time);
}

TEST(CAMediaTimingFunction, BadInputRaisesAndSaysWhat)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(raised([&] { make<CAMediaTimingFunction>(-0.1, 0.0, 1.0, 1.0); }),
              "NSInvalidArgumentException: CAMediaTimingFunction.init: c1x must be from 0 to 1, got -0.1");
    EXPECT_THAT(raised([&] { make<CAMediaTimingFunction>(0.0, 0.0, 1.5, 1.0); }),
                HasSubstr("c2x must be from 0 to 1"));
    EXPECT_THAT(raised([&] { make<CAMediaTimingFunction>(nan, 0.0, 1.0, 1.0); }),
                HasSubstr("c1x must be from 0 to 1"));
    EXPECT_THAT(raised([&] { make<CAMediaTimingFunction>(0.0, nan, 1.0, 1.0); }), HasSubstr("c1y must be finite"));
    EXPECT_THAT(raised([&] { make<CAMediaTimingFunction>(0.0, 0.0, 1.0, HUGE_VAL); }),
                HasSubstr("c2y must be finite, got inf"));
    EXPECT_EQ(raised([] { CAMediaTimingFunction::functionWithName("bounce"); }),
              "NSInvalidArgumentException: CAMediaTimingFunction.functionWithName:: no curve is named \"bounce\"");
    const auto linear = make<CAMediaTimingFunction>();
    EXPECT_THAT(raised([&] { linear->value(nan); }), HasSubstr("time must be a number, got nan"));
    EXPECT_THAT(raised([&] { linear->controlPoint(4); }), HasSubstr("NSRangeException"));
    EXPECT_THAT(raised([&] { linear->controlPoint(-1); }), HasSubstr("got -1"));
}

TEST(CAMediaTimingFunction, EqualCurvesAreEqual)
{
    const auto named = CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseIn);
    const auto made = make<CAMediaTimingFunction>(0.42, 0.0, 1.0, 1.0);
    EXPECT_TRUE(named->isEqual(*made));
    EXPECT_EQ(named->hash(), made->hash());
    EXPECT_FALSE(named->isEqual(*make<CAMediaTimingFunction>()));
    EXPECT_FALSE(named->isEqual(*make<NSObject>()));
}

TEST(CAMediaTimingFunction, IsMadeAndAskedByName)
{
    const Class& theClass = *Class::named("CAMediaTimingFunction");
    const Value named = send(theClass, "functionWithName:", "easeIn");
    EXPECT_EQ(send(*named.object(), "controlPointAtIndex:", 1), Value(CGPoint{0.42, 0}));
    const ObjectRef made = theClass.alloc();
    EXPECT_EQ(send(made, "initWithControlPoints::::", 0.42, 0, 1, 1), named);
    EXPECT_EQ(send(made, "valueAtTime:", 1), Value(1.0));
}

} // namespace
} // namespace RVCore::CAMediaTimingFunctionTests
