#include <AppKit/NSBitmapImageRep.h>
#include <CoreGraphics/Bitmap.h>
#include <CoreGraphics/Canvas.h>
#include <Foundation/Message.h>
#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace RVCore::NSBitmapImageRepTests {
namespace {

using testing::HasSubstr;

std::string drawn(const NSBitmapImageRep& representation, const CGColor* color = nullptr)
{
    RecordingCanvas canvas;
    representation.draw(canvas, {1, 2, 30, 40}, color);
    return canvas.text();
}

TEST(NSBitmapImageRep, HasAsManyPixelsAsItsSizeTakes)
{
    for (const auto& [size, scale, wide, high] :
         {std::tuple(CGSize{30, 20}, 1.0, 30, 20), std::tuple(CGSize{30, 20}, 2.0, 60, 40),
          std::tuple(CGSize{10.5, 3}, 1.0, 11, 3), std::tuple(CGSize{3.3, 0.1}, 10.0, 33, 1)}) {
        const auto representation = make<NSBitmapImageRep>(size, scale);
        EXPECT_EQ(representation->size(), size);
        EXPECT_EQ(representation->pixelsWide(), wide);
        EXPECT_EQ(representation->pixelsHigh(), high);
        EXPECT_NEAR(representation->scale(), scale, 1e-12);
    }
}

TEST(NSBitmapImageRep, StartsTransparent)
{
    const auto image = make<NSBitmapImageRep>(CGSize{3, 2}, 1.0)->image();
    EXPECT_EQ(image->width(), 3);
    EXPECT_EQ(image->height(), 2);
    EXPECT_THAT(image->pixels(), testing::Each(0));
}

TEST(NSBitmapImageRep, TakesPixelsOfItsNumber)
{
    const auto representation = make<NSBitmapImageRep>(CGSize{2, 1}, 1.0);
    Bitmap pixels(2, 1);
    pixels.row(0)[1] = 0xFF0000FF;
    representation->setPixels(pixels);
    EXPECT_EQ(representation->image()->pixels()[6], 255);
    EXPECT_THAT(raised([&] { representation->setPixels(Bitmap(1, 1)); }),
                HasSubstr("expected 2 × 1 pixels, got 1 × 1"));
    EXPECT_EQ(representation->image()->pixels()[6], 255);
}

TEST(NSBitmapImageRep, FillsTheRectangleWithItsSize)
{
    EXPECT_EQ(drawn(*make<NSBitmapImageRep>(CGSize{3, 4}, 2.0)), "image 6 × 8 pixels in (1, 2) 30 × 40\n");
    EXPECT_EQ(drawn(*make<NSBitmapImageRep>(CGSize{1.5, 4}, 1.0)), "image 2 × 4 pixels in (1, 2) 40 × 40\n")
        << "the second pixel reaches beyond the size";
    const CGColor red{1, 0, 0, 1};
    EXPECT_EQ(drawn(*make<NSBitmapImageRep>(CGSize{3, 4}, 1.0), &red),
              "mask 3 × 4 pixels in (1, 2) 30 × 40 rgba(1, 0, 0, 1)\n");
    EXPECT_EQ(drawn(*make<NSBitmapImageRep>()), "");
}

TEST(NSBitmapImageRep, WhatMakesNoSenseIsRefused)
{
    const auto refusal = [](CGSize size, CGFloat scale) {
        return raised([&] { make<NSBitmapImageRep>(size, scale); });
    };
    EXPECT_THAT(refusal({0, 1}, 1), HasSubstr("0 × 1 points at the scale 1 are no picture"));
    EXPECT_THAT(refusal({1, -1}, 1), HasSubstr("are no picture"));
    EXPECT_THAT(refusal({1, 1}, 0), HasSubstr("are no picture"));
    EXPECT_THAT(refusal({1, 1}, -2), HasSubstr("are no picture"));
    EXPECT_THAT(refusal({20000, 1}, 2), HasSubstr("are no picture"));
    EXPECT_THAT(refusal({std::nan(""), 1}, 1), HasSubstr("size"));
    EXPECT_THAT(refusal({1, 1}, std::nan("")), HasSubstr("scale"));
    EXPECT_THAT(raised([] { make<NSBitmapImageRep>(CGImageRef(), CGSize{1, 1}); }), HasSubstr("there is no image"));
    EXPECT_THAT(raised([] {
                    make<NSBitmapImageRep>(make<NSBitmapImageRep>(CGSize{1, 1}, 1.0)->image(), CGSize{-1, 1});
                }),
                HasSubstr("size must not be negative"));
}

TEST(NSBitmapImageRep, EveryPropertyIsReachedByName)
{
    const auto representation = make<NSBitmapImageRep>(CGSize{3, 4}, 2.0);
    EXPECT_EQ(send(representation, "size").as<CGSize>(), (CGSize{3, 4}));
    EXPECT_EQ(send(representation, "pixelsWide").as<int>(), 6);
    EXPECT_EQ(send(representation, "pixelsHigh").as<int>(), 8);
}

} // namespace
} // namespace RVCore::NSBitmapImageRepTests
