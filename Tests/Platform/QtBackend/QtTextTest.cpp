#include <Backend/Backend.h>
#include <Platform/Foundation/Raised.h>
#include <Platform/QtBackend/NarrowOnes.h>
#include <Platform/QtBackend/Offscreen.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace RVCore::QtTextTests {
namespace {

// A font that Scripts/install-dependencies brings.
FontDescription font(CGFloat size = 16)
{
    return {.family = "DejaVu Sans", .size = size};
}

TextDescription text(std::string content, NSLineBreakMode mode = NSLineBreakMode::clipping)
{
    return {.text = std::move(content), .font = font(), .lineBreakMode = mode};
}

TextDescription wrapping(std::string content)
{
    return text(std::move(content), NSLineBreakMode::wordWrapping);
}

CGSize sizeOf(const TextDescription& description, CGFloat maximumWidth = 0)
{
    return Backend::shared().measureText(description, maximumWidth).size;
}

// The text alone in a picture of this size, at its top left.
QImage drawn(const TextDescription& description, const CGRect& rect, CGSize picture, CGFloat scale = 1)
{
    return paintedPicture(picture, scale, [&](Canvas& canvas) { canvas.drawText(description, rect); });
}

const char* const samples[] = {"Hello, World",
                               "AVATAR fjord ffi",
                               "Ελληνικά κείμενα",
                               "Кириллица",
                               "مرحبا بالعالم",
                               "שלום עולם",
                               "漢字かな交じり文",
                               "한국어",
                               "ไทย देवनागरी",
                               "e\u0301 o\u0308 a\u030A",
                               "😀 \U0001F469\u200D\U0001F469\u200D\U0001F467",
                               "mixed עברית and English",
                               "a\tb",
                               "12,345.67"};

class QtTextSamples : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(QtText, QtTextSamples, testing::ValuesIn(samples));

TEST_P(QtTextSamples, WhatIsDrawnIsAsLargeAsWhatWasMeasured)
{
    for (const CGFloat size : {11.0, 12.5, 16.0, 40.0}) {
        for (const CGFloat scale : {1.0, 1.5, 2.0}) {
            TextDescription description = text(GetParam());
            description.font = font(size);
            description.alignment = NSTextAlignment::left;
            const CGSize measured = sizeOf(description);
            // Room on every side, so that nothing is cut.
            const CGSize picture{measured.width + 40, measured.height + 40};
            const QRect ink =
                inkBounds(drawn(description, {20, 20, measured.width + 20, measured.height + 20}, picture, scale));
            SCOPED_TRACE(numberText(size) + " at scale " + numberText(scale));
            // A glyph may reach beyond its advance by a little, and a part of a pixel counts as one.
            const CGFloat slack = size * 0.1 + 1;
            EXPECT_GE(ink.left() / scale, 20 - slack);
            EXPECT_LE((ink.right() + 1) / scale, 20 + measured.width + slack);
            EXPECT_GE(ink.top() / scale, 20);
            EXPECT_LE((ink.bottom() + 1) / scale, 20 + measured.height + 1);
            EXPECT_GE(ink.width() / scale, measured.width - 0.35 * size) << "and not much smaller";
        }
    }
}

TEST_P(QtTextSamples, WidthsGrowInProportionToTheFont)
{
    TextDescription description = text(GetParam());
    description.font.size = 100;
    const CGFloat hundred = sizeOf(description).width;
    for (const CGFloat size : {10.0, 12.5, 13.0, 13.25, 50.0, 200.0, 1000.0}) {
        description.font.size = size;
        EXPECT_NEAR(sizeOf(description).width, hundred * size / 100, 1 + size * 0.05) << size;
    }
}

TEST_P(QtTextSamples, WhatWasMeasuredFitsIntoItsOwnMeasure)
{
    const std::string content = std::string(GetParam()) + " " + GetParam() + " " + GetParam();
    for (const NSLineBreakMode mode : {NSLineBreakMode::wordWrapping, NSLineBreakMode::charWrapping}) {
        for (const CGFloat width : {30.0, 77.7, 130.0, 1000.0}) {
            const CGSize first = sizeOf(text(content, mode), width);
            EXPECT_LE(first.width, std::ceil(width));
            EXPECT_EQ(sizeOf(text(content, mode), first.width), first) << width;
        }
    }
}

TEST(QtText, MeasuresAreWholePoints)
{
    const TextMetrics metrics = Backend::shared().measureText(text("Hello"), 0);
    EXPECT_GT(metrics.size.width, 20);
    EXPECT_EQ(metrics.size.width, std::ceil(metrics.size.width));
    EXPECT_EQ(metrics.size.height, std::ceil(metrics.size.height));
    EXPECT_EQ(metrics.firstBaseline, std::ceil(metrics.firstBaseline));
    EXPECT_GT(metrics.firstBaseline, metrics.size.height / 2);
    EXPECT_LT(metrics.firstBaseline, metrics.size.height);
}

TEST(QtText, LettersStandOnTheMeasuredBaseline)
{
    for (const CGFloat size : {12.5, 16.0, 40.0}) {
        TextDescription description = text("HHH");
        description.font.size = size;
        const CGFloat baseline = Backend::shared().measureText(description, 0).firstBaseline;
        const QRect ink = inkBounds(drawn(description, {0, 0, 200, 100}, {200, 100}));
        EXPECT_NEAR(ink.bottom() + 1, baseline, 1) << size;
    }
}

TEST(QtText, EmptyTextIsOneLineHigh)
{
    EXPECT_EQ(sizeOf(text("")), (CGSize{0, sizeOf(text("H")).height}));
    EXPECT_EQ(sizeOf(wrapping(""), 50), sizeOf(text("")));
}

TEST(QtText, LineFeedsStartLinesInEveryMode)
{
    const CGFloat line = sizeOf(text("a")).height;
    for (const NSLineBreakMode mode : {NSLineBreakMode::clipping, NSLineBreakMode::wordWrapping,
                                       NSLineBreakMode::charWrapping, NSLineBreakMode::truncatingTail}) {
        EXPECT_EQ(sizeOf(text("a\nb", mode)).height, 2 * line);
        EXPECT_EQ(sizeOf(text("a\n", mode)).height, 2 * line);
        EXPECT_EQ(sizeOf(text("a\n\nb", mode)).height, 3 * line);
    }
}

TEST(QtText, NoWidthMeansNoLimit)
{
    const CGSize free = sizeOf(wrapping("one two"));
    for (const CGFloat width : {-5.0, std::nan(""), std::numeric_limits<CGFloat>::infinity()})
        EXPECT_EQ(sizeOf(wrapping("one two"), width), free) << width;
}

TEST(QtText, WordsWrapAtBlanksWhichTakeNoRoom)
{
    const CGSize first = sizeOf(text("wonderful")), second = sizeOf(text("one two"));
    const CGSize both = sizeOf(wrapping("wonderful one two"), first.width);
    EXPECT_EQ(both, (CGSize{first.width, first.height + second.height}));
    EXPECT_EQ(sizeOf(wrapping("wonderful   ")).width, first.width);
    EXPECT_GT(sizeOf(text("wonderful   ")).width, first.width) << "they do where lines do not wrap";
}

TEST(QtText, AWordWiderThanTheLineBreaksInside)
{
    const TextDescription description = wrapping("extraordinarily");
    const CGSize free = sizeOf(description);
    const CGSize narrow = sizeOf(description, free.width / 2);
    EXPECT_GE(narrow.height, 2 * free.height);
    EXPECT_LE(narrow.width, std::ceil(free.width / 2));
}

TEST(QtText, CharWrappingFillsTheFirstLine)
{
    const TextDescription description = text("a extraordinarily", NSLineBreakMode::charWrapping);
    const CGFloat width = sizeOf(text("a extra")).width;
    EXPECT_GT(sizeOf(description, width).width, width - sizeOf(text("m")).width);
    EXPECT_LT(sizeOf(wrapping("a extraordinary"), sizeOf(text("extraordinary")).width - 1).width,
              sizeOf(text("extraordinary")).width);
}

TEST(QtText, ALineIsCutAtTheEdge)
{
    const QRect ink = inkBounds(drawn(text("Hello wonderful world"), {10, 10, 40, 30}, {200, 50}));
    EXPECT_GE(ink.left(), 10);
    EXPECT_EQ(ink.right() + 1, 50);
}

TEST(QtText, TextIsCutAtTheBottom)
{
    const QRect ink = inkBounds(drawn(text("HHHH\nHHHH"), {10, 10, 100, 24}, {200, 100}));
    EXPECT_LE(ink.bottom() + 1, 34);
}

// Which of the forms, one per number of characters left, looks like the drawn one; -1 for none.
template <class Form> int drawnForm(const TextDescription& description, const CGRect& rect, int length, Form form)
{
    const QImage actual = drawn(description, rect, {200, 40});
    for (int kept = 0; kept <= length; ++kept) {
        TextDescription plain = description;
        plain.lineBreakMode = NSLineBreakMode::clipping;
        plain.text = form(kept);
        if (largestDifference(actual, drawn(plain, rect, {200, 40})) == 0)
            return kept;
    }
    return -1;
}

class QtTextTruncation : public testing::Test {
protected:
    // As many characters as fit, and no fewer.
    template <class Form> void expectLongest(NSLineBreakMode mode, Form form)
    {
        const TextDescription description = text(m_content, mode);
        const int kept = drawnForm(description, m_rect, static_cast<int>(m_content.size()), form);
        ASSERT_GT(kept, 3);
        ASSERT_LT(kept, static_cast<int>(m_content.size()) - 1);
        EXPECT_LE(sizeOf(text(form(kept))).width, std::ceil(m_rect.size.width));
        EXPECT_GT(sizeOf(text(form(kept + 1))).width, m_rect.size.width);
    }

    const std::string m_content = "Hello wonderful world";
    const CGRect m_rect{10, 5, 100, 30};
};

TEST_F(QtTextTruncation, AtTheTailLeavesTheBeginning)
{
    expectLongest(NSLineBreakMode::truncatingTail,
                  [this](int kept) { return m_content.substr(0, static_cast<std::size_t>(kept)) + "…"; });
}

TEST_F(QtTextTruncation, AtTheHeadLeavesTheEnd)
{
    expectLongest(NSLineBreakMode::truncatingHead, [this](int kept) {
        return "…" + m_content.substr(m_content.size() - static_cast<std::size_t>(kept));
    });
}

TEST_F(QtTextTruncation, InTheMiddleLeavesBothEnds)
{
    expectLongest(NSLineBreakMode::truncatingMiddle, [this](int kept) {
        const auto tail = static_cast<std::size_t>(kept / 2), head = static_cast<std::size_t>(kept) - tail;
        return m_content.substr(0, head) + "…" + m_content.substr(m_content.size() - tail);
    });
}

TEST_F(QtTextTruncation, LeavesTextThatFitsAlone)
{
    const CGRect rect(10, 5, sizeOf(text(m_content)).width, 30);
    for (const NSLineBreakMode mode :
         {NSLineBreakMode::truncatingHead, NSLineBreakMode::truncatingMiddle, NSLineBreakMode::truncatingTail})
        EXPECT_EQ(
            largestDifference(drawn(text(m_content, mode), rect, {300, 40}), drawn(text(m_content), rect, {300, 40})),
            0);
}

TEST_F(QtTextTruncation, LeavesTheEllipsisWhenNothingElseFits)
{
    const CGRect rect(10, 5, 10, 30);
    EXPECT_EQ(largestDifference(drawn(text("Hello", NSLineBreakMode::truncatingTail), rect, {100, 40}),
                                drawn(text("…"), rect, {100, 40})),
              0);
}

TEST_F(QtTextTruncation, NeverSplitsACharacter)
{
    // Letters with two marks each: a form that lost a mark would match none of these.
    std::string content;
    for (int i = 0; i < 12; ++i)
        content += "o\u0308\u0301";
    const int kept = drawnForm(text(content, NSLineBreakMode::truncatingTail), {10, 5, 60, 30}, 12, [&](int count) {
        return content.substr(0, static_cast<std::size_t>(count) * std::string("o\u0308\u0301").size()) + "…";
    });
    EXPECT_GT(kept, 1);
}

TEST_F(QtTextTruncation, TheMeasureIsNoWiderThanTheMaximum)
{
    EXPECT_LE(sizeOf(text(m_content, NSLineBreakMode::truncatingTail), 100).width, 100);
    EXPECT_EQ(sizeOf(text(m_content, NSLineBreakMode::truncatingTail)), sizeOf(text(m_content)));
}

TEST(QtText, OfMoreLinesThanTheMaximumTheLastEndsInAnEllipsis)
{
    TextDescription limited = wrapping("Hello wonderful world of text");
    limited.maximumNumberOfLines = 2;
    const CGFloat line = sizeOf(text("H")).height;
    const CGFloat width = sizeOf(text("wonderful wo…")).width;
    EXPECT_EQ(sizeOf(limited, width).height, 2 * line);

    const CGRect rect(10, 5, width, 100);
    const QImage expected = drawn(text("Hello\nwonderful wo…"), rect, {200, 110});
    EXPECT_EQ(largestDifference(drawn(limited, rect, {200, 110}), expected), 0);
    limited.maximumNumberOfLines = 7;
    EXPECT_GT(sizeOf(limited, width).height, 2 * line);
}

TEST(QtText, TheMaximumCountsParagraphs)
{
    TextDescription limited = text("one\ntwo\nthree");
    limited.maximumNumberOfLines = 2;
    const CGRect rect(0, 0, 100, 100);
    EXPECT_EQ(largestDifference(drawn(limited, rect, {100, 100}), drawn(text("one\ntwo…"), rect, {100, 100})), 0);
    EXPECT_EQ(sizeOf(limited), sizeOf(text("one\ntwo…")));
}

// Where the text lies in a rectangle from x = 50 to 250.
std::pair<int, int> inkSides(std::string content, NSTextAlignment alignment, NSLineBreakMode mode)
{
    TextDescription description = text(std::move(content), mode);
    description.alignment = alignment;
    const QRect ink = inkBounds(drawn(description, {50, 0, 200, 60}, {300, 60}));
    return {ink.left() - 50, 250 - (ink.right() + 1)};
}

class QtTextAlignment : public testing::TestWithParam<NSLineBreakMode> {};

INSTANTIATE_TEST_SUITE_P(QtText, QtTextAlignment,
                         testing::Values(NSLineBreakMode::clipping, NSLineBreakMode::truncatingTail,
                                         NSLineBreakMode::wordWrapping));

TEST_P(QtTextAlignment, PutsTheTextWhereItSays)
{
    for (const char* content : {"Hello", "שלום", "مرحبا"}) {
        SCOPED_TRACE(content);
        const auto [leftOfLeft, rightOfLeft] = inkSides(content, NSTextAlignment::left, GetParam());
        EXPECT_NEAR(leftOfLeft, 0, 3);
        EXPECT_GT(rightOfLeft, 100);
        const auto [leftOfRight, rightOfRight] = inkSides(content, NSTextAlignment::right, GetParam());
        EXPECT_NEAR(rightOfRight, 0, 3);
        EXPECT_GT(leftOfRight, 100);
        const auto [leftOfCenter, rightOfCenter] = inkSides(content, NSTextAlignment::center, GetParam());
        EXPECT_NEAR(leftOfCenter, rightOfCenter, 4);
    }
}

TEST_P(QtTextAlignment, NaturalFollowsTheDirectionOfReading)
{
    for (const NSTextAlignment alignment : {NSTextAlignment::natural, NSTextAlignment::justified}) {
        EXPECT_NEAR(inkSides("Hello", alignment, GetParam()).first, 0, 3);
        EXPECT_NEAR(inkSides("שלום", alignment, GetParam()).second, 0, 3);
        EXPECT_NEAR(inkSides("مرحبا", alignment, GetParam()).second, 0, 3);
        EXPECT_NEAR(inkSides("123 Hello", alignment, GetParam()).first, 0, 3);
    }
}

TEST(QtText, EveryParagraphHasItsOwnDirection)
{
    const QImage picture = drawn(text("Hello\nשלום"), {0, 0, 200, 60}, {200, 60});
    const int line = static_cast<int>(sizeOf(text("Hello")).height);
    EXPECT_LT(inkBounds(picture.copy(0, 0, 200, line)).right(), 100);
    EXPECT_GT(inkBounds(picture.copy(0, line, 200, line)).left(), 100);
}

TEST(QtText, WhatDoesNotFitBeginsAtTheEdgeWhereReadingBegins)
{
    for (const NSTextAlignment alignment : {NSTextAlignment::left, NSTextAlignment::right, NSTextAlignment::center}) {
        TextDescription description = text("Hello wonderful world");
        description.alignment = NSTextAlignment::left;
        const QImage expected = drawn(description, {10, 0, 60, 30}, {100, 30});
        description.alignment = alignment;
        EXPECT_EQ(largestDifference(drawn(description, {10, 0, 60, 30}, {100, 30}), expected), 0);
    }
}

TEST(QtText, JustifiedLinesReachBothEdgesExceptTheLast)
{
    TextDescription description = wrapping("the quick brown fox jumps over the lazy dog");
    description.alignment = NSTextAlignment::justified;
    const QImage picture = drawn(description, {0, 0, 190, 100}, {200, 100});
    const int line = static_cast<int>(sizeOf(text("Hello")).height);
    const QRect first = inkBounds(picture.copy(0, 0, 200, line));
    EXPECT_NEAR(first.left(), 0, 2);
    EXPECT_NEAR(first.right() + 1, 190, 3);
    EXPECT_LT(inkBounds(picture.copy(0, 2 * line, 200, line)).right(), 150);
}

TEST(QtText, BoldIsWider)
{
    TextDescription bold = text("Hello");
    bold.font.bold = true;
    EXPECT_GT(sizeOf(bold).width, sizeOf(text("Hello")).width);
}

TEST(QtText, IsDrawnInItsColor)
{
    TextDescription description = text("█");
    description.color = {0, 0, 1, 0.5};
    const QImage picture = drawn(description, {0, 0, 40, 40}, {40, 40});
    const QPoint center = inkBounds(picture).center();
    EXPECT_NEAR(qAlpha(picture.pixel(center)), 128, 2);
    EXPECT_EQ(qBlue(picture.pixel(center)), 255);
}

TEST(QtText, MarksTakeNoRoomOfTheirOwn)
{
    EXPECT_EQ(sizeOf(text("e\u0301")), sizeOf(text("é")));
    EXPECT_NEAR(sizeOf(text("שָׁלוֹם")).width, sizeOf(text("שלום")).width, 1);
}

TEST(QtText, BytesThatAreNoTextAreDrawnAsReplacementCharacters)
{
    EXPECT_EQ(sizeOf(text("a\xFF"
                          "b")),
              sizeOf(text("a\uFFFDb")));
}

TEST(QtText, MonospacedDigitsAreAllAsWideAsTheWidest)
{
    ASSERT_TRUE(addNarrowOnes());
    TextDescription ones = text("11111x"), zeros = text("00000x");
    ones.font.family = zeros.font.family = "Narrow Ones";
    ASSERT_LT(sizeOf(ones).width, sizeOf(zeros).width - 10) << "the font itself";
    ones.font.monospacedDigits = zeros.font.monospacedDigits = true;
    EXPECT_EQ(sizeOf(ones), sizeOf(zeros));
    const int right = inkBounds(drawn(zeros, {0, 0, 100, 30}, {100, 30})).right();
    EXPECT_EQ(inkBounds(drawn(ones, {0, 0, 100, 30}, {100, 30})).right(), right) << "drawn as they were measured";
}

TEST(QtText, AFontWithoutASizeRaises)
{
    TextDescription description = text("Hello");
    description.font.size = 0;
    EXPECT_EQ(raised([&] { sizeOf(description); }),
              "NSInvalidArgumentException: Backend.measureText: font.size must be above 0, got 0");
    description.font.size = HUGE_VAL;
    EXPECT_EQ(raised([&] { sizeOf(description); }),
              "NSInvalidArgumentException: Backend.measureText: font.size must be finite, got inf");
    EXPECT_EQ(raised([&] {
                  drawn(description, {0, 0, 10, 10}, {10, 10});
              }),
              "NSInvalidArgumentException: Canvas.drawText: font.size must be finite, got inf");
}

TEST(QtText, LongTextIsMeasured)
{
    const std::string words(20000, 'x');
    EXPECT_GT(sizeOf(text(words)).width, 100000);
    EXPECT_LE(sizeOf(text(words, NSLineBreakMode::truncatingMiddle), 100).width, 100);
    EXPECT_GT(sizeOf(wrapping(words), 400).height, 1000);
}

} // namespace
} // namespace RVCore::QtTextTests
