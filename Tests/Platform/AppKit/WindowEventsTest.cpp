#include "InputTesting.h"

#include <AppKit/NSCursor.h>
#include <AppKit/NSTrackingArea.h>

#include <QuartzCore/CALayer.h>
#include <gmock/gmock.h>

namespace RVCore::WindowEventsTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Options = NSTrackingAreaOptions;
constexpr Options hover = Options::mouseEnteredAndExited | Options::activeAlways | Options::inVisibleRect;

class WindowEventsTest : public WindowInputTest {
protected:
    static std::shared_ptr<NSTrackingArea> track(ListeningView& view, Options options, const CGRect& rect = {})
    {
        auto area = make<NSTrackingArea>(rect, options, view);
        view.addTrackingArea(area);
        return area;
    }
};

TEST_F(WindowEventsTest, aClickReachesTheTopmostViewUnderThePointer)
{
    const auto below = listen({0, 0, 100, 100}, "below");
    const auto above = listen({50, 0, 100, 100}, "above");
    click(75, 50);
    EXPECT_THAT(takeLog(), ElementsAre("above down", "above up"));
    click(25, 50);
    EXPECT_THAT(takeLog(), ElementsAre("below down", "below up"));
    click(175, 50);
    EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(WindowEventsTest, anEventSaysWhereInWindowCoordinatesItIs)
{
    const auto view = listen({0, 0, 100, 100}, "view");
    press(30, 20);
    EXPECT_EQ(view->lastEvent->locationInWindow(), (CGPoint{30, 80}));
    EXPECT_EQ(view->convertPointFrom(view->lastEvent->locationInWindow(), nullptr), (CGPoint{30, 80}));
    EXPECT_EQ(view->lastEvent->window(), window);
    EXPECT_EQ(view->lastEvent->timestamp(), 10);
    EXPECT_EQ(view->lastEvent->type(), NSEventType::leftMouseDown);
}

TEST_F(WindowEventsTest, whatAViewDoesNotTakeGoesOnToItsSuperview)
{
    const auto outer = listen({0, 0, 100, 100}, "outer");
    const auto inner = listen({0, 0, 50, 50}, "inner", outer.get());
    inner->keeps = false;
    click(10, 90);
    EXPECT_THAT(takeLog(), ElementsAre("inner down", "outer down", "inner up", "outer up"));
}

TEST_F(WindowEventsTest, theViewWhereAButtonIsPressedHoldsThePointerUntilItIsReleased)
{
    const auto first = listen({0, 0, 50, 100}, "first");
    const auto second = listen({50, 0, 50, 100}, "second");
    press(25, 50);
    move(75, 50);
    move(500, -20);
    release(75, 50);
    EXPECT_THAT(takeLog(), ElementsAre("first down", "first dragged", "first dragged", "first up"));
    EXPECT_EQ(first->lastEvent->type(), NSEventType::leftMouseUp);
}

TEST_F(WindowEventsTest, otherButtonsHaveHandlersOfTheirOwn)
{
    listen({0, 0, 100, 100}, "view");
    press(10, 10, 1);
    move(20, 10);
    release(20, 10, 1);
    press(10, 10, 2);
    release(10, 10, 2);
    press(10, 10, 4);
    release(10, 10, 4);
    EXPECT_THAT(takeLog(), ElementsAre("view right down", "view right dragged", "view right up", "view other down",
                                       "view other up", "view other down", "view other up"));
}

TEST_F(WindowEventsTest, buttonsHeldTogetherEachReleaseWhereTheyWerePressed)
{
    listen({0, 0, 50, 100}, "first");
    listen({50, 0, 50, 100}, "second");
    press(25, 50);
    press(75, 50, 1);
    release(75, 50);
    release(25, 50, 1);
    EXPECT_THAT(takeLog(), ElementsAre("first down", "second right down", "first up", "second right up"));
}

TEST_F(WindowEventsTest, aReleaseWithoutAPressIsDropped)
{
    listen({0, 0, 100, 100}, "view");
    release(10, 10);
    EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(WindowEventsTest, clicksCountWhileTheyFollowEachOtherAtOnePlace)
{
    const auto view = listen({0, 0, 200, 100}, "view");
    const auto countAfter = [&](double seconds, CGFloat x, int button = 0) {
        time += seconds;
        press(x, 50, button);
        const int count = view->lastEvent->clickCount();
        release(x, 50, button);
        EXPECT_EQ(view->lastEvent->clickCount(), count);
        return count;
    };
    EXPECT_EQ(countAfter(0, 50), 1);
    EXPECT_EQ(countAfter(0.5, 50), 2);
    EXPECT_EQ(countAfter(0.1, 54), 3);
    EXPECT_EQ(countAfter(0.1, 60), 1);    // too far
    EXPECT_EQ(countAfter(0.51, 60), 1);   // too late
    EXPECT_EQ(countAfter(0.1, 60, 1), 1); // another button
}

TEST_F(WindowEventsTest, aViewThatDiesWhileItHoldsThePointerGetsNothingMore)
{
    auto view = listen({0, 0, 100, 100}, "view");
    press(10, 10);
    view->removeFromSuperview();
    view.reset();
    move(20, 20);
    release(20, 20);
    EXPECT_THAT(takeLog(), ElementsAre("view down"));
}

TEST_F(WindowEventsTest, aHandlerMayCloseTheWindow)
{
    const auto view = listen({0, 0, 100, 100}, "view");
    view->onEvent = [&](const std::string&) { window->close(); };
    press(10, 10);
    release(10, 10);
    EXPECT_THAT(takeLog(), ElementsAre("view down"));
    EXPECT_FALSE(window->isVisible());
    NSEventContent content;
    content.type = NSEventType::leftMouseDown;
    content.window = window;
    window->sendEvent(*make<NSEvent>(content));
    EXPECT_THAT(takeLog(), IsEmpty()); // events of a window that is not visible are dropped
}

TEST_F(WindowEventsTest, aHandlerMayTakeItsViewOut)
{
    auto view = listen({0, 0, 100, 100}, "view");
    ListeningView* const raw = view.get();
    raw->onEvent = [raw](const std::string&) { raw->removeFromSuperview(); };
    view.reset();
    click(10, 10);
    EXPECT_THAT(takeLog(), ElementsAre("view down"));
}

TEST_F(WindowEventsTest, scrollingGoesToTheViewUnderThePointer)
{
    const auto view = listen({0, 0, 100, 100}, "view");
    send({.kind = InputKind::scrolled, .location = {10, 10}, .scroll = {1.5, -20}, .isPreciseScroll = true});
    EXPECT_EQ(view->lastEvent->scrollingDeltaX(), 1.5);
    EXPECT_EQ(view->lastEvent->scrollingDeltaY(), -20);
    EXPECT_TRUE(view->lastEvent->hasPreciseScrollingDeltas());
    EXPECT_THAT(takeLog(), ElementsAre("view scroll"));
}

TEST_F(WindowEventsTest, aTransformedViewIsHitWhereItIsPainted)
{
    const auto view = listen({50, 30, 20, 20}, "view");
    view->setWantsLayer(true);
    view->layer()->setAffineTransform(CGAffineTransform::scale(2, 2)); // about its centre: 40 … 80, 20 … 60
    EXPECT_EQ(content().hitTest({41, 39}), &content());                // the content's frame is in window coordinates
    EXPECT_EQ(content().hitTest({41, 75}), view.get());
    EXPECT_EQ(content().hitTest({79, 41}), view.get());
    EXPECT_EQ(content().hitTest({81, 60}), &content());
    view->layer()->setAffineTransform(CGAffineTransform::scale(0, 1));
    EXPECT_EQ(content().hitTest({60, 60}), &content());
}

TEST_F(WindowEventsTest, aViewThatIsTakenOutUnderThePointerGetsNothingMore)
{
    const auto view = listen({0, 0, 100, 100}, "view");
    press(10, 10);
    view->removeFromSuperview();
    move(20, 20);
    release(20, 20);
    EXPECT_THAT(takeLog(), ElementsAre("view down"));
}

TEST_F(WindowEventsTest, aViewThatMovesToAnotherSuperviewKeepsThePointer)
{
    const auto outer = listen({50, 0, 50, 100}, "outer");
    const auto view = listen({0, 0, 50, 50}, "view");
    press(10, 10);
    outer->addSubview(view);
    move(60, 20);
    release(60, 20);
    EXPECT_THAT(takeLog(), ElementsAre("view down", "view dragged", "view up"));
}

// Tracking areas.

TEST_F(WindowEventsTest, aTrackingAreaTellsOfEntersAndExits)
{
    const auto view = listen({50, 20, 40, 40}, "view");
    const auto area = track(*view, hover);
    move(10, 10);
    EXPECT_THAT(takeLog(), IsEmpty());
    move(60, 30);
    move(70, 30);
    EXPECT_THAT(takeLog(), ElementsAre("view entered"));
    EXPECT_EQ(view->lastEvent->trackingArea(), area);
    move(10, 10);
    EXPECT_THAT(takeLog(), ElementsAre("view exited"));
    move(60, 30);
    leave();
    EXPECT_THAT(takeLog(), ElementsAre("view entered", "view exited"));
}

TEST_F(WindowEventsTest, aTrackingAreaCoversItsRectangleOnly)
{
    const auto view = listen({0, 0, 100, 100}, "view");
    track(*view, Options::mouseEnteredAndExited | Options::activeAlways, {0, 0, 10, 10}); // bottom left
    move(5, 5);
    EXPECT_THAT(takeLog(), IsEmpty());
    move(5, 95);
    EXPECT_THAT(takeLog(), ElementsAre("view entered"));
}

TEST_F(WindowEventsTest, movesReachAnAreaThatAskedForThem)
{
    const auto view = listen({0, 0, 100, 100}, "view");
    track(*view, Options::mouseMoved | Options::activeAlways | Options::inVisibleRect);
    move(5, 5);
    move(6, 5);
    EXPECT_THAT(takeLog(), ElementsAre("view moved", "view moved"));
}

TEST_F(WindowEventsTest, movesReachTheViewUnderThePointerIfTheWindowAsksForThem)
{
    listen({0, 0, 100, 100}, "view");
    move(5, 5);
    EXPECT_THAT(takeLog(), IsEmpty());
    window->setAcceptsMouseMovedEvents(true);
    move(6, 5);
    EXPECT_THAT(takeLog(), ElementsAre("view moved"));
}

TEST_F(WindowEventsTest, anAreaIsQuietWhileAButtonIsDownUnlessItAsksToHear)
{
    const auto quiet = listen({0, 0, 50, 50}, "quiet");
    track(*quiet, hover);
    const auto loud = listen({50, 0, 50, 50}, "loud");
    track(*loud, hover | Options::enabledDuringMouseDrag);
    move(25, 25);
    press(25, 25);
    takeLog();
    move(75, 25);
    EXPECT_THAT(takeLog(), ElementsAre("loud entered", "quiet dragged"));
    move(150, 80);
    EXPECT_THAT(takeLog(), ElementsAre("loud exited", "quiet dragged"));
    release(150, 80);
    EXPECT_THAT(takeLog(), ElementsAre("quiet up", "quiet exited"));
}

TEST_F(WindowEventsTest, anAreaThatIsActiveOnlyInTheKeyWindowIsQuietInAnother)
{
    const auto view = listen({0, 0, 100, 100}, "view");
    track(*view, Options::mouseEnteredAndExited | Options::activeInKeyWindow | Options::inVisibleRect);
    const auto other = make<NSWindow>(CGSize{50, 50});
    other->makeKeyAndOrderFront();
    move(5, 5);
    EXPECT_THAT(takeLog(), IsEmpty());
    other->close();
    move(6, 5);
    EXPECT_THAT(takeLog(), ElementsAre("view entered"));
}

TEST_F(WindowEventsTest, anAreaThatIsActiveInTheFirstResponderFollowsIt)
{
    const auto view = listen({0, 0, 100, 100}, "view");
    view->accepts = true;
    track(*view, Options::mouseEnteredAndExited | Options::activeWhenFirstResponder | Options::inVisibleRect);
    move(5, 5);
    EXPECT_THAT(takeLog(), IsEmpty());
    window->makeFirstResponder(view.get());
    move(6, 5);
    EXPECT_THAT(takeLog(), ElementsAre("view entered"));
}

TEST_F(WindowEventsTest, aViewThatComesUnderThePointerIsEnteredAtTheNextFrame)
{
    move(60, 30);
    const auto view = listen({50, 20, 40, 40}, "view");
    track(*view, hover);
    desktop->flushFrames();
    EXPECT_THAT(takeLog(), ElementsAre("view entered"));
    view->setHidden(true);
    desktop->flushFrames();
    EXPECT_THAT(takeLog(), ElementsAre("view exited"));
}

TEST_F(WindowEventsTest, anAreaThatIsTakenOutTellsNothingMore)
{
    const auto view = listen({50, 20, 40, 40}, "view");
    const auto area = track(*view, hover);
    move(60, 30);
    view->removeTrackingArea(area);
    move(10, 10);
    EXPECT_THAT(takeLog(), ElementsAre("view entered"));
}

TEST_F(WindowEventsTest, closingTheWindowLeavesEveryArea)
{
    const auto view = listen({50, 20, 40, 40}, "view");
    track(*view, hover);
    move(60, 30);
    window->close();
    EXPECT_THAT(takeLog(), ElementsAre("view entered", "view exited"));
}

TEST_F(WindowEventsTest, aHandlerMayCloseTheWindowWhenItIsEnteredOrLeft)
{
    const auto view = listen({50, 20, 40, 40}, "view");
    track(*view, hover | Options::mouseMoved);
    view->cursor = make<NSCursor>(CursorShape::pointingHand);
    view->onEvent = [&](const std::string&) { window->close(); };
    move(60, 30);
    EXPECT_FALSE(window->isVisible());
    EXPECT_THAT(takeLog(), ElementsAre("view entered", "view exited"));
    EXPECT_EQ(screen().cursor(), CursorShape::arrow) << "the pointer is nowhere";
    window->makeKeyAndOrderFront();
    view->onEvent = nullptr;
    move(60, 30);
    view->onEvent = [&](const std::string&) { window->close(); };
    move(10, 10);
    EXPECT_THAT(takeLog(), ElementsAre("view entered", "view moved", "view exited"));
}

TEST_F(WindowEventsTest, whatAHandlerLeavesIsNotEnteredAfterwards)
{
    const auto outer = listen({0, 0, 100, 100}, "outer");
    track(*outer, hover);
    const auto inner = listen({0, 0, 50, 50}, "inner", outer.get());
    track(*inner, hover);
    outer->onEvent = [&](const std::string& name) {
        if (name == "entered")
            leave();
    };
    move(10, 90);
    EXPECT_THAT(takeLog(), ElementsAre("outer entered", "outer exited"));
}

TEST_F(WindowEventsTest, aViewThatLeavesTheWindowUnderThePointerIsLeftFirst)
{
    const auto view = listen({50, 20, 40, 40}, "view");
    const auto inner = listen({0, 0, 40, 40}, "inner", view.get());
    track(*view, hover);
    track(*inner, hover);
    move(60, 30);
    takeLog();
    view->removeFromSuperview();
    EXPECT_THAT(takeLog(), ElementsAre("inner exited", "view exited"));
    content().addSubview(view);
    desktop->flushFrames();
    EXPECT_THAT(takeLog(), ElementsAre("view entered", "inner entered"));
}

TEST_F(WindowEventsTest, aDragThatEndsOutsideLeavesWhatItBeganIn)
{
    const auto view = listen({0, 0, 50, 50}, "view");
    track(*view, hover);
    move(25, 25);
    press(25, 25);
    leave();
    takeLog();
    release(500, 25);
    EXPECT_THAT(takeLog(), ElementsAre("view up", "view exited"));
}

TEST_F(WindowEventsTest, anAreaThatAsksToHearDuringADragHearsThatThePointerLeft)
{
    const auto view = listen({0, 0, 50, 50}, "view");
    track(*view, hover | Options::enabledDuringMouseDrag);
    move(25, 25);
    press(25, 25);
    takeLog();
    leave();
    EXPECT_THAT(takeLog(), ElementsAre("view exited"));
}

TEST_F(WindowEventsTest, aReleaseElsewhereMovesThePointerThere)
{
    const auto first = listen({0, 0, 50, 50}, "first");
    const auto second = listen({50, 0, 50, 50}, "second");
    track(*first, hover);
    track(*second, hover);
    move(25, 25);
    press(25, 25);
    takeLog();
    release(75, 25);
    EXPECT_THAT(takeLog(), ElementsAre("first up", "first exited", "second entered"));
}

TEST_F(WindowEventsTest, anAreaThatIsActiveInTheActiveProgramIsQuietInAnother)
{
    const auto inProgram = listen({0, 0, 50, 100}, "in program");
    track(*inProgram, Options::mouseEnteredAndExited | Options::activeInActiveApp | Options::inVisibleRect);
    const auto inKey = listen({50, 0, 50, 100}, "in key window");
    track(*inKey, Options::mouseEnteredAndExited | Options::activeInKeyWindow | Options::inVisibleRect);
    screen().userDeactivate();
    move(25, 50);
    move(75, 50);
    EXPECT_THAT(takeLog(), IsEmpty());
    screen().userActivate();
    move(25, 50);
    move(75, 50);
    EXPECT_THAT(takeLog(), ElementsAre("in program entered", "in program exited", "in key window entered"));
    screen().userDeactivate();
    desktop->flushFrames();
    EXPECT_THAT(takeLog(), ElementsAre("in key window exited"));
}

TEST_F(WindowEventsTest, enteringAnAreaThatAsksForItUpdatesTheCursor)
{
    const auto view = listen({50, 20, 40, 40}, "view");
    track(*view, Options::cursorUpdate | Options::activeAlways | Options::inVisibleRect);
    move(60, 30);
    EXPECT_THAT(takeLog(), ElementsAre("view cursor"));
}

// The pointer's look.

TEST_F(WindowEventsTest, thePointerLooksAsTheInnermostViewUnderItSays)
{
    const auto outer = listen({0, 0, 100, 100}, "outer");
    outer->cursor = make<NSCursor>(CursorShape::iBeam);
    const auto inner = listen({0, 0, 50, 50}, "inner", outer.get());
    inner->cursor = make<NSCursor>(CursorShape::pointingHand);
    const auto plain = listen({50, 0, 50, 50}, "plain", outer.get());
    move(150, 50);
    EXPECT_EQ(screen().cursor(), CursorShape::arrow);
    move(25, 75);
    EXPECT_EQ(screen().cursor(), CursorShape::pointingHand);
    move(75, 75);
    EXPECT_EQ(screen().cursor(), CursorShape::iBeam);
    move(150, 50);
    EXPECT_EQ(screen().cursor(), CursorShape::arrow);
    EXPECT_EQ(inner->cursorRectCount, 1);
    inner->setFrameSize({40, 50});
    move(45, 75);
    EXPECT_EQ(screen().cursor(), CursorShape::iBeam);
    move(35, 75);
    EXPECT_EQ(screen().cursor(), CursorShape::pointingHand);
    EXPECT_EQ(inner->cursorRectCount, 2);
}

// Keys.

TEST_F(WindowEventsTest, keysGoToTheFirstResponderAndOnAlongTheChain)
{
    const auto view = listen({0, 0, 100, 100}, "view");
    view->accepts = true;
    view->keeps = false;
    type("a");
    EXPECT_THAT(takeLog(), IsEmpty());
    click(10, 10); // makes it the first responder
    takeLog();
    type("a");
    EXPECT_THAT(takeLog(), ElementsAre("view key down", "view key up"));
    EXPECT_EQ(view->lastEvent->characters(), "a");
    send({.kind = InputKind::modifiersChanged, .modifiers = InputModifier::shift});
    EXPECT_THAT(takeLog(), ElementsAre("view flags"));
    EXPECT_EQ(view->lastEvent->modifierFlags(), NSEventModifierFlags::shift);
}

TEST_F(WindowEventsTest, aShortcutWithCommandComesBeforeTheFirstResponder)
{
    const auto view = listen({0, 0, 50, 50}, "view");
    view->accepts = true;
    const auto button = listen({50, 0, 50, 50}, "button");
    button->shortcut = "s";
    window->makeFirstResponder(view.get());
    type("s", InputModifier::command);
    EXPECT_THAT(takeLog(), ElementsAre("button shortcut", "view key up"));
    type("s");
    EXPECT_THAT(takeLog(), ElementsAre("view key down", "view key up"));
    button->setHidden(true);
    type("s", InputModifier::command);
    EXPECT_THAT(takeLog(), ElementsAre("view key down", "view key up"));
}

TEST_F(WindowEventsTest, aKeyThatNobodyTakesIsTriedAsAShortcut)
{
    const auto view = listen({0, 0, 50, 50}, "view");
    view->accepts = true;
    view->keeps = false;
    const auto button = listen({50, 0, 50, 50}, "button");
    button->shortcut = NSKey::carriageReturn;
    window->makeFirstResponder(view.get());
    type(NSKey::carriageReturn);
    EXPECT_THAT(takeLog(), ElementsAre("view key down", "button shortcut", "view key up"));
}

TEST_F(WindowEventsTest, tabMovesTheFirstResponderAroundTheLoop)
{
    const auto second = listen({0, 50, 50, 20}, "second");
    const auto first = listen({0, 0, 50, 20}, "first");
    const auto none = listen({60, 0, 50, 20}, "none");
    for (const auto& view : {first, second}) {
        view->accepts = true;
        view->keeps = false;
    }
    const auto afterTab = [&](const char* key, std::uint32_t modifiers = 0) {
        type(key, modifiers);
        return window->firstResponder();
    };
    EXPECT_EQ(afterTab(NSKey::tab), first.get());
    EXPECT_EQ(afterTab(NSKey::tab), second.get());
    EXPECT_EQ(afterTab(NSKey::tab), first.get());
    EXPECT_EQ(afterTab(NSKey::backTab), second.get());
    EXPECT_EQ(afterTab(NSKey::tab, InputModifier::shift), first.get());
}

TEST_F(WindowEventsTest, tabWithCommandIsNoMoveThroughTheLoop)
{
    const auto view = listen({0, 0, 50, 20}, "view");
    view->accepts = true;
    type(NSKey::tab, InputModifier::command);
    EXPECT_EQ(window->firstResponder(), window.get());
}

TEST_F(WindowEventsTest, eventsMadeInCodeDoAllThatRealOnesDo)
{
    const auto view = listen({0, 0, 100, 100}, "view");
    view->accepts = true;
    NSEventContent content;
    content.type = NSEventType::leftMouseDown;
    content.locationInWindow = {10, 90};
    content.window = window;
    NSApplication::shared().sendEvent(*make<NSEvent>(content));
    content.type = NSEventType::leftMouseDragged;
    NSApplication::shared().sendEvent(*make<NSEvent>(content));
    content.type = NSEventType::leftMouseUp;
    NSApplication::shared().sendEvent(*make<NSEvent>(content));
    content = {};
    content.type = NSEventType::keyDown;
    content.characters = "x"; // without a window: the key window's
    NSApplication::shared().postEvent(make<NSEvent>(content));
    EXPECT_THAT(takeLog(), ElementsAre("view down", "view dragged", "view up"));
    desktop->runPending();
    EXPECT_THAT(takeLog(), ElementsAre("view key down"));
}

// The first responder.

TEST_F(WindowEventsTest, thePresentFirstResponderIsAskedBeforeAnother)
{
    const auto first = listen({0, 0, 50, 50}, "first");
    const auto second = listen({50, 0, 50, 50}, "second");
    first->accepts = second->accepts = true;
    EXPECT_TRUE(window->makeFirstResponder(first.get()));
    EXPECT_TRUE(window->makeFirstResponder(first.get())); // asks nobody
    EXPECT_EQ(first->becomeCount, 1);
    first->resigns = false;
    EXPECT_FALSE(window->makeFirstResponder(second.get()));
    EXPECT_EQ(window->firstResponder(), first.get());
    EXPECT_EQ(second->becomeCount, 0);
    first->resigns = true;
    second->becomes = false;
    EXPECT_FALSE(window->makeFirstResponder(second.get()));
    EXPECT_EQ(window->firstResponder(), window.get());
    second->becomes = true;
    EXPECT_TRUE(window->makeFirstResponder(second.get()));
    EXPECT_TRUE(window->makeFirstResponder(nullptr));
    EXPECT_EQ(second->resignCount, 1);
}

TEST_F(WindowEventsTest, aViewThatLeavesTheWindowResigns)
{
    const auto view = listen({0, 0, 50, 50}, "view");
    view->accepts = true;
    view->resigns = false;
    window->makeFirstResponder(view.get());
    view->onResign = [&] { view->removeFromSuperview(); }; // it may well be gone by then
    view->removeFromSuperview();
    EXPECT_EQ(view->resignCount, 1);
    EXPECT_EQ(view->superview(), nullptr);
    EXPECT_EQ(window->firstResponder(), window.get());
}

TEST_F(WindowEventsTest, whoResignsMayChooseAnotherFirstResponder)
{
    const auto first = listen({0, 0, 50, 50}, "first");
    const auto second = listen({50, 0, 50, 50}, "second");
    const auto third = listen({100, 0, 50, 50}, "third");
    first->accepts = second->accepts = third->accepts = true;
    window->makeFirstResponder(first.get());
    first->onResign = [&] { window->makeFirstResponder(third.get()); };
    EXPECT_FALSE(window->makeFirstResponder(second.get()));
    EXPECT_EQ(window->firstResponder(), third.get());
    EXPECT_EQ(second->becomeCount, 0);
    EXPECT_EQ(third->resignCount, 0);
}

TEST_F(WindowEventsTest, whoResignsMayStayTheFirstResponder)
{
    const auto first = listen({0, 0, 50, 50}, "first");
    const auto second = listen({50, 0, 50, 50}, "second");
    first->accepts = second->accepts = true;
    window->makeFirstResponder(first.get());
    first->onResign = [&] { EXPECT_TRUE(window->makeFirstResponder(first.get())); };
    EXPECT_FALSE(window->makeFirstResponder(second.get()));
    EXPECT_EQ(window->firstResponder(), first.get());
    EXPECT_EQ(first->becomeCount, 2);
}

TEST_F(WindowEventsTest, whatLeavesTheWindowMeanwhileDoesNotBecomeFirstResponder)
{
    const auto first = listen({0, 0, 50, 50}, "first");
    const auto second = listen({50, 0, 50, 50}, "second");
    first->accepts = second->accepts = true;
    window->makeFirstResponder(first.get());
    first->onResign = [&] { second->removeFromSuperview(); };
    EXPECT_FALSE(window->makeFirstResponder(second.get()));
    EXPECT_EQ(window->firstResponder(), window.get());
    EXPECT_EQ(second->becomeCount, 0);
}

TEST_F(WindowEventsTest, whoRefusesToResignAfterLeavingTheWindowIsNotKept)
{
    const auto first = listen({0, 0, 50, 50}, "first");
    const auto second = listen({50, 0, 50, 50}, "second");
    first->accepts = second->accepts = true;
    first->resigns = false;
    window->makeFirstResponder(first.get());
    first->onResign = [&] { first->removeFromSuperview(); };
    EXPECT_TRUE(window->makeFirstResponder(second.get()));
    EXPECT_EQ(window->firstResponder(), second.get());
}

TEST_F(WindowEventsTest, aFirstResponderThatIsHiddenLetsGoOfTheKeys)
{
    const auto outer = listen({0, 0, 100, 100}, "outer");
    const auto view = listen({0, 0, 50, 50}, "view", outer.get());
    view->accepts = true;
    window->makeFirstResponder(view.get());
    view->setHidden(true);
    EXPECT_EQ(window->firstResponder(), window.get());
    view->setHidden(false);
    window->makeFirstResponder(view.get());
    outer->setHidden(true);
    EXPECT_EQ(window->firstResponder(), window.get());
    type("x");
    EXPECT_THAT(takeLog(), IsEmpty());
}

} // namespace
} // namespace RVCore::WindowEventsTests
