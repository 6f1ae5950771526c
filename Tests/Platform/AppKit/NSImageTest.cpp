#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSImage.h>
#include <CoreGraphics/Canvas.h>
#include <Foundation/Message.h>
#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

namespace RVCore::NSImageTests {
namespace {

using testing::HasSubstr;

constexpr CGColor red{1, 0, 0, 1};

CGImageRef pixels(int width, int height)
{
    return std::make_shared<const CGImage>(
        width, height, std::vector<std::uint8_t>(static_cast<std::size_t>(width * height * 4), 255));
}

std::string drawn(const NSImage& image)
{
    RecordingCanvas canvas;
    image.draw(canvas, {1, 2, 30, 40}, red);
    return canvas.text();
}

TEST(NSImage, MadeOfPixelsDrawsThem)
{
    const auto image = make<NSImage>(pixels(4, 6), CGSize{2, 3});
    EXPECT_EQ(image->size(), (CGSize{2, 3}));
    EXPECT_EQ(image->bitmap()->width(), 4);
    EXPECT_EQ(drawn(*image), "image 4 × 6 pixels in (1, 2) 30 × 40\n");
}

TEST(NSImage, DrawsTheRepresentationOfTheMostPixels)
{
    const auto image = make<NSImage>(CGSize{30, 40});
    EXPECT_EQ(image->size(), (CGSize{30, 40}));
    EXPECT_TRUE(image->representations().empty());
    EXPECT_EQ(drawn(*image), "");
    for (const double scale : {1.0, 2.0, 0.5})
        image->addRepresentation(make<NSBitmapImageRep>(CGSize{30, 40}, scale));
    EXPECT_EQ(image->representations().size(), 3);
    EXPECT_EQ(drawn(*image), "image 60 × 80 pixels in (1, 2) 30 × 40\n");
    EXPECT_EQ(image->bitmap()->width(), 60);
    EXPECT_EQ(make<NSImage>(pixels(4, 6), CGSize{2, 3})->representations().size(), 1);
    EXPECT_THAT(raised([&] { image->addRepresentation(nullptr); }), HasSubstr("there is no representation"));
    EXPECT_THAT(raised([] { make<NSImage>(CGSize{-1, 1}); }), HasSubstr("size must not be negative"));
}

TEST(NSImage, ATemplateTakesTheColourOfWhereItIs)
{
    const auto image = make<NSImage>(pixels(4, 6), CGSize{2, 3});
    EXPECT_FALSE(image->isTemplate());
    image->setTemplate(true);
    EXPECT_EQ(drawn(*image), "mask 4 × 6 pixels in (1, 2) 30 × 40 rgba(1, 0, 0, 1)\n");
}

TEST(NSImage, AClosureDrawsWhateverSizeIsAskedFor)
{
    const auto image = make<NSImage>(CGSize{5, 5}, [](Canvas& canvas, const CGRect& rect) {
        canvas.fill({rect, 0}, {0, 0, 1, 1});
    });
    EXPECT_EQ(image->size(), (CGSize{5, 5}));
    EXPECT_EQ(image->bitmap(), nullptr);
    const std::string expected = "save\n  fill (1, 2) 30 × 40 rgba(0, 0, 1, 1)\nrestore\n";
    EXPECT_EQ(drawn(*image), expected);
    image->setTemplate(true);
    EXPECT_EQ(drawn(*image), expected);
}

TEST(NSImage, WithoutContentIsEmpty)
{
    EXPECT_EQ(make<NSImage>()->size(), CGSize());
    EXPECT_EQ(drawn(*make<NSImage>()), "");
}

TEST(NSImage, WhatMakesNoSenseIsRefused)
{
    EXPECT_EQ(raised([] {
                  make<NSImage>(CGImageRef(), CGSize{1, 1});
              }),
              "NSInvalidArgumentException: NSImage.initWithCGImage:size:: there is no image");
    EXPECT_THAT(raised([] {
                    make<NSImage>(pixels(1, 1), CGSize{-1, 1});
                }),
                HasSubstr("size must not be negative, got -1 × 1"));
    EXPECT_THAT(raised([] { make<NSImage>(pixels(1, 1), CGSize{std::nan(""), 1}); }), HasSubstr("size"));
    EXPECT_THAT(raised([] {
                    make<NSImage>(CGSize{1, 1}, NSImage::DrawingHandler());
                }),
                HasSubstr("there is nothing that draws"));
}

TEST(NSImage, ScalesAsItIsTold)
{
    using Scaling = NSImageScaling;
    EXPECT_EQ(scaledImageSize({20, 10}, {100, 100}, Scaling::proportionallyDown), (CGSize{20, 10}));
    EXPECT_EQ(scaledImageSize({20, 10}, {10, 100}, Scaling::proportionallyDown), (CGSize{10, 5}));
    EXPECT_EQ(scaledImageSize({20, 10}, {100, 30}, Scaling::proportionallyUpOrDown), (CGSize{60, 30}));
    EXPECT_EQ(scaledImageSize({20, 10}, {10, 100}, Scaling::proportionallyUpOrDown), (CGSize{10, 5}));
    EXPECT_EQ(scaledImageSize({20, 10}, {100, 30}, Scaling::axesIndependently), (CGSize{100, 30}));
    EXPECT_EQ(scaledImageSize({20, 10}, {1, 1}, Scaling::none), (CGSize{20, 10}));
    EXPECT_EQ(scaledImageSize({20, 10}, {-5, 10}, Scaling::proportionallyDown), CGSize());
    EXPECT_EQ(scaledImageSize({0, 10}, {50, 50}, Scaling::proportionallyUpOrDown), (CGSize{0, 10}));
}

TEST(NSImage, OneObjectStandsForAName)
{
    const auto image = make<NSImage>(pixels(1, 1), CGSize{1, 1});
    EXPECT_EQ(imageNamed("NSImageTest-star"), nullptr);
    registerImage("NSImageTest-star", image);
    EXPECT_EQ(imageNamed("NSImageTest-star"), image);
    EXPECT_EQ(send(NSImage::staticClass(), "imageNamed:", "NSImageTest-star").as<ObjectRef>(), image);
    registerImage("NSImageTest-star", nullptr);
    EXPECT_EQ(imageNamed("NSImageTest-star"), nullptr);
    EXPECT_TRUE(send(NSImage::staticClass(), "imageNamed:", "NSImageTest-star").isNothing());
}

TEST(NSImage, WhatIsNoNameNamesNothing)
{
    EXPECT_EQ(imageNamed(""), nullptr);
    EXPECT_EQ(imageNamed("../etc/picture"), nullptr);
    EXPECT_EQ(raised([] { registerImage("", make<NSImage>()); }),
              "NSInvalidArgumentException: registerImage: the name is empty");
}

TEST(NSImage, WithoutADesktopAFileCannotBeRead)
{
    const auto folder = std::filesystem::path(testing::TempDir()) / "NSImageTest";
    std::filesystem::create_directory(folder);
    std::ofstream(folder / "NSImageTest-moon.png") << "no picture";
    addImageFolder(folder.string());
    EXPECT_THAT(raised([] { imageNamed("NSImageTest-moon"); }),
                HasSubstr("there is no decoder without a desktop backend; link RVCore::QtBackend"));
    EXPECT_EQ(imageNamed("NSImageTest-sun"), nullptr);
    std::filesystem::remove_all(folder);
}

TEST(NSImage, EveryPropertyIsReachedByName)
{
    const auto image = make<NSImage>(pixels(1, 1), CGSize{3, 4});
    EXPECT_EQ(send(image, "size").as<CGSize>(), (CGSize{3, 4}));
    send(image, "setTemplate:", true);
    EXPECT_TRUE(send(image, "isTemplate").as<bool>());
    const ObjectRef empty = send(NSImage::staticClass(), "alloc").as<ObjectRef>();
    send(empty, "initWithSize:", CGSize{5, 6});
    EXPECT_EQ(send(empty, "size").as<CGSize>(), (CGSize{5, 6}));
    send(empty, "addRepresentation:", make<NSBitmapImageRep>(CGSize{5, 6}, 1.0));
    EXPECT_EQ(send(empty, "representations").array()->size(), 1);
}

} // namespace
} // namespace RVCore::NSImageTests
