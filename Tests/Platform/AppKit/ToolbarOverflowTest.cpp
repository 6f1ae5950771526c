#include "ControlTesting.h"
#include "ToolbarTesting.h"

#include <AppKit/NSAccessibility.h>

#include <gmock/gmock.h>

#include <cstdlib>

namespace RVCore::ToolbarOverflowTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// A bar of 130 points, in which the first two of four items have room, and the chevron at its right end.
class ToolbarOverflowTest : public ToolbarTest {
protected:
    ToolbarOverflowTest()
    {
        window->setFrame({400, 400, 130, 156});
        window->makeKeyAndOrderFront();
        for (const char* label : {"abcd", "efgh", "ijkl", "mnop"})
            add(label)->setOnAction([this, label] { pressed.emplace_back(label); });
        window->layoutIfNeeded();
    }

    void pressChevron() { click(*window, {115, barHeight / 2}); }
    // Null while the list is closed.
    std::shared_ptr<NSWindow> list() const
    {
        const auto children = window->childWindows();
        return children.empty() ? nullptr : children.front();
    }
    // The elements of the list that can be seen and reached.
    std::vector<std::string> names() const
    {
        std::vector<std::string> result;
        for (const auto& element : accessibleElementsOf(*list()))
            result.push_back(element->name());
        return result;
    }
    std::shared_ptr<AccessibleElement> row(std::size_t index) const
    {
        return accessibleElementsOf(*list()).at(index);
    }

    std::vector<std::string> pressed;
};

TEST_F(ToolbarOverflowTest, whatHasNoRoomIsBehindTheChevron)
{
    EXPECT_EQ(accessibilityTree(*window), "window ''\n"
                                          "  toolbar ''\n"
                                          "    button 'abcd'\n"
                                          "    button 'efgh'\n"
                                          "    button 'More'\n");
    EXPECT_EQ(list(), nullptr);
    pressChevron();
    ASSERT_TRUE(list());
    EXPECT_THAT(names(), ElementsAre("ijkl", "mnop"));
    EXPECT_LT(list()->frame().maxY(), window->frame().maxY()) << "it hangs down from the chevron";
}

TEST_F(ToolbarOverflowTest, theChevronComesAndGoesWithTheRoom)
{
    screenOf(*window).userResize({300, 134});
    EXPECT_THAT(accessibilityTree(*window), Not(HasSubstr("More")));
    screenOf(*window).userResize({75, 134});
    EXPECT_EQ(accessibilityTree(*window), "window ''\n  toolbar ''\n    button 'abcd'\n    button 'More'\n");
    screenOf(*window).userResize({40, 134});
    EXPECT_EQ(accessibilityTree(*window), "window ''\n  toolbar ''\n    button 'More'\n");
    screenOf(*window).userResize({300, 134});
    EXPECT_EQ(toolbar->visibleItems().size(), 4U);
}

TEST_F(ToolbarOverflowTest, aClickInTheListClosesItAndSendsTheAction)
{
    pressChevron();
    const CGRect frame = row(1)->frame();
    click(*list(), {frame.midX(), frame.midY()});
    EXPECT_THAT(pressed, ElementsAre("mnop"));
    EXPECT_EQ(list(), nullptr);
    EXPECT_EQ(application.keyWindow(), window.get());
}

TEST_F(ToolbarOverflowTest, theListIsWorkedByKeys)
{
    window->selectPreviousKeyView();
    type(*window, NSKey::space);
    ASSERT_TRUE(list());
    EXPECT_TRUE(row(0)->state().isFocused);
    type(*list(), NSKey::down);
    EXPECT_TRUE(row(1)->state().isFocused);
    type(*list(), NSKey::down);
    EXPECT_TRUE(row(0)->state().isFocused) << "round the end";
    type(*list(), NSKey::up);
    EXPECT_TRUE(row(1)->state().isFocused);
    type(*list(), NSKey::carriageReturn);
    EXPECT_THAT(pressed, ElementsAre("mnop"));
    EXPECT_EQ(list(), nullptr);
    type(*window, NSKey::space);
    type(*list(), NSKey::escape);
    EXPECT_EQ(list(), nullptr);
}

TEST_F(ToolbarOverflowTest, keysPassOverWhatIsDisabled)
{
    toolbar->items()[2]->setEnabled(false);
    pressChevron();
    EXPECT_TRUE(row(1)->state().isFocused);
    type(*list(), NSKey::down);
    EXPECT_TRUE(row(1)->state().isFocused);
    toolbar->items()[3]->setEnabled(false);
    EXPECT_FALSE(row(1)->state().isEnabled) << "the list follows its items";
    type(*list(), NSKey::down);
    EXPECT_FALSE(row(0)->press());
    EXPECT_TRUE(pressed.empty());
}

TEST_F(ToolbarOverflowTest, theChevronAndAPressElsewhereCloseTheList)
{
    pressChevron();
    pressChevron();
    EXPECT_EQ(list(), nullptr);
    pressChevron();
    click(*window, {20, 100});
    EXPECT_EQ(list(), nullptr);
}

TEST_F(ToolbarOverflowTest, theListClosesWhenItIsNoLongerTrue)
{
    pressChevron();
    screenOf(*window).userResize({300, 134});
    window->layoutIfNeeded();
    EXPECT_EQ(list(), nullptr);
    screenOf(*window).userResize({130, 134});
    window->layoutIfNeeded();
    pressChevron();
    toolbar->removeItem(3);
    EXPECT_EQ(list(), nullptr);
    pressChevron();
    toolbar->setVisible(false);
    EXPECT_EQ(list(), nullptr);
    toolbar->setVisible(true);
    window->layoutIfNeeded();
    pressChevron();
    window->setToolbar(nullptr);
    EXPECT_EQ(list(), nullptr);
}

TEST_F(ToolbarOverflowTest, anItemOfTheListMayDoAnything)
{
    toolbar->items()[2]->setOnAction([this] { window->setToolbar(nullptr); });
    pressChevron();
    EXPECT_TRUE(row(0)->press());
    EXPECT_EQ(window->toolbar(), nullptr);
}

TEST_F(ToolbarOverflowTest, theProgramMayEndWhileTheListIsOpen)
{
    pressChevron();
    window.reset(); // the application holds what is open
    EXPECT_EXIT(std::exit(0), testing::ExitedWithCode(0), "^$");
}

TEST_F(ToolbarOverflowTest, assistiveTechnologyOpensAndUsesTheList)
{
    const auto chevron = accessibleElementsOf(*window).at(0)->children().at(2);
    EXPECT_TRUE(chevron->press());
    EXPECT_TRUE(row(0)->press());
    EXPECT_THAT(pressed, ElementsAre("ijkl"));
}

TEST_F(ToolbarOverflowTest, aLongListShowsAPartThatFollowsFocusAndWheel)
{
    for (int i = 0; i < 1000; ++i)
        add("Item " + std::to_string(i));
    window->layoutIfNeeded();
    pressChevron();
    ASSERT_EQ(names().size(), 1002U);
    const CGFloat height = list()->contentSize().height;
    EXPECT_LT(height, 400);
    EXPECT_EQ(row(0)->frame().size.height, 28);
    const auto isInSight = [&](std::size_t index) {
        const CGRect frame = row(index)->frame();
        return frame.minY() >= 0 && frame.maxY() <= height;
    };
    EXPECT_TRUE(isInSight(0));
    EXPECT_FALSE(isInSight(1001));
    type(*list(), NSKey::up);
    EXPECT_TRUE(isInSight(1001));
    EXPECT_FALSE(isInSight(0));
    type(*list(), NSKey::down);
    EXPECT_TRUE(isInSight(0));
    input(*list(), {.kind = InputKind::scrolled, .location = {30, 50}, .scroll = {0, -1e6}});
    EXPECT_TRUE(isInSight(1001));
    input(*list(), {.kind = InputKind::scrolled, .location = {30, 50}, .scroll = {0, 1e6}});
    EXPECT_TRUE(isInSight(0));
}

} // namespace
} // namespace RVCore::ToolbarOverflowTests
