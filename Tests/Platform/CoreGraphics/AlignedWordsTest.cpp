#include <CoreGraphics/AlignedWords.h>

#include <gtest/gtest.h>

#include <cstdint>

namespace RVCore::AlignedWordsTests {
namespace {

TEST(AlignedWords, HoldNothingUntilTheyAreAsked)
{
    const AlignedWords<std::uint16_t> words;
    EXPECT_EQ(words.capacity(), 0U);
    EXPECT_EQ(words.data(), nullptr);
}

TEST(AlignedWords, KeepWhatTheyHaveAndGrowWhenTheyHaveTo)
{
    AlignedWords<std::uint16_t> words;
    std::uint16_t* const memory = words.reserve(1000);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % 64, 0U);
    EXPECT_EQ(words.reserve(10), memory);
    EXPECT_EQ(words.reserve(1000), memory);
    EXPECT_EQ(words.data(), memory);
    EXPECT_EQ(words.capacity(), 1000U);
    words.reserve(5000)[4999] = 1;
    EXPECT_EQ(words.capacity(), 5000U);
}

TEST(AlignedWords, LeaveNothingBehindWhereTheyMovedFrom)
{
    AlignedWords<std::uint32_t> words;
    std::uint32_t* const memory = words.reserve(100);
    AlignedWords<std::uint32_t> taken(std::move(words));
    EXPECT_EQ(taken.data(), memory);
    words = AlignedWords<std::uint32_t>(); // a moved-from one may be used again
    EXPECT_EQ(words.capacity(), 0U);
    words.reserve(10)[9] = 1;
    words = std::move(taken);
    EXPECT_EQ(words.data(), memory);
    EXPECT_EQ(words.capacity(), 100U);
}

} // namespace
} // namespace RVCore::AlignedWordsTests
