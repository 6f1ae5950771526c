// A program of its own: it counts every allocation that is made in it.

#include <CoreImage/CIGaussianBlur.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Platform/LayoutEngine/AllocationCounter.h>

#include <QuartzCore/LayerMotion.h>
#include <QuartzCore/LayerPresentation.h>
#include <gtest/gtest.h>

namespace RVCore::PresentationAllocationTests {
namespace {

TEST(PresentationAllocations, AskingALayerThatMovesForEachFrameAllocatesNothing)
{
    ManualDispatchClock clock;
    const auto layer = make<CALayer>();
    const auto blur = make<CIGaussianBlur>();
    int changes = 0;
    layer->setChangeHandler([&] { ++changes; });
    layer->setBackgroundFilters({blur});
    blur->setInputRadius(0);
    LayerMotion motion;
    motion.duration = 1;
    std::size_t before = allocationCount();
    {
        const LayerMotion::Scope scope(&motion);
        layer->setOpacity(0);
        layer->setPosition({10, 10});
        layer->setAffineTransform(CGAffineTransform::rotation(1));
        layer->setValue(8, "backgroundFilters.CIGaussianBlur.inputRadius");
    }
    EXPECT_GT(allocationCount(), before) << "beginning is counted";
    changes = 0;
    before = allocationCount();
    double sum = 0;
    for (int frame = 0; frame < 60; ++frame) {
        clock.advance(1.0 / 64);
        EXPECT_TRUE(layer->prepareFrame(DispatchTime::now()));
        const LayerPresentation shown(*layer);
        sum += shown.opacity() + shown.position().x + shown.affineTransform().a +
               shown.filterInput(*blur, "inputRadius").value_or(1000);
    }
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(changes, 0) << "nothing came to its end";
    EXPECT_LT(sum, 60 * 20);
}

} // namespace
} // namespace RVCore::PresentationAllocationTests
