#include <AppKit/WindowFrameAnimation.h>
#include <Dispatch/ManualDispatchClock.h>

namespace RVCore::WindowFrameAnimationTests {
namespace {

TEST(WindowFrameAnimation, GoesFromTheStartToExactlyTheEnd)
{
    const ManualDispatchClock clock;
    const CGRect start(0, 0, 100, 100), end(10.5, -50.25, 200, 150);
    const WindowFrameAnimation animation(start, end, 2);
    const DispatchTime now = DispatchTime::now();
    EXPECT_EQ(animation.frameAt(now), start);
    EXPECT_EQ(animation.frameAt(now + -1), start);
    EXPECT_EQ(animation.frameAt(now + 1).size, (CGSize{150, 125}));
    EXPECT_EQ(animation.frameAt(now + 2), end);
    EXPECT_EQ(animation.frameAt(now + 3), end);
    EXPECT_EQ(animation.end(), end);
    EXPECT_EQ(animation.endTime(), now + 2);
}

TEST(WindowFrameAnimation, IsSlowAtBothEnds)
{
    const ManualDispatchClock clock;
    const WindowFrameAnimation animation({0, 0, 0, 0}, {1000, 0, 0, 0}, 1);
    const auto at = [&](double time) { return animation.frameAt(DispatchTime::now() + time).minX(); };
    EXPECT_LT(at(0.1), 100);
    EXPECT_EQ(at(0.5), 500);
    EXPECT_GT(at(0.9), 900);
}

TEST(WindowFrameAnimation, TakesTheTimeOfTheLargestChange)
{
    EXPECT_DOUBLE_EQ(WindowFrameAnimation::durationFor({0, 0, 10, 10}, {150, 20, 10, 10}), 0.2);
    EXPECT_DOUBLE_EQ(WindowFrameAnimation::durationFor({0, 0, 10, 10}, {0, -300, 10, 10}), 0.4);
    EXPECT_DOUBLE_EQ(WindowFrameAnimation::durationFor({0, 0, 10, 10}, {0, 0, 10, 85}), 0.1);
    EXPECT_EQ(WindowFrameAnimation::durationFor({0, 0, 10, 10}, {0, 0, 10, 10}), 0);
}

} // namespace
} // namespace RVCore::WindowFrameAnimationTests
