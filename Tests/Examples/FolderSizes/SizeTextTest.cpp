#include <FolderSizes/SizeText.h>

#include <limits>

namespace FolderSizes::SizeTextTests {
namespace {

TEST(SizeText, countsBytesBelowAThousand)
{
    EXPECT_EQ(sizeText(0), "0 bytes");
    EXPECT_EQ(sizeText(1), "1 byte");
    EXPECT_EQ(sizeText(999), "999 bytes");
}

TEST(SizeText, usesDecimalUnitsWithOneDecimal)
{
    EXPECT_EQ(sizeText(1000), "1.0 kB");
    EXPECT_EQ(sizeText(1250), "1.2 kB");
    EXPECT_EQ(sizeText(12'345'678), "12.3 MB");
    EXPECT_EQ(sizeText(std::numeric_limits<std::uint64_t>::max()), "18.4 EB");
}

TEST(SizeText, neverPrintsAThousandOfAUnit)
{
    EXPECT_EQ(sizeText(999'949), "999.9 kB");
    EXPECT_EQ(sizeText(999'950), "1.0 MB");
}

TEST(SizeText, sharesAreWholePercentAndNeverRoundSomethingToNothing)
{
    EXPECT_EQ(shareText(0, 100), "0 %");
    EXPECT_EQ(shareText(0, 0), "0 %");
    EXPECT_EQ(shareText(1, 1000), "< 1 %");
    EXPECT_EQ(shareText(415, 1000), "42 %");
    EXPECT_EQ(shareText(7, 7), "100 %");
}

TEST(SizeText, countsHaveTheirSingular)
{
    EXPECT_EQ(countText(0, "file", "files"), "0 files");
    EXPECT_EQ(countText(1, "file", "files"), "1 file");
}

TEST(SizeText, kindsSayWhatCouldNotBeRead)
{
    EXPECT_EQ(kindText({.name = {}, .kind = EntryKind::folder}), "Folder");
    EXPECT_EQ(kindText({.name = {}, .kind = EntryKind::file}), "File");
    EXPECT_EQ(kindText({.name = {}, .kind = EntryKind::link}), "Link");
    EXPECT_EQ(kindText({.name = {}, .kind = EntryKind::special}), "Device");
    EXPECT_EQ(kindText({.name = {}, .kind = EntryKind::folder, .isComplete = false}), "Folder, not read");
    EXPECT_EQ(kindText({.name = {}, .kind = EntryKind::folder, .size = 1, .isComplete = false}),
              "Folder, partly read");
    EXPECT_EQ(kindText({.name = {}, .kind = EntryKind::file, .isComplete = false}), "Unreadable");
}

TEST(SizeText, namesThatAreNoTextAreMadeReadable)
{
    EXPECT_EQ(displayName("plain é 日本 🎉"), "plain é 日本 🎉");
    EXPECT_EQ(displayName("a\nb"), "a\uFFFDb");
    EXPECT_EQ(displayName("bad\xFF\xFE"), "bad\uFFFD\uFFFD");
    EXPECT_EQ(displayName("cut\xE6\x97"), "cut\uFFFD\uFFFD");
    EXPECT_EQ(displayName("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD"); // a lone surrogate
    EXPECT_EQ(displayName(""), "");
}

TEST(SizeText, longTextsLoseTheirMiddle)
{
    EXPECT_EQ(shortenedInMiddle("", 5), "");
    EXPECT_EQ(shortenedInMiddle("abcde", 5), "abcde");
    EXPECT_EQ(shortenedInMiddle("abcdef", 5), "ab…ef");
    EXPECT_EQ(shortenedInMiddle("abcdefg", 4), "ab…g");
    EXPECT_EQ(shortenedInMiddle("日本日本日本", 3), "日…本");
}

} // namespace
} // namespace FolderSizes::SizeTextTests
