#include "ControlTesting.h"
#include "ToolbarTesting.h"

#include <AppKit/NSAccessibility.h>
#include <AppKit/NSImage.h>
#include <AppKit/NSTextField.h>
#include <AppKit/ToolbarView.h>

#include <gmock/gmock.h>

namespace RVCore::ToolbarViewTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ToolbarViewTest : public ToolbarTest {
protected:
    ToolbarViewTest() { window->makeKeyAndOrderFront(); }

    // What is pressed, by where it lies.
    void clickItem(CGFloat x)
    {
        window->layoutIfNeeded();
        click(*window, {x, barHeight / 2});
    }
    std::string tree() { return accessibilityTree(*window); }
    std::vector<std::shared_ptr<AccessibleElement>> inBar()
    {
        return accessibleElementsOf(*window).back()->children();
    }
    std::vector<CGRect> framesInBar()
    {
        std::vector<CGRect> frames;
        for (const auto& element : inBar())
            frames.push_back(element->frame());
        return frames;
    }

    std::shared_ptr<ActionLog> log = make<ActionLog>();
};

TEST_F(ToolbarViewTest, itemsStandSideBySideFromTheLeft)
{
    add("abcd");
    add("ab");
    addSpace(NSToolbarSpaceItemIdentifier);
    add("");
    EXPECT_THAT(framesInBar(), ElementsAre(CGRect(6, 3, 38, 28), CGRect(46, 3, 25, 28), CGRect(91, 3, 12, 28)));
}

TEST_F(ToolbarViewTest, aFlexibleSpacePushesTheOthersToTheEnds)
{
    add("ab");
    addSpace(NSToolbarFlexibleSpaceItemIdentifier);
    add("ab");
    EXPECT_THAT(framesInBar(), ElementsAre(CGRect(6, 3, 25, 28), CGRect(269, 3, 25, 28)));
    window->setContentSize({200, 100});
    EXPECT_THAT(framesInBar(), ElementsAre(CGRect(6, 3, 25, 28), CGRect(169, 3, 25, 28)));
}

TEST_F(ToolbarViewTest, picturesAreNoLargerThanTheBarIsMadeFor)
{
    const auto draw = [](Canvas&, const CGRect&) {};
    const auto small = add("");
    small->setImage(make<NSImage>(CGSize{16, 16}, draw));
    const auto large = add("ab");
    large->setImage(make<NSImage>(CGSize{100, 50}, draw));
    EXPECT_THAT(framesInBar(), ElementsAre(CGRect(6, 3, 28, 28), CGRect(36, 3, 12 + 20 + 4 + 13, 28)));
}

TEST_F(ToolbarViewTest, aLongLabelEndsInAnEllipsis)
{
    add(std::string(500, 'x'));
    window->setContentSize({400, 100});
    EXPECT_THAT(framesInBar(), ElementsAre(CGRect(6, 3, 180, 28)));
}

TEST_F(ToolbarViewTest, anEmptyToolbarIsABarWithNothingInIt)
{
    screenOf(*window).flushFrame();
    EXPECT_EQ(tree(), "window ''\n  toolbar ''\n");
    EXPECT_THAT(screenOf(*window).lastFrame().text(), HasSubstr("toolbar"));
}

TEST_F(ToolbarViewTest, aClickSendsTheActionToTheTarget)
{
    const auto item = add("Save");
    item->setTarget(log);
    item->setAction("take:");
    clickItem(20);
    EXPECT_THAT(log->senders, ElementsAre(item));
    clickItem(100);
    EXPECT_EQ(log->senders.size(), 1U) << "beside it";
}

TEST_F(ToolbarViewTest, aDisabledItemDoesNothing)
{
    const auto item = add("Save");
    item->setTarget(log);
    item->setAction("take:");
    item->setEnabled(false);
    clickItem(20);
    EXPECT_THAT(log->senders, IsEmpty());
    EXPECT_THAT(tree(), HasSubstr("button 'Save' disabled"));
    item->validate();
    clickItem(20);
    EXPECT_EQ(log->senders.size(), 1U);
}

TEST_F(ToolbarViewTest, aTargetThatHasDiedGetsNothing)
{
    const auto item = add("Save");
    item->setTarget(log);
    item->setAction("take:");
    log.reset();
    clickItem(20);
}

TEST_F(ToolbarViewTest, anItemMayTakeItselfOut)
{
    add("Save")->setOnAction([this] { toolbar->removeItem(0); });
    clickItem(20);
    EXPECT_THAT(toolbar->items(), IsEmpty());
    EXPECT_THAT(inBar(), IsEmpty());
}

TEST_F(ToolbarViewTest, anItemMayCloseTheWindow)
{
    add("Close")->setOnAction([this] { window->close(); });
    clickItem(20);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(ToolbarViewTest, aPressLeavesTheKeyboardFocusToWhatTheItemWorksOn)
{
    const auto view = make<ActionView>();
    window->contentView()->addSubview(view);
    window->makeFirstResponder(view.get());
    add("Do")->setAction("takeInView:");
    clickItem(15);
    EXPECT_EQ(window->firstResponder(), view.get());
    EXPECT_EQ(view->count, 1);
}

TEST_F(ToolbarViewTest, tabReachesTheItemsAfterTheContent)
{
    const auto view = make<ActionView>();
    view->setFrame({0, 0, 10, 10});
    window->contentView()->addSubview(view);
    const auto save = add("Save");
    save->setTarget(log);
    save->setAction("take:");
    add("Off")->setEnabled(false);
    add("Open");
    window->layoutIfNeeded();
    window->selectNextKeyView();
    EXPECT_EQ(window->firstResponder(), view.get());
    type(*window, NSKey::tab);
    EXPECT_THAT(tree(), HasSubstr("'Save' focused"));
    type(*window, NSKey::space);
    type(*window, NSKey::carriageReturn);
    EXPECT_EQ(log->senders.size(), 2U);
    type(*window, NSKey::tab);
    EXPECT_THAT(tree(), HasSubstr("'Open' focused"));
    type(*window, NSKey::tab);
    EXPECT_EQ(window->firstResponder(), view.get());
    window->selectPreviousKeyView();
    EXPECT_THAT(tree(), HasSubstr("'Open' focused"));
}

TEST_F(ToolbarViewTest, theFocusLeavesWithTheToolbar)
{
    add("Save");
    window->layoutIfNeeded();
    window->selectNextKeyView();
    EXPECT_NE(window->firstResponder(), window.get());
    toolbar->setVisible(false);
    EXPECT_EQ(window->firstResponder(), window.get());
    window->selectNextKeyView();
    EXPECT_EQ(window->firstResponder(), window.get());
    EXPECT_THAT(tree(), Not(HasSubstr("toolbar")));
    toolbar->setVisible(true);
    window->selectNextKeyView();
    EXPECT_NE(window->firstResponder(), window.get());
    window->setToolbar(nullptr);
    EXPECT_EQ(window->firstResponder(), window.get());
}

TEST_F(ToolbarViewTest, assistiveTechnologyFindsTheItemsAndPressesThem)
{
    const auto item = add("Save");
    item->setTarget(log);
    item->setAction("take:");
    EXPECT_EQ(tree(), "window ''\n  toolbar ''\n    button 'Save'\n");
    const auto button = inBar().at(0);
    EXPECT_TRUE(button->state().isPressable);
    EXPECT_EQ(button->parent()->role(), AccessibleRole::toolbar);
    EXPECT_EQ(button->parent()->frame(), CGRect(0, 0, 300, barHeight));
    EXPECT_TRUE(button->press());
    EXPECT_EQ(log->senders.size(), 1U);
    item->setEnabled(false);
    EXPECT_FALSE(button->press());
    screenOf(*window).takeAccessibilityChanges();
    add("Open");
    window->layoutIfNeeded();
    EXPECT_THAT(screenOf(*window).takeAccessibilityChanges(),
                testing::Contains(std::pair(std::string(), AccessibleChange::children)));
}

TEST_F(ToolbarViewTest, whatTheContentHoldsLiesBelowTheBar)
{
    const auto view = make<NSView>(CGRect(0, 90, 20, 10));
    view->setAccessibilityLabel("Corner");
    window->contentView()->addSubview(view);
    EXPECT_EQ(accessibleElementsOf(*window).at(0)->frame(), CGRect(0, barHeight, 20, 10));
}

TEST_F(ToolbarViewTest, theLookFollowsPointerAndButton)
{
    add("Save");
    input(*window, {.kind = InputKind::pointerMoved, .location = {20, 15}});
    screenOf(*window).flushFrame();
    EXPECT_THAT(screenOf(*window).lastFrame().text(), HasSubstr("tool button, hovered"));
    input(*window, {.kind = InputKind::buttonPressed, .location = {20, 15}});
    screenOf(*window).flushFrame();
    EXPECT_THAT(screenOf(*window).lastFrame().text(), HasSubstr("tool button, pressed"));
    input(*window, {.kind = InputKind::buttonReleased, .location = {20, 15}});
    input(*window, {.kind = InputKind::pointerMoved, .location = {20, 80}});
    application.setAppearance(Appearance::dark);
    toolbar->items()[0]->setEnabled(false);
    screenOf(*window).flushFrame();
    EXPECT_THAT(screenOf(*window).lastFrame().text(), HasSubstr("tool button, disabled, dark"));
    EXPECT_THAT(screenOf(*window).lastFrame().text(), HasSubstr("toolbar, dark"));
    application.setAppearance(std::nullopt);
}

TEST_F(ToolbarViewTest, nothingIsPaintedWhileNothingChanges)
{
    const auto item = add("Save");
    screenOf(*window).flushFrame();
    EXPECT_FALSE(screenOf(*window).flushFrame());
    item->setLabel("Save");
    item->setEnabled(true);
    EXPECT_FALSE(screenOf(*window).needsFrame());
    item->setLabel("Open");
    EXPECT_TRUE(screenOf(*window).flushFrame());
    EXPECT_FALSE(screenOf(*window).flushFrame());
}

TEST_F(ToolbarViewTest, aThousandItemsAreHandledByTheFewThatShow)
{
    for (int i = 0; i < 1000; ++i)
        add("Item " + std::to_string(i));
    window->layoutIfNeeded();
    EXPECT_EQ(inBar().size(), 6U) << "five items and what opens the others";
    window->setContentSize({32000, 100});
    EXPECT_GT(inBar().size(), 400U);
    window->setContentSize({300, 100});
    EXPECT_EQ(inBar().size(), 6U);
    while (!toolbar->items().empty())
        toolbar->removeItem(toolbar->items().size() - 1);
    EXPECT_THAT(inBar(), IsEmpty());
}

} // namespace
} // namespace RVCore::ToolbarViewTests
