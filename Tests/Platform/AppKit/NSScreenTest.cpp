#include "WindowTesting.h"

#include <AppKit/NSScreen.h>
#include <Foundation/Message.h>

namespace RVCore::NSScreenTests {
namespace {

class NSScreenTest : public WindowTest {};

TEST_F(NSScreenTest, CountsFromTheBottomOfTheMainScreen)
{
    desktop->setScreens(
        {{.frame = {0, 0, 1000, 800}, .visibleFrame = {0, 30, 1000, 720}},
         {.frame = {1000, 100, 500, 900}, .visibleFrame = {1000, 100, 500, 900}, .backingScale = 1.5}});
    const auto screens = NSScreen::screens();
    ASSERT_EQ(screens.size(), 2U);
    EXPECT_EQ(screens[0]->frame(), CGRect(0, 0, 1000, 800));
    EXPECT_EQ(screens[0]->visibleFrame(), CGRect(0, 50, 1000, 720));
    EXPECT_EQ(screens[1]->frame(), CGRect(1000, -200, 500, 900));
    EXPECT_EQ(screens[1]->backingScaleFactor(), 1.5);
    EXPECT_EQ(NSScreen::mainScreen()->frame(), screens[0]->frame());
}

TEST_F(NSScreenTest, IsReachedByName)
{
    const auto screens = send(NSScreen::staticClass(), "screens").as<std::vector<std::shared_ptr<NSScreen>>>();
    const auto main = send(NSScreen::staticClass(), "mainScreen").as<std::shared_ptr<NSScreen>>();
    ASSERT_EQ(screens.size(), 1U);
    EXPECT_EQ(send(main, "frame").as<CGRect>(), CGRect(0, 0, 1440, 900));
    EXPECT_EQ(send(main, "visibleFrame").as<CGRect>(), CGRect(0, 0, 1440, 876));
    EXPECT_EQ(send(main, "backingScaleFactor").as<double>(), 1);
}

} // namespace
} // namespace RVCore::NSScreenTests
