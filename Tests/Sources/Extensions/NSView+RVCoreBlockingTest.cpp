#include <AppKit/NSAccessibility.h>
#include <AppKit/NSAnimationContext.h>
#include <Platform/AppKit/InputTesting.h>
#include <Platform/AppKit/WindowTesting.h>
#include <Platform/Foundation/Raised.h>
#include <Sources/Views/BlockingTesting.h>

#include <gmock/gmock.h>

#include <limits>

namespace RVCore::NSViewRVCoreBlockingTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class ViewBlocking : public testing::Test {
protected:
    ManualDispatchClock clock;
    std::shared_ptr<NSView> host = make<NSView>(CGRect(0, 0, 300, 200));
};

TEST_F(ViewBlocking, showingPutsAnOverlayOnTopOfTheView)
{
    clock.setSecondsSince1970(1000);
    const auto below = makeView(*host);
    showBlockingView(*host, {.title = "T", .message = "m", .showProgress = false});
    EXPECT_TRUE(host->wantsLayer());
    const auto overlay = progressBlockingView(*host);
    ASSERT_TRUE(overlay);
    EXPECT_EQ(host->subviews(), (std::vector<std::shared_ptr<NSView>>{below, overlay}));
    EXPECT_EQ(overlay->title(), "T");
    EXPECT_EQ(overlay->message(), "m");
    EXPECT_FALSE(overlay->showProgress());
    EXPECT_EQ(overlay->layer()->zPosition(), 1.0);
    EXPECT_EQ(progressBlockingViewStartTime(*host), 1000);
    EXPECT_EQ(host->constraints().size(), 4);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(overlay->frame(), host->bounds());
    clock.advance(0.31);
    EXPECT_EQ(shownAlpha(*overlay), 1);
    EXPECT_EQ(shownBlurRadius(*overlay), 8);
}

TEST_F(ViewBlocking, withoutArgumentsThereIsASpinnerAndNoText)
{
    showBlockingView(*host);
    const auto overlay = progressBlockingView(*host);
    EXPECT_EQ(overlay->title(), std::nullopt);
    EXPECT_EQ(overlay->message(), std::nullopt);
    EXPECT_TRUE(overlay->showProgress());
}

TEST_F(ViewBlocking, showingAgainChangesTheTextsAndNothingElse)
{
    clock.setSecondsSince1970(1000);
    showBlockingView(*host, {.title = "A", .showProgress = false});
    const auto overlay = progressBlockingView(*host);
    clock.advance(0.5);
    showBlockingView(*host, {.title = "B", .message = "m", .showProgress = true});
    EXPECT_THAT(overlaysIn(*host), ElementsAre(overlay));
    EXPECT_EQ(progressBlockingView(*host), overlay);
    EXPECT_EQ(overlay->title(), "B");
    EXPECT_EQ(overlay->message(), "m");
    EXPECT_FALSE(overlay->showProgress());
    EXPECT_EQ(progressBlockingViewStartTime(*host), 1000);
}

TEST_F(ViewBlocking, hiddenAfterAQuarterOfASecondItFadesThreeQuartersLater)
{
    showBlockingView(*host);
    const auto overlay = progressBlockingView(*host);
    clock.advance(0.25);
    hideBlockingView(*host);
    clock.advance(0.74);
    EXPECT_EQ(blurRadius(*overlay), 8);
    clock.advance(0.02);
    EXPECT_EQ(blurRadius(*overlay), 0);
    EXPECT_THAT(overlaysIn(*host), SizeIs(1));
    clock.advance(0.28);
    EXPECT_THAT(overlaysIn(*host), SizeIs(1));
    clock.advance(0.02);
    EXPECT_THAT(overlaysIn(*host), IsEmpty());
}

TEST_F(ViewBlocking, hiddenAfterTwoSecondsItFadesAtOnce)
{
    showBlockingView(*host);
    const auto overlay = progressBlockingView(*host);
    clock.advance(2);
    hideBlockingView(*host);
    clock.advance(0);
    EXPECT_EQ(blurRadius(*overlay), 0);
    clock.advance(0.29);
    EXPECT_THAT(overlaysIn(*host), SizeIs(1));
    clock.advance(0.02);
    EXPECT_THAT(overlaysIn(*host), IsEmpty());
    EXPECT_TRUE(host->constraints().empty());
}

TEST_F(ViewBlocking, hidingFreesTheViewAtOnce)
{
    showBlockingView(*host);
    hideBlockingView(*host);
    EXPECT_EQ(progressBlockingView(*host), nullptr);
    EXPECT_EQ(progressBlockingViewStartTime(*host), std::nullopt);
    EXPECT_THAT(overlaysIn(*host), SizeIs(1));
}

TEST_F(ViewBlocking, shownHiddenAndShownAgainThereAreTwoOverlaysForAWhile)
{
    showBlockingView(*host, {.title = "first"});
    clock.advance(0.1);
    hideBlockingView(*host);
    clock.advance(0.1);
    showBlockingView(*host, {.title = "second"});
    auto overlays = overlaysIn(*host);
    ASSERT_THAT(overlays, SizeIs(2));
    EXPECT_EQ(overlays[0]->title(), "first");
    EXPECT_EQ(progressBlockingView(*host), overlays[1]);
    clock.advance(1.2);
    EXPECT_THAT(overlaysIn(*host), ElementsAre(overlays[1]));
    hideBlockingView(*host);
    clock.advance(0.31);
    EXPECT_THAT(overlaysIn(*host), IsEmpty());
}

TEST_F(ViewBlocking, hidingAFreeViewDoesNothing)
{
    hideBlockingView(*host);
    EXPECT_FALSE(host->wantsLayer());
    EXPECT_EQ(DispatchQueue::main().nextDeadline(), std::nullopt);
    showBlockingView(*host);
    hideBlockingView(*host);
    hideBlockingView(*host);
    clock.advance(1.31);
    EXPECT_THAT(overlaysIn(*host), IsEmpty());
}

TEST_F(ViewBlocking, aDateThatIsSetBackKeepsTheOverlayLongerThanASecond)
{
    clock.setSecondsSince1970(1000);
    showBlockingView(*host);
    clock.setSecondsSince1970(998);
    hideBlockingView(*host);
    clock.advance(2.99);
    EXPECT_THAT(overlaysIn(*host), SizeIs(1));
    clock.advance(0.32);
    EXPECT_THAT(overlaysIn(*host), IsEmpty());
}

TEST_F(ViewBlocking, shownWithinAGroupThatMovesEverythingTheContentIsNotSeenBeforeItsFade)
{
    NSAnimationContext::runAnimationGroup([&](NSAnimationContext& context) {
        context.setDuration(5);
        context.setAllowsImplicitAnimation(true);
        showBlockingView(*host);
        EXPECT_EQ(shownAlpha(*progressBlockingView(*host)), 0);
    });
    clock.advance(0.31);
    EXPECT_EQ(shownAlpha(*progressBlockingView(*host)), 1);
}

TEST_F(ViewBlocking, aStartTimeThatIsNoNumberDelaysNothing)
{
    showBlockingView(*host);
    setProgressBlockingViewStartTime(*host, std::numeric_limits<double>::quiet_NaN());
    hideBlockingView(*host);
    clock.advance(0.31);
    EXPECT_THAT(overlaysIn(*host), IsEmpty());
}

TEST_F(ViewBlocking, aStartTimeThatNeverComesRaisesAndLeavesTheViewCovered)
{
    showBlockingView(*host);
    setProgressBlockingViewStartTime(*host, std::numeric_limits<double>::infinity());
    EXPECT_THAT(raised([&] { hideBlockingView(*host); }), HasSubstr("NSInvalidArgumentException"));
    EXPECT_TRUE(progressBlockingView(*host));
}

TEST_F(ViewBlocking, theOverlayIsKeptBesideTheView)
{
    const auto overlay = make<RVProgressBlockingView>(BlockingViewContent{});
    setProgressBlockingView(*host, overlay);
    EXPECT_EQ(progressBlockingView(*host), overlay);
    EXPECT_EQ(send(host, "progressBlockingView").as<ObjectRef>(), overlay);
    setProgressBlockingView(*host, nullptr);
    EXPECT_EQ(progressBlockingView(*host), nullptr);
    EXPECT_EQ(overlay.use_count(), 1);
    setProgressBlockingViewStartTime(*host, 12.5);
    EXPECT_EQ(progressBlockingViewStartTime(*host), 12.5);
    setProgressBlockingViewStartTime(*host, std::nullopt);
    EXPECT_EQ(progressBlockingViewStartTime(*host), std::nullopt);
}

TEST_F(ViewBlocking, aViewThatDiesWhileItIsCoveredLetsGoOfTheOverlay)
{
    showBlockingView(*host);
    clock.advance(0.5);
    const std::weak_ptr<NSView> overlay = progressBlockingView(*host);
    host.reset();
    EXPECT_TRUE(overlay.expired());
    clock.advance(5);
}

TEST_F(ViewBlocking, aViewThatDiesWhileTheOverlayIsOnItsWayOutLetsGoOfIt)
{
    for (const double death : {0.1, 1.0, 1.15}) {
        host = make<NSView>(CGRect(0, 0, 300, 200));
        showBlockingView(*host);
        const std::weak_ptr<NSView> overlay = progressBlockingView(*host);
        hideBlockingView(*host);
        clock.advance(death);
        host.reset();
        clock.advance(1.5);
        EXPECT_TRUE(overlay.expired()) << death;
    }
}

TEST_F(ViewBlocking, aViewThatIsTakenOutOfItsWindowWhileCoveredIsUncoveredAllTheSame)
{
    const auto window = make<NSWindow>(CGSize{300, 200});
    window->contentView()->addSubview(host);
    showBlockingView(*host);
    clock.advance(0.1);
    host->removeFromSuperview();
    hideBlockingView(*host);
    clock.advance(1.3);
    EXPECT_THAT(overlaysIn(*host), IsEmpty());
    EXPECT_TRUE(host->constraints().empty());
}

TEST_F(ViewBlocking, anOverlayThatIsTakenOutByHandStaysOut)
{
    showBlockingView(*host);
    progressBlockingView(*host)->removeFromSuperview();
    hideBlockingView(*host);
    clock.advance(1.31);
    EXPECT_THAT(overlaysIn(*host), IsEmpty());
    EXPECT_EQ(progressBlockingView(*host), nullptr);
}

TEST_F(ViewBlocking, theOperationsAreCalledByName)
{
    send(host, "showBlockingViewWithTitle:message:showProgress:", "T", nullptr, false);
    EXPECT_EQ(progressBlockingView(*host)->title(), "T");
    EXPECT_FALSE(progressBlockingView(*host)->showProgress());
    send(host, "hideBlockingView");
    EXPECT_TRUE(send(host, "progressBlockingView").isNothing());
    send(host, "setProgressBlockingView:", make<RVProgressBlockingView>(BlockingViewContent{}));
    EXPECT_FALSE(send(host, "progressBlockingView").isNothing());
    EXPECT_FALSE(host->respondsToSelector("progressBlockingViewStartTime"));
    EXPECT_FALSE(host->respondsToSelector("setProgressBlockingViewStartTime:"));
    for (const char* selector : {"progressBlockingView", "setProgressBlockingView:",
                                 "showBlockingViewWithTitle:message:showProgress:", "hideBlockingView"})
        EXPECT_EQ(NSView::staticClass().method(selector)->category, "RVCore") << selector;
}

using ViewBlockingDeathTest = ViewBlocking;

TEST_F(ViewBlockingDeathTest, anOverlayWithoutAStartTimeStopsTheProgram)
{
    setProgressBlockingView(*host, make<RVProgressBlockingView>(BlockingViewContent{}));
    EXPECT_DEATH(hideBlockingView(*host), "nobody knows since when: it has no progressBlockingViewStartTime");
}

// A list beside another, in a window with a user in front of it. The list has a field in it.
class CoveredInput : public WindowInputTest {
protected:
    CoveredInput()
    {
        list = listen({0, 0, 100, 100}, "list");
        field = listen({10, 10, 50, 20}, "field", list.get());
        other = listen({100, 0, 100, 100}, "other");
        for (const auto& view : {list, field, other}) {
            view->accepts = true;
            view->keeps = false;
        }
    }
    void cover()
    {
        showBlockingView(*list, {.title = "Reading"});
        window->layoutIfNeeded();
        clock.advance(0.5);
    }

    ManualDispatchClock clock;
    std::shared_ptr<ListeningView> list, field, other;
};

TEST_F(CoveredInput, clicksMovesAndScrollsReachNothingBeneath)
{
    window->setAcceptsMouseMovedEvents(true);
    cover();
    for (const int button : {0, 1, 2}) {
        press(20, 80, button);
        move(30, 80);
        release(30, 80, button);
    }
    send({.kind = InputKind::scrolled, .location = {20, 80}, .scroll = {0, 5}});
    move(21, 80);
    EXPECT_THAT(takeLog(), IsEmpty());
    click(150, 50);
    EXPECT_THAT(takeLog(), ElementsAre("other down", "other up"));
}

TEST_F(CoveredInput, whatHadTheKeysLosesThemAndGetsThemBack)
{
    ASSERT_TRUE(window->makeFirstResponder(field.get()));
    cover();
    EXPECT_EQ(window->firstResponder(), progressBlockingView(*list).get());
    EXPECT_EQ(field->resignCount, 1);
    type("a");
    type(NSKey::tab);
    EXPECT_THAT(takeLog(), IsEmpty());
    hideBlockingView(*list);
    clock.advance(1.31);
    EXPECT_EQ(window->firstResponder(), field.get());
    type("a");
    EXPECT_THAT(takeLog(), ElementsAre("field key down", "list key down", "field key up", "list key up"));
}

TEST_F(CoveredInput, whatTheOverlayItselfHasIsOperated)
{
    ASSERT_TRUE(window->makeFirstResponder(field.get()));
    cover();
    const auto overlay = progressBlockingView(*list);
    int stops = 0;
    const auto stop = makeButton({.title = "Stop"});
    stop->setFrame({0, 0, 60, 30}); // at the overlay's bottom left
    stop->setKeyEquivalent(NSKey::escape);
    stop->setOnAction([&] { ++stops; });
    overlay->addSubview(stop);
    type(NSKey::escape);
    EXPECT_EQ(stops, 1) << "its shortcut";
    type(NSKey::tab);
    EXPECT_EQ(window->firstResponder(), stop.get());
    type(NSKey::space);
    EXPECT_EQ(stops, 2);
    type(NSKey::escape);
    EXPECT_EQ(stops, 3);
    type(NSKey::backTab);
    EXPECT_EQ(window->firstResponder(), stop.get()) << "there is nothing else in it";
    type("a");
    click(30, 85);
    EXPECT_EQ(stops, 4);
    EXPECT_THAT(takeLog(), IsEmpty()) << "nothing beneath was reached";
    hideBlockingView(*list);
    clock.advance(1.31);
    EXPECT_EQ(window->firstResponder(), field.get()) << "the overlay took the keys along, and gave them back";
}

TEST_F(CoveredInput, theViewItselfLosesTheKeys)
{
    ASSERT_TRUE(window->makeFirstResponder(list.get()));
    cover();
    type("a");
    EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(CoveredInput, keysElsewhereStayWhereTheyAre)
{
    ASSERT_TRUE(window->makeFirstResponder(other.get()));
    cover();
    click(20, 80);
    EXPECT_EQ(window->firstResponder(), other.get());
    type("a");
    EXPECT_THAT(takeLog(), ElementsAre("other key down", "other key up"));
    hideBlockingView(*list);
    clock.advance(1.31);
    EXPECT_EQ(window->firstResponder(), other.get());
}

TEST_F(CoveredInput, keysThatSomebodyElseHasMeanwhileAreNotTakenBack)
{
    ASSERT_TRUE(window->makeFirstResponder(field.get()));
    cover();
    click(150, 50);
    ASSERT_EQ(window->firstResponder(), other.get());
    hideBlockingView(*list);
    clock.advance(1.31);
    EXPECT_EQ(window->firstResponder(), other.get());
}

TEST_F(CoveredInput, aSecondOverlayGivesTheKeysToWhoHadThemFirst)
{
    ASSERT_TRUE(window->makeFirstResponder(field.get()));
    cover();
    hideBlockingView(*list);
    showBlockingView(*list);
    EXPECT_EQ(window->firstResponder(), progressBlockingView(*list).get());
    clock.advance(1.31);
    EXPECT_EQ(window->firstResponder(), progressBlockingView(*list).get());
    hideBlockingView(*list);
    clock.advance(1.31);
    EXPECT_EQ(window->firstResponder(), field.get());
}

TEST_F(CoveredInput, whatAnotherOverlayStillCoversGetsTheKeysWhenThatOneGoes)
{
    ASSERT_TRUE(window->makeFirstResponder(field.get()));
    showBlockingView(*window);
    cover();
    hideBlockingView(*window);
    clock.advance(0.31);
    ASSERT_EQ(progressBlockingView(*window), nullptr);
    type("a");
    EXPECT_THAT(takeLog(), IsEmpty());
    hideBlockingView(*list);
    clock.advance(1.31);
    EXPECT_EQ(window->firstResponder(), field.get());
}

TEST_F(CoveredInput, whoDoesNotWantToLoseTheKeysLosesThem)
{
    ASSERT_TRUE(window->makeFirstResponder(field.get()));
    field->resigns = false;
    cover();
    EXPECT_EQ(window->firstResponder(), progressBlockingView(*list).get());
    EXPECT_FALSE(window->makeFirstResponder(field.get()));
}

TEST_F(CoveredInput, whatComesLaterAndIsPaintedBelowIsCoveredToo)
{
    cover();
    const auto late = listen({50, 50, 20, 20}, "late", list.get());
    late->accepts = true;
    late->keeps = false;
    click(60, 60);
    EXPECT_FALSE(window->makeFirstResponder(late.get()));
    ASSERT_TRUE(window->makeFirstResponder(other.get()));
    window->selectNextKeyView();
    EXPECT_EQ(window->firstResponder(), other.get());
    EXPECT_THAT(takeLog(), IsEmpty());
    EXPECT_THAT(accessibilityTree(*window), Not(HasSubstr("late")));
}

TEST_F(CoveredInput, keysAreNotGivenToWhatHasGoneMeanwhile)
{
    ASSERT_TRUE(window->makeFirstResponder(field.get()));
    cover();
    field->removeFromSuperview();
    hideBlockingView(*list);
    clock.advance(1.31);
    EXPECT_EQ(window->firstResponder(), window.get());
}

TEST_F(CoveredInput, whoLosesTheKeysMayShowAndHideOverlays)
{
    field->onResign = [this] {
        showBlockingView(*list, {.title = "from within"});
        hideBlockingView(*list);
    };
    ASSERT_TRUE(window->makeFirstResponder(field.get()));
    showBlockingView(*list);
    EXPECT_EQ(progressBlockingView(*list), nullptr);
    clock.advance(2);
    EXPECT_THAT(overlaysIn(*list), IsEmpty());
}

TEST_F(CoveredInput, tabPassesByWhatIsCovered)
{
    cover();
    ASSERT_TRUE(window->makeFirstResponder(other.get()));
    for (int i = 0; i < 3; ++i) {
        type(NSKey::tab);
        EXPECT_EQ(window->firstResponder(), other.get());
        window->selectPreviousKeyView();
        EXPECT_EQ(window->firstResponder(), other.get());
    }
    hideBlockingView(*list);
    clock.advance(1.31);
    window->selectNextKeyView();
    EXPECT_EQ(window->firstResponder(), list.get());
}

TEST_F(CoveredInput, shortcutsOfWhatIsCoveredAreSilent)
{
    field->shortcut = list->shortcut = "s";
    other->shortcut = "o";
    const auto command = static_cast<std::uint32_t>(NSEventModifierFlags::control);
    type("s", command);
    EXPECT_THAT(takeLog(), testing::Contains("list shortcut"));
    cover();
    type("s", command);
    EXPECT_THAT(takeLog(), testing::Not(testing::Contains(testing::HasSubstr("shortcut"))));
    type("o", command);
    EXPECT_THAT(takeLog(), testing::Contains("other shortcut"));
}

TEST_F(CoveredInput, assistiveTechnologyReachesTheOverlayAndNotWhatItCovers)
{
    const auto button = makeButton({.title = "Covered"});
    list->addSubview(button);
    const auto label = makeLabel("Beside");
    label->setFrame({0, 0, 50, 20});
    other->addSubview(label);
    cover();
    EXPECT_THAT(accessibilityTree(*window), testing::HasSubstr("Reading"));
    EXPECT_THAT(accessibilityTree(*window), testing::HasSubstr("Beside"));
    EXPECT_THAT(accessibilityTree(*window), testing::Not(testing::HasSubstr("Covered")));
    hideBlockingView(*list);
    clock.advance(1.31);
    EXPECT_THAT(accessibilityTree(*window), testing::HasSubstr("Covered"));
    EXPECT_THAT(accessibilityTree(*window), testing::Not(testing::HasSubstr("Reading")));
}

} // namespace
} // namespace RVCore::NSViewRVCoreBlockingTests
