#include <CoreImage/FilterScratch.h>

#include <gtest/gtest.h>

#include <cstdint>

namespace RVCore {
namespace {

TEST(FilterScratch, HoldsNothingUntilItIsAsked)
{
    EXPECT_EQ(FilterScratch().capacity(), 0U);
}

TEST(FilterScratch, KeepsWhatItHasAndGrowsWhenItHasTo)
{
    FilterScratch scratch;
    std::uint16_t* const memory = scratch.words(1000);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % 64, 0U);
    EXPECT_EQ(scratch.words(10), memory);
    EXPECT_EQ(scratch.words(1000), memory);
    EXPECT_EQ(scratch.capacity(), 1000U);
    scratch.words(5000)[4999] = 1;
    EXPECT_EQ(scratch.capacity(), 5000U);
}

} // namespace
} // namespace RVCore
