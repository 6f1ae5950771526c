#include <Backend/Backend.h>

#include <QtBackend/QtConversions.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::QtConversionsTests {
namespace {

TEST(QtConversions, GeometryKeepsItsNumbers)
{
    EXPECT_EQ(toQPointF({1.5, -2}), QPointF(1.5, -2));
    EXPECT_EQ(toQRectF({1, 2, 3.5, 4}), QRectF(1, 2, 3.5, 4));
    EXPECT_EQ(fromQSize({30, 40}), (CGSize{30, 40}));
}

TEST(QtConversions, TransformsMapPointsAlike)
{
    const CGAffineTransform transform{2, 0.5, -1, 3, 10, 20};
    const CGPoint mapped = transform.apply(CGPoint{3, 7});
    EXPECT_EQ(toQTransform(transform).map(QPointF(3, 7)), QPointF(mapped.x, mapped.y));
}

TEST(QtConversions, WindowSidesAreWholeAndCountable)
{
    EXPECT_EQ(toQWindowSize({100.2, 50}), QSize(101, 50));
    EXPECT_EQ(toQWindowSize({0, -3}), QSize(1, 1));
    EXPECT_EQ(toQWindowSize({1e300, 40000}), QSize(32767, 32767));
}

TEST(QtConversions, ColorsAreClampedToWhatADeviceCanShow)
{
    EXPECT_EQ(toQColor({1, 0, 0, 1}), QColor(255, 0, 0, 255));
    EXPECT_EQ(toQColor({2, -1, 0, 7}), QColor(255, 0, 0, 255));
    EXPECT_NEAR(toQColor({0, 0.5, 0, 0.25}).greenF(), 0.5, 1e-4);
    EXPECT_NEAR(toQColor({0, 0.5, 0, 0.25}).alphaF(), 0.25, 1e-4);
}

TEST(QtConversions, TextKeepsEveryScriptAndReplacesWhatIsNotText)
{
    const std::string text = "Größe 漢字 😀 שלום";
    EXPECT_EQ(fromQString(toQString(text)), text);
    EXPECT_EQ(toQString("a\xFF"
                        "b"),
              QString::fromUtf16(u"a\uFFFDb"));
    EXPECT_EQ(toQString(std::string("a\0b", 3)).size(), 3);
}

TEST(QtConversions, ShapesHaveCornersOfAtMostHalfASide)
{
    EXPECT_TRUE(toQPainterPath({{0, 0, 0, 10}, 5}).isEmpty());
    EXPECT_EQ(toQPainterPath({{0, 0, 20, 10}, 50}), toQPainterPath({{0, 0, 20, 10}, 5}));
    EXPECT_EQ(toQPainterPath({{0, 0, 20, 10}, -1}), toQPainterPath({{0, 0, 20, 10}, 0}));
    EXPECT_EQ(toQPainterPath({{1, 2, 20, 10}, 3}).boundingRect(), QRectF(1, 2, 20, 10));
}

TEST(QtConversions, FontsAreOfWholeSizesAndScaled)
{
    Backend::shared();
    for (const CGFloat size : {0.25, 1.0, 12.0, 12.5, 13.0, 256.0, 1000.0}) {
        const QtFont font = toQtFont({.size = size});
        EXPECT_GE(font.font.pixelSize(), 1);
        EXPECT_LE(font.font.pixelSize(), 256);
        EXPECT_NEAR(font.font.pixelSize() * font.scale, size, 1e-9);
    }
    EXPECT_EQ(toQtFont({.size = 13}).scale, 1);
}

TEST(QtConversions, FontsHaveTheirFamilyAndWeight)
{
    Backend::shared();
    const QFont font = toQtFont({.family = "DejaVu Sans", .size = 13, .bold = true}).font;
    EXPECT_EQ(font.families(), QStringList("DejaVu Sans"));
    EXPECT_TRUE(font.bold());
    EXPECT_FALSE(toQtFont({}).font.bold());
}

TEST(QtConversions, PlacesAreWholeAndCountable)
{
    EXPECT_EQ(toQDesktopPoint({10.4, -20.6}), QPoint(10, -21));
    EXPECT_EQ(toQDesktopPoint({1e300, -1e6}), QPoint(32767, -32767));
    EXPECT_EQ(fromQRect(QRect(1, 2, 30, 40)), CGRect(1, 2, 30, 40));
}

TEST(QtConversions, AStyleIsWhatTheDesktopPutsAroundAWindow)
{
    const Qt::WindowFlags all = toQWindowFlags({});
    for (const Qt::WindowType flag :
         {Qt::WindowTitleHint, Qt::WindowCloseButtonHint, Qt::WindowMinimizeButtonHint, Qt::WindowMaximizeButtonHint})
        EXPECT_TRUE(all.testFlag(flag)) << flag;
    const Qt::WindowFlags bare = toQWindowFlags({.isClosable = false, .isMinimizable = false, .isResizable = false});
    EXPECT_TRUE(bare.testFlag(Qt::WindowTitleHint));
    for (const Qt::WindowType flag :
         {Qt::WindowCloseButtonHint, Qt::WindowMinimizeButtonHint, Qt::WindowMaximizeButtonHint})
        EXPECT_FALSE(bare.testFlag(flag)) << flag;
    EXPECT_EQ(toQWindowFlags({.isTitled = false}), Qt::WindowFlags(Qt::Window | Qt::FramelessWindowHint));
}

} // namespace
} // namespace RVCore::QtConversionsTests
