#include <QuartzCore/DamageRegion.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace RVCore::DamageRegionTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(DamageRegion, HoldsWhatIsApart)
{
    DamageRegion region;
    region.add({0, 0, 2, 2});
    region.add({10, 10, 2, 2});
    EXPECT_THAT(region.rects(), ElementsAre(PixelRect{0, 0, 2, 2}, PixelRect{10, 10, 2, 2}));
    EXPECT_EQ(region.bounds(), (PixelRect{0, 0, 12, 12}));
}

TEST(DamageRegion, JoinsWhatOverlaps)
{
    DamageRegion region;
    region.add({0, 0, 4, 4});
    region.add({20, 0, 4, 4});
    region.add({2, 2, 20, 1});
    EXPECT_THAT(region.rects(), ElementsAre(PixelRect{0, 0, 24, 4}));
}

TEST(DamageRegion, EmptyRectanglesAddNothing)
{
    DamageRegion region;
    region.add({5, 5, 0, 10});
    region.add({5, 5, 10, -1});
    EXPECT_TRUE(region.isEmpty());
}

TEST(DamageRegion, ClipsAndGrows)
{
    DamageRegion region;
    region.add({0, 0, 10, 10});
    region.add({30, 0, 10, 10});
    EXPECT_THAT(region.grownBy(2).rects(), ElementsAre(PixelRect{-2, -2, 14, 14}, PixelRect{28, -2, 14, 14}));
    region.clip({5, 5, 20, 20});
    EXPECT_THAT(region.rects(), ElementsAre(PixelRect{5, 5, 5, 5}));
    region.clear();
    EXPECT_THAT(region.rects(), IsEmpty());
}

TEST(DamageRegion, CoversEverythingThatWasAddedAndNeverOverlaps)
{
    std::mt19937 random(7);
    const auto below = [&](unsigned end) { return static_cast<int>(random() % end); };
    for (int round = 0; round < 200; ++round) {
        DamageRegion region;
        std::vector<PixelRect> added;
        for (int i = 0; i < 20; ++i) {
            added.push_back({below(50), below(50), 1 + below(8), 1 + below(8)});
            region.add(added.back());
        }
        for (const PixelRect& rect : added) {
            const bool isCovered =
                std::ranges::any_of(region.rects(), [&](const PixelRect& own) { return own.contains(rect); });
            EXPECT_TRUE(isCovered) << rect;
        }
        const auto rects = region.rects();
        for (std::size_t a = 0; a < rects.size(); ++a) {
            for (std::size_t b = a + 1; b < rects.size(); ++b)
                EXPECT_TRUE(rects[a].intersection(rects[b]).isEmpty());
        }
    }
}

} // namespace
} // namespace RVCore::DamageRegionTests
