#include <Foundation/Random.h>

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <thread>
#include <vector>

namespace RVCore {

TEST(RandomTest, BoundsZeroAndOneLeaveOnlyZero)
{
    EXPECT_EQ(arc4randomUniform(0), 0U);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(arc4randomUniform(1), 0U);
}

TEST(RandomTest, StaysBelowItsBoundAndReachesEveryNumber)
{
    std::array<int, 6> counts{};
    for (int i = 0; i < 6000; ++i) {
        const std::uint32_t number = arc4randomUniform(6);
        ASSERT_LT(number, 6U);
        ++counts[number];
    }
    // 1000 expected each, standard deviation 29: ten of them never happen by chance.
    for (const int count : counts)
        EXPECT_NEAR(count, 1000, 290);
}

TEST(RandomTest, TheLargestBoundUsesTheUpperHalf)
{
    bool upperHalf = false;
    for (int i = 0; i < 200; ++i)
        upperHalf |= arc4randomUniform(std::numeric_limits<std::uint32_t>::max()) > 0x80000000U;
    EXPECT_TRUE(upperHalf);
}

TEST(ScopedRandomSourceTest, AnswersEveryDrawAndSeesTheBound)
{
    std::vector<std::uint32_t> bounds;
    {
        const ScopedRandomSource script([&](std::uint32_t bound) {
            bounds.push_back(bound);
            return 7U;
        });
        EXPECT_EQ(arc4randomUniform(10), 7U);
        EXPECT_EQ(arc4randomUniform(0), 7U);
    }
    EXPECT_EQ(bounds, (std::vector<std::uint32_t>{10, 0}));
}

TEST(ScopedRandomSourceTest, AnInnerOneHoldsUntilItEnds)
{
    const ScopedRandomSource outer([](std::uint32_t) { return 1U; });
    {
        const ScopedRandomSource inner([](std::uint32_t) { return 2U; });
        EXPECT_EQ(arc4randomUniform(10), 2U);
    }
    EXPECT_EQ(arc4randomUniform(10), 1U);
}

TEST(ScopedRandomSourceTest, LeavesOtherThreadsAlone)
{
    const ScopedRandomSource script([](std::uint32_t) { return 99U; });
    std::uint32_t elsewhere = 99;
    std::thread([&] { elsewhere = arc4randomUniform(2); }).join();
    EXPECT_LT(elsewhere, 2U);
    EXPECT_EQ(arc4randomUniform(2), 99U);
}

} // namespace RVCore
