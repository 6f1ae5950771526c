#include "ViewTesting.h"
#include "WindowTesting.h"

#include <AppKit/NSEvent.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

namespace RVCore::NSWindowOrderTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Mask = NSWindowStyleMask;
using Order = NSWindowOrderingMode;

class NSWindowOrderTest : public WindowTest {
protected:
    // The windows that the desktop shows, the one in front first.
    std::vector<const WindowClient*> onDesktop() const
    {
        std::vector<const WindowClient*> clients;
        for (const HeadlessWindow* window : desktop->visibleWindows())
            clients.push_back(&window->client());
        return clients;
    }
    const WindowClient* clientOf(const std::shared_ptr<NSWindow>& window) const
    {
        return &screenOf(*window).client();
    }

    std::shared_ptr<NSWindow> a = makeAt({0, 0, 100, 100});
    std::shared_ptr<NSWindow> b = makeAt({200, 0, 100, 100});
    std::shared_ptr<NSWindow> c = makeAt({400, 0, 100, 100});
};

// --- Order

TEST_F(NSWindowOrderTest, TheLastOneThatWasOrderedFrontIsInFront)
{
    a->orderFront();
    b->orderFront();
    c->orderFront();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(c, b, a));
    a->orderFront();
    b->orderBack();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(a, c, b));
    EXPECT_THAT(onDesktop(), ElementsAre(clientOf(a), clientOf(c), clientOf(b)));
    EXPECT_THAT(application.windows(), ElementsAre(a, b, c));
}

TEST_F(NSWindowOrderTest, OrderingFrontShowsAndDoesNotMakeKey)
{
    a->orderFront();
    EXPECT_TRUE(a->isVisible());
    EXPECT_TRUE(screenOf(*a).isVisible());
    EXPECT_EQ(application.keyWindow(), nullptr);
    b->orderBack();
    EXPECT_TRUE(b->isVisible());
}

TEST_F(NSWindowOrderTest, AWindowThatIsOrderedOutStaysOpen)
{
    a->orderFront();
    b->orderFront();
    a->orderOut();
    EXPECT_FALSE(a->isVisible());
    EXPECT_FALSE(screenOf(*a).isVisible());
    EXPECT_THAT(application.orderedWindows(), ElementsAre(b));
    EXPECT_THAT(application.windows(), ElementsAre(a, b));
    a->orderOut();
    a->orderFront();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(a, b));
    a->orderOut();
    a->close();
    EXPECT_THAT(application.windows(), ElementsAre(b));
    c->orderOut(); // was never shown
    EXPECT_FALSE(c->isVisible());
}

// --- Key window

TEST_F(NSWindowOrderTest, KeysGoToTheWindowThatWasMadeKey)
{
    a->makeKeyAndOrderFront();
    b->makeKeyAndOrderFront();
    EXPECT_EQ(application.keyWindow(), b.get());
    EXPECT_TRUE(b->isKeyWindow());
    EXPECT_FALSE(a->isKeyWindow());
    EXPECT_TRUE(screenOf(*b).isActive());
    a->makeKeyWindow();
    EXPECT_EQ(application.keyWindow(), a.get());
    EXPECT_TRUE(screenOf(*a).isActive());
    EXPECT_FALSE(screenOf(*b).isActive());
    c->makeKeyWindow(); // not visible
    EXPECT_EQ(application.keyWindow(), a.get());
}

TEST_F(NSWindowOrderTest, TheDelegatesHearWhoIsKey)
{
    const auto ofA = std::make_shared<RecordingDelegate>(), ofB = std::make_shared<RecordingDelegate>();
    a->setDelegate(ofA);
    b->setDelegate(ofB);
    a->makeKeyAndOrderFront();
    EXPECT_THAT(ofA->take(), ElementsAre("became key"));
    a->makeKeyAndOrderFront();
    EXPECT_THAT(ofA->take(), IsEmpty());
    b->makeKeyAndOrderFront();
    EXPECT_THAT(ofA->take(), ElementsAre("resigned key"));
    EXPECT_THAT(ofB->take(), ElementsAre("became key"));
}

TEST_F(NSWindowOrderTest, ABorderlessWindowDoesNotTakeTheKeysUnlessItsClassSaysSo)
{
    class Panel : public NSWindow {
        bool canBecomeKeyWindow() const override { return true; }
    };
    a->makeKeyAndOrderFront();
    const auto plain = make<NSWindow>(CGRect(0, 0, 10, 10), Mask::borderless);
    plain->makeKeyAndOrderFront();
    EXPECT_EQ(application.keyWindow(), a.get());
    screenOf(*plain).userActivate();
    EXPECT_EQ(application.keyWindow(), a.get());
    const auto panel = make<Panel>(CGRect(0, 0, 10, 10), Mask::borderless);
    panel->makeKeyAndOrderFront();
    EXPECT_EQ(application.keyWindow(), panel.get());
}

TEST_F(NSWindowOrderTest, WhenTheKeyWindowLeavesTheNextFromTheFrontTakesOver)
{
    a->makeKeyAndOrderFront();
    b->makeKeyAndOrderFront();
    make<NSWindow>(CGRect(0, 0, 10, 10), Mask::borderless)->orderFront();
    c->makeKeyAndOrderFront();
    c->close();
    EXPECT_EQ(application.keyWindow(), b.get());
    EXPECT_TRUE(screenOf(*b).isActive());
    b->orderOut();
    EXPECT_EQ(application.keyWindow(), a.get());
    a->miniaturize();
    EXPECT_EQ(application.keyWindow(), nullptr);
}

TEST_F(NSWindowOrderTest, TheUserTurnsToAWindowAndAwayFromTheProgram)
{
    a->makeKeyAndOrderFront();
    b->makeKeyAndOrderFront();
    EXPECT_TRUE(application.isActive());
    screenOf(*a).userActivate();
    EXPECT_EQ(application.keyWindow(), a.get());
    EXPECT_THAT(application.orderedWindows(), ElementsAre(a, b));
    EXPECT_TRUE(application.isActive());
    screenOf(*a).userDeactivate();
    EXPECT_FALSE(application.isActive());
    EXPECT_EQ(application.keyWindow(), a.get()); // when the user comes back
}

TEST_F(NSWindowOrderTest, ADelegateMayChooseAnotherKeyWindow)
{
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto ofB = std::make_shared<RecordingDelegate>();
    a->setDelegate(delegate);
    b->setDelegate(ofB);
    c->orderFront();
    a->makeKeyAndOrderFront();
    delegate->onCall = [&](const std::string& call) {
        if (call == "resigned key")
            c->makeKeyWindow();
    };
    b->makeKeyAndOrderFront();
    EXPECT_EQ(application.keyWindow(), c.get());
    EXPECT_THAT(ofB->take(), ElementsAre("resigned key"));
}

// --- Closing

TEST_F(NSWindowOrderTest, TheUsersCloseIsAQuestionToTheDelegate)
{
    const auto delegate = std::make_shared<RecordingDelegate>();
    a->setDelegate(delegate);
    a->orderFront();
    delegate->agrees = false;
    screenOf(*a).userClose();
    EXPECT_TRUE(a->isVisible());
    EXPECT_THAT(delegate->take(), ElementsAre("should close"));
    delegate->agrees = true;
    screenOf(*a).userClose();
    EXPECT_FALSE(a->isVisible());
    EXPECT_THAT(delegate->take(), ElementsAre("should close", "will close"));
}

TEST_F(NSWindowOrderTest, TheProgramsCloseIsNoQuestionAndHappensOnce)
{
    const auto delegate = std::make_shared<RecordingDelegate>();
    delegate->agrees = false;
    delegate->onCall = [&](const std::string&) { a->close(); };
    a->setDelegate(delegate);
    a->orderFront();
    a->close();
    a->close();
    EXPECT_THAT(delegate->take(), ElementsAre("will close"));
    EXPECT_THAT(application.windows(), IsEmpty());
}

TEST_F(NSWindowOrderTest, AWindowThatIsNotClosableStaysWhenTheUserAsks)
{
    const auto fixed = make<NSWindow>(CGRect(0, 0, 10, 10), Mask::titled);
    fixed->orderFront();
    screenOf(*fixed).userClose();
    EXPECT_TRUE(fixed->isVisible());
    fixed->close();
    EXPECT_FALSE(fixed->isVisible());
}

TEST_F(NSWindowOrderTest, AClosedWindowDoesWhatOneDoesThatWasNeverShown)
{
    const auto delegate = std::make_shared<RecordingDelegate>();
    a->orderFront();
    a->close();
    a->setDelegate(delegate);
    a->performClose();
    a->miniaturize();
    a->deminiaturize();
    a->orderOut();
    a->makeKeyWindow();
    EXPECT_THAT(delegate->take(), IsEmpty());
    EXPECT_FALSE(a->isMiniaturized());
    EXPECT_FALSE(a->isKeyWindow());
    a->setFrame({5, 5, 300, 200});
    a->setTitle("Closed");
    EXPECT_EQ(screenOf(*a).contentSize(), (CGSize{300, 178}));
    a->makeKeyAndOrderFront();
    EXPECT_TRUE(a->isKeyWindow());
    EXPECT_THAT(application.windows(), ElementsAre(a));
}

// --- Minimising

TEST_F(NSWindowOrderTest, AMiniaturizedWindowIsOpenAndNotVisible)
{
    const auto delegate = std::make_shared<RecordingDelegate>();
    b->orderFront();
    a->makeKeyAndOrderFront();
    a->setDelegate(delegate);
    a->miniaturize();
    EXPECT_TRUE(a->isMiniaturized());
    EXPECT_FALSE(a->isVisible());
    EXPECT_TRUE(screenOf(*a).isMinimized());
    EXPECT_THAT(application.windows(), ElementsAre(b, a));
    EXPECT_THAT(application.orderedWindows(), ElementsAre(b));
    EXPECT_EQ(application.keyWindow(), b.get());
    EXPECT_THAT(delegate->take(), ElementsAre("resigned key", "miniaturized"));
    a->deminiaturize();
    EXPECT_TRUE(a->isVisible());
    EXPECT_FALSE(screenOf(*a).isMinimized());
    EXPECT_THAT(application.orderedWindows(), ElementsAre(a, b));
    EXPECT_TRUE(a->isKeyWindow());
    EXPECT_THAT(delegate->take(), ElementsAre("became key", "deminiaturized"));
}

TEST_F(NSWindowOrderTest, TheUserMayMiniaturizeAndShowingBringsItBack)
{
    a->orderFront();
    screenOf(*a).userMinimize(true);
    EXPECT_TRUE(a->isMiniaturized());
    screenOf(*a).userMinimize(false);
    EXPECT_TRUE(a->isVisible());
    a->miniaturize();
    a->makeKeyAndOrderFront();
    EXPECT_TRUE(a->isVisible());
    EXPECT_FALSE(screenOf(*a).isMinimized());
}

TEST_F(NSWindowOrderTest, AMiniaturizedWindowThatIsClosedOpensUnminimized)
{
    a->orderFront();
    a->miniaturize();
    a->close();
    EXPECT_FALSE(a->isMiniaturized());
    a->orderFront();
    EXPECT_TRUE(a->isVisible());
    EXPECT_FALSE(screenOf(*a).isMinimized());
}

TEST_F(NSWindowOrderTest, OrderingAMiniaturizedWindowShowsItThereWithoutTheKeys)
{
    const auto delegate = std::make_shared<RecordingDelegate>();
    a->makeKeyAndOrderFront();
    b->makeKeyAndOrderFront();
    a->setDelegate(delegate);
    a->miniaturize();
    a->orderBack();
    EXPECT_TRUE(a->isVisible());
    EXPECT_FALSE(screenOf(*a).isMinimized());
    EXPECT_THAT(application.orderedWindows(), ElementsAre(b, a));
    a->miniaturize();
    a->orderFront();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(a, b));
    EXPECT_TRUE(b->isKeyWindow());
    EXPECT_THAT(delegate->take(), ElementsAre("miniaturized", "deminiaturized", "miniaturized", "deminiaturized"));
}

TEST_F(NSWindowOrderTest, ChildWindowsLeaveTheScreenWithAMiniaturizedParentAndComeBack)
{
    const auto d = makeAt({0, 0, 50, 50}), hidden = makeAt({0, 0, 50, 50});
    d->orderFront();
    a->makeKeyAndOrderFront();
    a->addChildWindow(b, Order::above);
    b->addChildWindow(c, Order::above);
    a->addChildWindow(hidden, Order::above);
    b->orderFront();
    c->orderFront();
    a->miniaturize();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(d));
    EXPECT_THAT(onDesktop(), ElementsAre(clientOf(d)));
    EXPECT_FALSE(b->isVisible());
    a->deminiaturize();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(c, b, a, d));
    EXPECT_FALSE(hidden->isVisible());
    a->miniaturize();
    b->orderOut();
    a->deminiaturize();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(a, d)) << "one that was ordered out meanwhile stays away";
}

// --- Child windows

TEST_F(NSWindowOrderTest, ChildWindowsStayInFrontOfTheirParentOrBehindIt)
{
    const auto d = makeAt({0, 0, 50, 50});
    a->orderFront();
    a->addChildWindow(b, Order::above);
    a->addChildWindow(c, Order::below);
    for (const auto& window : {b, c, d, a})
        window->orderFront();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(b, a, c, d));
    EXPECT_THAT(onDesktop(), ElementsAre(clientOf(b), clientOf(a), clientOf(c), clientOf(d)));
    d->orderFront();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(d, b, a, c));
    a->orderBack();
    d->orderBack();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(b, a, c, d));
    EXPECT_EQ(screenOf(*b).parent(), desktop->windowOf(screenOf(*a).client()));
}

TEST_F(NSWindowOrderTest, OfSeveralChildWindowsTheOneThatIsOrderedFrontIsInFront)
{
    a->addChildWindow(b, Order::above);
    a->addChildWindow(c, Order::above);
    for (const auto& window : {a, b, c})
        window->orderFront();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(c, b, a));
    b->orderFront();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(b, c, a));
    b->orderBack();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(c, b, a));
}

TEST_F(NSWindowOrderTest, AddingDoesNotShowAndBringsAVisibleOneInFront)
{
    a->orderFront();
    a->addChildWindow(b, Order::above);
    EXPECT_FALSE(b->isVisible());
    EXPECT_EQ(b->parentWindow(), a.get());
    EXPECT_THAT(a->childWindows(), ElementsAre(b));
    c->orderBack();
    a->addChildWindow(c, Order::above);
    EXPECT_THAT(application.orderedWindows(), ElementsAre(c, a));
}

TEST_F(NSWindowOrderTest, ChildWindowsMoveWithTheirParent)
{
    a->addChildWindow(b, Order::above);
    b->addChildWindow(c, Order::above);
    a->setFrameOrigin({10, 20});
    EXPECT_EQ(b->frame(), CGRect(210, 20, 100, 100));
    EXPECT_EQ(c->frame(), CGRect(410, 20, 100, 100));
    a->setContentSize({300, 300}); // the top left corner stays
    EXPECT_EQ(b->frame(), CGRect(210, 20, 100, 100));
    a->orderFront();
    b->orderFront();
    screenOf(*a).userMove({0, 0});
    EXPECT_EQ(a->frame().maxY(), 900);
    EXPECT_EQ(b->frame(), CGRect(200, 800, 100, 100));
    EXPECT_EQ(screenOf(*b).placement().origin, (CGPoint{200, 0}));
    b->setFrameOrigin({0, 0}); // and by itself
    EXPECT_EQ(a->frame().maxY(), 900);
}

TEST_F(NSWindowOrderTest, ChildWindowsMoveWhileTheirParentIsOnItsWay)
{
    a->addChildWindow(b, Order::above);
    b->setFrame({250, 0, 100, 100}, {.animate = true});
    a->setFrame({0, 150, 100, 100}, {.animate = true});
    clock.advance(1);
    EXPECT_EQ(a->frame(), CGRect(0, 150, 100, 100));
    EXPECT_EQ(b->frame(), CGRect(250, 150, 100, 100));
}

TEST_F(NSWindowOrderTest, AChildWindowHasOneParent)
{
    a->addChildWindow(c, Order::above);
    b->addChildWindow(c, Order::above);
    EXPECT_THAT(a->childWindows(), IsEmpty());
    EXPECT_EQ(c->parentWindow(), b.get());
    a->removeChildWindow(*c); // not its own
    EXPECT_EQ(c->parentWindow(), b.get());
    b->removeChildWindow(*c);
    EXPECT_EQ(c->parentWindow(), nullptr);
    b->setFrameOrigin({0, 50});
    EXPECT_EQ(c->frame().origin, (CGPoint{400, 0}));
}

TEST_F(NSWindowOrderTest, CyclesAndOrdersThatAreNoneRaiseAndChangeNothing)
{
    a->addChildWindow(b, Order::above);
    b->addChildWindow(c, Order::above);
    EXPECT_THAT(raised([&] { a->addChildWindow(a, Order::above); }), HasSubstr("is the window itself"));
    EXPECT_THAT(raised([&] { c->addChildWindow(a, Order::above); }), HasSubstr("is a parent of the window"));
    EXPECT_THAT(raised([&] { a->addChildWindow(c, static_cast<Order>(0)); }), HasSubstr("below (-1), got 0"));
    EXPECT_THAT(raised([&] { a->addChildWindow(nullptr, Order::above); }), HasSubstr("there is no window"));
    EXPECT_THAT(a->childWindows(), ElementsAre(b));
    EXPECT_EQ(c->parentWindow(), b.get());
    EXPECT_EQ(a->parentWindow(), nullptr);
}

TEST_F(NSWindowOrderTest, ChildWindowsLeaveTheScreenWithTheirParentAndAreClosedWithIt)
{
    a->addChildWindow(b, Order::above);
    a->orderFront();
    b->orderFront();
    a->orderOut();
    EXPECT_FALSE(b->isVisible());
    EXPECT_EQ(b->parentWindow(), a.get());
    a->orderFront();
    b->orderFront();
    a->close();
    EXPECT_FALSE(b->isVisible());
    EXPECT_EQ(b->parentWindow(), nullptr);
    EXPECT_THAT(application.windows(), IsEmpty());
}

TEST_F(NSWindowOrderTest, AClosedChildWindowIsTakenOut)
{
    a->addChildWindow(b, Order::above);
    a->orderFront();
    b->orderFront();
    b->close();
    EXPECT_THAT(a->childWindows(), IsEmpty());
    EXPECT_EQ(b->parentWindow(), nullptr);
    EXPECT_EQ(screenOf(*b).parent(), nullptr);
    EXPECT_TRUE(a->isVisible());
}

TEST_F(NSWindowOrderTest, AChildWindowOutlivesItsParentWithoutOne)
{
    a->addChildWindow(b, Order::above);
    b->orderFront();
    a.reset();
    EXPECT_EQ(b->parentWindow(), nullptr);
    b->orderFront();
}

// --- By name

TEST_F(NSWindowOrderTest, IsReachedByName)
{
    send(a, "orderFront");
    send(b, "orderBack");
    EXPECT_EQ(send(application, "orderedWindows").as<std::vector<std::shared_ptr<NSWindow>>>(), (std::vector{a, b}));
    send(b, "makeKeyWindow");
    EXPECT_TRUE(send(b, "isKeyWindow").as<bool>());
    EXPECT_TRUE(send(b, "canBecomeKeyWindow").as<bool>());
    EXPECT_EQ(send(application, "keyWindow").as<std::shared_ptr<NSWindow>>(), b);
    EXPECT_TRUE(send(application, "isActive").as<bool>());
    send(b, "miniaturize");
    EXPECT_TRUE(send(b, "isMiniaturized").as<bool>());
    send(b, "deminiaturize");
    send(a, "addChildWindow:ordered:", b, 1);
    EXPECT_EQ(send(a, "childWindows").as<std::vector<std::shared_ptr<NSWindow>>>(), std::vector{b});
    EXPECT_EQ(send(b, "parentWindow").as<std::shared_ptr<NSWindow>>(), a);
    send(a, "removeChildWindow:", b);
    EXPECT_EQ(send(b, "parentWindow").as<ObjectRef>(), nullptr);
    EXPECT_EQ(send(b, "windowController").as<ObjectRef>(), nullptr);
    send(b, "orderOut");
    EXPECT_FALSE(send(b, "isVisible").as<bool>());
    send(a, "performClose");
    EXPECT_FALSE(send(a, "isVisible").as<bool>());
}

} // namespace
} // namespace RVCore::NSWindowOrderTests
