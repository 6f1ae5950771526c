#include <CoreGraphics/CGGeometry.h>
#include <Foundation/NSException.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <sstream>

namespace RVCore::CGGeometryTests {
namespace {

constexpr CGFloat notANumber = std::numeric_limits<CGFloat>::quiet_NaN();
constexpr CGFloat infinity = std::numeric_limits<CGFloat>::infinity();

template <class T> std::string raisedFor(std::string_view name, const T& value)
{
    return raised([&] { requireFinite("Test.call", name, value); });
}

TEST(CGRect, EdgesFollowFromOriginAndSize)
{
    const CGRect rect(10, 20, 30, 50);
    EXPECT_EQ(rect.minX(), 10);
    EXPECT_EQ(rect.midX(), 25);
    EXPECT_EQ(rect.maxX(), 40);
    EXPECT_EQ(rect.minY(), 20);
    EXPECT_EQ(rect.midY(), 45);
    EXPECT_EQ(rect.maxY(), 70);
}

TEST(CGRect, IsEmptyWithoutWidthOrHeight)
{
    EXPECT_TRUE(CGRect().isEmpty());
    EXPECT_TRUE(CGRect(0, 0, 1, 0).isEmpty());
    EXPECT_TRUE(CGRect(0, 0, 0, 1).isEmpty());
    EXPECT_TRUE(CGRect(0, 0, -1, 5).isEmpty());
    EXPECT_FALSE(CGRect(0, 0, 0.5, 0.5).isEmpty());
}

TEST(CGRect, ContainsItsLeftAndTopEdgesOnly)
{
    const CGRect rect(10, 20, 30, 50);
    EXPECT_TRUE(rect.contains({10, 20}));
    EXPECT_TRUE(rect.contains({39.9, 69.9}));
    EXPECT_FALSE(rect.contains({40, 30}));
    EXPECT_FALSE(rect.contains({20, 70}));
    EXPECT_FALSE(rect.contains({9.9, 30}));
    EXPECT_FALSE(CGRect(10, 20, 0, 0).contains({10, 20}));
}

TEST(CGRect, IntersectionIsTheCommonPart)
{
    EXPECT_EQ(CGRect(0, 0, 10, 10).intersection({5, 6, 10, 10}), CGRect(5, 6, 5, 4));
    EXPECT_EQ(CGRect(0, 0, 10, 10).intersection({2, 3, 4, 5}), CGRect(2, 3, 4, 5));
}

TEST(CGRect, IntersectionOfNeighboursIsEmptyAtTheOrigin)
{
    EXPECT_EQ(CGRect(5, 5, 10, 10).intersection({15, 5, 10, 10}), CGRect());
    EXPECT_EQ(CGRect(5, 5, 10, 10).intersection({5, 30, 10, 10}), CGRect());
}

TEST(CGRect, UnionGoesAroundBoth)
{
    EXPECT_EQ(CGRect(0, 0, 10, 10).unionWith({20, -5, 5, 5}), CGRect(0, -5, 25, 15));
}

TEST(CGRect, UnionWithAnEmptyOneAddsNothing)
{
    const CGRect rect(3, 4, 5, 6);
    EXPECT_EQ(rect.unionWith({100, 100, 0, 10}), rect);
    EXPECT_EQ(CGRect(100, 100, 10, 0).unionWith(rect), rect);
}

TEST(CGRect, InsetMovesEveryEdgeInward)
{
    EXPECT_EQ(CGRect(0, 0, 20, 10).insetBy(2, 3), CGRect(2, 3, 16, 4));
    EXPECT_EQ(CGRect(0, 0, 20, 10).insetBy(-2, -3), CGRect(-2, -3, 24, 16));
}

TEST(CGGeometry, IsDescribedInOneForm)
{
    EXPECT_EQ(describe(CGPoint{1.5, -2}), "(1.5, -2)");
    EXPECT_EQ(describe(CGSize{30, 40.25}), "30 × 40.25");
    EXPECT_EQ(describe(CGRect(10, 20, 30, 40)), "(10, 20) 30 × 40");
    EXPECT_EQ(describe(EdgeInsets{2, 8, 3, 9}), "top 2, left 8, bottom 3, right 9");
}

TEST(CGGeometry, PrintsAsItIsDescribed)
{
    std::ostringstream stream;
    stream << CGRect(1, 2, 3, 4);
    EXPECT_EQ(stream.str(), "(1, 2) 3 × 4");
}

TEST(CGGeometry, FiniteValuesPass)
{
    EXPECT_EQ(raisedFor("frame", CGRect(-1e300, 0, 1e300, 5)), "nothing");
    EXPECT_EQ(raisedFor("insets", EdgeInsets{1, 2, 3, 4}), "nothing");
}

TEST(CGGeometry, TheComponentThatIsNotFiniteIsNamed)
{
    EXPECT_EQ(raisedFor("point", CGPoint{notANumber, 0}),
              "NSInvalidArgumentException: Test.call: point.x must be finite, got nan");
    EXPECT_EQ(raisedFor("point", CGPoint{0, -infinity}),
              "NSInvalidArgumentException: Test.call: point.y must be finite, got -inf");
    EXPECT_EQ(raisedFor("size", CGSize{infinity, 0}),
              "NSInvalidArgumentException: Test.call: size.width must be finite, got inf");
    EXPECT_EQ(raisedFor("size", CGSize{0, infinity}),
              "NSInvalidArgumentException: Test.call: size.height must be finite, got inf");
    EXPECT_EQ(raisedFor("frame", CGRect(0, notANumber, 1, 1)),
              "NSInvalidArgumentException: Test.call: frame.y must be finite, got nan");
    EXPECT_EQ(raisedFor("frame", CGRect(0, 0, 1, notANumber)),
              "NSInvalidArgumentException: Test.call: frame.height must be finite, got nan");
    EXPECT_EQ(raisedFor("insets", EdgeInsets{notANumber, 0, 0, 0}),
              "NSInvalidArgumentException: Test.call: insets.top must be finite, got nan");
    EXPECT_EQ(raisedFor("insets", EdgeInsets{0, notANumber, 0, 0}),
              "NSInvalidArgumentException: Test.call: insets.left must be finite, got nan");
    EXPECT_EQ(raisedFor("insets", EdgeInsets{0, 0, notANumber, 0}),
              "NSInvalidArgumentException: Test.call: insets.bottom must be finite, got nan");
    EXPECT_EQ(raisedFor("insets", EdgeInsets{0, 0, 0, notANumber}),
              "NSInvalidArgumentException: Test.call: insets.right must be finite, got nan");
}

TEST(CGGeometry, TravelsAsAValue)
{
    const Value value{CGRect(1, 2, 3, 4)};
    EXPECT_EQ(value.as<CGRect>(), CGRect(1, 2, 3, 4));
    EXPECT_THROW(value.as<CGSize>(), NSException);
}

} // namespace
} // namespace RVCore::CGGeometryTests
