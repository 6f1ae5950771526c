#include <Backend/Backend.h>
#include <Platform/Foundation/Raised.h>
#include <Platform/QtBackend/Offscreen.h>
#include <sys/resource.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace RVCore::QtPictureTests {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

void paintNothing(Canvas&) {}

// What writing raises.
std::string refusal(const std::string& path, CGSize size = {1, 1}, CGFloat scale = 1)
{
    return raised([&] { Backend::shared().writePicture(path, size, scale, paintNothing); });
}

std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(QtPicture, IsAPngFileWithATransparentGround)
{
    const std::string path = temporaryPath("picture.png");
    Backend::shared().writePicture(path, {20, 10}, 1, [](Canvas& canvas) {
        canvas.fill({{0, 0, 10, 10}, 0}, {0, 1, 0, 0.5});
    });
    EXPECT_THAT(contentOf(path), StartsWith("\x89PNG\r\n\x1A\n"));
    const QImage picture(QString::fromStdString(path));
    EXPECT_EQ(picture.size(), QSize(20, 10));
    EXPECT_NEAR(qAlpha(picture.pixel(5, 5)), 128, 1);
    EXPECT_EQ(qGreen(picture.pixel(5, 5)), 255) << "not premultiplied in the file";
    EXPECT_EQ(qAlpha(picture.pixel(15, 5)), 0);
}

TEST(QtPicture, HasScaleTimesAsManyPixelsAsPoints)
{
    for (const auto& [points, scale, pixels] :
         {std::tuple(100.0, 1.0, 100), std::tuple(100.0, 2.0, 200), std::tuple(10.5, 1.5, 16),
          std::tuple(0.1, 1.0, 1), std::tuple(3.3, 10.0, 33)}) {
        const QImage picture = paintedPicture({points, 1}, scale, paintNothing);
        EXPECT_EQ(picture.width(), pixels) << points << " at " << scale;
    }
}

TEST(QtPicture, TellsViewersHowLargeAPointIs)
{
    const QImage picture = paintedPicture({10, 10}, 2, paintNothing);
    EXPECT_EQ(picture.dotsPerMeterX(), qRound(2 * 72 / 0.0254));
    EXPECT_EQ(picture.dotsPerMeterY(), picture.dotsPerMeterX());
}

TEST(QtPicture, TakesThePlaceOfTheFileThatWasThere)
{
    const std::string path = temporaryPath("again.png");
    Backend::shared().writePicture(path, {10, 10}, 1, paintNothing);
    Backend::shared().writePicture(path, {20, 10}, 1, paintNothing);
    EXPECT_EQ(QImage(QString::fromStdString(path)).width(), 20);
}

TEST(QtPicture, AnEmptySizeRaises)
{
    const std::string path = temporaryPath("none.png");
    EXPECT_EQ(refusal(path, {0, 10}),
              "NSInvalidArgumentException: Backend.writePicture: 0 × 10 points at the scale 1 are no picture");
    EXPECT_EQ(refusal(path, {10, -5}),
              "NSInvalidArgumentException: Backend.writePicture: 10 × -5 points at the scale 1 are no picture");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(QtPicture, MoreThan32767PixelsOnASideRaise)
{
    const std::string path = temporaryPath("large.png");
    EXPECT_EQ(refusal(path, {32767, 1}), "nothing");
    std::filesystem::remove(path);
    EXPECT_EQ(refusal(path, {32768, 1}),
              "NSInvalidArgumentException: Backend.writePicture: 32768 × 1 points at the scale 1 are no picture");
    EXPECT_EQ(refusal(path, {1, 20000}, 2),
              "NSInvalidArgumentException: Backend.writePicture: 1 × 20000 points at the scale 2 are no picture");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(QtPicture, NumbersThatAreNoneRaise)
{
    const std::string path = temporaryPath("none.png");
    EXPECT_EQ(refusal(path, {std::nan(""), 1}),
              "NSInvalidArgumentException: Backend.writePicture: size.width must be finite, got nan");
    EXPECT_EQ(refusal(path, {1, 1}, HUGE_VAL),
              "NSInvalidArgumentException: Backend.writePicture: scale must be finite, got inf");
    EXPECT_EQ(refusal(path, {1, 1}, 0),
              "NSInvalidArgumentException: Backend.writePicture: 1 × 1 points at the scale 0 are no picture");
}

TEST(QtPicture, AFolderThatIsNotThereRaises)
{
    EXPECT_EQ(refusal("/nowhere/picture.png"), "NSInvalidArgumentException: Backend.writePicture: cannot write "
                                               "/nowhere/picture.png: No such file or directory");
}

TEST(QtPicture, APlaceWhereNothingCanBeWrittenRaises)
{
    // Not even an administrator makes files here.
    EXPECT_THAT(refusal("/proc/picture.png"),
                StartsWith("NSInvalidArgumentException: Backend.writePicture: cannot write /proc/picture.png: "));
    EXPECT_FALSE(std::filesystem::exists("/proc/picture.png"));
}

TEST(QtPicture, AFolderInsteadOfAFileRaises)
{
    const std::string path = temporaryPath("folder");
    std::filesystem::create_directory(path);
    EXPECT_THAT(refusal(path), HasSubstr("cannot write " + path + ": "));
    EXPECT_TRUE(std::filesystem::is_directory(path));
}

TEST(QtPicture, AFullDiskRaisesAndLeavesTheOldFileWhole)
{
    const std::string path = temporaryPath("kept.png");
    Backend::shared().writePicture(path, {10, 10}, 1, paintNothing);
    const std::string before = contentOf(path);

    // No file may grow beyond this many bytes, which to a program looks the same.
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit previous{};
    getrlimit(RLIMIT_FSIZE, &previous);
    rlimit small = previous;
    small.rlim_cur = 16;
    setrlimit(RLIMIT_FSIZE, &small);
    const std::string reason = refusal(path, {300, 300});
    setrlimit(RLIMIT_FSIZE, &previous);
    std::signal(SIGXFSZ, previousHandler);

    EXPECT_THAT(reason, StartsWith("NSInvalidArgumentException: Backend.writePicture: cannot write " + path + ": "));
    EXPECT_EQ(contentOf(path), before);
    EXPECT_EQ(refusal(path), "nothing") << "and nothing is left in the way";
}

TEST(QtPicture, WhatPaintingRaisesPassesAndLeavesTheOldFileWhole)
{
    const std::string path = temporaryPath("unharmed.png");
    Backend::shared().writePicture(path, {10, 10}, 1, paintNothing);
    const std::string before = contentOf(path);
    EXPECT_THROW(Backend::shared().writePicture(path, {20, 20}, 1,
                                                [](Canvas& canvas) {
                                                    canvas.beginTransparencyLayer(0.5);
                                                    throw std::runtime_error("painting failed");
                                                }),
                 std::runtime_error);
    EXPECT_EQ(contentOf(path), before);
}

} // namespace
} // namespace RVCore::QtPictureTests
