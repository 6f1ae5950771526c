#include <AppKit/NSCursor.h>

#include <gtest/gtest.h>

namespace RVCore::NSCursorTests {
namespace {

TEST(NSCursor, isEqualToOneOfTheSameShape)
{
    EXPECT_EQ(make<NSCursor>()->shape(), CursorShape::arrow);
    EXPECT_TRUE(make<NSCursor>()->isEqual(*make<NSCursor>(CursorShape::arrow)));
    EXPECT_EQ(make<NSCursor>()->hash(), make<NSCursor>(CursorShape::arrow)->hash());
    EXPECT_FALSE(make<NSCursor>()->isEqual(*make<NSCursor>(CursorShape::iBeam)));
}

} // namespace
} // namespace RVCore::NSCursorTests
