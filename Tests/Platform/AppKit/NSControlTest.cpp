#include "ControlTesting.h"

#include <AppKit/NSApplication.h>
#include <Foundation/Message.h>
#include <Foundation/NSCoder.h>
#include <Platform/Foundation/Raised.h>

namespace RVCore::NSControlTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

std::shared_ptr<NSControl> control()
{
    return make<NSControl>(CGRect(0, 0, 20, 10));
}

TEST(NSControl, SendsItsActionToItsTarget)
{
    const auto sender = control();
    const auto log = make<ActionLog>();
    sender->setTarget(log);
    sender->setAction("take:");
    EXPECT_TRUE(sender->sendAction());
    EXPECT_THAT(log->senders, ElementsAre(sender));
    sender->setAction("takeNothing");
    EXPECT_TRUE(sender->sendAction());
    EXPECT_EQ(log->plainCount, 1);
}

TEST(NSControl, WithoutAnActionNothingIsSent)
{
    const auto sender = control();
    EXPECT_FALSE(sender->sendAction());
    sender->setTarget(make<ActionLog>());
    EXPECT_FALSE(sender->sendAction());
}

TEST(NSControl, DoesNotHoldItsTargetAndADeadOneGetsNothing)
{
    const auto sender = control();
    const auto window = make<NSWindow>();
    const auto content = make<ActionView>();
    window->setContentView(content);
    content->addSubview(sender);
    window->makeFirstResponder(content.get());
    window->makeKeyAndOrderFront();
    auto log = make<ActionLog>();
    sender->setTarget(log);
    sender->setAction("takeInView:");
    log.reset();
    EXPECT_EQ(sender->target(), nullptr);
    EXPECT_FALSE(sender->sendAction());
    EXPECT_EQ(content->count, 0) << "nor does anybody else get what was meant for it";
    sender->setTarget(nullptr);
    EXPECT_TRUE(sender->sendAction());
    EXPECT_EQ(content->count, 1);
    window->close();
}

TEST(NSControl, ATargetThatDoesNotAnswerIsNamedTogetherWithActionAndSender)
{
    const auto sender = control();
    const auto log = make<ActionLog>();
    sender->setTarget(log);
    sender->setAction("fly:");
    EXPECT_EQ(raised([&] { sender->sendAction(); }),
              "NSInvalidArgumentException: NSApplication.sendAction:to:from:: " + log->description() +
                  " does not answer fly:, sent by " + sender->description());
}

TEST(NSControl, AnActionOfTwoArgumentsIsRefused)
{
    const auto sender = control();
    sender->setAction("take:");
    EXPECT_EQ(raised([&] { sender->setAction("take:and:"); }),
              "NSInvalidArgumentException: NSControl.setAction:: an action takes the sender or nothing, take:and: "
              "takes 2");
    EXPECT_EQ(sender->action(), Selector("take:"));
    EXPECT_THAT(raised([&] { NSApplication::shared().sendAction("take:and:", nullptr, sender); }),
                HasSubstr("take:and: takes 2"));
}

TEST(NSControl, WithoutATargetTheApplicationIsTheLastToBeAsked)
{
    addCategory<NSApplication>("NSControlTest",
                               [](auto& publish) { publish.method("applicationCount", [](NSApplication&) {}); });
    const auto sender = control();
    sender->setAction("applicationCount");
    EXPECT_TRUE(sender->sendAction());
    sender->setAction("nobodyAnswersThis:");
    EXPECT_FALSE(sender->sendAction());
}

TEST(NSControl, AClosureIsATargetThatTheControlHolds)
{
    const auto sender = control();
    int count = 0;
    sender->setOnAction([&] { ++count; });
    EXPECT_TRUE(sender->target());
    EXPECT_TRUE(sender->sendAction());
    EXPECT_EQ(count, 1);
    const std::weak_ptr<NSObject> closure = sender->target();
    sender->setTarget(make<ActionLog>());
    EXPECT_TRUE(closure.expired());
    sender->setOnAction([&] { ++count; });
    sender->setOnAction(nullptr);
    EXPECT_EQ(sender->target(), nullptr);
    EXPECT_EQ(sender->action(), std::nullopt);
    EXPECT_FALSE(sender->sendAction());
    EXPECT_EQ(count, 1);
}

TEST(NSControl, AnotherTargetDoesNotGetTheActionOfTheClosure)
{
    const auto sender = control();
    sender->setOnAction([] {});
    sender->setTarget(make<ActionLog>());
    EXPECT_EQ(sender->action(), std::nullopt);
    EXPECT_FALSE(sender->sendAction());
    const auto log = make<ActionLog>();
    sender->setOnAction([] {});
    sender->setAction("take:");
    sender->setTarget(log);
    EXPECT_TRUE(sender->sendAction());
    EXPECT_THAT(log->senders, ElementsAre(sender));
}

TEST(NSControl, AClosureMayReplaceItself)
{
    const auto sender = control();
    std::string log;
    sender->setOnAction([&log, &sender = *sender] {
        const std::string text = "first "; // of the closure's own frame, which must outlive the replacement
        sender.setOnAction([&log] { log += "second "; });
        log += text;
    });
    sender->sendAction();
    sender->sendAction();
    EXPECT_EQ(log, "first second ");
}

TEST(NSControl, ATargetMayLetGoOfTheControl)
{
    auto sender = control();
    const std::weak_ptr<NSControl> watched = sender;
    sender->setOnAction([&] { sender.reset(); });
    NSControl& plain = *sender;
    plain.sendAction();
    EXPECT_TRUE(watched.expired());
}

TEST(NSControl, WhatIsNotEnabledTakesNoKeys)
{
    const auto window = make<NSWindow>();
    const auto sender = control();
    window->contentView()->addSubview(sender);
    EXPECT_TRUE(sender->isEnabled());
    EXPECT_TRUE(window->makeFirstResponder(sender.get()));
    sender->setEnabled(false);
    EXPECT_EQ(window->firstResponder(), window.get());
    EXPECT_FALSE(window->makeFirstResponder(sender.get()));
}

TEST(NSControl, EveryPropertyIsReadAndWrittenByName)
{
    const auto sender = control();
    const auto log = make<ActionLog>();
    send(sender, "setTarget:", log);
    EXPECT_EQ(send(sender, "target").as<ObjectRef>(), log);
    send(sender, "setAction:", Selector("take:"));
    EXPECT_EQ(send(sender, "action").as<Selector>(), Selector("take:"));
    EXPECT_TRUE(send(sender, "sendAction").as<bool>());
    EXPECT_EQ(log->senders.size(), 1U);
    send(sender, "setAction:", Value());
    EXPECT_TRUE(send(sender, "action").isNothing());
    send(sender, "setEnabled:", false);
    EXPECT_FALSE(send(sender, "isEnabled").as<bool>());
    send(sender, "setTag:", 7);
    EXPECT_EQ(send(sender, "tag").as<int>(), 7);
    int count = 0;
    send(sender, "setOnAction:", std::function<void()>([&] { ++count; }));
    sender->sendAction();
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(send(NSApplication::shared(), "sendAction:to:from:", Selector("take:"), log, sender).as<bool>());
    EXPECT_EQ(log->senders.size(), 2U);
}

TEST(NSControl, ComesBackFromAnArchiveWithoutItsTarget)
{
    const auto sender = control();
    sender->setTarget(make<ActionLog>());
    sender->setAction("take:");
    sender->setEnabled(false);
    sender->setTag(-3);
    const auto copy = std::dynamic_pointer_cast<NSControl>(unarchivedObject(archivedObject(*sender)));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->target(), nullptr);
    EXPECT_EQ(copy->action(), Selector("take:"));
    EXPECT_FALSE(copy->isEnabled());
    EXPECT_EQ(copy->tag(), -3);
    sender->setOnAction([] {});
    const auto second = std::dynamic_pointer_cast<NSControl>(unarchivedObject(archivedObject(*sender)));
    EXPECT_EQ(second->action(), std::nullopt);
}

} // namespace
} // namespace RVCore::NSControlTests
