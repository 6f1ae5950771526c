#include <AppKit/NSAccessibility.h>
#include <Platform/AppKit/InputTesting.h>
#include <Platform/AppKit/WindowTesting.h>
#include <Platform/Foundation/Raised.h>
#include <Sources/Views/BlockingTesting.h>

#include <gmock/gmock.h>

namespace RVCore::NSWindowRVCoreBlockingTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string>& targetLog()
{
    static std::vector<std::string> log;
    return log;
}

class Target : public NSObject {
    RVCORE_CLASS(Target)

public:
    void save() { targetLog().emplace_back("saved"); }
    void open() { targetLog().emplace_back("opened"); }
};

Class& Target::staticClass()
{
    static Class& theClass = defineClass<Target>("BlockingTestTarget", NSObject::staticClass(), [](auto& publish) {
        publish.method("save", &Target::save);
        publish.method("open", &Target::open);
    });
    return theClass;
}

// Writes down what it is told, and may have something done when it validates itself.
class LoggingItem : public NSToolbarItem {
public:
    void setTarget(const ObjectRef& target) override
    {
        log.push_back(target ? "target" : "no target");
        NSToolbarItem::setTarget(target);
    }
    void setAction(const std::optional<Selector>& action) override
    {
        log.push_back(action ? "action" : "no action");
        NSToolbarItem::setAction(action);
    }
    void validate() override
    {
        log.emplace_back("validate");
        NSToolbarItem::validate();
        if (onValidate)
            std::exchange(onValidate, nullptr)();
    }
    std::vector<std::string> log;
    std::function<void()> onValidate; // once
};

class WindowBlocking : public WindowTest {
protected:
    WindowBlocking() { targetLog().clear(); }

    NSView& content() { return *window->contentView(); }
    std::shared_ptr<LoggingItem> addItem(const ObjectRef& receiver, const std::optional<Selector>& action)
    {
        if (!window->toolbar())
            window->setToolbar(make<NSToolbar>());
        const auto item = make<LoggingItem>(std::string("item"));
        item->setTarget(receiver);
        item->setAction(action);
        item->log.clear();
        window->toolbar()->insertItem(item, window->toolbar()->items().size());
        return item;
    }

    std::shared_ptr<NSWindow> window = make<NSWindow>(CGSize{300, 200});
    std::shared_ptr<Target> target = make<Target>();
};

TEST_F(WindowBlocking, showingPutsAnOverlayOnTopOfTheContent)
{
    const auto below = makeView(content());
    showBlockingView(*window, {.title = "T", .message = "m", .showProgress = false});
    const auto overlay = progressBlockingView(*window);
    ASSERT_TRUE(overlay);
    EXPECT_EQ(content().subviews(), (std::vector<std::shared_ptr<NSView>>{below, overlay}));
    EXPECT_EQ(overlay->title(), "T");
    EXPECT_EQ(overlay->message(), "m");
    EXPECT_FALSE(overlay->showProgress());
    EXPECT_EQ(overlay->layer()->zPosition(), 1.0);
    EXPECT_FALSE(content().wantsLayer());
    window->layoutIfNeeded();
    EXPECT_EQ(overlay->frame(), content().bounds());
    clock.advance(0.31);
    EXPECT_EQ(shownAlpha(*overlay), 1);
}

TEST_F(WindowBlocking, theWindowAndItsContentHaveAnOverlayEach)
{
    showBlockingView(*window);
    EXPECT_EQ(progressBlockingView(content()), nullptr);
    showBlockingView(content());
    EXPECT_NE(progressBlockingView(content()), progressBlockingView(*window));
    EXPECT_THAT(overlaysIn(content()), SizeIs(2));
    hideBlockingView(content());
    hideBlockingView(*window);
    clock.advance(1.31);
    EXPECT_THAT(overlaysIn(content()), IsEmpty());
}

TEST_F(WindowBlocking, showingAgainChangesTheTextsAndNothingElse)
{
    showBlockingView(*window, {.title = "A", .showProgress = false});
    const auto overlay = progressBlockingView(*window);
    showBlockingView(*window, {.title = "B", .message = "m", .showProgress = true});
    EXPECT_THAT(overlaysIn(content()), ElementsAre(overlay));
    EXPECT_EQ(overlay->title(), "B");
    EXPECT_EQ(overlay->message(), "m");
    EXPECT_FALSE(overlay->showProgress());
}

TEST_F(WindowBlocking, hidingFadesAtOnceAndFreesTheWindowAtTheEnd)
{
    showBlockingView(*window);
    const auto overlay = progressBlockingView(*window);
    clock.advance(0.1);
    hideBlockingView(*window);
    clock.advance(0);
    EXPECT_EQ(blurRadius(*overlay), 0);
    clock.advance(0.29);
    EXPECT_EQ(progressBlockingView(*window), overlay);
    EXPECT_THAT(overlaysIn(content()), SizeIs(1));
    clock.advance(0.02);
    EXPECT_EQ(progressBlockingView(*window), nullptr);
    EXPECT_THAT(overlaysIn(content()), IsEmpty());
    EXPECT_TRUE(content().constraints().empty());
}

TEST_F(WindowBlocking, shownDuringTheFadeOutOnlyTheTextsChange)
{
    showBlockingView(*window, {.title = "A"});
    const auto overlay = progressBlockingView(*window);
    hideBlockingView(*window);
    clock.advance(0.1);
    showBlockingView(*window, {.title = "B"});
    EXPECT_EQ(overlay->title(), "B");
    EXPECT_THAT(overlaysIn(content()), SizeIs(1));
    clock.advance(0.21);
    EXPECT_THAT(overlaysIn(content()), IsEmpty());
    EXPECT_EQ(progressBlockingView(*window), nullptr);
}

TEST_F(WindowBlocking, actionableItemsAreDisabledAndRestored)
{
    const auto item = addItem(target, "save");
    item->setEnabled(true);
    showBlockingView(*window);
    EXPECT_THAT(std::exchange(item->log, {}), ElementsAre("no action", "no target", "validate"));
    EXPECT_FALSE(item->isEnabled());
    EXPECT_EQ(item->action(), std::nullopt);
    EXPECT_EQ(item->target(), nullptr);
    hideBlockingView(*window);
    EXPECT_THAT(item->log, ElementsAre("action", "target", "validate"));
    EXPECT_TRUE(item->isEnabled());
    EXPECT_EQ(item->action(), Selector("save"));
    EXPECT_EQ(item->target(), target);
    EXPECT_TRUE(item->sendAction());
    EXPECT_THAT(targetLog(), ElementsAre("saved"));
}

TEST_F(WindowBlocking, itemsWithoutATargetOrAnActionAreLeftAlone)
{
    const auto withoutTarget = addItem(nullptr, "save");
    const auto withoutAction = addItem(target, std::nullopt);
    showBlockingView(*window);
    hideBlockingView(*window);
    clock.advance(1);
    EXPECT_THAT(withoutTarget->log, IsEmpty());
    EXPECT_THAT(withoutAction->log, IsEmpty());
    EXPECT_TRUE(withoutTarget->isEnabled());
    EXPECT_EQ(withoutTarget->action(), Selector("save"));
}

TEST_F(WindowBlocking, anItemThatComesWhileTheWindowIsCoveredIsLeftAlone)
{
    addItem(target, "save");
    showBlockingView(*window);
    const auto late = addItem(target, "open");
    hideBlockingView(*window);
    EXPECT_THAT(late->log, IsEmpty());
    EXPECT_TRUE(late->isEnabled());
    EXPECT_EQ(late->action(), Selector("open"));
}

TEST_F(WindowBlocking, anItemThatHasGoneMeanwhileIsForgotten)
{
    const auto item = addItem(target, "save");
    addItem(target, "open");
    showBlockingView(*window);
    window->toolbar()->removeItem(0);
    item->log.clear();
    hideBlockingView(*window);
    clock.advance(0.31);
    EXPECT_THAT(item->log, IsEmpty());
    EXPECT_EQ(item->action(), std::nullopt);
    EXPECT_EQ(item.use_count(), 1);
}

TEST_F(WindowBlocking, theTargetsAreHeldUntilTheFadeOutIsOver)
{
    const auto item = addItem(target, "save");
    const std::weak_ptr<NSObject> saved = target;
    showBlockingView(*window);
    target.reset();
    hideBlockingView(*window);
    EXPECT_EQ(item->target(), saved.lock());
    EXPECT_TRUE(item->isEnabled());
    clock.advance(0.5);
    EXPECT_TRUE(saved.expired());
}

TEST_F(WindowBlocking, anItemThatRaisesWhenItIsDisabledGetsBackWhatItHad)
{
    const auto item = addItem(target, "save");
    item->onValidate = [] { raiseInvalidArgument("validate", "not now"); };
    EXPECT_THAT(raised([&] { showBlockingView(*window); }), HasSubstr("not now"));
    EXPECT_FALSE(item->action());
    hideBlockingView(*window);
    EXPECT_EQ(item->target(), ObjectRef(target));
    EXPECT_EQ(item->action(), Selector("save"));
}

TEST_F(WindowBlocking, anItemThatHidesTheOverlayWhenItIsDisabledGetsBackWhatItHad)
{
    const auto item = addItem(target, "save");
    item->onValidate = [&] { hideBlockingView(*window); };
    showBlockingView(*window);
    EXPECT_EQ(item->target(), ObjectRef(target));
    EXPECT_EQ(item->action(), Selector("save"));
}

TEST_F(WindowBlocking, anItemWithAClosureGetsItBack)
{
    const auto item = addItem(nullptr, std::nullopt);
    int calls = 0;
    item->setOnAction([&] { ++calls; });
    showBlockingView(*window);
    EXPECT_FALSE(item->sendAction());
    hideBlockingView(*window);
    clock.advance(0.31);
    EXPECT_TRUE(item->sendAction());
    EXPECT_EQ(calls, 1);
}

TEST_F(WindowBlocking, theToolbarIsNotRestoredByShowingAgain)
{
    const auto item = addItem(target, "save");
    showBlockingView(*window);
    showBlockingView(*window, {.title = "again"});
    EXPECT_FALSE(item->isEnabled());
    hideBlockingView(*window);
    EXPECT_TRUE(item->isEnabled());
}

TEST_F(WindowBlocking, hiddenTwiceItMakesRoomForAnotherOverlayOnce)
{
    const auto item = addItem(target, "save");
    showBlockingView(*window);
    hideBlockingView(*window);
    clock.advance(0.2);
    hideBlockingView(*window);
    clock.advance(0.15);
    ASSERT_EQ(progressBlockingView(*window), nullptr);
    showBlockingView(*window);
    const auto second = progressBlockingView(*window);
    clock.advance(1);
    EXPECT_EQ(progressBlockingView(*window), second);
    hideBlockingView(*window);
    EXPECT_TRUE(item->isEnabled());
    clock.advance(0.31);
    EXPECT_THAT(overlaysIn(content()), IsEmpty());
}

TEST_F(WindowBlocking, hidingAFreeWindowDoesNothing)
{
    const auto item = addItem(target, "save");
    hideBlockingView(*window);
    EXPECT_THAT(item->log, IsEmpty());
    EXPECT_EQ(DispatchQueue::main().nextDeadline(), std::nullopt);
}

TEST_F(WindowBlocking, aWindowWithoutAContentViewShowsAndHidesNothing)
{
    const auto empty = std::make_shared<NSWindow>(); // not initialised: it has none yet
    ASSERT_EQ(empty->contentView(), nullptr);
    showBlockingView(*empty);
    EXPECT_EQ(progressBlockingView(*empty), nullptr);
    setProgressBlockingView(*empty, make<RVProgressBlockingView>(BlockingViewContent{.showProgress = false}));
    hideBlockingView(*empty);
    EXPECT_EQ(DispatchQueue::main().nextDeadline(), std::nullopt);
}

TEST_F(WindowBlocking, aWindowThatGetsOtherContentIsFreedAllTheSame)
{
    showBlockingView(*window);
    const auto before = window->contentView();
    window->setContentView(make<NSView>());
    hideBlockingView(*window);
    clock.advance(0.31);
    EXPECT_THAT(overlaysIn(*before), IsEmpty());
    EXPECT_EQ(progressBlockingView(*window), nullptr);
}

TEST_F(WindowBlocking, aWindowThatDiesInTheMiddleTakesTheOverlayWithIt)
{
    for (const bool hides : {false, true}) {
        window = make<NSWindow>(CGSize{300, 200});
        showBlockingView(*window);
        clock.advance(0.1);
        const std::weak_ptr<NSView> overlay = progressBlockingView(*window);
        if (hides)
            hideBlockingView(*window);
        clock.advance(0.1);
        const std::weak_ptr<NSWindow> weak = window;
        window.reset();
        EXPECT_TRUE(weak.expired());
        clock.advance(1);
        EXPECT_TRUE(overlay.expired());
    }
}

TEST_F(WindowBlocking, theOperationsAreCalledByName)
{
    send(window, "showBlockingViewWithTitle:message:showProgress:", "T", "m", true);
    EXPECT_EQ(progressBlockingView(*window)->title(), "T");
    send(window, "hideBlockingView");
    clock.advance(0.31);
    EXPECT_TRUE(send(window, "progressBlockingView").isNothing());
    send(window, "setProgressBlockingView:", make<RVProgressBlockingView>(BlockingViewContent{}));
    EXPECT_FALSE(send(window, "progressBlockingView").isNothing());
    for (const char* selector : {"progressBlockingView", "setProgressBlockingView:",
                                 "showBlockingViewWithTitle:message:showProgress:", "hideBlockingView"})
        EXPECT_EQ(NSWindow::staticClass().method(selector)->category, "RVCore") << selector;
}

class CoveredWindowInput : public WindowInputTest {
protected:
    ManualDispatchClock clock;
};

TEST_F(CoveredWindowInput, nothingOfTheContentIsReached)
{
    const auto field = listen({10, 10, 50, 20}, "field");
    field->accepts = true;
    field->shortcut = NSKey::enter;
    ASSERT_TRUE(window->makeFirstResponder(field.get()));
    showBlockingView(*window);
    window->layoutIfNeeded();
    clock.advance(0.5);
    click(20, 20);
    type("a");
    type(NSKey::enter);
    type(NSKey::tab);
    window->selectNextKeyView();
    send({.kind = InputKind::scrolled, .location = {20, 20}, .scroll = {0, 5}});
    EXPECT_THAT(takeLog(), IsEmpty());
    EXPECT_EQ(window->firstResponder(), progressBlockingView(*window).get());
    ASSERT_TRUE(window->makeFirstResponder(nullptr));
    type(NSKey::enter);
    type(NSKey::tab);
    EXPECT_THAT(takeLog(), IsEmpty());
    EXPECT_EQ(window->firstResponder(), window.get());
    hideBlockingView(*window);
    clock.advance(0.31);
    EXPECT_EQ(window->firstResponder(), field.get());
}

} // namespace
} // namespace RVCore::NSWindowRVCoreBlockingTests
