#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>

#include <cmath>

namespace RVCore::NSEventTests {
namespace {

using testing::HasSubstr;

TEST(NSEvent, saysWhatItWasMadeOf)
{
    NSEventContent content;
    content.type = NSEventType::keyDown;
    content.characters = "A";
    content.charactersIgnoringModifiers = "A";
    content.modifierFlags = NSEventModifierFlags::shift | NSEventModifierFlags::option;
    content.keyCode = 38;
    content.isARepeat = true;
    content.timestamp = 4.5;
    const auto event = make<NSEvent>(content);
    EXPECT_EQ(send(event, "type").as<NSEventType>(), NSEventType::keyDown);
    EXPECT_EQ(send(event, "characters").as<std::string>(), "A");
    EXPECT_EQ(send(event, "modifierFlags").as<std::uint32_t>(), (1U << 17) | (1U << 19));
    EXPECT_EQ(send(event, "keyCode").as<int>(), 38);
    EXPECT_TRUE(send(event, "isARepeat").as<bool>());
    EXPECT_EQ(send(event, "timestamp").as<double>(), 4.5);
    EXPECT_TRUE(send(event, "window").isNothing());
    EXPECT_TRUE(contains(event->modifierFlags(), NSEventModifierFlags::shift));
    EXPECT_FALSE(contains(event->modifierFlags(), NSEventModifierFlags::command));
    EXPECT_THAT(event->description(), HasSubstr(" keyDown 'A'>"));
}

TEST(NSEvent, describesWhereItHappened)
{
    NSEventContent content;
    content.type = NSEventType::rightMouseUp;
    content.locationInWindow = {3, 4};
    EXPECT_THAT(make<NSEvent>(content)->description(), HasSubstr(" rightMouseUp at (3, 4)>"));
}

TEST(NSEvent, doesNotKeepItsWindowAlive)
{
    NSEventContent content;
    auto window = make<NSWindow>();
    content.window = window;
    const auto event = make<NSEvent>(content);
    EXPECT_EQ(event->window(), window);
    window.reset();
    EXPECT_EQ(event->window(), nullptr);
}

TEST(NSEvent, numbersThatAreNoneRaise)
{
    NSEventContent content;
    content.locationInWindow.x = std::nan("");
    EXPECT_THAT(raised([&] { make<NSEvent>(content); }), HasSubstr("locationInWindow"));
    content = {};
    content.scrollingDelta.y = INFINITY;
    EXPECT_THAT(raised([&] { make<NSEvent>(content); }), HasSubstr("scrollingDelta"));
    content = {};
    content.type = static_cast<NSEventType>(99);
    EXPECT_THAT(raised([&] { make<NSEvent>(content); }), HasSubstr("there is no event type 99"));
}

} // namespace
} // namespace RVCore::NSEventTests
