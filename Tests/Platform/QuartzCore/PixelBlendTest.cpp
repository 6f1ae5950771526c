#include <CoreGraphics/Bitmap.h>

#include <QuartzCore/PixelBlend.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>

namespace RVCore::PixelBlendTests {
namespace {

Bitmap filled(int width, int height, std::uint32_t pixel)
{
    Bitmap bitmap(width, height);
    for (int y = 0; y < height; ++y)
        std::ranges::fill(bitmap.row(y), pixel);
    return bitmap;
}

std::uint32_t channel(std::uint32_t pixel, int shift)
{
    return (pixel >> shift) & 0xFF;
}

// A premultiplied pixel.
std::uint32_t randomPixel(std::mt19937& random)
{
    const std::uint32_t alpha = random() % 256;
    const auto color = [&] { return static_cast<std::uint32_t>(random() % (alpha + 1)); };
    return alpha << 24 | color() << 16 | color() << 8 | color();
}

TEST(PixelBlend, CopiesThePartThatBothHave)
{
    const Bitmap source = filled(4, 4, 0xFF112233);
    Bitmap target = filled(6, 6, 0xFFFFFFFF);
    copyPixels({source, 3, 3}, {target, 0, 0}, {0, 0, 100, 5});
    EXPECT_EQ(target.row(2)[3], 0xFFFFFFFF);
    EXPECT_EQ(target.row(3)[2], 0xFFFFFFFF);
    EXPECT_EQ(target.row(3)[3], 0xFF112233);
    EXPECT_EQ(target.row(4)[5], 0xFF112233);
    EXPECT_EQ(target.row(5)[5], 0xFFFFFFFF);
}

TEST(PixelBlend, ClearsThePart)
{
    Bitmap target = filled(3, 3, 0xFF112233);
    clearPixels({target, 10, 10}, {11, 11, 1, 1});
    EXPECT_EQ(target.row(1)[1], 0u);
    EXPECT_EQ(target.row(1)[2], 0xFF112233);
}

TEST(PixelBlend, IsOffByLessThanTwo255ths)
{
    std::mt19937 random(3);
    for (int round = 0; round < 20000; ++round) {
        const std::uint32_t s = randomPixel(random);
        const std::uint32_t t = randomPixel(random);
        const std::uint32_t m = randomPixel(random);
        const double opacity = static_cast<double>(random() % 256) / 255;
        const bool isMasked = round % 2 == 0;
        const PixelBlend how = round % 3 == 0 ? PixelBlend::mix : PixelBlend::over;
        const Bitmap source = filled(1, 1, s);
        const Bitmap mask = filled(1, 1, m);
        Bitmap target = filled(1, 1, t);
        const PlacedBitmap placedMask{mask, 0, 0};
        blendPixels({source, 0, 0}, opacity, isMasked ? &placedMask : nullptr, how, {target, 0, 0}, {0, 0, 1, 1});
        const double weight = opacity * (isMasked ? channel(m, 24) / 255.0 : 1);
        const double covered = how == PixelBlend::over ? weight * channel(s, 24) / 255 : weight;
        for (const int shift : {0, 8, 16, 24}) {
            const double exact = weight * channel(s, shift) + (1 - covered) * channel(t, shift);
            ASSERT_LT(std::abs(channel(target.row(0)[0], shift) - exact), 2.0);
        }
    }
}

TEST(PixelBlend, NoOpacityLeavesTheTarget)
{
    const Bitmap source = filled(2, 2, 0xFF00FF00);
    Bitmap target = filled(2, 2, 0xFFFFFFFF);
    blendPixels({source, 0, 0}, 0, nullptr, PixelBlend::over, {target, 0, 0}, {0, 0, 2, 2});
    EXPECT_EQ(target.row(0)[0], 0xFFFFFFFF);
    blendPixels({source, 0, 0}, 1, nullptr, PixelBlend::over, {target, 0, 0}, {0, 0, 1, 1});
    EXPECT_EQ(target.row(0)[0], 0xFF00FF00);
    EXPECT_EQ(target.row(0)[1], 0xFFFFFFFF);
}

} // namespace
} // namespace RVCore::PixelBlendTests
