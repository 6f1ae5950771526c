#include "ControlTesting.h"

#include <AppKit/TargetAction.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <gtest/gtest.h>

namespace RVCore::TargetActionTests {
namespace {

TEST(TargetAction, ATargetIsNotHeld)
{
    TargetAction message;
    auto target = make<ActionLog>();
    message.setTarget(target);
    EXPECT_EQ(message.target(), target);
    EXPECT_FALSE(message.hasLostTarget());
    target.reset();
    EXPECT_EQ(message.target(), nullptr);
    EXPECT_TRUE(message.hasLostTarget());
    message.setTarget(nullptr);
    EXPECT_FALSE(message.hasLostTarget());
}

TEST(TargetAction, AClosureIsHeldByEverythingThatHasItForItsTarget)
{
    int count = 0;
    TargetAction first;
    TargetAction second;
    first.setTarget(TargetAction::makeClosureTarget([&] { ++count; }));
    EXPECT_TRUE(first.callsClosure());
    second.setTarget(first.target());
    first.setTarget(nullptr);
    EXPECT_FALSE(first.callsClosure());
    send(second.target(), TargetAction::closureAction(), ObjectRef());
    EXPECT_EQ(count, 1);
    const std::weak_ptr<NSObject> closure = second.target();
    second.setTarget(nullptr);
    EXPECT_TRUE(closure.expired());
    EXPECT_EQ(TargetAction::makeClosureTarget(nullptr), nullptr);
}

TEST(TargetAction, AnActionTakesTheSenderAtMost)
{
    TargetAction message;
    message.setAction("take:", "Here");
    EXPECT_EQ(raised([&] { message.setAction("take:and:", "Here"); }),
              "NSInvalidArgumentException: Here: an action takes the sender or nothing, take:and: takes 2");
    EXPECT_EQ(message.action(), Selector("take:"));
}

} // namespace
} // namespace RVCore::TargetActionTests
