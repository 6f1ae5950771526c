#include <Foundation/Utf8.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace RVCore::Utf8Tests {
namespace {

using testing::ElementsAre;

std::vector<std::uint32_t> codePoints(std::string_view text)
{
    std::vector<std::uint32_t> result;
    while (!text.empty())
        result.push_back(takeCodePoint(text));
    return result;
}

TEST(Utf8, CodePointsAreReadFromOneToFourBytes)
{
    EXPECT_THAT(codePoints("aé漢😀\xF4\x8F\xBF\xBF"),
                ElementsAre(std::uint32_t('a'), 0xE9U, 0x6F22U, 0x1F600U, 0x10FFFFU));
}

TEST(Utf8, ABrokenByteIsReadAlone)
{
    // A continuation without a start; a start without a continuation, before text and at the end.
    EXPECT_THAT(codePoints("\x80"
                           "a\xC3"
                           "b\xE6\xBC"),
                ElementsAre(0xFFFDU, std::uint32_t('a'), 0xFFFDU, std::uint32_t('b'), 0xFFFDU, 0xFFFDU));
}

TEST(Utf8, FormsThatUtf8ForbidsAreBroken)
{
    // Two bytes for a slash, half of a surrogate pair, beyond the last code point, a byte that never occurs.
    for (const std::string_view text : {"\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF"})
        EXPECT_THAT(codePoints(text), testing::SizeIs(text.size())) << testing::PrintToString(text);
}

TEST(Utf8, EveryCodePointComesBackAsItWasWritten)
{
    for (const std::uint32_t codePoint :
         {0x0U, 0x41U, 0x7FU, 0x80U, 0x7FFU, 0x800U, 0xD7FFU, 0xE000U, 0xFFFFU, 0x10000U, 0x1F600U, 0x10FFFFU}) {
        std::string text;
        appendCodePoint(text, codePoint);
        EXPECT_THAT(codePoints(text), ElementsAre(codePoint));
    }
}

TEST(Utf8, WhatIsNoCodePointIsWrittenAsTheReplacement)
{
    std::string text;
    appendCodePoint(text, 0xD800);
    appendCodePoint(text, 0x110000);
    EXPECT_EQ(text, "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Utf8, WellFormedTextKeepsItsBytesAndOtherBytesBecomeReplacements)
{
    EXPECT_EQ(wellFormedText("aé漢😀"), "aé漢😀");
    EXPECT_EQ(wellFormedText(""), "");
    EXPECT_EQ(wellFormedText("a\xC3z\xFF"), "a\xEF\xBF\xBDz\xEF\xBF\xBD");
}

} // namespace
} // namespace RVCore::Utf8Tests
