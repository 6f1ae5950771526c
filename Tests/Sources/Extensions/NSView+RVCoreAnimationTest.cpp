#include <AppKit/NSAnimationContext.h>
#include <AppKit/NSViewAnimator.h>
#include <Platform/AppKit/WindowTesting.h>
#include <Platform/Foundation/Raised.h>
#include <Sources/Views/TestViews.h>

#include <QuartzCore/LayerPresentation.h>
#include <gmock/gmock.h>

#include <limits>

namespace RVCore::NSViewRVCoreAnimationTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

CGFloat shownOpacity(const NSView& view)
{
    return LayerPresentation(*view.layer()).opacity();
}

// Has a fade of its own, which takes no time.
class OwnFadeView : public NSView {
    RVCORE_CLASS(OwnFadeView)

public:
    void fade(CGFloat alpha, CGFloat duration, const std::function<void()>& completion)
    {
        calls.push_back(numberText(alpha) + " in " + numberText(duration) + (completion ? " with completion" : ""));
        if (completion)
            completion();
    }
    std::vector<std::string> calls;
};

Class& OwnFadeView::staticClass()
{
    static Class& theClass = defineClass<OwnFadeView>("OwnFadeView", NSView::staticClass(), [](auto& publish) {
        publish.method("animateAlphaWithAlpha:duration:completion:", &OwnFadeView::fade);
    });
    return theClass;
}

class ViewFades : public testing::Test {
protected:
    std::function<void()> note(const std::string& text)
    {
        return [this, text] { log.push_back(text); };
    }

    ManualDispatchClock clock;
    std::shared_ptr<NSView> view = make<NSView>(CGRect(0, 0, 20, 10));
    std::vector<std::string> log;
};

TEST_F(ViewFades, hidingLeavesTheViewTransparentAndNotHidden)
{
    hideAnimated(*view);
    EXPECT_EQ(view->alphaValue(), 0);
    EXPECT_FALSE(view->isHidden());
    EXPECT_EQ(shownOpacity(*view), 1);
    clock.advance(0.3);
    EXPECT_EQ(shownOpacity(*view), 0);
    EXPECT_FALSE(view->isHidden());
}

TEST_F(ViewFades, showingBringsAlphaBackToOne)
{
    hideAnimated(*view);
    clock.advance(0.3);
    showAnimated(*view);
    EXPECT_EQ(view->alphaValue(), 1);
    EXPECT_EQ(shownOpacity(*view), 0);
    clock.advance(0.3);
    EXPECT_EQ(shownOpacity(*view), 1);
}

TEST_F(ViewFades, theViewIsMadeReadyForAnimations)
{
    animateAlpha(*view, 0.5);
    EXPECT_TRUE(view->wantsLayer());
    EXPECT_EQ(view->layerContentsRedrawPolicy(), NSViewLayerContentsRedrawPolicy::onSetNeedsDisplay);
}

TEST_F(ViewFades, theAlphaStartsAndEndsSlowly)
{
    animateAlpha(*view, 0, {.duration = 1});
    const auto curve = CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseInEaseOut);
    for (const double time : {0.0, 0.125, 0.5, 0.875}) {
        EXPECT_NEAR(shownOpacity(*view), 1 - curve->value(time), 1e-9) << time;
        clock.advance(time < 0.1 ? 0.125 : 0.375);
    }
}

TEST_F(ViewFades, aCompletionRunsOnceAfterTheFade)
{
    showAnimated(*view, note("shown"));
    clock.advance(0.29);
    EXPECT_THAT(log, IsEmpty());
    clock.advance(0.02);
    EXPECT_THAT(log, ElementsAre("shown"));
    hideAnimated(*view, note("hidden"));
    clock.advance(0.29);
    EXPECT_THAT(log, ElementsAre("shown"));
    clock.advance(5);
    EXPECT_THAT(log, ElementsAre("shown", "hidden"));
}

TEST_F(ViewFades, withoutACompletionNothingIsCalled)
{
    showAnimated(*view);
    hideAnimated(*view);
    animateAlpha(*view, 0.5);
    clock.advance(1);
    EXPECT_EQ(DispatchQueue::main().nextDeadline(), std::nullopt);
}

TEST_F(ViewFades, aDurationOfZeroStillGoesThroughAGroup)
{
    animateAlpha(*view, 0.25, {.duration = 0, .completion = note("over")});
    EXPECT_EQ(view->alphaValue(), 0.25);
    EXPECT_THAT(log, IsEmpty()) << "not within the call";
    clock.advance(0);
    EXPECT_EQ(shownOpacity(*view), 0.25);
    EXPECT_THAT(log, ElementsAre("over"));
}

TEST_F(ViewFades, fadingToTheValueThatItHasTakesItsTimeAllTheSame)
{
    animateAlpha(*view, 1, {.duration = 0.5, .completion = note("over")});
    clock.advance(0.49);
    EXPECT_THAT(log, IsEmpty());
    clock.advance(0.02);
    EXPECT_THAT(log, ElementsAre("over"));
}

TEST_F(ViewFades, ofFadesThatOverlapEachHasItsOwnEnd)
{
    hideAnimated(*view, note("first"));
    clock.advance(0.1);
    showAnimated(*view, note("second"));
    clock.advance(0.2);
    EXPECT_THAT(log, ElementsAre("first"));
    clock.advance(0.1);
    EXPECT_THAT(log, ElementsAre("first", "second"));
    EXPECT_EQ(shownOpacity(*view), 1);
}

TEST_F(ViewFades, theViewAndTheCompletionAreKeptUntilTheEnd)
{
    const std::weak_ptr<NSView> weak = view;
    hideAnimated(*view, note("over"));
    view.reset();
    EXPECT_FALSE(weak.expired());
    clock.advance(0.3);
    EXPECT_THAT(log, ElementsAre("over"));
    EXPECT_TRUE(weak.expired());
}

TEST_F(ViewFades, aClassesOwnFadeIsHonoured)
{
    const auto own = make<OwnFadeView>();
    showAnimated(*own, note("shown"));
    hideAnimated(*own);
    animateAlpha(*own, 0.5, {.duration = 2});
    EXPECT_THAT(own->calls, ElementsAre("1 in 0.3 with completion", "0 in 0.3", "0.5 in 2"));
    EXPECT_THAT(log, ElementsAre("shown"));
    EXPECT_FALSE(own->wantsLayer());
}

TEST_F(ViewFades, numbersThatMakeNoSenseRaiseAndChangeNothing)
{
    for (const double bad : {nan, infinity, -infinity}) {
        EXPECT_THAT(raised([&] { animateAlpha(*view, bad, {.completion = note("over")}); }),
                    HasSubstr("animateAlpha: alpha must be finite"));
        EXPECT_THAT(raised([&] { animateAlpha(*view, 1, {.duration = bad, .completion = note("over")}); }),
                    HasSubstr("animateAlpha: duration must be finite"));
    }
    EXPECT_EQ(raised([&] { animateAlpha(*view, 1, {.duration = -1}); }),
              "NSInvalidArgumentException: animateAlpha: duration must not be negative, got -1");
    clock.advance(1);
    EXPECT_FALSE(view->wantsLayer());
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(ViewFades, areCalledByName)
{
    send(view, "animateAlphaWithAlpha:duration:completion:", 0.5, 0.25, note("animated"));
    EXPECT_EQ(view->alphaValue(), 0.5);
    send(view, "hideAnimatedWithCompletion:", note("hidden"));
    send(view, "hideAnimatedWithCompletion:", nullptr);
    EXPECT_EQ(view->alphaValue(), 0);
    send(view, "showAnimatedWithCompletion:", note("shown"));
    EXPECT_EQ(view->alphaValue(), 1);
    clock.advance(0.3);
    EXPECT_THAT(log, ElementsAre("animated", "hidden", "shown"));
    for (const char* selector : {"animateAlphaWithAlpha:duration:completion:", "showAnimatedWithCompletion:",
                                 "hideAnimatedWithCompletion:", "screenshot"})
        EXPECT_EQ(NSView::staticClass().method(selector)->category, "RVCore") << selector;
}

class ViewScreenshot : public WindowTest {};

TEST_F(ViewScreenshot, isAnImageOfTheBoundsWithOneRepresentation)
{
    const auto view = make<NSView>(CGRect(5, 6, 30, 20));
    const auto image = screenshot(*view);
    EXPECT_EQ(image->size(), (CGSize{30, 20}));
    ASSERT_EQ(image->representations().size(), 1);
    EXPECT_EQ(image->representations()[0]->size(), (CGSize{30, 20}));
    EXPECT_NE(screenshot(*view), image);
}

TEST_F(ViewScreenshot, hasThePixelsOfTheWindowsBackingScale)
{
    const auto window = make<NSWindow>(CGSize{100, 100});
    window->orderFront();
    screenOf(*window).setBackingScale(2);
    const auto view = makeView(*window->contentView());
    view->setFrame({0, 0, 30, 20});
    const auto image = screenshot(*view);
    EXPECT_EQ(image->representations().at(0)->pixelsWide(), 60);
    EXPECT_EQ(image->representations().at(0)->pixelsHigh(), 40);
    EXPECT_EQ(image->size(), (CGSize{30, 20}));
}

// Writes down what it is sent, and becomes larger meanwhile.
class GrowingView : public NSView {
public:
    std::shared_ptr<NSBitmapImageRep> bitmapImageRepForCachingDisplay(const CGRect& rect) override
    {
        calls.push_back("make " + describe(rect));
        setFrame({0, 0, 20, 10});
        return NSView::bitmapImageRepForCachingDisplay(rect);
    }
    void cacheDisplay(const CGRect& rect, NSBitmapImageRep&) override
    {
        calls.push_back("draw " + describe(rect));
        setFrame({0, 0, 30, 10});
    }
    std::vector<std::string> calls;
};

TEST_F(ViewScreenshot, asksForTheBoundsEachTime)
{
    const auto view = make<GrowingView>();
    view->setFrame({0, 0, 10, 10});
    const auto image = screenshot(*view);
    EXPECT_THAT(view->calls, ElementsAre("make (0, 0) 10 × 10", "draw (0, 0) 20 × 10"));
    EXPECT_EQ(image->size(), (CGSize{30, 10}));
}

TEST_F(ViewScreenshot, isTakenByName)
{
    const auto view = make<NSView>(CGRect(0, 0, 3, 4));
    EXPECT_EQ(send(view, "screenshot").as<std::shared_ptr<NSImage>>()->size(), (CGSize{3, 4}));
}

using ViewScreenshotDeathTest = ViewScreenshot;

TEST_F(ViewScreenshotDeathTest, ofAViewWithEmptyBoundsStopsTheProgram)
{
    EXPECT_DEATH(screenshot(*make<NSView>()),
                 "Fatal error: there is no picture of <NSView: 0x[0-9a-f]+> with the bounds \\(0, 0\\) 0 × 0");
    EXPECT_DEATH(screenshot(*make<NSView>(CGRect(0, 0, 10, 0))), "there is no picture of");
}

} // namespace
} // namespace RVCore::NSViewRVCoreAnimationTests
