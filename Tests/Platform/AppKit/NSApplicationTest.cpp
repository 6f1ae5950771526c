#include <AppKit/NSApplication.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <Foundation/Message.h>
#include <HeadlessBackend/HeadlessBackend.h>

namespace RVCore::NSApplicationTests {
namespace {

using testing::ElementsAre;

class NSApplicationTest : public testing::Test {
protected:
    ~NSApplicationTest() override
    {
        for (const auto& open : std::vector(application.windows()))
            open->close();
        Backend::install(nullptr);
    }

    NSApplication& application = NSApplication::shared();
};

TEST_F(NSApplicationTest, KnowsItsOpenWindowsInTheOrderInWhichTheyWereShown)
{
    const auto a = make<NSWindow>(), b = make<NSWindow>();
    b->makeKeyAndOrderFront();
    a->makeKeyAndOrderFront();
    b->makeKeyAndOrderFront();
    EXPECT_THAT(application.windows(), ElementsAre(b, a));
    b->close();
    EXPECT_THAT(application.windows(), ElementsAre(a));
}

TEST_F(NSApplicationTest, LooksAsTheDesktopDoesUnlessToldOtherwise)
{
    EXPECT_EQ(application.appearance(), std::nullopt);
    EXPECT_EQ(application.effectiveAppearance(), Appearance::light);
    send(application, "setAppearance:", 1);
    EXPECT_EQ(application.effectiveAppearance(), Appearance::dark);
    EXPECT_EQ(send(application, "effectiveAppearance").as<int>(), 1);
    EXPECT_THROW(send(application, "setAppearance:", 2), NSException);
    send(application, "setAppearance:", Value());
    EXPECT_TRUE(send(application, "appearance").isNothing());
}

TEST_F(NSApplicationTest, RunReturnsAtOnceWithoutAWindow)
{
    application.run();
    application.terminate(); // harmless
}

TEST_F(NSApplicationTest, ClosingTheLastWindowEndsTheRun)
{
    const auto a = make<NSWindow>(), b = make<NSWindow>();
    a->makeKeyAndOrderFront();
    b->makeKeyAndOrderFront();
    std::vector<std::string> order;
    Backend::shared().callLater([&] {
        a->close();
        order.push_back("one closed");
        Backend::shared().callLater([&] {
            order.push_back("still running");
            application.run(); // returns at once: it runs already
            b->close();
        });
    });
    application.run();
    order.push_back("ended");
    EXPECT_THAT(order, ElementsAre("one closed", "still running", "ended"));
}

TEST_F(NSApplicationTest, AnExceptionEndsTheRunAndItCanRunAgain)
{
    const auto window = make<NSWindow>();
    window->makeKeyAndOrderFront();
    Backend::shared().callLater([] { throw 7; });
    EXPECT_THROW(application.run(), int);
    bool ranAgain = false;
    Backend::shared().callLater([&] {
        ranAgain = true;
        application.terminate();
    });
    application.run();
    EXPECT_TRUE(ranAgain);
}

// Counts the keys that reach it.
class KeyCountingWindow : public NSWindow {
public:
    void keyDown(NSEvent&) override { ++count; }
    int count = 0;
};

TEST_F(NSApplicationTest, AnEventOfAWindowThatHasGoneIsDropped)
{
    const auto key = make<KeyCountingWindow>();
    key->makeKeyAndOrderFront();
    auto gone = make<NSWindow>();
    NSEventContent content;
    content.type = NSEventType::keyDown;
    content.window = gone;
    const auto event = make<NSEvent>(content);
    gone.reset();
    application.sendEvent(*event);
    EXPECT_EQ(key->count, 0);
    content.window.reset();
    application.sendEvent(*make<NSEvent>(content));
    EXPECT_EQ(key->count, 1) << "one that never had a window is the key window's";
}

// Raises when it gets a key.
class RaisingWindow : public NSWindow {
public:
    void keyDown(NSEvent&) override { raiseInvalidArgument("fly:", "nobody answers it"); }
};

TEST_F(NSApplicationTest, WhatAHandlerRaisesIsPrintedAndTheProgramGoesOn)
{
    auto owned = std::make_unique<HeadlessBackend>();
    HeadlessBackend& desktop = *owned;
    Backend::install(std::move(owned));
    const auto window = make<RaisingWindow>();
    window->makeKeyAndOrderFront();
    testing::internal::CaptureStderr();
    desktop.windows().front()->userInput({.kind = InputKind::keyPressed});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "NSInvalidArgumentException: fly:: nobody answers it\n");
    NSEventContent content;
    content.type = NSEventType::keyDown;
    content.window = window;
    application.postEvent(make<NSEvent>(content));
    testing::internal::CaptureStderr();
    desktop.runPending();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "NSInvalidArgumentException: fly:: nobody answers it\n");
    EXPECT_THROW(application.sendEvent(*make<NSEvent>(content)), NSException) << "code that sends hears of it";
    window->close();
}

TEST_F(NSApplicationTest, ReducesMotionAsTheDesktopSaysUnlessTheProgramDoes)
{
    auto owned = std::make_unique<HeadlessBackend>();
    HeadlessBackend& desktop = *owned;
    Backend::install(std::move(owned));
    EXPECT_FALSE(application.reducesMotion());
    desktop.setPrefersReducedMotion(true);
    EXPECT_TRUE(application.reducesMotion());
    application.setReducesMotion(false);
    EXPECT_FALSE(application.reducesMotion());
    send(application, "setReducesMotion:", true);
    desktop.setPrefersReducedMotion(false);
    EXPECT_EQ(send(application, "reducesMotion"), Value(true));
    send(application, "setReducesMotion:", nullptr);
    EXPECT_FALSE(application.reducesMotion());
}

TEST_F(NSApplicationTest, IsReachedByName)
{
    const auto shared = send(NSApplication::staticClass(), "sharedApplication").as<std::shared_ptr<NSApplication>>();
    EXPECT_EQ(shared.get(), &application);
    EXPECT_TRUE(send(shared, "windows").as<Value::Array>().empty());
    send(shared, "run");
    send(shared, "terminate");
}

} // namespace
} // namespace RVCore::NSApplicationTests
