#include <CoreGraphics/TextDescription.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::TextDescriptionTests {
namespace {

TEST(TextDescription, OnlyTheWrappingModesWrap)
{
    TextDescription text;
    EXPECT_FALSE(text.wraps());
    for (const auto& [mode, wraps] :
         {std::pair(NSLineBreakMode::wordWrapping, true), std::pair(NSLineBreakMode::charWrapping, true),
          std::pair(NSLineBreakMode::clipping, false), std::pair(NSLineBreakMode::truncatingHead, false),
          std::pair(NSLineBreakMode::truncatingTail, false), std::pair(NSLineBreakMode::truncatingMiddle, false)}) {
        text.lineBreakMode = mode;
        EXPECT_EQ(text.wraps(), wraps) << static_cast<int>(mode);
    }
}

TEST(TextDescription, IsDescribedWithItsFont)
{
    TextDescription text{.text = "Save"};
    EXPECT_EQ(describe(text), "\"Save\" system 13 rgba(0, 0, 0, 1)");
    text.font = {.family = "DejaVu Sans", .size = 12.5, .bold = true, .monospacedDigits = true};
    text.color = {1, 0, 0, 0.5};
    EXPECT_EQ(describe(text), "\"Save\" DejaVu Sans 12.5 bold monospaced digits rgba(1, 0, 0, 0.5)");
}

TEST(TextDescription, IsDescribedInOneLineThatTellsWhereTheTextEnds)
{
    const TextDescription text{.text = "a\n\"b\" \\ ü"};
    EXPECT_EQ(describe(text), "\"a\\n\\\"b\\\" \\\\ ü\" system 13 rgba(0, 0, 0, 1)");
}

TEST(TextDescription, IsEqualOnlyWithTheSameFont)
{
    TextDescription text{.text = "Save"}, other = text;
    EXPECT_EQ(text, other);
    other.font.bold = true;
    EXPECT_NE(text, other);
}

} // namespace
} // namespace RVCore::TextDescriptionTests
