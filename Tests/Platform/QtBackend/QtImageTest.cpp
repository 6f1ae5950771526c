#include <Backend/Backend.h>
#include <Platform/QtBackend/Offscreen.h>

#include <QTransform>
#include <QtBackend/QtImage.h>
#include <gtest/gtest.h>

#include <fstream>

namespace RVCore::QtImageTests {
namespace {

// Opaque green at the top, blue of half opacity below; so many pixels a side.
CGImageRef twoColors(int side)
{
    std::vector<std::uint8_t> pixels;
    for (int i = 0; i < side * side; ++i) {
        const bool isTop = i < side * side / 2;
        for (const int component : {0, isTop ? 255 : 0, isTop ? 0 : 128, isTop ? 255 : 128})
            pixels.push_back(static_cast<std::uint8_t>(component));
    }
    return std::make_shared<const CGImage>(side, side, std::move(pixels));
}

TEST(QtImage, APictureComesBackFromItsFile)
{
    const std::string path = temporaryPath("image.png");
    const CGImageRef original = twoColors(4);
    Backend::shared().writePicture(path, {4, 4}, 1, [&](Canvas& canvas) {
        canvas.drawImage(*original, {0, 0, 4, 4});
    });
    const CGImageRef image = Backend::shared().readImage(path);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width(), 4);
    EXPECT_EQ(image->height(), 4);
    EXPECT_EQ(image->pixels(), original->pixels());
}

TEST(QtImage, WhatIsNoPictureGivesNone)
{
    EXPECT_EQ(Backend::shared().readImage(temporaryPath("absent.png")), nullptr);
    const std::string path = temporaryPath("text.png");
    std::ofstream(path) << "not a picture";
    EXPECT_EQ(Backend::shared().readImage(path), nullptr);
    std::ofstream(path, std::ios::trunc) << "\x89PNG\r\n\x1a\n";
    EXPECT_EQ(Backend::shared().readImage(path), nullptr);
    EXPECT_EQ(Backend::shared().readImage(temporaryPath("")), nullptr) << "a folder";
}

TEST(QtImage, StandsUprightWhereTheCanvasIsMirrored)
{
    const QImage picture = paintedPicture({8, 8}, 2, [](Canvas& canvas) {
        canvas.concatenate({1, 0, 0, -1, 0, 8});
        canvas.drawImage(*twoColors(16), {0, 0, 8, 8});
    });
    EXPECT_EQ(picture.pixel(8, 2), qRgba(0, 255, 0, 255));
    EXPECT_EQ(qAlpha(picture.pixel(8, 13)), 128);
}

TEST(QtImage, AMaskHasTheColourAndTheImagesOpacity)
{
    const QImage picture = paintedPicture({4, 4}, 1, [](Canvas& canvas) {
        canvas.drawMask(*twoColors(4), {0, 0, 4, 4}, {1, 0, 0, 1});
    });
    EXPECT_EQ(picture.pixel(1, 1), qRgba(255, 0, 0, 255));
    EXPECT_EQ(picture.pixel(1, 3), qRgba(255, 0, 0, 128));
}

// At every scale that desktops use: edges that would fall between pixels fall onto the nearest ones.
class QtImageScales : public testing::TestWithParam<CGFloat> {};

INSTANTIATE_TEST_SUITE_P(QtImage, QtImageScales, testing::Values(1.0, 1.25, 1.5, 1.75, 2.0));

TEST_P(QtImageScales, EdgesFallOntoDevicePixels)
{
    const CGFloat scale = GetParam();
    const CGRect left(3, 3, 7, 7), right(10, 3, 7, 7);
    std::vector<std::uint8_t> black(4, 0);
    black[3] = 255;
    const CGImage pixel(1, 1, black);
    const QImage picture = paintedPicture({20, 20}, scale, [&](Canvas& canvas) {
        canvas.drawImage(pixel, left);
        canvas.drawImage(pixel, right);
    });
    const QRect expected(QPoint(qRound(3 * scale), qRound(3 * scale)),
                         QPoint(qRound(17 * scale) - 1, qRound(10 * scale) - 1));
    EXPECT_EQ(inkBounds(picture), expected);
    EXPECT_EQ(inkArea(picture), expected.width() * expected.height()) << "no seam, and no pixel that is half there";
}

} // namespace
} // namespace RVCore::QtImageTests
