#include <HeadlessBackend/RecordingCanvas.h>

#include <QuartzCore/DeferredCanvas.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::DeferredCanvasTests {
namespace {

using testing::ElementsAre;

// Stands in for a record of what is drawn.
class RecordedCanvas : public DeferredCanvas {
public:
    using DeferredCanvas::DeferredCanvas;
    RecordingCanvas* record = nullptr; // once it is made

protected:
    std::unique_ptr<Canvas> makeCanvas() override
    {
        auto canvas = std::make_unique<RecordingCanvas>();
        record = canvas.get();
        return canvas;
    }
};

class DeferredCanvasTest : public testing::Test {
protected:
    void fill() { canvas.fill({{0, 0, 4, 4}, 0}, {0, 0, 0, 1}); }

    const std::string filled = "fill (0, 0) 4 × 4 rgba(0, 0, 0, 1)";
    std::vector<DeferredCanvas::Step> memory;
    RecordedCanvas canvas{memory};
};

TEST_F(DeferredCanvasTest, IsMadeByWhatDrawsAndByNothingElse)
{
    canvas.save();
    canvas.concatenate(CGAffineTransform::translation(1, 2));
    canvas.clip({{0, 0, 9, 9}, 0});
    canvas.restore();
    EXPECT_FALSE(canvas.record);
    EXPECT_TRUE(memory.empty());
    fill();
    EXPECT_THAT(canvas.record->lines(), ElementsAre(filled)) << "what was left before has never been";
}

TEST_F(DeferredCanvasTest, WhatWaitsComesFirstAndInOrder)
{
    canvas.save();
    canvas.clip({{0, 0, 9, 9}, 0});
    canvas.save();
    canvas.concatenate(CGAffineTransform::translation(1, 2));
    fill();
    canvas.clip({{0, 0, 1, 1}, 0}); // nothing is drawn in it
    canvas.restore();
    fill();
    canvas.restore();
    EXPECT_THAT(canvas.record->lines(),
                ElementsAre("save", "  clip (0, 0) 9 × 9", "  save", "    transform [1, 0, 0, 1, 1, 2]",
                            "    " + filled, "  restore", "  " + filled, "restore"));
    EXPECT_TRUE(canvas.record->isBalanced());
}

TEST_F(DeferredCanvasTest, AnUnusedStateWithinAUsedOneIsLeftOut)
{
    canvas.save();
    fill();
    canvas.save();
    canvas.clip({{0, 0, 1, 1}, 0});
    canvas.restore();
    canvas.restore();
    EXPECT_THAT(canvas.record->lines(), ElementsAre("save", "  " + filled, "restore"));
}

TEST_F(DeferredCanvasTest, LayersAreBegunOnTheCanvas)
{
    canvas.save();
    canvas.beginTransparencyLayer(0.5);
    canvas.clip({{0, 0, 1, 1}, 0});
    canvas.endTransparencyLayer();
    canvas.restore();
    EXPECT_THAT(canvas.record->lines(), ElementsAre("save", "  layer 0.5", "  end", "restore"));
}

TEST_F(DeferredCanvasTest, OneInsideTheOtherUsesTheSameMemory)
{
    canvas.save();
    {
        RecordedCanvas inner(memory);
        inner.save();
        inner.fill({{0, 0, 4, 4}, 0}, {0, 0, 0, 1});
        inner.restore();
        EXPECT_THAT(inner.record->lines(), ElementsAre("save", "  " + filled, "restore"));
    }
    fill();
    EXPECT_THAT(canvas.record->lines(), ElementsAre("save", "  " + filled));
}

TEST_F(DeferredCanvasTest, ItsTargetIsTheCanvasWithAllThatWaited)
{
    canvas.concatenate(CGAffineTransform::translation(1, 2));
    EXPECT_EQ(&canvas.target(), canvas.record);
    EXPECT_EQ(canvas.record->lines().size(), 1);
    EXPECT_EQ(&canvas.record->target(), canvas.record);
}

} // namespace
} // namespace RVCore::DeferredCanvasTests
