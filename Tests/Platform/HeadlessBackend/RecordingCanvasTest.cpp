#include <HeadlessBackend/RecordingCanvas.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::RecordingCanvasTests {
namespace {

using testing::ElementsAre;

TEST(RecordingCanvas, WritesEveryOperationOnALineOfItsOwn)
{
    RecordingCanvas canvas;
    canvas.save();
    canvas.concatenate({1, 0, 0, -1, 0, 50});
    canvas.clip({{0, 0, 100, 50}, 4});
    canvas.fill({{0, 0, 100, 50}, 0}, {1, 0, 0, 1});
    canvas.beginTransparencyLayer(0.5);
    canvas.strokeInside({{0.5, 0, 99, 50}, 4}, 1.5, {0, 0, 0, 1});
    canvas.endTransparencyLayer();
    canvas.drawText({.text = "Hello"}, {10, 0, 40, 17});
    const CGImage image(2, 1, std::vector<std::uint8_t>(8));
    canvas.drawImage(image, {0, 0, 4, 2});
    canvas.drawMask(image, {0, 0, 4, 2.00001}, {0, 0, 1, 1});
    ControlDescription control;
    control.isPressed = true;
    canvas.drawControl(control, {0, 0, 60, 21});
    canvas.restore();
    EXPECT_EQ(canvas.text(), "save\n"
                             "  transform [1, 0, 0, -1, 0, 50]\n"
                             "  clip (0, 0) 100 × 50 radius 4\n"
                             "  fill (0, 0) 100 × 50 rgba(1, 0, 0, 1)\n"
                             "  layer 0.5\n"
                             "    stroke (0.5, 0) 99 × 50 radius 4 width 1.5 rgba(0, 0, 0, 1)\n"
                             "  end\n"
                             "  text \"Hello\" system 13 rgba(0, 0, 0, 1) in (10, 0) 40 × 17\n"
                             "  image 2 × 1 pixels in (0, 0) 4 × 2\n"
                             "  mask 2 × 1 pixels in (0, 0) 4 × 2 rgba(0, 0, 1, 1)\n"
                             "  push button, pressed in (0, 0) 60 × 21\n"
                             "restore\n");
}

TEST(RecordingCanvas, TellsHowTextIsSetWhereThatIsNotTheDefault)
{
    RecordingCanvas canvas;
    TextDescription text{.text = "a\nb"};
    const CGRect rect(0, 0, 10, 20);
    for (const NSTextAlignment alignment :
         {NSTextAlignment::left, NSTextAlignment::right, NSTextAlignment::center, NSTextAlignment::justified}) {
        text.alignment = alignment;
        canvas.drawText(text, rect);
    }
    text.alignment = NSTextAlignment::natural;
    for (const NSLineBreakMode mode :
         {NSLineBreakMode::wordWrapping, NSLineBreakMode::charWrapping, NSLineBreakMode::truncatingHead,
          NSLineBreakMode::truncatingTail, NSLineBreakMode::truncatingMiddle}) {
        text.lineBreakMode = mode;
        canvas.drawText(text, rect);
    }
    text.lineBreakMode = NSLineBreakMode::clipping;
    text.maximumNumberOfLines = 1;
    canvas.drawText(text, rect);
    text.maximumNumberOfLines = 2;
    canvas.drawText(text, rect);
    const std::string head = "text \"a\\nb\" system 13 rgba(0, 0, 0, 1) in (0, 0) 10 × 20, ";
    EXPECT_THAT(canvas.lines(),
                ElementsAre(head + "left", head + "right", head + "center", head + "justified", head + "wordWrapping",
                            head + "charWrapping", head + "truncatingHead", head + "truncatingTail",
                            head + "truncatingMiddle", head + "at most 1 line", head + "at most 2 lines"));
}

TEST(RecordingCanvas, RoundsToFourDecimals)
{
    RecordingCanvas canvas;
    canvas.concatenate(CGAffineTransform::rotation(0.5).concatenating(CGAffineTransform::rotation(-0.5)));
    canvas.fill({{0.1 + 0.2, -1e-17, 1.0 / 3, 2}, 2.00004}, {1.0 / 3, 0, 0, 0.12345});
    EXPECT_THAT(canvas.lines(), ElementsAre("transform [1, 0, 0, 1, 0, 0]",
                                            "fill (0.3, 0) 0.3333 × 2 radius 2 rgba(0.3333, 0, 0, 0.1235)"));
}

TEST(RecordingCanvas, KnowsWhetherEverythingIsMatched)
{
    RecordingCanvas canvas;
    EXPECT_TRUE(canvas.isBalanced());
    canvas.save();
    EXPECT_FALSE(canvas.isBalanced());
    canvas.restore();
    EXPECT_TRUE(canvas.isBalanced());
    canvas.beginTransparencyLayer(1);
    EXPECT_FALSE(canvas.isBalanced());
    canvas.endTransparencyLayer();
    EXPECT_TRUE(canvas.isBalanced());
}

TEST(RecordingCanvas, ClearForgetsTheLines)
{
    RecordingCanvas canvas;
    canvas.fill({{0, 0, 1, 1}, 0}, {});
    canvas.clear();
    EXPECT_EQ(canvas.text(), "");
}

TEST(RecordingCanvasDeathTest, WhatDoesNotMatchStopsTheProgram)
{
    RecordingCanvas canvas;
    EXPECT_DEATH(canvas.restore(), "Fatal error: Canvas.restore: no save to match");
    EXPECT_DEATH(canvas.endTransparencyLayer(), "Fatal error: Canvas.endTransparencyLayer: no layer to match");
    canvas.save();
    EXPECT_DEATH(canvas.endTransparencyLayer(), "Fatal error: Canvas.endTransparencyLayer: no layer to match");
    canvas.beginTransparencyLayer(0.5);
    EXPECT_DEATH(canvas.restore(), "Fatal error: Canvas.restore: no save to match");
}

} // namespace
} // namespace RVCore::RecordingCanvasTests
