#include <HeadlessBackend/HeadlessText.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace RVCore::HeadlessTextTests {
namespace {

using testing::ElementsAre;

// In the font of size 10: 5 points for a character, lines of 13 points.
TextDescription text(std::string content, NSLineBreakMode mode = NSLineBreakMode::clipping)
{
    return {.text = std::move(content), .font = {.size = 10}, .lineBreakMode = mode};
}

TextDescription wrapping(std::string content)
{
    return text(std::move(content), NSLineBreakMode::wordWrapping);
}

CGSize sizeOf(const TextDescription& description, CGFloat maximumWidth = 0)
{
    return headlessTextMetrics(description, maximumWidth).size;
}

TEST(HeadlessText, ACharacterIsHalfTheFontsSizeWide)
{
    EXPECT_EQ(sizeOf(text("Hello")), (CGSize{25, 13}));
}

TEST(HeadlessText, ABoldCharacterIsSixTenthsWide)
{
    TextDescription bold = text("Hello");
    bold.font.bold = true;
    EXPECT_EQ(sizeOf(bold), (CGSize{30, 13}));
}

TEST(HeadlessText, BothSidesAreRoundedUp)
{
    TextDescription description = text("abc");
    description.font.size = 13;
    EXPECT_EQ(sizeOf(description), (CGSize{20, 17})) << "19.5 × 16.25";
    EXPECT_EQ(headlessTextMetrics(description, 0).firstBaseline, 13);
    description.font.size = 12.5;
    EXPECT_EQ(headlessTextMetrics(description, 0).firstBaseline, 13);
}

TEST(HeadlessText, WholeWidthsAreNotRoundedUpFurther)
{
    TextDescription description = text(std::string(5, 'x'));
    description.font.size = 13;
    description.font.bold = true;
    EXPECT_EQ(sizeOf(description).width, 39) << "0.6 × 13 × 5";
}

TEST(HeadlessText, CodePointsCountAndNotBytes)
{
    EXPECT_EQ(sizeOf(text("Größe")).width, 25);
    EXPECT_EQ(sizeOf(text("e\u0301")).width, 5);
    EXPECT_EQ(sizeOf(text("漢字")).width, 20);
    EXPECT_EQ(sizeOf(text("a\tb")).width, 30);
}

TEST(HeadlessText, TheFamilyMakesNoDifference)
{
    TextDescription description = text("Hello");
    description.font.family = "DejaVu Serif";
    description.font.monospacedDigits = true;
    EXPECT_EQ(sizeOf(description), (CGSize{25, 13}));
}

TEST(HeadlessText, EmptyTextIsOneLineHigh)
{
    EXPECT_EQ(sizeOf(text("")), (CGSize{0, 13}));
    EXPECT_EQ(sizeOf(wrapping(""), 10), (CGSize{0, 13}));
}

TEST(HeadlessText, LineFeedsStartLinesInEveryMode)
{
    EXPECT_EQ(sizeOf(text("abc\nde")), (CGSize{15, 26}));
    EXPECT_EQ(sizeOf(wrapping("abc\nde")), (CGSize{15, 26}));
    EXPECT_EQ(sizeOf(text("abc\n")), (CGSize{15, 26})) << "at the end, too";
    EXPECT_THAT(headlessLines(text("a\n\nb"), 0), ElementsAre("a", "", "b"));
}

TEST(HeadlessText, OnlyWrappingTextBreaksAtTheWidth)
{
    EXPECT_EQ(sizeOf(text("one two"), 20), (CGSize{20, 13}));
    EXPECT_EQ(sizeOf(text("one two", NSLineBreakMode::truncatingTail), 20), (CGSize{20, 13}));
    EXPECT_EQ(sizeOf(wrapping("one two"), 20), (CGSize{15, 26}));
}

TEST(HeadlessText, NoWidthMeansNoLimit)
{
    for (const CGFloat width : {0.0, -5.0, std::nan(""), std::numeric_limits<CGFloat>::infinity()})
        EXPECT_EQ(sizeOf(wrapping("one two"), width), (CGSize{35, 13})) << width;
}

TEST(HeadlessText, WordsWrapAtBlanksWhichTakeNoRoom)
{
    EXPECT_THAT(headlessLines(wrapping("one two three"), 35), ElementsAre("one two", "three"));
    EXPECT_THAT(headlessLines(wrapping("one two three"), 34), ElementsAre("one", "two", "three"));
    EXPECT_THAT(headlessLines(wrapping("one   two"), 15), ElementsAre("one", "two"));
    EXPECT_THAT(headlessLines(wrapping("one two   "), 15), ElementsAre("one", "two"));
    EXPECT_THAT(headlessLines(wrapping("one\u200Btwo"), 15), ElementsAre("one", "two"));
    EXPECT_THAT(headlessLines(wrapping("one\ttwo"), 15), ElementsAre("one", "two"));
}

TEST(HeadlessText, BlanksAtTheEndCountWhereLinesDoNotWrap)
{
    EXPECT_EQ(sizeOf(text("one  ")).width, 25);
    EXPECT_EQ(sizeOf(wrapping("one  ")).width, 15);
}

TEST(HeadlessText, AWordWiderThanTheLineStartsALineAndBreaksInside)
{
    EXPECT_THAT(headlessLines(wrapping("a wonderful b"), 20), ElementsAre("a", "wond", "erfu", "l b"));
}

TEST(HeadlessText, CharWrappingFillsEveryLine)
{
    EXPECT_THAT(headlessLines(text("a wonderful b", NSLineBreakMode::charWrapping), 20),
                ElementsAre("a wo", "nder", "ful", "b"));
}

TEST(HeadlessText, ALineHoldsAtLeastOneCharacter)
{
    for (const NSLineBreakMode mode : {NSLineBreakMode::wordWrapping, NSLineBreakMode::charWrapping}) {
        EXPECT_THAT(headlessLines(text("漢字", mode), 1), ElementsAre("漢", "字"));
        EXPECT_EQ(sizeOf(text("漢字", mode), 1), (CGSize{1, 26})) << "and is cut";
    }
}

TEST(HeadlessText, MarksStayWithTheirCharacter)
{
    EXPECT_THAT(headlessLines(text("ae\u0301i", NSLineBreakMode::charWrapping), 10), ElementsAre("ae\u0301", "i"));
    EXPECT_THAT(headlessLines(wrapping("a \u0301bc"), 10), ElementsAre("a \u0301", "bc"));
}

TEST(HeadlessText, OfMoreLinesThanTheMaximumTheLastEndsInAnEllipsis)
{
    TextDescription description = wrapping("one two three four");
    description.maximumNumberOfLines = 2;
    EXPECT_THAT(headlessLines(description, 35), ElementsAre("one two", "three …"));
    EXPECT_EQ(sizeOf(description, 35), (CGSize{35, 26}));
    description.maximumNumberOfLines = 1;
    EXPECT_THAT(headlessLines(description, 20), ElementsAre("one…"));
    EXPECT_THAT(headlessLines(description, 4), ElementsAre("…"));
}

TEST(HeadlessText, AsManyLinesAsTheMaximumAreLeftAlone)
{
    TextDescription description = wrapping("one two");
    description.maximumNumberOfLines = 2;
    EXPECT_THAT(headlessLines(description, 15), ElementsAre("one", "two"));
    description.maximumNumberOfLines = 3;
    EXPECT_EQ(sizeOf(description, 15), (CGSize{15, 26})) << "no room for lines that are not there";
}

TEST(HeadlessText, TheMaximumCountsParagraphs)
{
    TextDescription description = text("one\ntwo\nthree");
    description.maximumNumberOfLines = 2;
    EXPECT_THAT(headlessLines(description, 0), ElementsAre("one", "two…"));
}

TEST(HeadlessText, WhatWasMeasuredFitsIntoItsOwnMeasure)
{
    for (const CGFloat size : {9.7, 10.0, 12.4, 13.0, 13.5, 22.0}) {
        for (const CGFloat width : {40.0, 61.3, 100.0, 1000.0}) {
            TextDescription description = wrapping("the quick brown fox jumps over 漢字 and naı\u0308ve dogs");
            description.font.size = size;
            const CGSize first = sizeOf(description, width);
            EXPECT_EQ(sizeOf(description, first.width), first) << size << " in " << width;
        }
    }
}

TEST(HeadlessText, AFontWithoutASizeRaises)
{
    TextDescription description = text("Hello");
    description.font.size = 0;
    EXPECT_EQ(raised([&] { sizeOf(description); }),
              "NSInvalidArgumentException: Backend.measureText: font.size must be above 0, got 0");
    description.font.size = std::nan("");
    EXPECT_EQ(raised([&] { sizeOf(description); }),
              "NSInvalidArgumentException: Backend.measureText: font.size must be finite, got nan");
}

} // namespace
} // namespace RVCore::HeadlessTextTests
