#include <CoreGraphics/CGColor.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::CGColorTests {
namespace {

TEST(CGColor, IsOpaqueBlackByDefault)
{
    EXPECT_EQ(CGColor(), (CGColor{0, 0, 0, 1}));
}

TEST(CGColor, DiffersInAnyComponent)
{
    const CGColor color{0.1, 0.2, 0.3, 0.4};
    EXPECT_EQ(color, (CGColor{0.1, 0.2, 0.3, 0.4}));
    EXPECT_NE(color, (CGColor{0, 0.2, 0.3, 0.4}));
    EXPECT_NE(color, (CGColor{0.1, 0, 0.3, 0.4}));
    EXPECT_NE(color, (CGColor{0.1, 0.2, 0, 0.4}));
    EXPECT_NE(color, (CGColor{0.1, 0.2, 0.3, 0}));
}

TEST(CGColor, IsDescribedByItsComponents)
{
    EXPECT_EQ(ValueBoxTraits<CGColor>::describe({0.5, 0, 1, 0.25}), "rgba(0.5, 0, 1, 0.25)");
}

TEST(CGColor, TravelsAsAValue)
{
    EXPECT_EQ(Value(CGColor{0.5, 0, 1, 1}).as<CGColor>(), (CGColor{0.5, 0, 1, 1}));
}

} // namespace
} // namespace RVCore::CGColorTests
