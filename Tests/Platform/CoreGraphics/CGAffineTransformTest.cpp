#include <CoreGraphics/CGAffineTransform.h>
#include <Foundation/NSException.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <numbers>
#include <random>

namespace RVCore::CGAffineTransformTests {
namespace {

constexpr CGFloat pi = std::numbers::pi;
constexpr CGFloat tolerance = 1e-9;

void expectNear(CGPoint actual, CGPoint expected)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
}

void expectNear(const CGAffineTransform& actual, const CGAffineTransform& expected)
{
    for (const CGPoint point : {CGPoint{0, 0}, CGPoint{1, 0}, CGPoint{0, 1}})
        expectNear(actual.apply(point), expected.apply(point));
}

// Transforms of all kinds whose inverse is well conditioned; the same ones in every run.
class CGAffineTransformLaws : public testing::TestWithParam<unsigned> {
protected:
    CGAffineTransform next()
    {
        std::uniform_real_distribution<CGFloat> angle(-pi, pi), factor(0.5, 2), offset(-50, 50);
        std::bernoulli_distribution mirrors;
        return CGAffineTransform::rotation(angle(m_random))
            .concatenating(CGAffineTransform::scale(factor(m_random), mirrors(m_random) ? -1 : 1))
            .concatenating(CGAffineTransform::translation(offset(m_random), offset(m_random)));
    }

private:
    std::mt19937 m_random{GetParam()};
};

TEST_P(CGAffineTransformLaws, ConcatenatingAppliesOneAfterTheOther)
{
    const CGAffineTransform first = next(), second = next();
    for (const CGPoint point : {CGPoint{0, 0}, CGPoint{3, -7}, CGPoint{100, 0.5}})
        expectNear(first.concatenating(second).apply(point), second.apply(first.apply(point)));
}

TEST_P(CGAffineTransformLaws, ConcatenatingIsAssociative)
{
    const CGAffineTransform a = next(), b = next(), c = next();
    expectNear(a.concatenating(b).concatenating(c), a.concatenating(b.concatenating(c)));
}

TEST_P(CGAffineTransformLaws, TheInverseLeadsBackFromEitherSide)
{
    const CGAffineTransform transform = next();
    expectNear(transform.concatenating(transform.inverted()), CGAffineTransform());
    expectNear(transform.inverted().concatenating(transform), CGAffineTransform());
}

TEST_P(CGAffineTransformLaws, TheInverseOfTwoIsTheInversesInReverse)
{
    const CGAffineTransform a = next(), b = next();
    expectNear(a.concatenating(b).inverted(), b.inverted().concatenating(a.inverted()));
}

TEST_P(CGAffineTransformLaws, TheBoundingBoxHoldsEveryMappedPoint)
{
    const CGAffineTransform transform = next();
    const CGRect rect(-3, 4, 10, 20);
    const CGRect box = transform.apply(rect).insetBy(-tolerance, -tolerance);
    for (const CGFloat x : {rect.minX(), rect.midX(), rect.maxX()}) {
        for (const CGFloat y : {rect.minY(), rect.midY(), rect.maxY()})
            EXPECT_TRUE(box.contains(transform.apply(CGPoint{x, y}))) << x << ", " << y;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, CGAffineTransformLaws, testing::Range(0U, 20U));

TEST(CGAffineTransform, TheDefaultIsTheIdentity)
{
    EXPECT_TRUE(CGAffineTransform().isIdentity());
    EXPECT_FALSE(CGAffineTransform::translation(1, 0).isIdentity());
    EXPECT_EQ(CGAffineTransform().apply(CGPoint{3, 4}), (CGPoint{3, 4}));
}

TEST(CGAffineTransform, TranslationAndScaleMapPoints)
{
    EXPECT_EQ(CGAffineTransform::translation(10, -5).apply(CGPoint{1, 2}), (CGPoint{11, -3}));
    EXPECT_EQ(CGAffineTransform::scale(2, -3).apply(CGPoint{1, 2}), (CGPoint{2, -6}));
}

TEST(CGAffineTransform, RotationTurnsTheXAxisTowardsTheYAxis)
{
    expectNear(CGAffineTransform::rotation(pi / 2).apply(CGPoint{1, 0}), {0, 1});
    expectNear(CGAffineTransform::rotation(pi / 2).apply(CGPoint{0, 1}), {-1, 0});
    expectNear(CGAffineTransform::rotation(-pi / 6).apply(CGPoint{2, 0}), {std::sqrt(3.0), -1});
}

TEST(CGAffineTransform, ConcatenatingKeepsTheOrder)
{
    const auto scale = CGAffineTransform::scale(2, 2), move = CGAffineTransform::translation(10, 0);
    EXPECT_EQ(scale.concatenating(move).apply(CGPoint{1, 1}), (CGPoint{12, 2}));
    EXPECT_EQ(move.concatenating(scale).apply(CGPoint{1, 1}), (CGPoint{22, 2}));
}

TEST(CGAffineTransform, ASingularOneIsItsOwnInverse)
{
    const CGAffineTransform flat = CGAffineTransform::scale(0, 5);
    EXPECT_EQ(flat.inverted(), flat);
}

TEST(CGAffineTransform, MirroredRectanglesKeepPositiveSides)
{
    EXPECT_EQ(CGAffineTransform(1, 0, 0, -1, 0, 100).apply(CGRect(10, 20, 30, 40)), CGRect(10, 40, 30, 40));
    EXPECT_EQ(CGAffineTransform::scale(-2, 1).apply(CGRect(1, 2, 3, 4)), CGRect(-8, 2, 6, 4));
}

TEST(CGAffineTransform, IsDescribedByItsSixNumbers)
{
    EXPECT_EQ(describe(CGAffineTransform{1, 0, 0.5, -1, 20, 30}), "[1, 0, 0.5, -1, 20, 30]");
}

TEST(CGAffineTransform, AComponentThatIsNotFiniteRaises)
{
    for (const std::size_t broken : {0U, 1U, 2U, 3U, 4U, 5U}) {
        CGFloat numbers[] = {1, 0, 0, 1, 0, 0};
        numbers[broken] = std::numeric_limits<CGFloat>::infinity();
        const CGAffineTransform transform{numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]};
        EXPECT_THROW(requireFinite("CALayer.setTransform", "transform", transform), NSException) << broken;
    }
    EXPECT_NO_THROW(requireFinite("CALayer.setTransform", "transform", CGAffineTransform()));
}

} // namespace
} // namespace RVCore::CGAffineTransformTests
