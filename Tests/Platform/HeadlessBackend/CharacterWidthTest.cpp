#include <HeadlessBackend/CharacterWidth.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace RVCore {
namespace {

using testing::ElementsAre;

std::vector<std::uint32_t> codePoints(std::string_view text)
{
    std::vector<std::uint32_t> result;
    while (!text.empty())
        result.push_back(takeCodePoint(text));
    return result;
}

TEST(CharacterWidth, LettersOfNarrowScriptsCountOne)
{
    for (const std::uint32_t codePoint : {U' ', U'i', U'W', U'~', U'é', U'Ω', U'Ж', U'ש', U'م', U'ไ', U'€'})
        EXPECT_EQ(characterWidth(codePoint), 1) << codePoint;
}

TEST(CharacterWidth, EastAsianWideOnesAndEmojiCountTwo)
{
    for (const std::uint32_t codePoint : {U'漢', U'か', U'ト', U'한', U'Ａ', U'。', U'😀', U'🚀'})
        EXPECT_EQ(characterWidth(codePoint), 2) << codePoint;
    EXPECT_EQ(characterWidth(U'ｱ'), 1) << "halfwidth";
}

TEST(CharacterWidth, WhatDoesNotAdvanceCountsNothing)
{
    constexpr std::uint32_t combiningAcute = 0x301, hebrewPoint = 0x5B8, variationSelector = 0xFE0F;
    constexpr std::uint32_t zeroWidthSpace = 0x200B, zeroWidthJoiner = 0x200D, softHyphen = 0xAD;
    for (const std::uint32_t codePoint :
         {combiningAcute, hebrewPoint, variationSelector, zeroWidthSpace, zeroWidthJoiner, softHyphen,
          std::uint32_t('\r'), std::uint32_t(0), std::uint32_t(0x7F)})
        EXPECT_EQ(characterWidth(codePoint), 0) << codePoint;
}

TEST(CharacterWidth, ATabCountsFour)
{
    EXPECT_EQ(characterWidth('\t'), 4);
}

TEST(CharacterWidth, TheEndsOfARangeBelongToIt)
{
    EXPECT_EQ(characterWidth(0x2FF), 1);
    EXPECT_EQ(characterWidth(0x300), 0);
    EXPECT_EQ(characterWidth(0x36F), 0);
    EXPECT_EQ(characterWidth(0x370), 1);
    EXPECT_EQ(characterWidth(0xABFF), 1);
    EXPECT_EQ(characterWidth(0xAC00), 2);
    EXPECT_EQ(characterWidth(0xD7A3), 2);
    EXPECT_EQ(characterWidth(0x10FFFF), 1);
}

TEST(CharacterWidth, CodePointsAreReadFromOneToFourBytes)
{
    EXPECT_THAT(codePoints("aé漢😀\xF4\x8F\xBF\xBF"),
                ElementsAre(std::uint32_t('a'), 0xE9U, 0x6F22U, 0x1F600U, 0x10FFFFU));
}

TEST(CharacterWidth, ABrokenByteIsReadAlone)
{
    // A continuation without a start; a start without a continuation, before text and at the end.
    EXPECT_THAT(codePoints("\x80"
                           "a\xC3"
                           "b\xE6\xBC"),
                ElementsAre(0xFFFDU, std::uint32_t('a'), 0xFFFDU, std::uint32_t('b'), 0xFFFDU, 0xFFFDU));
}

TEST(CharacterWidth, FormsThatUtf8ForbidsAreBroken)
{
    // Two bytes for a slash, half of a surrogate pair, beyond the last code point, a byte that never occurs.
    for (const std::string_view text : {"\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF"})
        EXPECT_THAT(codePoints(text), testing::SizeIs(text.size())) << testing::PrintToString(text);
}

} // namespace
} // namespace RVCore
