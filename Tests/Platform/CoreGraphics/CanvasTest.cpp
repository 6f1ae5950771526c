#include <CoreGraphics/Canvas.h>
#include <HeadlessBackend/RecordingCanvas.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace RVCore::CanvasTests {
namespace {

TEST(CanvasState, RestoresAtTheEndOfItsScope)
{
    RecordingCanvas canvas;
    {
        const CanvasState state(canvas);
        canvas.fill({{0, 0, 1, 1}, 0}, {});
    }
    EXPECT_EQ(canvas.text(), "save\n  fill (0, 0) 1 × 1 rgba(0, 0, 0, 1)\nrestore\n");
}

TEST(CanvasState, RestoresWhenPaintingRaises)
{
    RecordingCanvas canvas;
    try {
        const CanvasState state(canvas);
        throw std::runtime_error("painting failed");
    } catch (const std::runtime_error&) {
    }
    EXPECT_TRUE(canvas.isBalanced());
}

} // namespace
} // namespace RVCore::CanvasTests
