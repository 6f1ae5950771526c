#include <CoreGraphics/CGImage.h>
#include <Platform/Foundation/Raised.h>

#include <gtest/gtest.h>

namespace RVCore::CGImageTests {
namespace {

TEST(CGImage, HoldsItsPixelsRowByRow)
{
    const std::vector<std::uint8_t> pixels(2 * 3 * 4, 7);
    const CGImage image(2, 3, pixels);
    EXPECT_EQ(image.width(), 2);
    EXPECT_EQ(image.height(), 3);
    EXPECT_EQ(image.bytesPerRow(), 8U);
    EXPECT_EQ(image.pixels(), pixels);
}

TEST(CGImage, NoSideIsEmptyOrHuge)
{
    EXPECT_EQ(raised([] { CGImage(0, 3, {}); }),
              "NSInvalidArgumentException: CGImage: sides are from 1 to 32767 pixels, got 0 × 3");
    EXPECT_EQ(raised([] { CGImage(1, 32768, {}); }),
              "NSInvalidArgumentException: CGImage: sides are from 1 to 32767 pixels, got 1 × 32768");
    EXPECT_EQ(raised([] { CGImage(1, -1, {}); }),
              "NSInvalidArgumentException: CGImage: sides are from 1 to 32767 pixels, got 1 × -1");
}

TEST(CGImage, TheBytesAreAsManyAsThePixelsTake)
{
    EXPECT_EQ(raised([] { CGImage(2, 2, std::vector<std::uint8_t>(15)); }),
              "NSInvalidArgumentException: CGImage: 2 × 2 pixels are 16 bytes, got 15");
}

} // namespace
} // namespace RVCore::CGImageTests
