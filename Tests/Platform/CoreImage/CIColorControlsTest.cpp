#include "Pictures.h"

#include <CoreImage/CIColorControls.h>
#include <CoreImage/FilterScratch.h>
#include <Foundation/KeyPath.h>
#include <Platform/Foundation/Raised.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace RVCore::CIColorControlsTests {
namespace {

using testing::HasSubstr;

struct Inputs {
    CGFloat saturation = 1;
    CGFloat brightness = 0;
    CGFloat contrast = 1;
};

std::uint32_t filtered(std::uint32_t pixel, const Inputs& inputs)
{
    const auto filter = make<CIColorControls>();
    filter->setInputSaturation(inputs.saturation);
    filter->setInputBrightness(inputs.brightness);
    filter->setInputContrast(inputs.contrast);
    FilterScratch scratch;
    Bitmap picture = makePicture(1, 1, [&](int, int) { return pixel; });
    filter->apply(picture, 1, scratch);
    return picture.row(0)[0];
}

// The definition, in colours that are not multiplied by alpha, and back.
std::uint32_t expected(std::uint32_t pixel, const Inputs& inputs)
{
    const double alpha = channel(pixel, 3) / 255.0;
    if (alpha == 0)
        return 0;
    double color[3];
    for (int index = 0; index < 3; index++)
        color[index] = channel(pixel, index) / 255.0 / alpha;
    const double luma = 0.0722 * color[0] + 0.7152 * color[1] + 0.2126 * color[2];
    std::uint32_t result = pixel & 0xff000000;
    for (int index = 0; index < 3; index++) {
        double c = luma + inputs.saturation * (color[index] - luma);
        c += inputs.brightness;
        c = 0.5 + inputs.contrast * (c - 0.5);
        c = std::clamp(c, 0.0, 1.0) * alpha * 255;
        result |= static_cast<std::uint32_t>(std::lround(c)) << (8 * index);
    }
    return result;
}

int furthestChannel(std::uint32_t left, std::uint32_t right)
{
    int furthest = 0;
    for (int index = 0; index < 4; index++)
        furthest = std::max(furthest, std::abs(channel(left, index) - channel(right, index)));
    return furthest;
}

TEST(CIColorControls, StartsNeutral)
{
    const auto filter = make<CIColorControls>();
    EXPECT_EQ(filter->inputSaturation(), 1);
    EXPECT_EQ(filter->inputBrightness(), 0);
    EXPECT_EQ(filter->inputContrast(), 1);
    EXPECT_TRUE(filter->isNeutral());
    EXPECT_EQ(filter->reach(3), 0);
    filter->setInputContrast(2);
    EXPECT_FALSE(filter->isNeutral());
    EXPECT_EQ(filter->reach(3), 0) << "each pixel stands alone";
}

TEST(CIColorControls, DefaultsAreRestored)
{
    const auto filter = make<CIColorControls>();
    filter->setInputSaturation(5);
    filter->setInputBrightness(0.5);
    filter->setInputContrast(0);
    filter->setDefaults();
    EXPECT_TRUE(filter->isNeutral());
}

TEST(CIColorControls, NoSaturationLeavesTheLuma)
{
    EXPECT_EQ(filtered(0xffff0000, {.saturation = 0}), 0xff363636U) << "0.2126 · 255 = 54";
    EXPECT_EQ(filtered(0xff00ff00, {.saturation = 0}), 0xffb6b6b6U) << "0.7152 · 255 = 182";
    EXPECT_EQ(filtered(0xff0000ff, {.saturation = 0}), 0xff121212U) << "0.0722 · 255 = 18";
    EXPECT_EQ(filtered(0xff808080, {.saturation = 2}), 0xff808080U) << "greys have none";
}

TEST(CIColorControls, BrightnessIsAddedAndContrastTurnsAboutMiddleGrey)
{
    EXPECT_EQ(filtered(0xff000000, {.brightness = 0.6}), 0xff999999U);
    EXPECT_EQ(filtered(0xff804020, {.brightness = 1}), 0xffffffffU);
    EXPECT_EQ(filtered(0xff804020, {.brightness = -1}), 0xff000000U);
    EXPECT_EQ(filtered(0xff804020, {.contrast = 0}), 0xff808080U);
    EXPECT_EQ(filtered(0xff804020, {.contrast = 1000}), 0xffff0000U);
}

TEST(CIColorControls, ColorsMultipliedByAlphaComeOutAsIfTheyWereNot)
{
    EXPECT_EQ(filtered(0x80000000, {.brightness = 0.5}), 0x80404040U);
    EXPECT_EQ(filtered(0x00000000, {.brightness = 1}), 0U) << "what is not there has no colour";
    for (const TestPicture& picture : makeTestPictures(8, 8)) {
        for (const Inputs& inputs : {Inputs{.saturation = 2}, Inputs{.saturation = 0.3, .brightness = -0.2},
                                     Inputs{.saturation = 1.7, .brightness = 0.6, .contrast = 1.4},
                                     Inputs{.saturation = -1, .brightness = 0.1, .contrast = -0.5}}) {
            for (int y = 0; y < 8; y++)
                for (const std::uint32_t pixel : picture.bitmap.row(y))
                    EXPECT_LE(furthestChannel(filtered(pixel, inputs), expected(pixel, inputs)), 1)
                        << std::hex << pixel << " of " << picture.name;
        }
    }
}

TEST(CIColorControls, TheLargestInputsThereAreDoNotBringAColorAboveItsAlpha)
{
    constexpr CGFloat largest = std::numeric_limits<double>::max();
    FilterScratch scratch;
    for (const CGFloat saturation : {largest, -largest}) {
        for (const CGFloat contrast : {largest, -largest}) {
            const auto filter = make<CIColorControls>();
            filter->setInputSaturation(saturation);
            filter->setInputBrightness(-saturation);
            filter->setInputContrast(contrast);
            for (TestPicture& picture : makeTestPictures(20, 4)) {
                filter->apply(picture.bitmap, 1, scratch);
                EXPECT_TRUE(isPremultiplied(picture.bitmap)) << picture.name;
            }
        }
    }
}

TEST(CIColorControls, AnInputThatIsNotFiniteRaisesAndChangesNothing)
{
    const auto filter = make<CIColorControls>();
    for (const char* const key : {"inputSaturation", "inputBrightness", "inputContrast"}) {
        for (const double value :
             {std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::infinity()})
            EXPECT_THAT(raised([&] { setValueForKeyPath(*filter, key, value); }),
                        testing::AllOf(HasSubstr("NSInvalidArgumentException: CIColorControls."), HasSubstr(key)));
    }
    EXPECT_TRUE(filter->isNeutral());
}

TEST(CIColorControls, EveryInputIsReadAndWrittenByName)
{
    const auto filter = make<CIColorControls>();
    for (const char* const key : {"inputSaturation", "inputBrightness", "inputContrast"}) {
        setValueForKeyPath(*filter, key, 0.75);
        EXPECT_EQ(valueForKeyPath(*filter, key), Value(0.75)) << key;
    }
    EXPECT_EQ(filter->inputSaturation(), 0.75);
    EXPECT_EQ(filter->inputBrightness(), 0.75);
    EXPECT_EQ(filter->inputContrast(), 0.75);
}

} // namespace
} // namespace RVCore::CIColorControlsTests
