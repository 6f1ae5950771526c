#include <CoreGraphics/Bitmap.h>
#include <Platform/Foundation/Raised.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <type_traits>

namespace RVCore::BitmapTests {
namespace {

using testing::Each;
using testing::ElementsAre;

static_assert(!std::is_copy_constructible_v<Bitmap> && !std::is_copy_assignable_v<Bitmap>);

void fill(Bitmap& bitmap, std::uint32_t pixel)
{
    for (int y = 0; y < bitmap.height(); y++)
        std::ranges::fill(bitmap.row(y), pixel);
}

TEST(Bitmap, IsEmptyFromTheStart)
{
    const Bitmap bitmap;
    EXPECT_TRUE(bitmap.isEmpty());
    EXPECT_EQ(bitmap.bounds(), PixelRect());
    EXPECT_EQ(bitmap.bytesPerRow(), 0U);
}

TEST(Bitmap, StartsTransparent)
{
    const Bitmap bitmap(3, 2);
    EXPECT_FALSE(bitmap.isEmpty());
    EXPECT_EQ(bitmap.bounds(), (PixelRect{0, 0, 3, 2}));
    EXPECT_THAT(bitmap.row(0), ElementsAre(0, 0, 0));
    EXPECT_THAT(bitmap.row(1), ElementsAre(0, 0, 0));
}

TEST(Bitmap, RowsStartAtMultiplesOf64BytesAndDoNotOverlap)
{
    for (const int width : {1, 15, 16, 17, 100}) {
        Bitmap bitmap(width, 3);
        EXPECT_EQ(bitmap.bytesPerRow() % 64, 0U);
        EXPECT_GE(bitmap.bytesPerRow(), static_cast<std::size_t>(width) * 4);
        EXPECT_LT(bitmap.bytesPerRow(), static_cast<std::size_t>(width) * 4 + 64);
        for (int y = 0; y < 3; y++) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bitmap.row(y).data()) % 64, 0U);
            EXPECT_EQ(bitmap.row(y).size(), static_cast<std::size_t>(width));
            std::ranges::fill(bitmap.row(y), static_cast<std::uint32_t>(y));
        }
        for (int y = 0; y < 3; y++)
            EXPECT_THAT(bitmap.row(y), Each(static_cast<std::uint32_t>(y)));
    }
}

TEST(Bitmap, ASideMayBeZeroOrUpTo32767)
{
    EXPECT_TRUE(Bitmap(0, 5).isEmpty());
    EXPECT_TRUE(Bitmap(5, 0).isEmpty());
    EXPECT_THAT(Bitmap(0, 5).row(4), ElementsAre());
    EXPECT_EQ(Bitmap(32767, 1).row(0).size(), 32767U);
    EXPECT_EQ(raised([] { Bitmap(-1, 3); }),
              "NSInvalidArgumentException: Bitmap: sides are from 0 to 32767 pixels, got -1 × 3");
    EXPECT_EQ(raised([] { Bitmap(1, 32768); }),
              "NSInvalidArgumentException: Bitmap: sides are from 0 to 32767 pixels, got 1 × 32768");
}

TEST(Bitmap, AGigabyteIsTheMost)
{
    EXPECT_EQ(raised([] { Bitmap(30000, 30000); }),
              "NSInvalidArgumentException: Bitmap: there are at most 268435456 pixels, got 30000 × 30000");
}

TEST(Bitmap, PicturesOfPointsAreRoundedUpAndHaveLimits)
{
    EXPECT_EQ(pictureBounds({10.5, 3}, 1.5), (PixelRect{0, 0, 16, 5}));
    EXPECT_EQ(pictureBounds({3.3, 0.1}, 10), (PixelRect{0, 0, 33, 1})) << "3.3 × 10 is a little more than 33";
    EXPECT_EQ(pictureBounds({1e-9, -4}, 1), (PixelRect{0, 0, 0, 0})) << "within the tolerance, and negative";
    EXPECT_EQ(pictureBounds({32767, 8192}, 1), (PixelRect{0, 0, 32767, 8192}));
    EXPECT_EQ(pictureBounds({32768, 1}, 1), std::nullopt);
    EXPECT_EQ(pictureBounds({30000, 30000}, 1), std::nullopt);
    EXPECT_EQ(pictureBounds({1, 1}, 0), std::nullopt);
    EXPECT_EQ(pictureBounds({1, 1}, -1), std::nullopt);
    EXPECT_EQ(pictureBounds({1, 1}, std::numeric_limits<double>::infinity()), std::nullopt);
    EXPECT_EQ(pictureBounds({1, 1}, std::numeric_limits<double>::quiet_NaN()), std::nullopt);
}

TEST(Bitmap, ClearMakesEveryPixelTransparent)
{
    Bitmap bitmap(17, 2);
    fill(bitmap, 0xff102030);
    bitmap.clear();
    EXPECT_THAT(bitmap.row(0), Each(0U));
    EXPECT_THAT(bitmap.row(1), Each(0U));
    Bitmap().clear();
}

TEST(Bitmap, KeepsItsMemoryWhenItBecomesSmallerAndLargeAgain)
{
    Bitmap bitmap(40, 30);
    const std::uint32_t* const memory = bitmap.row(0).data();
    bitmap.resize(7, 3);
    EXPECT_EQ(bitmap.bounds(), (PixelRect{0, 0, 7, 3}));
    EXPECT_EQ(bitmap.row(0).data(), memory);
    bitmap.resize(0, 0);
    EXPECT_TRUE(bitmap.isEmpty());
    bitmap.resize(30, 40);
    EXPECT_EQ(bitmap.row(0).data(), memory) << "40 rows of 32 words are fewer than 30 of 48";
    fill(bitmap, 1);
    bitmap.resize(400, 300);
    fill(bitmap, 2);
    EXPECT_THAT(bitmap.row(299), Each(2U));
}

TEST(Bitmap, KeepsItsSizeAndPixelsWhenANewSizeIsRefused)
{
    Bitmap bitmap(2, 1);
    fill(bitmap, 7);
    EXPECT_EQ(raised([&] { bitmap.resize(2, 40000); }),
              "NSInvalidArgumentException: Bitmap: sides are from 0 to 32767 pixels, got 2 × 40000");
    EXPECT_EQ(bitmap.bounds(), (PixelRect{0, 0, 2, 1}));
    EXPECT_THAT(bitmap.row(0), ElementsAre(7, 7));
}

TEST(Bitmap, MovesWithItsPixelsAndLeavesAnEmptyOne)
{
    Bitmap bitmap(2, 1);
    fill(bitmap, 9);
    Bitmap moved(std::move(bitmap));
    EXPECT_TRUE(bitmap.isEmpty()); // NOLINT(bugprone-use-after-move): that is the rule
    EXPECT_THAT(moved.row(0), ElementsAre(9, 9));
    bitmap.resize(1, 1);
    bitmap.clear();
    bitmap = std::move(moved);
    EXPECT_TRUE(moved.isEmpty()); // NOLINT(bugprone-use-after-move)
    EXPECT_THAT(bitmap.row(0), ElementsAre(9, 9));
}

TEST(Bitmap, TakesThePixelsOfAnotherOneAsLarge)
{
    Bitmap source(3, 2);
    fill(source, 0xff123456);
    source.row(1)[2] = 0x80000000;
    Bitmap target(3, 2);
    copyPixels(source, target);
    EXPECT_THAT(target.row(0), Each(0xff123456));
    EXPECT_THAT(target.row(1), ElementsAre(0xff123456, 0xff123456, 0x80000000));
    copyPixels(target, target);
    EXPECT_THAT(target.row(1), ElementsAre(0xff123456, 0xff123456, 0x80000000));
}

TEST(BitmapDeathTest, TakingThePixelsOfOneThatIsNotAsLargeStopsTheProgram)
{
    const Bitmap source(3, 2);
    Bitmap target(2, 3);
    EXPECT_DEATH(copyPixels(source, target), "a bitmap of 2 × 3 pixels cannot take those of one of 3 × 2");
}

TEST(BitmapDeathTest, ARowThatItDoesNotHaveStopsTheProgram)
{
    Bitmap bitmap(2, 3);
    EXPECT_DEATH(bitmap.row(3), "Fatal error: Bitmap has 3 rows, asked for row 3");
    EXPECT_DEATH(bitmap.row(-1), "Fatal error: Bitmap has 3 rows, asked for row -1");
}

TEST(Bitmap, BecomesAnImageOfBytesInTheOrderRedGreenBlueAlpha)
{
    Bitmap bitmap(2, 2);
    bitmap.row(0)[0] = 0xff102030;
    bitmap.row(0)[1] = 0x80402000;
    bitmap.row(1)[1] = 0x01000001;
    const CGImageRef image = makeImage(bitmap);
    EXPECT_EQ(image->width(), 2);
    EXPECT_EQ(image->height(), 2);
    EXPECT_THAT(image->pixels(), ElementsAre(0x10, 0x20, 0x30, 0xff, 0x40, 0x20, 0x00, 0x80, //
                                             0, 0, 0, 0, 0, 0, 1, 1));
}

TEST(Bitmap, AnEmptyOneMakesNoImage)
{
    EXPECT_EQ(raised([] { makeImage(Bitmap(0, 3)); }),
              "NSInvalidArgumentException: CGImage: sides are from 1 to 32767 pixels, got 0 × 3");
}

} // namespace
} // namespace RVCore::BitmapTests
