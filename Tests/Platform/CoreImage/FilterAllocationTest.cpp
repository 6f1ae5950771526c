// A program of its own: it counts every allocation that is made in it.

#include "Pictures.h"

#include <CoreImage/CIColorControls.h>
#include <CoreImage/CIGaussianBlur.h>
#include <CoreImage/FilterScratch.h>
#include <Platform/LayoutEngine/AllocationCounter.h>

#include <gtest/gtest.h>

namespace RVCore::FilterAllocationTests {
namespace {

TEST(FilterAllocations, AFadeAllocatesNothingAfterItsFirstFrame)
{
    const auto color = make<CIColorControls>();
    const auto blur = make<CIGaussianBlur>();
    int changes = 0;
    const auto observation = blur->observe([&] { ++changes; });
    FilterScratch scratch;
    // Large enough for all the cores that there are.
    Bitmap picture = makePicture(400, 260, [](int x, int y) { return 0xff000000U + static_cast<unsigned>(x * y); });
    const auto frame = [&](CGFloat progress) {
        color->setInputSaturation(1 + progress);
        blur->setInputRadius(30 * progress);
        color->apply(picture, 1, scratch);
        blur->apply(picture, 1, scratch);
    };
    std::size_t before = allocationCount();
    frame(0.01);
    EXPECT_GT(allocationCount(), before) << "the scratch memory is counted";
    before = allocationCount();
    for (int step = 1; step <= 50; step++)
        frame(0.02 * step);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(changes, 51);
}

} // namespace
} // namespace RVCore::FilterAllocationTests
