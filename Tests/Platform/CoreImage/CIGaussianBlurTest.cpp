#include "Pictures.h"

#include <CoreImage/CIGaussianBlur.h>
#include <CoreImage/FilterScratch.h>
#include <Platform/Foundation/Raised.h>

#include <gtest/gtest.h>

#include <limits>

namespace RVCore::CIGaussianBlurTests {
namespace {

using testing::HasSubstr;

std::shared_ptr<CIGaussianBlur> makeBlur(CGFloat radius)
{
    auto blur = make<CIGaussianBlur>();
    blur->setInputRadius(radius);
    return blur;
}

TEST(CIGaussianBlur, TheRadiusIsTenByDefaultAndNeutralAtZero)
{
    const auto blur = make<CIGaussianBlur>();
    EXPECT_EQ(blur->inputRadius(), 10);
    EXPECT_FALSE(blur->isNeutral());
    blur->setInputRadius(0);
    EXPECT_TRUE(blur->isNeutral());
    EXPECT_EQ(blur->reach(2), 0);
    blur->setDefaults();
    EXPECT_EQ(blur->inputRadius(), 10);
}

TEST(CIGaussianBlur, TheRadiusIsTheStandardDeviationInPoints)
{
    FilterScratch scratch;
    const Bitmap picture = std::move(makeTestPictures(61, 47).front().bitmap);
    for (const CGFloat scale : {1.0, 1.5, 2.0}) {
        Bitmap blurred = copied(picture);
        makeBlur(4)->apply(blurred, scale, scratch);
        EXPECT_LE(largestDifference(blurred, convolved(picture, 4 * scale)), 1) << scale;
    }
}

TEST(CIGaussianBlur, ReachesFurtherAtALargerScale)
{
    const auto blur = makeBlur(4);
    EXPECT_GE(blur->reach(1), 12);
    EXPECT_GE(blur->reach(2), 24);
    EXPECT_LE(blur->reach(2), 48);
}

TEST(CIGaussianBlur, NoRimAppearsAtTheEdges)
{
    FilterScratch scratch;
    Bitmap picture = makePicture(50, 30, [](int, int) { return 0xffd0e0f0U; });
    const Bitmap before = copied(picture);
    makeBlur(12)->apply(picture, 1, scratch);
    EXPECT_TRUE(isSame(picture, before));
}

TEST(CIGaussianBlur, ARadiusThatIsNegativeOrNotFiniteRaisesAndChangesNothing)
{
    const auto blur = makeBlur(3);
    EXPECT_EQ(raised([&] { blur->setInputRadius(-1); }),
              "NSInvalidArgumentException: CIGaussianBlur.setInputRadius:: "
              "inputRadius must not be negative, got -1");
    EXPECT_THAT(raised([&] { blur->setInputRadius(std::numeric_limits<double>::quiet_NaN()); }),
                HasSubstr("NSInvalidArgumentException: CIGaussianBlur.setInputRadius:: inputRadius"));
    EXPECT_THAT(raised([&] { blur->setInputRadius(std::numeric_limits<double>::infinity()); }),
                HasSubstr("NSInvalidArgumentException: CIGaussianBlur.setInputRadius:: inputRadius"));
    EXPECT_THAT(raised([&] { blur->setValueForKey(-2, "inputRadius"); }), HasSubstr("got -2"));
    EXPECT_EQ(blur->inputRadius(), 3);
}

TEST(CIGaussianBlur, AHugeRadiusTakesNoMoreMemoryThanASmallOne)
{
    FilterScratch scratch;
    Bitmap picture = std::move(makeTestPictures(300, 200).front().bitmap);
    makeBlur(1)->apply(picture, 1, scratch);
    const std::size_t capacity = scratch.capacity();
    EXPECT_LE(capacity * sizeof(std::uint16_t), 4 * picture.bytesPerRow() * 200);
    for (const CGFloat radius : {1e3, 1e6, std::numeric_limits<double>::max()})
        makeBlur(radius)->apply(picture, 2, scratch);
    EXPECT_EQ(scratch.capacity(), capacity);
}

} // namespace
} // namespace RVCore::CIGaussianBlurTests
