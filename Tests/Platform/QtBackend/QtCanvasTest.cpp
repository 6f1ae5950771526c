#include <Platform/QtBackend/Offscreen.h>

#include <QPainter>
#include <QtBackend/QtCanvas.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>
#include <stdexcept>

namespace RVCore::QtCanvasTests {
namespace {

constexpr CGColor red{1, 0, 0, 1}, green{0, 1, 0, 1}, blue{0, 0, 1, 1};
constexpr CGFloat pi = std::numbers::pi;

CGFloat areaOf(const RoundedRect& shape)
{
    return shape.rect.size.width * shape.rect.size.height - (4 - pi) * shape.radius * shape.radius;
}

// At every scale that desktops use.
class QtCanvasScales : public testing::TestWithParam<CGFloat> {
protected:
    QImage painted(CGSize size, const std::function<void(Canvas&)>& paint)
    {
        return paintedPicture(size, GetParam(), paint);
    }
    // The painted area in square points.
    CGFloat areaIn(const QImage& picture) { return inkArea(picture) / (GetParam() * GetParam()); }
    // The pixel at a point.
    static QRgb at(const QImage& picture, CGFloat x, CGFloat y)
    {
        return picture.pixel(static_cast<int>(x * GetParam()), static_cast<int>(y * GetParam()));
    }
};

INSTANTIATE_TEST_SUITE_P(QtCanvas, QtCanvasScales, testing::Values(1.0, 1.25, 1.5, 2.0, 3.0));

TEST_P(QtCanvasScales, AFilledRectangleCoversItsPixelsAndNoOthers)
{
    const QImage picture = painted({40, 40}, [](Canvas& canvas) { canvas.fill({{8, 12, 16, 20}, 0}, red); });
    const CGFloat scale = GetParam();
    EXPECT_EQ(inkBounds(picture), QRectF(8 * scale, 12 * scale, 16 * scale, 20 * scale).toRect());
    EXPECT_NEAR(areaIn(picture), 16 * 20, 0.5);
    EXPECT_EQ(at(picture, 20, 20), qRgba(255, 0, 0, 255));
}

TEST_P(QtCanvasScales, ARoundedRectangleLacksItsCorners)
{
    const RoundedRect shape{{4, 4, 32, 24}, 8};
    const QImage picture = painted({40, 40}, [&](Canvas& canvas) { canvas.fill(shape, red); });
    EXPECT_NEAR(areaIn(picture), areaOf(shape), 2);
    for (const CGPoint corner : {CGPoint{4.5, 4.5}, CGPoint{35.3, 4.5}, CGPoint{4.5, 27.3}, CGPoint{35.3, 27.3}})
        EXPECT_EQ(qAlpha(at(picture, corner.x, corner.y)), 0) << describe(corner);
    for (const CGPoint edge : {CGPoint{20, 4.5}, CGPoint{4.5, 16}, CGPoint{35.3, 16}, CGPoint{20, 27.3}})
        EXPECT_EQ(at(picture, edge.x, edge.y), qRgba(255, 0, 0, 255)) << describe(edge);
}

TEST_P(QtCanvasScales, TooLargeARadiusMakesACircle)
{
    const QImage picture = painted({40, 40}, [](Canvas& canvas) { canvas.fill({{10, 10, 20, 20}, 500}, red); });
    EXPECT_NEAR(areaIn(picture), pi * 100, 2);
}

TEST_P(QtCanvasScales, AStrokeLiesInsideTheEdge)
{
    const RoundedRect outer{{4, 4, 32, 24}, 8}, inner{{8, 8, 24, 16}, 4};
    const QImage picture = painted({40, 40}, [&](Canvas& canvas) { canvas.strokeInside(outer, 4, blue); });
    EXPECT_NEAR(areaIn(picture), areaOf(outer) - areaOf(inner), 3);
    EXPECT_EQ(inkBounds(picture), inkBounds(painted({40, 40}, [&](Canvas& c) { c.fill(outer, blue); })));
    EXPECT_EQ(at(picture, 20, 5.5), qRgba(0, 0, 255, 255));
    EXPECT_EQ(qAlpha(at(picture, 20, 9)), 0);
    EXPECT_EQ(qAlpha(at(picture, 20, 16)), 0);
}

TEST_P(QtCanvasScales, AStrokeThickerThanTheShapeFillsIt)
{
    const RoundedRect shape{{4, 4, 32, 24}, 8};
    const QImage stroked = painted({40, 40}, [&](Canvas& canvas) { canvas.strokeInside(shape, 12, red); });
    const QImage filled = painted({40, 40}, [&](Canvas& canvas) { canvas.fill(shape, red); });
    EXPECT_EQ(largestDifference(stroked, filled), 0);
}

TEST_P(QtCanvasScales, ARoundedClipIsAsSmoothAsAFill)
{
    const RoundedRect shape{{4, 4, 32, 24}, 12};
    const QImage clipped = painted({40, 40}, [&](Canvas& canvas) {
        canvas.clip(shape);
        canvas.fill({{0, 0, 40, 40}, 0}, red);
    });
    const QImage filled = painted({40, 40}, [&](Canvas& canvas) { canvas.fill(shape, red); });
    EXPECT_LE(largestDifference(clipped, filled), 2);
}

TEST_P(QtCanvasScales, ClipsIntersectUntilTheyAreRestored)
{
    const QImage picture = painted({40, 40}, [](Canvas& canvas) {
        canvas.save();
        canvas.clip({{0, 0, 20, 40}, 0});
        canvas.save();
        canvas.clip({{0, 0, 40, 20}, 0});
        canvas.fill({{0, 0, 40, 40}, 0}, red);
        canvas.restore();
        canvas.fill({{0, 20, 40, 20}, 0}, green);
        canvas.restore();
        canvas.fill({{32, 32, 8, 8}, 0}, blue);
    });
    EXPECT_EQ(at(picture, 10, 10), qRgba(255, 0, 0, 255));
    EXPECT_EQ(qAlpha(at(picture, 30, 10)), 0);
    EXPECT_EQ(at(picture, 10, 30), qRgba(0, 255, 0, 255));
    EXPECT_EQ(qAlpha(at(picture, 30, 30)), 0);
    EXPECT_EQ(at(picture, 36, 36), qRgba(0, 0, 255, 255));
}

TEST_P(QtCanvasScales, AnEmptyClipLeavesNothing)
{
    for (const RoundedRect& clip : {RoundedRect{{10, 10, 0, 10}, 0}, RoundedRect{{10, 10, 0, 0}, 4}}) {
        const QImage picture = painted({40, 40}, [&](Canvas& canvas) {
            canvas.clip(clip);
            canvas.fill({{0, 0, 40, 40}, 0}, red);
            canvas.beginTransparencyLayer(0.5);
            canvas.fill({{0, 0, 40, 40}, 0}, red);
            canvas.endTransparencyLayer();
            canvas.drawText({.text = "Hello"}, {0, 0, 40, 40});
        });
        EXPECT_EQ(inkBounds(picture), QRect());
    }
}

TEST_P(QtCanvasScales, WhatIsDrawnPassesThroughTheLatestTransformFirst)
{
    const QImage picture = painted({40, 40}, [](Canvas& canvas) {
        canvas.concatenate(CGAffineTransform::translation(20, 8));
        canvas.concatenate(CGAffineTransform::rotation(pi / 2));
        canvas.fill({{0, 0, 16, 12}, 0}, red); // turned: to the left of x = 20, from y = 8 to 24
    });
    const CGFloat scale = GetParam();
    EXPECT_EQ(inkBounds(picture), QRectF(8 * scale, 8 * scale, 12 * scale, 16 * scale).toRect());
}

TEST_P(QtCanvasScales, ALayerBlendsItsContentAsAWhole)
{
    const QImage picture = painted({40, 40}, [](Canvas& canvas) {
        canvas.beginTransparencyLayer(0.5);
        canvas.fill({{0, 0, 24, 24}, 0}, red);
        canvas.fill({{12, 12, 24, 24}, 0}, blue);
        canvas.endTransparencyLayer();
    });
    EXPECT_NEAR(qAlpha(at(picture, 5, 5)), 128, 1);
    EXPECT_NEAR(qAlpha(at(picture, 20, 20)), 128, 1) << "where both are";
    EXPECT_EQ(qRed(at(picture, 20, 20)), 0) << "the upper one hides the lower one";
}

TEST_P(QtCanvasScales, ALayersPixelsFallOntoTheDevicesPixels)
{
    const auto shapes = [](Canvas& canvas, CGFloat alpha) {
        canvas.concatenate(CGAffineTransform::translation(3.3, 4.7));
        canvas.clip({{1, 1, 30, 30}, 9});
        canvas.beginTransparencyLayer(alpha);
        canvas.fill({{2.5, 1.25, 20, 20}, 6}, {1, 0, 0, alpha < 1 ? 1 : 0.5});
        canvas.endTransparencyLayer();
    };
    const QImage layered = painted({40, 40}, [&](Canvas& canvas) { shapes(canvas, 0.5); });
    const QImage direct = painted({40, 40}, [&](Canvas& canvas) { shapes(canvas, 1); });
    // A pixel of hardly any opacity keeps hardly anything of its colour, so the opacity is compared.
    EXPECT_GT(inkArea(layered), 100);
    EXPECT_LE(largestDifference(layered.convertToFormat(QImage::Format_Alpha8),
                                direct.convertToFormat(QImage::Format_Alpha8)),
              2);
}

TEST_P(QtCanvasScales, LayersNestAndMultiply)
{
    const QImage picture = painted({40, 40}, [](Canvas& canvas) {
        canvas.beginTransparencyLayer(0.5);
        canvas.save();
        canvas.concatenate(CGAffineTransform::translation(10, 10));
        canvas.beginTransparencyLayer(0.5);
        canvas.concatenate(CGAffineTransform::translation(100, 100));
        canvas.endTransparencyLayer();
        canvas.beginTransparencyLayer(0.5);
        canvas.fill({{0, 0, 20, 20}, 0}, red);
        canvas.endTransparencyLayer();
        canvas.restore();
        canvas.endTransparencyLayer();
        canvas.fill({{0, 0, 5, 5}, 0}, green);
    });
    EXPECT_NEAR(qAlpha(at(picture, 20, 20)), 64, 1);
    EXPECT_EQ(qAlpha(at(picture, 35, 35)), 0);
    EXPECT_EQ(at(picture, 2, 2), qRgba(0, 255, 0, 255));
}

TEST_P(QtCanvasScales, ALayersOpacityIsBetweenNothingAndAll)
{
    const auto alphaWith = [&](CGFloat alpha) {
        return qAlpha(at(painted({40, 40},
                                 [&](Canvas& canvas) {
                                     canvas.beginTransparencyLayer(alpha);
                                     canvas.fill({{0, 0, 40, 40}, 0}, red);
                                     canvas.endTransparencyLayer();
                                 }),
                         20, 20));
    };
    EXPECT_EQ(alphaWith(0), 0);
    EXPECT_EQ(alphaWith(-3), 0);
    EXPECT_EQ(alphaWith(1), 255);
    EXPECT_EQ(alphaWith(7), 255);
}

TEST_P(QtCanvasScales, TextStandsUprightWhereTheTransformMirrors)
{
    const TextDescription text{.text = "Flag", .font = {.family = "DejaVu Sans", .size = 16}};
    const QImage plain = painted({80, 40}, [&](Canvas& canvas) { canvas.drawText(text, {10, 8, 60, 24}); });
    const QImage flipped = painted({80, 40}, [&](Canvas& canvas) {
        canvas.concatenate({1, 0, 0, -1, 0, 40});
        canvas.drawText(text, {10, 8, 60, 24});
    });
    const QImage mirrored = painted({80, 40}, [&](Canvas& canvas) {
        canvas.concatenate({-1, 0, 0, 1, 80, 0});
        canvas.drawText(text, {10, 8, 60, 24});
    });
    EXPECT_GT(inkArea(plain), 50);
    EXPECT_LE(largestDifference(plain, flipped), 8);
    EXPECT_LE(largestDifference(plain, mirrored), 8);
}

TEST_P(QtCanvasScales, NeighboursLeaveNoSeamAndNoBlurWhereverTheyMeet)
{
    const QImage picture = painted({20, 20}, [](Canvas& canvas) {
        const CGFloat edges[] = {0.3, 3.1, 7.45, 7.9, 12.7, 19.2};
        for (std::size_t i = 0; i + 1 < std::size(edges); ++i)
            canvas.fill({{edges[i], 1.3, edges[i + 1] - edges[i], 15.4}, 0}, red);
    });
    const QRect bounds = inkBounds(picture);
    EXPECT_EQ(inkArea(picture), bounds.width() * bounds.height()) << "no pixel is half there";
}

TEST_P(QtCanvasScales, ALineIsSharpAndNeverVanishes)
{
    const QImage picture = painted({20, 20}, [](Canvas& canvas) { canvas.fill({{2, 3.37, 16, 0.2}, 0}, red); });
    EXPECT_EQ(inkBounds(picture).height(), 1);
    EXPECT_EQ(inkArea(picture), inkBounds(picture).width());
}

TEST_P(QtCanvasScales, AFrameIsAsThickOnEverySide)
{
    const QImage picture = painted({20, 20}, [](Canvas& canvas) {
        canvas.strokeInside({{2.3, 3.4, 14.2, 10.1}, 0}, 1, red);
    });
    const int thickness = std::max(static_cast<int>(std::lround(GetParam())), 1);
    const QRect outer = inkBounds(picture);
    const QRect inner = outer.adjusted(thickness, thickness, -thickness, -thickness);
    EXPECT_EQ(inkArea(picture), outer.width() * outer.height() - inner.width() * inner.height());
    EXPECT_EQ(qAlpha(picture.pixel(inner.topLeft())), 0);
    EXPECT_EQ(qAlpha(picture.pixel(inner.bottomRight())), 0);
}

TEST_P(QtCanvasScales, EdgesAreSharpWhereTheTransformMirrors)
{
    const QImage picture = painted({20, 20}, [](Canvas& canvas) {
        canvas.concatenate({1, 0, 0, -1, 0, 20});
        canvas.clip({{1.2, 1.4, 15.3, 14.9}, 0});
        canvas.fill({{0, 0, 20, 20}, 0}, red);
    });
    const QRect bounds = inkBounds(picture);
    EXPECT_GT(bounds.width(), 0);
    EXPECT_EQ(inkArea(picture), bounds.width() * bounds.height());
}

TEST(QtCanvas, WhatIsTurnedKeepsItsPlaceBetweenThePixels)
{
    const QImage picture = paintedPicture({10, 10}, 1, [](Canvas& canvas) {
        canvas.concatenate(CGAffineTransform::rotation(pi / 2));
        canvas.fill({{3, -6.5, 4, 4}, 0}, red); // from 2.5 to 6.5 across
    });
    EXPECT_NEAR(qAlpha(picture.pixel(2, 5)), 128, 1);
    EXPECT_EQ(qAlpha(picture.pixel(3, 5)), 255);
    EXPECT_NEAR(qAlpha(picture.pixel(6, 5)), 128, 1);
}

TEST(QtCanvas, AStrokeWithoutWidthIsNotThere)
{
    const QImage picture = paintedPicture({10, 10}, 1, [](Canvas& canvas) {
        canvas.strokeInside({{2, 2, 6, 6}, 1}, 0, red);
        canvas.strokeInside({{2, 2, 6, 6}, 1}, -1, red);
    });
    EXPECT_EQ(inkBounds(picture), QRect());
}

TEST(QtCanvas, PaintingThatFailsInsideALayerEndsCleanly)
{
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    EXPECT_THROW(
        {
            QtCanvas canvas(painter);
            canvas.save();
            canvas.beginTransparencyLayer(0.5);
            canvas.beginTransparencyLayer(0.5);
            throw std::runtime_error("painting failed");
        },
        std::runtime_error);
    EXPECT_TRUE(painter.isActive());
}

TEST(QtCanvasDeathTest, WhatDoesNotMatchStopsTheProgram)
{
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    QtCanvas canvas(painter);
    EXPECT_DEATH(canvas.restore(), "Fatal error: Canvas.restore: no save to match");
    EXPECT_DEATH(canvas.endTransparencyLayer(), "Fatal error: Canvas.endTransparencyLayer: no layer to match");
    canvas.save();
    EXPECT_DEATH(canvas.endTransparencyLayer(), "Fatal error: Canvas.endTransparencyLayer: no layer to match");
    canvas.beginTransparencyLayer(1);
    EXPECT_DEATH(canvas.restore(), "Fatal error: Canvas.restore: no save to match");
    canvas.endTransparencyLayer();
    canvas.restore();
}

} // namespace
} // namespace RVCore::QtCanvasTests
