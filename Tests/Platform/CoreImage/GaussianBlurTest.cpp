#include "Pictures.h"

#include <CoreImage/FilterWorkers.h>
#include <CoreImage/GaussianBlur.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace RVCore::GaussianBlurTests {
namespace {

constexpr double sigmas[] = {0.5, 0.7, 1, 1.5, 2, 3, 4, 6, 8, 12, 16, 24, 32, 48, 64};

TEST(GaussianBlur, IsWithinTwo255thsOfTheTrueGaussianAtAnyRadius)
{
    FilterScratch scratch;
    for (const TestPicture& picture : makeTestPictures(61, 47)) {
        for (const double sigma : sigmas) {
            Bitmap blurred = copied(picture.bitmap);
            gaussianBlur(blurred, GaussianPlan(sigma), scratch);
            EXPECT_LE(largestDifference(blurred, convolved(picture.bitmap, sigma)), 1.0)
                << picture.name << " at " << sigma << "; these are far from the worst picture";
        }
    }
}

TEST(GaussianBlur, IsAsCloseOnPicturesSmallerThanTheRadius)
{
    constexpr std::pair<int, int> sizes[] = {{1, 1}, {1, 9}, {7, 1}, {2, 3}, {17, 5}, {3, 40}, {16, 16}};
    FilterScratch scratch;
    for (const auto& [width, height] : sizes) {
        for (const TestPicture& picture : makeTestPictures(width, height)) {
            for (const double sigma : sigmas) {
                Bitmap blurred = copied(picture.bitmap);
                gaussianBlur(blurred, GaussianPlan(sigma), scratch);
                EXPECT_LE(largestDifference(blurred, convolved(picture.bitmap, sigma)), 1.0)
                    << width << " × " << height << ' ' << picture.name << " at " << sigma;
            }
        }
    }
}

// With what weight each pixel of a row enters the pixel at 0, by the plan's description and without rounding. The
// coarse grid lies so that the pixel is the `phase`-th of its coarse one.
std::map<int, double> weightsOfPlan(const GaussianPlan& plan, int phase)
{
    std::map<int, double> now{{phase, 1}};
    for (int level = 0; level < plan.levels; level++) {
        std::map<int, double> coarser;
        for (const auto& [pixel, weight] : now) {
            coarser[pixel >> 1] += 0.75 * weight;
            coarser[pixel % 2 == 0 ? (pixel >> 1) - 1 : (pixel >> 1) + 1] += 0.25 * weight;
        }
        now = coarser;
    }
    std::map<int, double> spread;
    for (const auto& [pixel, weight] : now)
        for (int tap = -plan.radius; tap <= plan.radius; tap++)
            spread[pixel + tap] += weight * plan.weights.at(static_cast<std::size_t>(std::abs(tap))) / 65536;
    now = spread;
    for (int level = 0; level < plan.levels; level++) {
        std::map<int, double> finer;
        for (const auto& [pixel, weight] : now)
            for (const auto& [offset, share] : {std::pair{-1, 1}, {0, 3}, {1, 3}, {2, 1}})
                finer[2 * pixel + offset] += weight * share / 8;
        now = finer;
    }
    std::map<int, double> result;
    for (const auto& [pixel, weight] : now)
        result[pixel - phase] = weight;
    return result;
}

// The picture that shows the difference best in one of its pixels: white where the plan weighs a pixel more than the
// Gaussian does, black elsewhere.
double worstDifference(double sigma, int phase)
{
    const GaussianPlan plan(sigma);
    const int size = 2 * static_cast<int>(6 * sigma) + (4 << plan.levels);
    const int middle = (size / 2 >> plan.levels << plan.levels) + phase;
    const auto ours = weightsOfPlan(plan, phase);
    const auto exact = gaussianWeights(sigma);
    const auto weights = [&](int at) {
        const auto found = ours.find(at - middle);
        const auto distance = static_cast<std::size_t>(std::abs(at - middle));
        return std::pair(found == ours.end() ? 0 : found->second, distance < exact.size() ? exact[distance] : 0);
    };
    Bitmap picture = makePicture(size, size, [&](int x, int y) {
        const auto [oursX, exactX] = weights(x);
        const auto [oursY, exactY] = weights(y);
        return oursX * oursY > exactX * exactY ? 0xffffffff : 0xff000000;
    });
    double expected = 0;
    for (int y = 0; y < size; y++)
        for (int x = 0; x < size; x++)
            expected +=
                weights(x).second * weights(y).second * channel(picture.row(y)[static_cast<std::size_t>(x)], 0);
    FilterScratch scratch;
    gaussianBlur(picture, plan, scratch);
    return std::abs(channel(picture.row(middle)[static_cast<std::size_t>(middle)], 0) - expected);
}

TEST(GaussianBlur, IsWithinTwo255thsEvenOnThePictureThatIsMadeToShowTheDifference)
{
    double largest = 0;
    for (const double sigma : {0.5, 1.0, 1.5, 2.0, 3.0, 3.59, 3.6, 4.0, 5.0, 7.19, 7.2, 8.0, 14.4, 24.0})
        for (int phase = 0; phase < 1 << GaussianPlan(sigma).levels; phase++)
            largest = std::max(largest, worstDifference(sigma, phase));
    EXPECT_LE(largest, 2);
    EXPECT_GE(largest, 1) << "the picture does not show what it is made for";
}

TEST(GaussianBlur, LeavesEvenPicturesAsTheyAre)
{
    FilterScratch scratch;
    for (const std::uint32_t pixel : {0xffffffffU, 0U, 0xff123456U, 0x80402010U, 0x01010101U}) {
        for (const double sigma : sigmas) {
            Bitmap picture = makePicture(23, 14, [&](int, int) { return pixel; });
            const Bitmap before = copied(picture);
            gaussianBlur(picture, GaussianPlan(sigma), scratch);
            EXPECT_TRUE(isSame(picture, before)) << std::hex << pixel << " at " << sigma;
        }
    }
}

TEST(GaussianBlur, NeverBringsAColorAboveItsAlpha)
{
    FilterScratch scratch;
    for (TestPicture& picture : makeTestPictures(40, 30)) {
        for (const double sigma : sigmas) {
            gaussianBlur(picture.bitmap, GaussianPlan(sigma), scratch);
            EXPECT_TRUE(isPremultiplied(picture.bitmap)) << picture.name << " at " << sigma;
        }
    }
}

TEST(GaussianBlur, LeavesPicturesAsTheyAreAtRadiusZeroAndHardlyAboveIt)
{
    FilterScratch scratch;
    for (const double sigma : {0.0, 1e-300, 0.01, 0.1}) {
        EXPECT_TRUE(GaussianPlan(sigma).isNeutral()) << sigma;
        EXPECT_EQ(GaussianPlan(sigma).reach(), 0);
        Bitmap picture = std::move(makeTestPictures(9, 9).front().bitmap);
        const Bitmap before = copied(picture);
        gaussianBlur(picture, GaussianPlan(sigma), scratch);
        EXPECT_TRUE(isSame(picture, before)) << sigma;
    }
    EXPECT_FALSE(GaussianPlan(0.3).isNeutral());
}

TEST(GaussianBlur, HasNothingToDoInAnEmptyPicture)
{
    FilterScratch scratch;
    Bitmap empty(0, 5);
    gaussianBlur(empty, GaussianPlan(4), scratch);
    EXPECT_EQ(scratch.capacity(), 0U);
}

TEST(GaussianBlur, BecomesSmoothlyStronger)
{
    FilterScratch scratch;
    const Bitmap pixel =
        makePicture(81, 81, [](int x, int y) { return x == 40 && y == 40 ? 0xffffffff : 0xff000000; });
    double before = 255;
    for (double sigma = 0.2; sigma < 2; sigma += 0.05) {
        Bitmap picture = copied(pixel);
        gaussianBlur(picture, GaussianPlan(sigma), scratch);
        const int now = channel(picture.row(40)[40], 0);
        EXPECT_LE(now, before) << sigma;
        EXPECT_GE(now, before - 60) << sigma;
        before = now;
    }
    EXPECT_LT(before, 12);
}

TEST(GaussianBlur, NothingFurtherAwayThanTheReachHasAnInfluence)
{
    FilterScratch scratch;
    for (const double sigma : {0.5, 1.0, 3.0, 3.6, 8.0, 15.0}) {
        const GaussianPlan plan(sigma);
        const int reach = plan.reach();
        EXPECT_GE(reach, 3 * sigma);
        EXPECT_LE(reach, 5.5 * sigma + 1);
        const int edge = reach + 30;
        // Two pictures that differ to the right of the edge only.
        const Bitmap noise = std::move(makeTestPictures(edge + 20, 9).front().bitmap);
        Bitmap left = copied(noise);
        Bitmap right = makePicture(edge + 20, 9, [&](int x, int y) {
            return noise.row(y)[static_cast<std::size_t>(x)] ^ (x >= edge ? 0xffffff : 0);
        });
        gaussianBlur(left, plan, scratch);
        gaussianBlur(right, plan, scratch);
        for (int x = 0; x < edge - reach; x++)
            EXPECT_EQ(left.row(4)[static_cast<std::size_t>(x)], right.row(4)[static_cast<std::size_t>(x)])
                << "column " << x << " at " << sigma;
        EXPECT_FALSE(isSame(left, right));
    }
}

Bitmap cutOut(const Bitmap& picture, const PixelRect& part)
{
    return makePicture(part.width, part.height,
                       [&](int x, int y) { return picture.row(part.y + y)[static_cast<std::size_t>(part.x + x)]; });
}

// The largest difference within the middle of a part that is blurred apart and in the whole.
double differenceOfPart(const GaussianPlan& plan, int offset)
{
    const int reach = plan.reach();
    const PixelRect part{offset, offset, 2 * reach + 20, 2 * reach + 16};
    const PixelRect middle{reach, reach, 20, 16};
    FilterScratch scratch;
    Bitmap whole = std::move(makeTestPictures(part.maxX() + 30, part.maxY() + 40).front().bitmap);
    Bitmap apart = cutOut(whole, part);
    gaussianBlur(whole, plan, scratch);
    gaussianBlur(apart, plan, scratch);
    std::vector<double> expected;
    for (int y = 0; y < middle.height; y++)
        for (int x = 0; x < middle.width; x++)
            for (int index = 0; index < 4; index++)
                expected.push_back(channel(
                    whole.row(offset + middle.y + y)[static_cast<std::size_t>(offset + middle.x + x)], index));
    return largestDifference(cutOut(apart, middle), expected);
}

TEST(GaussianBlur, APartWithItsReachComesOutAsInTheWhole)
{
    for (const double sigma : {1.0, 3.0, 4.0, 8.0, 15.0}) {
        const GaussianPlan plan(sigma);
        const int grid = 1 << plan.levels;
        EXPECT_EQ(differenceOfPart(plan, 3 * grid), 0) << sigma;
        EXPECT_LE(differenceOfPart(plan, 3 * grid + 1), 1) << sigma << ", off the grid";
    }
}

TEST(GaussianBlur, InBandsComesOutTheSameToTheBit)
{
    for (const auto& [width, height] : {std::pair(512, 128), std::pair(301, 263), std::pair(4096, 129)}) {
        FilterScratch scratch;
        const Bitmap noise = std::move(makeTestPictures(width, height).front().bitmap);
        for (const double sigma : {0.5, 1.7, 3.0, 4.0, 8.0, 15.0, 40.0, 300.0, 20000.0}) {
            const GaussianPlan plan(sigma);
            Bitmap alone = copied(noise);
            gaussianBlur(alone, plan, scratch);
            for (int count = 1; count <= FilterWorkers::most; count++) {
                FilterWorkers workers(count);
                FilterScratch scratchOfBands;
                Bitmap inBands = copied(noise);
                gaussianBlur(inBands, plan, scratchOfBands, rowKernels(), &workers);
                EXPECT_TRUE(isSame(inBands, alone)) << width << " × " << height << " at " << sigma << " by " << count;
                EXPECT_EQ(scratchOfBands.capacity() > scratch.capacity(), count > 1)
                    << "bands have rows of their own";
            }
        }
    }
}

TEST(GaussianBlur, OfAHugeRadiusIsBoundedAndTheMeanOfTheCorners)
{
    FilterScratch scratch;
    const GaussianPlan plan(std::numeric_limits<double>::infinity());
    EXPECT_EQ(plan.levels, GaussianPlan::mostLevels);
    EXPECT_EQ(plan.reach(), GaussianPlan(1e9).reach());
    // All that is beyond a corner is as the corner is, and that is nearly all there is.
    Bitmap picture = makePicture(40, 40, [](int x, int y) { return x == 0 && y == 0 ? 0xffffffff : 0xff000000; });
    gaussianBlur(picture, plan, scratch);
    for (const int at : {0, 20, 39})
        EXPECT_NEAR(channel(picture.row(at)[static_cast<std::size_t>(at)], 1), 255.0 / 4, 1.5);
}

TEST(GaussianBlur, WorksOnTheLongestRowsAndColumns)
{
    FilterScratch scratch;
    for (const auto& [width, height] : {std::pair{32767, 2}, {2, 32767}}) {
        for (const double sigma : {2.0, 8.0, 1e9}) {
            Bitmap picture = makePicture(width, height, [](int, int) { return 0xff336699U; });
            const Bitmap before = copied(picture);
            gaussianBlur(picture, GaussianPlan(sigma), scratch);
            EXPECT_TRUE(isSame(picture, before));
        }
    }
}

TEST(GaussianPlan, WeightsAddUpToOne)
{
    for (double sigma = 0.25; sigma < 100; sigma *= 1.07) {
        const GaussianPlan plan(sigma);
        int sum = plan.weights[0];
        for (std::size_t tap = 1; tap < plan.weights.size(); tap++)
            sum += 2 * plan.weights.at(tap);
        EXPECT_EQ(sum, 65536) << sigma;
        EXPECT_LE(plan.radius, GaussianPlan::largestRadius) << sigma;
        EXPECT_GE(plan.weights.at(static_cast<std::size_t>(plan.radius)), 1) << sigma;
    }
}

} // namespace
} // namespace RVCore::GaussianBlurTests
