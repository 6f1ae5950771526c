// In the program that counts allocations.

#include "PixelCanvas.h"

#include <CoreImage/CIGaussianBlur.h>
#include <Platform/LayoutEngine/AllocationCounter.h>

#include <QuartzCore/Compositor.h>
#include <gtest/gtest.h>

namespace RVCore::CompositorAllocationTests {
namespace {

// A ground, something behind, and a group in front that fades while it blurs what is behind it.
void composeFrame(Compositor& compositor, const std::shared_ptr<NSObject>& host,
                  const std::shared_ptr<CIGaussianBlur>& filter, CGFloat opacity, CGFloat radius)
{
    using Kind = CompositionItem::Kind;
    Composition& next = compositor.begin();
    next.add(Kind::fill, host, {}, {60, 40}).color = {1, 1, 1, 1};
    next.add(Kind::fill, host, CGAffineTransform::translation(10, 10), {20, 20}).color = {1, 0, 0, 1};
    next.beginGroup(host, {.placement = {}, .size = {60, 40}});
    next.addBackgroundFilter({filter, {radius}});
    next.beginGroup(host, {.placement = {}, .size = {60, 40}, .opacity = opacity});
    next.add(Kind::fill, host, CGAffineTransform::translation(20, 5), {20, 20}).color = {0, 0, 1, 1};
    next.endGroup();
    next.endGroup();
    compositor.compose({60, 40}, 1);
}

TEST(CompositorAllocations, AFadeAllocatesNothingOnceItHasBegun)
{
    Compositor compositor([](Bitmap& bitmap, int x, int y,
                             CGFloat scale) { return std::make_unique<PixelCanvas>(bitmap, x, y, scale); },
                          [](NSObject&, Canvas&) {});
    const auto host = make<NSObject>();
    const auto filter = make<CIGaussianBlur>();
    const std::size_t atStart = allocationCount();
    composeFrame(compositor, host, filter, 0.1, 0.8);
    EXPECT_GT(allocationCount(), atStart) << "allocations are counted";
    const std::size_t before = allocationCount();
    for (int frame = 2; frame < 10; ++frame)
        composeFrame(compositor, host, filter, frame / 10.0, 8 * frame / 10.0);
    EXPECT_EQ(allocationCount(), before);
}

TEST(CompositorAllocations, APlainFadeOverSomethingThatDrawsAllocatesNothingOnceItHasBegun)
{
    Compositor compositor([](Bitmap& bitmap, int x, int y,
                             CGFloat scale) { return std::make_unique<PixelCanvas>(bitmap, x, y, scale); },
                          [](NSObject&, Canvas& canvas) {
                              canvas.fill({{0, 0, 9, 9}, 0}, {0, 1, 0, 1});
                          });
    const auto host = make<NSObject>();
    const auto frame = [&](CGFloat opacity) {
        using Kind = CompositionItem::Kind;
        Composition& next = compositor.begin();
        next.add(Kind::fill, host, {}, {60, 40}).color = {1, 1, 1, 1};
        next.add(Kind::content, host, {}, {60, 40}).revision = 1;
        next.beginGroup(host, {.placement = {}, .size = {20, 20}, .opacity = opacity});
        next.add(Kind::fill, host, {}, {20, 20}).color = {0, 0, 1, 1};
        next.endGroup();
        compositor.compose({60, 40}, 1);
    };
    for (const CGFloat opacity : {1.0, 0.9})
        frame(opacity);
    const std::size_t before = allocationCount();
    for (int step = 8; step >= 0; --step)
        frame(step / 10.0);
    EXPECT_EQ(allocationCount(), before);
}

} // namespace
} // namespace RVCore::CompositorAllocationTests
