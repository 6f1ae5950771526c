#include "Pictures.h"

#include <CoreImage/GaussianBlur.h>
#include <CoreImage/RowKernels.h>

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace RVCore::RowKernelsTests {
namespace {

using testing::ElementsAre;

TEST(RowKernels, ThePortableOnesComputeWhatTheySay)
{
    const RowKernels& kernels = portableRowKernels();
    const std::array<std::uint8_t, 4> bytes{0, 1, 128, 255};
    std::array<std::uint16_t, 4> words{};
    kernels.widen(bytes.data(), words.data(), 4);
    EXPECT_THAT(words, ElementsAre(0, 64, 8192, 16320));

    std::array<std::uint8_t, 4> narrowed{};
    const std::array<std::uint16_t, 4> between{31, 32, 95, 16320};
    kernels.narrow(between.data(), narrowed.data(), 4);
    EXPECT_THAT(narrowed, ElementsAre(0, 1, 1, 255));

    const std::array<std::uint16_t, 4> far{0, 64, 0, 16320};
    std::array<std::uint16_t, 4> mixed{};
    kernels.mixRows(words.data(), far.data(), mixed.data(), 4);
    EXPECT_THAT(mixed, ElementsAre(0, 64, 6144, 16320));

    const std::array<std::uint8_t, 4> light{8, 8, 8, 255};
    const std::array<const std::uint8_t*, 4> byteRows{bytes.data(), light.data(), light.data(), bytes.data()};
    kernels.joinByteRows(byteRows.data(), mixed.data(), 4);
    EXPECT_THAT(mixed, ElementsAre(6 * 64, 6 * 64 + 16, 38 * 64, 16320));
}

TEST(RowKernels, ColumnsAreJoinedTwoByTwoAndSpreadAgain)
{
    const RowKernels& kernels = portableRowKernels();
    std::vector<std::uint16_t> in(4 * 8);
    in[4 * 3] = 8; // the first channel of the fourth pixel
    std::vector<std::uint16_t> joined(4 * 2);
    kernels.joinColumns(&in[4 * 2], joined.data(), joined.size());
    EXPECT_THAT(joined, ElementsAre(3, 0, 0, 0, 1, 0, 0, 0)) << "pixel 1 of those that begin at the third";

    std::vector<std::uint16_t> spread(4 * 4);
    kernels.spreadColumns(&in[4 * 2], spread.data(), 4 * 2);
    EXPECT_THAT(spread, ElementsAre(0, 0, 0, 0, 2, 0, 0, 0, 6, 0, 0, 0, 6, 0, 0, 0));
}

TEST(RowKernels, AConvolutionIsTheWeightedSum)
{
    std::vector<std::uint16_t> rows[3] = {{0, 64, 6400, 16320}, {64, 64, 0, 16320}, {128, 64, 640, 16320}};
    for (auto& row : rows)
        row.resize(RowKernels::slack);
    const std::array<const std::uint16_t*, 3> pointers{rows[0].data(), rows[1].data(), rows[2].data()};
    const std::array<std::uint16_t, 2> weights{32768, 16384};
    std::vector<std::uint16_t> sums(RowKernels::slack);
    portableRowKernels().convolve(pointers.data(), weights.data(), 1, sums.data(), 4);
    sums.resize(4);
    EXPECT_THAT(sums, ElementsAre(65, 65, 1761, 16321)) << "one more for what two products lose on the average";
}

// The kernels for wider registers, where the processor has them; elsewhere there are none, and no such tests.
std::vector<const RowKernels*> wideKernels()
{
    std::vector<const RowKernels*> kernels;
    if (avx2RowKernels())
        kernels.push_back(avx2RowKernels());
    return kernels;
}

class WideRowKernels : public testing::TestWithParam<const RowKernels*> {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WideRowKernels);
INSTANTIATE_TEST_SUITE_P(OfThisProcessor, WideRowKernels, testing::ValuesIn(wideKernels()));

TEST_P(WideRowKernels, BlurTheSameToTheBit)
{
    FilterScratch scratch;
    for (const auto& [width, height] : {std::pair{1, 1}, {2, 3}, {15, 9}, {61, 47}, {64, 20}, {130, 33}}) {
        for (const TestPicture& picture : makeTestPictures(width, height)) {
            for (const double sigma : {0.3, 1.0, 2.5, 3.5, 4.0, 8.0, 30.0}) {
                Bitmap wide = copied(picture.bitmap);
                Bitmap plain = copied(picture.bitmap);
                gaussianBlur(wide, GaussianPlan(sigma), scratch, *GetParam());
                gaussianBlur(plain, GaussianPlan(sigma), scratch, portableRowKernels());
                EXPECT_TRUE(isSame(wide, plain))
                    << width << " × " << height << ' ' << picture.name << " at " << sigma;
            }
        }
    }
}

TEST_P(WideRowKernels, MixColorsTheSameToTheBitAndTouchNoOtherPixel)
{
    for (const ColorMixture mixture : {ColorMixture{.color = 2, .luma = -1, .alpha = 0.1F},
                                       ColorMixture{.color = 0.3F, .luma = 0.7F, .alpha = -0.2F},
                                       ColorMixture{.color = 1e6F, .luma = -1e6F, .alpha = 1e6F}}) {
        for (std::size_t count = 0; count < 40; count++) {
            const Bitmap noise = std::move(makeTestPictures(48, 1)[1].bitmap);
            std::vector<std::uint32_t> wide(noise.row(0).begin(), noise.row(0).end());
            std::vector<std::uint32_t> plain = wide;
            GetParam()->mixColors(wide.data(), wide.data(), count, mixture);
            portableRowKernels().mixColors(plain.data(), plain.data(), count, mixture);
            EXPECT_EQ(wide, plain);
            EXPECT_TRUE(std::equal(wide.begin() + static_cast<std::ptrdiff_t>(count), wide.end(),
                                   noise.row(0).begin() + static_cast<std::ptrdiff_t>(count)));
        }
    }
}

TEST(RowKernels, TheQuickestAreUsed)
{
    EXPECT_EQ(&rowKernels(), avx2RowKernels() ? avx2RowKernels() : &portableRowKernels());
}

} // namespace
} // namespace RVCore::RowKernelsTests
