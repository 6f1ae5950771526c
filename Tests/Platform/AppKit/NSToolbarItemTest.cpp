#include "ControlTesting.h"
#include "ToolbarTesting.h"

#include <AppKit/NSImage.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>

#include <unordered_map>

namespace RVCore::NSToolbarItemTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class NSToolbarItemTest : public ToolbarTest {
protected:
    std::shared_ptr<NSToolbarItem> item = makeItem("Save");
    std::shared_ptr<ActionLog> log = make<ActionLog>();
};

TEST_F(NSToolbarItemTest, anItemIsEmptyAndEnabledAtFirst)
{
    const auto plain = make<NSToolbarItem>();
    EXPECT_EQ(plain->itemIdentifier(), "");
    EXPECT_EQ(plain->label(), "");
    EXPECT_EQ(plain->image(), nullptr);
    EXPECT_EQ(plain->target(), nullptr);
    EXPECT_EQ(plain->action(), std::nullopt);
    EXPECT_EQ(plain->toolbar(), nullptr);
    EXPECT_TRUE(plain->isEnabled());
    EXPECT_FALSE(plain->isSpace());
}

TEST_F(NSToolbarItemTest, gapsAreKnownByTheirIdentifier)
{
    EXPECT_TRUE(make<NSToolbarItem>(NSToolbarSpaceItemIdentifier)->isSpace());
    EXPECT_FALSE(make<NSToolbarItem>(NSToolbarSpaceItemIdentifier)->isFlexibleSpace());
    EXPECT_TRUE(make<NSToolbarItem>(NSToolbarFlexibleSpaceItemIdentifier)->isSpace());
    EXPECT_TRUE(make<NSToolbarItem>(NSToolbarFlexibleSpaceItemIdentifier)->isFlexibleSpace());
}

TEST_F(NSToolbarItemTest, theActionGoesToTheTargetWithTheItem)
{
    item->setTarget(log);
    item->setAction("take:");
    EXPECT_TRUE(item->sendAction());
    EXPECT_THAT(log->senders, ElementsAre(item));
    item->setAction("takeNothing");
    EXPECT_TRUE(item->sendAction());
    EXPECT_EQ(log->plainCount, 1);
}

TEST_F(NSToolbarItemTest, withoutAnActionNothingIsSent)
{
    item->setTarget(log);
    EXPECT_FALSE(item->sendAction());
}

TEST_F(NSToolbarItemTest, aTargetThatDoesNotAnswerRaises)
{
    item->setTarget(log);
    item->setAction("unknown:");
    EXPECT_THAT(raised([&] { item->sendAction(); }), HasSubstr("does not answer unknown:"));
}

TEST_F(NSToolbarItemTest, aTargetThatHasDiedGetsNothingAndDisables)
{
    item->setTarget(log);
    item->setAction("take:");
    log.reset();
    EXPECT_EQ(item->target(), nullptr);
    EXPECT_FALSE(item->sendAction());
    item->validate();
    EXPECT_FALSE(item->isEnabled());
}

TEST_F(NSToolbarItemTest, withoutATargetTheActionGoesUpFromTheFocusOfTheToolbarsWindow)
{
    const auto view = make<ActionView>();
    window->contentView()->addSubview(view);
    item->setAction("takeInView:");
    item->validate();
    EXPECT_FALSE(item->isEnabled()) << "nobody answers";
    toolbar->insertItem(item, 0);
    window->makeFirstResponder(view.get());
    item->validate();
    EXPECT_TRUE(item->isEnabled());
    EXPECT_TRUE(item->sendAction());
    EXPECT_EQ(view->count, 1);
}

TEST_F(NSToolbarItemTest, anItemInNoToolbarSendsFromTheKeyWindow)
{
    const auto view = make<ActionView>();
    window->contentView()->addSubview(view);
    window->makeKeyAndOrderFront();
    window->makeFirstResponder(view.get());
    item->setAction("takeInView:");
    EXPECT_TRUE(item->sendAction());
    EXPECT_EQ(view->count, 1);
}

TEST_F(NSToolbarItemTest, validatingAsksForActionAndAnswer)
{
    item->validate();
    EXPECT_FALSE(item->isEnabled()) << "no action";
    item->setTarget(log);
    item->validate();
    EXPECT_FALSE(item->isEnabled()) << "a target without an action";
    item->setAction("take:");
    EXPECT_FALSE(item->isEnabled()) << "not before it is asked again";
    item->validate();
    EXPECT_TRUE(item->isEnabled());
    item->setAction("unknown:");
    item->validate();
    EXPECT_FALSE(item->isEnabled());
}

// As somebody does who takes all items out of use for a while.
TEST_F(NSToolbarItemTest, actionAndTargetCanBeTakenAwayAndGivenBack)
{
    int count = 0;
    item->setOnAction([&] { ++count; });
    {
        const ObjectRef target = item->target();
        const auto action = item->action();
        item->setAction(std::nullopt);
        item->setTarget(nullptr);
        item->validate();
        EXPECT_FALSE(item->isEnabled());
        item->setAction(action);
        item->setTarget(target);
        item->validate();
    }
    EXPECT_TRUE(item->isEnabled());
    EXPECT_TRUE(item->sendAction()) << "the closure is the item's again";
    EXPECT_EQ(count, 1);
}

TEST_F(NSToolbarItemTest, anEmptyClosureLeavesNothing)
{
    item->setOnAction([] {});
    item->setOnAction(nullptr);
    EXPECT_EQ(item->target(), nullptr);
    EXPECT_EQ(item->action(), std::nullopt);
}

TEST_F(NSToolbarItemTest, anActionThatTakesMoreRaises)
{
    EXPECT_EQ(
        raised([&] { item->setAction("take:and:"); }),
        "NSInvalidArgumentException: NSToolbarItem.setAction:: an action takes the sender or nothing, take:and: "
        "takes 2");
}

TEST_F(NSToolbarItemTest, itemsAreKeysByIdentity)
{
    const auto twin = makeItem("Save");
    std::unordered_map<ObjectRef, int, ObjectHash, ObjectEqual> numbers{{item, 1}, {twin, 2}};
    EXPECT_EQ(numbers.size(), 2U);
    item->setLabel("Other");
    EXPECT_EQ(numbers.at(item), 1);
}

TEST_F(NSToolbarItemTest, everythingCanBeReachedByName)
{
    const ObjectRef made =
        send(send(NSToolbarItem::staticClass(), "alloc").as<ObjectRef>(), "initWithItemIdentifier:", "save")
            .as<ObjectRef>();
    EXPECT_EQ(send(made, "itemIdentifier").as<std::string>(), "save");
    send(made, "setLabel:", "Save");
    EXPECT_EQ(send(made, "label").as<std::string>(), "Save");
    const auto image = make<NSImage>();
    send(made, "setImage:", image);
    EXPECT_EQ(send(made, "image").as<ObjectRef>(), image);
    send(made, "setTarget:", log);
    EXPECT_EQ(send(made, "target").as<ObjectRef>(), log);
    send(made, "setAction:", Selector("take:"));
    EXPECT_EQ(send(made, "action").as<Selector>(), Selector("take:"));
    send(made, "validate");
    EXPECT_TRUE(send(made, "isEnabled").as<bool>());
    send(made, "setEnabled:", false);
    EXPECT_FALSE(send(made, "isEnabled").as<bool>());
    EXPECT_TRUE(send(made, "sendAction").as<bool>());
    EXPECT_EQ(log->senders.size(), 1U);
    send(made, "setAction:", Value());
    send(made, "setTarget:", Value());
    EXPECT_TRUE(send(made, "target").isNothing());
    int count = 0;
    send(made, "setOnAction:", std::function<void()>([&] { ++count; }));
    send(made, "sendAction");
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(send(made, "toolbar").isNothing());
}

} // namespace
} // namespace RVCore::NSToolbarItemTests
