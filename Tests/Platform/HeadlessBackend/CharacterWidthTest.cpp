#include <HeadlessBackend/CharacterWidth.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::CharacterWidthTests {
namespace {

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

} // namespace
} // namespace RVCore::CharacterWidthTests
