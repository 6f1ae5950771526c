#include <AppKit/NSTrackingArea.h>
#include <AppKit/NSView.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>

namespace RVCore::NSTrackingAreaTests {
namespace {

using testing::HasSubstr;
using Options = NSTrackingAreaOptions;

TEST(NSTrackingArea, knowsItsOwnerWithoutKeepingItAlive)
{
    auto view = make<NSView>();
    const auto area = make<NSTrackingArea>(CGRect(1, 2, 3, 4), static_cast<Options>(0x281), *view);
    EXPECT_EQ(area->rect(), CGRect(1, 2, 3, 4));
    EXPECT_EQ(area->options(), Options::mouseEnteredAndExited | Options::activeAlways | Options::inVisibleRect);
    EXPECT_EQ(area->owner(), view);
    view.reset();
    EXPECT_EQ(area->owner(), nullptr);
}

TEST(NSTrackingArea, optionsThatSayTooLittleOrTooMuchRaise)
{
    const auto view = make<NSView>();
    const auto reason = [&](int options) {
        return raised([&] { make<NSTrackingArea>(CGRect(), static_cast<Options>(options), *view); });
    };
    EXPECT_THAT(reason(0x80), HasSubstr("name nothing to tell the owner"));
    EXPECT_THAT(reason(0x01), HasSubstr("say 0 times when"));
    EXPECT_THAT(reason(0x01 | 0x80 | 0x40), HasSubstr("say 2 times when"));
    EXPECT_THAT(reason(0x01 | 0x80 | 0x1000), HasSubstr("no options 4096"));
}

TEST(NSTrackingArea, optionsContainWhatTheyHaveAllOf)
{
    const Options hover = Options::mouseEnteredAndExited | Options::activeAlways;
    EXPECT_TRUE(contains(hover, Options::activeAlways));
    EXPECT_TRUE(contains(hover, hover));
    EXPECT_FALSE(contains(hover, Options::mouseMoved | Options::activeAlways));
}

} // namespace
} // namespace RVCore::NSTrackingAreaTests
