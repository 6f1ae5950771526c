#include <AppKit/NSColor.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>

namespace RVCore::NSColorTests {
namespace {

using testing::HasSubstr;

TEST(NSColor, EqualsAColourOfTheSameComponents)
{
    const auto color = makeColor(1, 0.5, 0.25), same = makeColor(1, 0.5, 0.25, 1), other = makeColor(1, 0.5, 0.25, 0);
    EXPECT_TRUE(color->isEqual(*same));
    EXPECT_EQ(color->hash(), same->hash());
    EXPECT_FALSE(color->isEqual(*other));
    EXPECT_FALSE(color->isEqual(*make<NSObject>()));
    EXPECT_EQ(color->description(), "<NSColor: rgba(1, 0.5, 0.25, 1)>");
}

TEST(NSColor, ComponentsOutOfRangeRaise)
{
    EXPECT_THAT(raised([] { makeColor(1.5, 0, 0); }), HasSubstr("between 0 and 1, got 1.5"));
    EXPECT_THAT(raised([] { makeColor(0, 0, 0, -0.1); }), HasSubstr("got -0.1"));
    EXPECT_THAT(raised([] { make<NSColor>(CGColor{0, std::nan(""), 0, 1}); }), HasSubstr("got nan"));
}

TEST(NSColor, SomeHaveNames)
{
    const auto named = [](const char* name) {
        return send(NSColor::staticClass(), name).as<std::shared_ptr<NSColor>>()->cgColor();
    };
    EXPECT_EQ(named("whiteColor"), (CGColor{1, 1, 1, 1}));
    EXPECT_EQ(named("grayColor"), (CGColor{0.5, 0.5, 0.5, 1}));
    EXPECT_EQ(named("darkGrayColor"), (CGColor{1.0 / 3, 1.0 / 3, 1.0 / 3, 1}));
    EXPECT_EQ(named("blackColor"), (CGColor{0, 0, 0, 1}));
    EXPECT_EQ(named("clearColor"), (CGColor{0, 0, 0, 0}));
    EXPECT_TRUE(colorWithCGColor({0, 1, 0, 0.5})->isEqual(*makeColor(0, 1, 0, 0.5)));
}

TEST(NSColor, IsMadeAndReadByName)
{
    const auto color = send(NSColor::staticClass(), "colorWithCGColor:", CGColor{0, 1, 0, 0.5});
    EXPECT_EQ(send(color.as<std::shared_ptr<NSColor>>(), "CGColor").as<CGColor>(), (CGColor{0, 1, 0, 0.5}));
}

} // namespace
} // namespace RVCore::NSColorTests
