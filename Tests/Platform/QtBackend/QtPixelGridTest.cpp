#include <QTransform>
#include <QtBackend/QtPixelGrid.h>
#include <gtest/gtest.h>

namespace RVCore::QtPixelGridTests {
namespace {

TEST(QtPixelGrid, OnlyWhatLiesStraightIsMovedToPixels)
{
    const CGRect rect(1.4, 1.6, 2, 2);
    EXPECT_EQ(snappedToDevice(QTransform(), rect), QRect(1, 2, 2, 2));
    EXPECT_EQ(snappedToDevice(QTransform::fromScale(2, 3), {0, 0, 1, 1}), QRect(0, 0, 2, 3));
    EXPECT_EQ(snappedToDevice(QTransform().rotate(10), rect), std::nullopt);
    EXPECT_EQ(snappedToDevice(QTransform::fromScale(1, -1), rect), std::nullopt) << "not upright";
    EXPECT_EQ(snappedToDevice(QTransform::fromScale(1e9, 1), rect), std::nullopt);
}

TEST(QtPixelGrid, EdgesHalfWayBetweenPixelsAreMovedAlikeHoweverTheyWereComputed)
{
    const QTransform scale = QTransform::fromScale(1.25, 1.25);
    const RoundedRect left = alignedToDevice(scale, {{0, 0, 0.1 + 0.2 + 0.1, 1}, 0}); // 0.4 and a little
    const RoundedRect right = alignedToDevice(scale, {{0.4, 0, 3, 1}, 0});
    EXPECT_EQ(left.rect.maxX(), right.rect.minX());
}

TEST(QtPixelGrid, ShapesAreAlignedInTheirOwnCoordinates)
{
    EXPECT_EQ(alignedToDevice(QTransform::fromScale(2, 2), {{1.2, 1.3, 3, 3}, 1}), (RoundedRect{{1, 1.5, 3, 3}, 1}));
    EXPECT_EQ(alignedToDevice(QTransform(2, 0, 0, -2, 0, 40), {{1.2, 1.2, 3, 3}, 1}), (RoundedRect{{1, 1, 3, 3}, 1}))
        << "mirrored";
    EXPECT_EQ(alignedToDevice(QTransform(), {{3.2, 3.2, 0.1, 0.1}, 0}), (RoundedRect{{3, 3, 1, 1}, 0}))
        << "nothing vanishes";
}

TEST(QtPixelGrid, CirclesEmptyShapesAndWhatIsTurnedAreLeftAlone)
{
    const RoundedRect circle{{1.2, 1.2, 4, 4}, 2};
    EXPECT_EQ(alignedToDevice(QTransform(), circle), circle);
    const RoundedRect empty{{1.2, 1.2, 0, 4}, 0};
    EXPECT_EQ(alignedToDevice(QTransform(), empty), empty);
    const RoundedRect shape{{1.2, 1.2, 4, 4}, 0};
    EXPECT_EQ(alignedToDevice(QTransform().rotate(5), shape), shape);
    EXPECT_EQ(alignedToDevice(QTransform::fromScale(0, 1), shape), shape) << "no way back";
}

TEST(QtPixelGrid, LinesAreWholePixelsThick)
{
    EXPECT_EQ(lineAlignedToDevice(QTransform::fromScale(1.25, 1.5), 1), (CGSize{1 / 1.25, 2 / 1.5}));
    EXPECT_EQ(lineAlignedToDevice(QTransform(), 0.1), (CGSize{1, 1}));
    EXPECT_EQ(lineAlignedToDevice(QTransform::fromScale(1, -2), 1.5), (CGSize{2, 1.5}));
    EXPECT_EQ(lineAlignedToDevice(QTransform().rotate(45), 1.3), (CGSize{1.3, 1.3}));
}

} // namespace
} // namespace RVCore::QtPixelGridTests
