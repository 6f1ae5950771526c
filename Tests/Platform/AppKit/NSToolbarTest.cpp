#include "ControlTesting.h"
#include "ToolbarTesting.h"

#include <AppKit/NSImage.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>

namespace RVCore::NSToolbarTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class NSToolbarTest : public ToolbarTest {};

TEST_F(NSToolbarTest, aToolbarIsEmptyAndVisibleAtFirst)
{
    const auto plain = make<NSToolbar>();
    EXPECT_EQ(plain->identifier(), "");
    EXPECT_EQ(toolbar->identifier(), "main");
    EXPECT_THAT(plain->items(), IsEmpty());
    EXPECT_TRUE(plain->isVisible());
    EXPECT_EQ(plain->window(), nullptr);
}

TEST_F(NSToolbarTest, itemsAreInTheOrderOfTheirIndices)
{
    add("b");
    toolbar->insertItem(makeItem("a"), 0);
    toolbar->insertItem(makeItem("c"), 2);
    EXPECT_THAT(labelsOf(toolbar->items()), ElementsAre("a", "b", "c"));
    EXPECT_EQ(toolbar->items()[1]->toolbar(), toolbar.get());
    toolbar->removeItem(1);
    EXPECT_THAT(labelsOf(toolbar->items()), ElementsAre("a", "c"));
}

TEST_F(NSToolbarTest, whatCannotBeInsertedRaisesAndChangesNothing)
{
    const auto item = add("a");
    const auto other = make<NSToolbar>();
    EXPECT_EQ(raised([&] { toolbar->insertItem(nullptr, 0); }),
              "NSInvalidArgumentException: NSToolbar.insertItem:atIndex:: there is no item");
    EXPECT_EQ(raised([&] { toolbar->insertItem(item, 1); }),
              "NSInvalidArgumentException: NSToolbar.insertItem:atIndex:: " + item->description() +
                  " is in this toolbar already");
    EXPECT_EQ(raised([&] { other->insertItem(item, 0); }),
              "NSInvalidArgumentException: NSToolbar.insertItem:atIndex:: " + item->description() +
                  " is in another toolbar already");
    EXPECT_EQ(raised([&] { toolbar->insertItem(makeItem("b"), 2); }),
              "NSInvalidArgumentException: NSToolbar.insertItem:atIndex:: index 2 is beyond the end of 1 items");
    EXPECT_EQ(toolbar->items().size(), 1U);
    EXPECT_THAT(other->items(), IsEmpty());
}

TEST_F(NSToolbarTest, removingAnIndexThatNoItemHasRaises)
{
    add("a");
    EXPECT_EQ(raised([&] { toolbar->removeItem(1); }),
              "NSInvalidArgumentException: NSToolbar.removeItemAtIndex:: there is no index 1 among 1 items");
    EXPECT_THAT(raised([&] { send(toolbar, "removeItemAtIndex:", -1); }), HasSubstr("removeItemAtIndex:"));
    EXPECT_EQ(toolbar->items().size(), 1U);
}

TEST_F(NSToolbarTest, anItemThatWasTakenOutCanGoElsewhere)
{
    const auto item = add("a");
    toolbar->removeItem(0);
    EXPECT_EQ(item->toolbar(), nullptr);
    const auto other = make<NSToolbar>();
    other->insertItem(item, 0);
    EXPECT_EQ(item->toolbar(), other.get());
}

TEST_F(NSToolbarTest, anItemKnowsNoToolbarThatHasDied)
{
    auto other = make<NSToolbar>();
    const auto item = makeItem("a");
    other->insertItem(item, 0);
    other.reset();
    EXPECT_EQ(item->toolbar(), nullptr);
    item->setLabel("b");
}

TEST_F(NSToolbarTest, anItemDiesWithItsPlaceInTheToolbar)
{
    const std::weak_ptr<NSToolbarItem> item = add("a");
    window->orderFront();
    EXPECT_FALSE(item.expired());
    toolbar->removeItem(0);
    EXPECT_TRUE(item.expired());
    screenOf(*window).flushFrame();
}

TEST_F(NSToolbarTest, itemsThatHaveRoomAreVisibleAsTheWindowIsNow)
{
    for (const char* label : {"abcd", "efgh", "ijkl"}) // 38 points each
        add(label);
    EXPECT_EQ(toolbar->visibleItems().size(), 3U);
    window->setContentSize({130, 100}); // needs 6 + 3 × 38 + 2 × 2 + 6
    EXPECT_EQ(toolbar->visibleItems().size(), 3U);
    window->setContentSize({129, 100});
    EXPECT_THAT(labelsOf(toolbar->visibleItems()), ElementsAre("abcd", "efgh"));
    toolbar->items()[0]->setLabel("much longer");
    EXPECT_THAT(labelsOf(toolbar->visibleItems()), ElementsAre("much longer"));
    toolbar->items()[0]->setLabel("");
    EXPECT_EQ(toolbar->visibleItems().size(), 3U);
    EXPECT_EQ(make<NSToolbar>()->visibleItems().size(), 0U);
}

TEST_F(NSToolbarTest, visibleItemsAreValidatedTogether)
{
    const auto log = make<ActionLog>();
    const auto with = add("a");
    with->setTarget(log);
    with->setAction("take:");
    with->setEnabled(false);
    const auto without = add("b");
    addSpace(NSToolbarSpaceItemIdentifier);
    toolbar->validateVisibleItems();
    EXPECT_TRUE(with->isEnabled());
    EXPECT_FALSE(without->isEnabled());
}

TEST_F(NSToolbarTest, everythingCanBeReachedByName)
{
    const ObjectRef made =
        send(send(NSToolbar::staticClass(), "alloc").as<ObjectRef>(), "initWithIdentifier:", "tools").as<ObjectRef>();
    EXPECT_EQ(send(made, "identifier").as<std::string>(), "tools");
    const auto item = makeItem("a");
    send(made, "insertItem:atIndex:", item, 0);
    EXPECT_EQ(send(made, "items").as<std::vector<ObjectRef>>().size(), 1U);
    EXPECT_EQ(send(made, "visibleItems").as<std::vector<ObjectRef>>().size(), 1U);
    EXPECT_EQ(send(item, "toolbar").as<ObjectRef>(), made);
    send(made, "validateVisibleItems");
    EXPECT_FALSE(item->isEnabled());
    EXPECT_TRUE(send(made, "isVisible").as<bool>());
    send(made, "setVisible:", false);
    EXPECT_FALSE(send(made, "isVisible").as<bool>());
    EXPECT_TRUE(send(made, "window").isNothing());
    send(window, "setToolbar:", made);
    EXPECT_EQ(send(window, "toolbar").as<ObjectRef>(), made);
    EXPECT_EQ(send(made, "window").as<ObjectRef>(), window);
    send(made, "removeItemAtIndex:", 0);
    EXPECT_EQ(item->toolbar(), nullptr);
    send(window, "setToolbar:", Value());
    EXPECT_EQ(window->toolbar(), nullptr);
}

} // namespace
} // namespace RVCore::NSToolbarTests
