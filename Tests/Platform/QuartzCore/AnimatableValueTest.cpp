#include <QuartzCore/AnimatableValue.h>
#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace RVCore::AnimatableValueTests {
namespace {

template <class T> T at(double progress, const T& from, const T& to)
{
    return std::get<T>(valueBetween(from, to, progress));
}

TEST(AnimatableValue, NumbersGoStraight)
{
    EXPECT_EQ(at(0.25, 2.0, 4.0), 2.5);
    EXPECT_EQ(at(0.5, CGPoint{0, 10}, CGPoint{4, 20}), (CGPoint{2, 15}));
    EXPECT_EQ(at(0.5, CGRect(0, 0, 10, 10), CGRect(10, 20, 30, 50)), CGRect(5, 10, 20, 30));
    EXPECT_EQ(at(0.5, CGColor{0, 0.5, 1, 0}, CGColor{1, 0.5, 0, 1}), (CGColor{0.5, 0.5, 0.5, 0.5}));
}

TEST(AnimatableValue, TheEndsAreMetExactly)
{
    EXPECT_EQ(at(0, 0.1, 0.7), 0.1);
    EXPECT_EQ(at(1, 0.1, 0.7), 0.7);
    const CGAffineTransform turned = CGAffineTransform::rotation(1);
    EXPECT_EQ(at(0, turned, CGAffineTransform::scale(2, 3)), turned);
    EXPECT_EQ(at(1, CGAffineTransform::scale(2, 3), turned), turned);
}

TEST(AnimatableValue, ProgressBeyondTheEndsGoesOnInTheSameDirection)
{
    EXPECT_EQ(at(1.5, 0.0, 10.0), 15);
    EXPECT_EQ(at(-0.5, 0.0, 10.0), -5);
}

TEST(AnimatableValue, ATransformTurnsInsteadOfCollapsing)
{
    const auto half = at(0.5, CGAffineTransform(), CGAffineTransform::rotation(std::numbers::pi * 0.9));
    const CGPoint end = half.apply(CGPoint{1, 0});
    EXPECT_NEAR(std::hypot(end.x, end.y), 1, 1e-12);
    EXPECT_NEAR(std::atan2(end.y, end.x), std::numbers::pi * 0.45, 1e-12);
}

TEST(AnimatableValue, ATransformTurnsTheShorterWay)
{
    const double degree = std::numbers::pi / 180;
    const auto half = at(0.5, CGAffineTransform::rotation(170 * degree), CGAffineTransform::rotation(-170 * degree));
    const CGPoint end = half.apply(CGPoint{1, 0});
    EXPECT_NEAR(end.x, -1, 1e-12);
    EXPECT_NEAR(end.y, 0, 1e-12);
}

TEST(AnimatableValue, ATransformThatSlantsAndStretchesIsPutTogetherAgain)
{
    const CGAffineTransform from{2, 0.5, -0.25, 3, 4, 5};
    const auto same = at(0.5, from, from);
    for (const auto member : {&CGAffineTransform::a, &CGAffineTransform::b, &CGAffineTransform::c,
                              &CGAffineTransform::d, &CGAffineTransform::tx, &CGAffineTransform::ty})
        EXPECT_NEAR(same.*member, from.*member, 1e-12);
}

TEST(AnimatableValue, ATransformThatFlipsOrVanishesGoesStraight)
{
    EXPECT_EQ(at(0.5, CGAffineTransform(), CGAffineTransform::scale(-1, 1)), CGAffineTransform::scale(0, 1));
    EXPECT_EQ(at(0.5, CGAffineTransform::scale(0, 0), CGAffineTransform::scale(2, 2)),
              CGAffineTransform::scale(1, 1));
}

TEST(AnimatableValue, ValuesOfDifferentKindsGiveTheEnd)
{
    EXPECT_EQ(valueBetween(1.0, CGPoint{2, 3}, 0), AnimatableValue(CGPoint{2, 3}));
    EXPECT_EQ(valueBetween(1.0, CGPoint{2, 3}, 0.5), AnimatableValue(CGPoint{2, 3}));
}

} // namespace
} // namespace RVCore::AnimatableValueTests
