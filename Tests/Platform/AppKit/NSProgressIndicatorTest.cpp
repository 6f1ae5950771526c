#include <AppKit/NSApplication.h>
#include <AppKit/NSProgressIndicator.h>
#include <AppKit/ViewSnapshot.h>
#include <Backend/Backend.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Foundation/Message.h>
#include <Foundation/NSCoder.h>
#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/Foundation/Raised.h>

#include <QuartzCore/CALayer.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace RVCore::NSProgressIndicatorTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string drawn(NSProgressIndicator& indicator)
{
    RecordingCanvas canvas;
    indicator.draw(canvas, indicator.bounds());
    return canvas.text();
}

// The opacities of a wheel's spokes, clockwise from the top.
std::vector<double> spokes(const NSProgressIndicator& wheel)
{
    std::vector<double> alphas;
    for (const auto& spoke : wheel.layer()->sublayers().at(1)->sublayers())
        alphas.push_back(spoke->backgroundColor()->alpha);
    return alphas;
}

CALayer& plateOf(const NSProgressIndicator& wheel)
{
    return *wheel.layer()->sublayers().at(0);
}

// How many layers of the indicator are painted.
int fills(NSProgressIndicator& indicator)
{
    RecordingCanvas canvas;
    paintViewTree(indicator, canvas);
    return static_cast<int>(std::ranges::count_if(
        canvas.lines(), [](const std::string& line) { return line.find("fill") != std::string::npos; }));
}

std::shared_ptr<NSProgressIndicator> makeWheel(const CGRect& frame = CGRect(0, 0, 32, 32))
{
    const auto wheel = make<NSProgressIndicator>(frame);
    wheel->setStyle(NSProgressIndicatorStyle::spinning);
    return wheel;
}

TEST(NSProgressIndicator, StartsAsABarOfWhichNobodyKnowsHowFarItIs)
{
    const auto bar = make<NSProgressIndicator>(CGRect(0, 0, 100, 12));
    EXPECT_EQ(bar->style(), NSProgressIndicatorStyle::bar);
    EXPECT_EQ(bar->controlSize(), NSControlSize::regular);
    EXPECT_TRUE(bar->isIndeterminate());
    EXPECT_EQ(bar->minValue(), 0);
    EXPECT_EQ(bar->maxValue(), 100);
    EXPECT_EQ(bar->doubleValue(), 0);
    EXPECT_EQ(drawn(*bar), "progress bar, indeterminate at 0 in (0, 0) 100 × 12\n");
}

TEST(NSProgressIndicator, ABarIsAsHighAsTheStyleHasItAndAWheelIsSquare)
{
    const auto indicator = make<NSProgressIndicator>();
    EXPECT_EQ(indicator->intrinsicContentSize(), (CGSize{-1, 12}));
    indicator->setStyle(NSProgressIndicatorStyle::spinning);
    EXPECT_EQ(indicator->intrinsicContentSize(), (CGSize{32, 32}));
    indicator->setControlSize(NSControlSize::small);
    EXPECT_EQ(indicator->intrinsicContentSize(), (CGSize{16, 16}));
    indicator->setControlSize(NSControlSize::mini);
    EXPECT_EQ(indicator->intrinsicContentSize(), (CGSize{10, 10}));
}

TEST(NSProgressIndicator, ABarShowsTheShareThatIsDone)
{
    const auto bar = make<NSProgressIndicator>(CGRect(0, 0, 100, 12));
    bar->setIndeterminate(false);
    bar->setMinValue(10);
    bar->setMaxValue(30);
    bar->setDoubleValue(15);
    EXPECT_EQ(bar->fraction(), 0.25);
    EXPECT_EQ(drawn(*bar), "progress bar 0.25 in (0, 0) 100 × 12\n");
    bar->incrementBy(5);
    EXPECT_EQ(bar->doubleValue(), 20);
}

TEST(NSProgressIndicator, TheValueStaysBetweenItsLimits)
{
    const auto bar = make<NSProgressIndicator>();
    bar->setDoubleValue(150);
    EXPECT_EQ(bar->doubleValue(), 100);
    bar->setDoubleValue(-std::numeric_limits<double>::infinity());
    EXPECT_EQ(bar->doubleValue(), 0);
    bar->setDoubleValue(60);
    bar->setMaxValue(40);
    EXPECT_EQ(bar->doubleValue(), 40);
    bar->setMinValue(20);
    bar->setDoubleValue(std::nan(""));
    EXPECT_EQ(bar->doubleValue(), 20);
}

TEST(NSProgressIndicator, LimitsThatMakeNoSenseMeanThatNothingIsDone)
{
    const auto bar = make<NSProgressIndicator>();
    bar->setMaxValue(-5);
    EXPECT_EQ(bar->fraction(), 0);
    EXPECT_THAT(raised([&] { bar->setMinValue(std::nan("")); }), HasSubstr("NSProgressIndicator.setMinValue:"));
    EXPECT_THAT(raised([&] { bar->setMaxValue(HUGE_VAL); }), HasSubstr("NSProgressIndicator.setMaxValue:"));
    EXPECT_THAT(raised([&] { bar->setAnimationPhase(std::nan("")); }), HasSubstr("phase"));
    EXPECT_EQ(bar->maxValue(), -5);
}

TEST(NSProgressIndicator, AWheelsSpokesFadeBehindTheLeadingOne)
{
    const auto wheel = makeWheel();
    ASSERT_EQ(spokes(*wheel).size(), 12U);
    EXPECT_EQ(spokes(*wheel)[0], 1);
    EXPECT_NEAR(spokes(*wheel)[1], 0.2667, 1e-4);
    EXPECT_NEAR(spokes(*wheel)[11], 0.9333, 1e-4);
    wheel->setAnimationPhase(2.0 / 12);
    EXPECT_EQ(spokes(*wheel)[2], 1);
    EXPECT_NEAR(spokes(*wheel)[0], 0.8667, 1e-4);
    const auto shifted = spokes(*wheel);
    wheel->setAnimationPhase(1 + 2.0 / 12);
    EXPECT_EQ(spokes(*wheel), shifted) << "it goes round";
}

TEST(NSProgressIndicator, AWheelThatKnowsHowFarItIsLightsItsSpokesUp)
{
    ManualDispatchClock clock;
    const auto wheel = makeWheel();
    wheel->setIndeterminate(false);
    wheel->setDoubleValue(25);
    clock.advance(0);
    EXPECT_THAT(spokes(*wheel), ElementsAre(1, 1, 1, 0.2, 0.2, 0.2, 0.2, 0.2, 0.2, 0.2, 0.2, 0.2));
}

TEST(NSProgressIndicator, AWheelIsMadeOfLayersThePlateFirst)
{
    const auto wheel = make<NSProgressIndicator>(CGRect(0, 0, 40, 32));
    EXPECT_FALSE(wheel->wantsLayer());
    wheel->setStyle(NSProgressIndicatorStyle::spinning);
    ASSERT_TRUE(wheel->wantsLayer());
    ASSERT_EQ(wheel->layer()->sublayers().size(), 2U);
    EXPECT_EQ(plateOf(*wheel).backgroundColor(), std::nullopt);
    wheel->setBezeled(true);
    EXPECT_NE(plateOf(*wheel).backgroundColor(), std::nullopt);
    EXPECT_EQ(plateOf(*wheel).bounds(), CGRect(0, 0, 32, 32));
    EXPECT_EQ(plateOf(*wheel).position(), (CGPoint{20, 16})) << "in the middle";
    EXPECT_EQ(drawn(*wheel), "");
}

TEST(NSProgressIndicator, HidingTheFirstSublayerTakesThePlateAwayAndNotTheWheel)
{
    const auto wheel = makeWheel();
    wheel->setBezeled(true);
    EXPECT_EQ(fills(*wheel), 13);
    wheel->layer()->sublayers()[0]->setHidden(true);
    EXPECT_EQ(fills(*wheel), 12);
    wheel->startAnimation();
    wheel->setFrameSize({20, 20});
    EXPECT_EQ(fills(*wheel), 12) << "and it does not come back";
}

TEST(NSProgressIndicator, AWheelStandsInTheMiddleAndFitsIntoItsView)
{
    const auto wheel = makeWheel({0, 0, 40, 32});
    EXPECT_EQ(wheel->layer()->sublayers()[1]->bounds(), CGRect(0, 0, 32, 32));
    EXPECT_EQ(wheel->layer()->sublayers()[1]->position(), (CGPoint{20, 16}));
    wheel->setFrameSize({12, 40});
    EXPECT_EQ(wheel->layer()->sublayers()[1]->bounds(), CGRect(0, 0, 12, 12));
    wheel->setFrameSize({});
    EXPECT_EQ(wheel->layer()->sublayers()[1]->bounds(), CGRect());
    wheel->setFrameSize({40, 40});
    wheel->setControlSize(NSControlSize::small);
    EXPECT_EQ(wheel->layer()->sublayers()[1]->bounds(), CGRect(0, 0, 16, 16));
}

TEST(NSProgressIndicator, AViewThatHasALayerKeepsItAndABarHasNoWheel)
{
    const auto wheel = make<NSProgressIndicator>(CGRect(0, 0, 32, 32));
    wheel->setWantsLayer(true);
    const auto layer = wheel->layer();
    const auto own = make<CALayer>();
    layer->addSublayer(own);
    wheel->setStyle(NSProgressIndicatorStyle::spinning);
    EXPECT_EQ(wheel->layer(), layer);
    ASSERT_EQ(layer->sublayers().size(), 3U);
    EXPECT_EQ(layer->sublayers()[2], own);
    wheel->setStyle(NSProgressIndicatorStyle::bar);
    EXPECT_THAT(layer->sublayers(), ElementsAre(own));
    EXPECT_EQ(drawn(*wheel), "progress bar, indeterminate at 0 in (0, 0) 32 × 32\n");
}

TEST(NSProgressIndicator, AWheelWhoseLayerWasTakenAwayHasOneAgainWhenItIsPainted)
{
    const auto wheel = makeWheel();
    wheel->setWantsLayer(false);
    EXPECT_EQ(fills(*wheel), 12);
    EXPECT_TRUE(wheel->wantsLayer());
}

TEST(NSProgressIndicator, AWheelsColourFollowsTheAppearance)
{
    const auto wheel = makeWheel();
    const auto spokesColor = [&] {
        fills(*wheel);
        return *wheel->layer()->sublayers()[1]->sublayers()[0]->backgroundColor();
    };
    ControlLook& look = Backend::shared().controlLook();
    NSApplication::shared().setAppearance(Appearance::dark);
    EXPECT_EQ(spokesColor(), look.textColor(Appearance::dark));
    NSApplication::shared().setAppearance(Appearance::light);
    EXPECT_EQ(spokesColor(), look.textColor(Appearance::light));
    NSApplication::shared().setAppearance(std::nullopt);
    EXPECT_NE(look.textColor(Appearance::dark), look.textColor(Appearance::light));
}

TEST(NSProgressIndicator, OneThatIsNotDisplayedWhenStoppedIsThereWhileItIsAnimated)
{
    const auto wheel = makeWheel();
    wheel->setBezeled(true);
    EXPECT_TRUE(wheel->isDisplayedWhenStopped());
    wheel->setDisplayedWhenStopped(false);
    EXPECT_EQ(fills(*wheel), 0);
    EXPECT_FALSE(wheel->isHidden()) << "it keeps its place";
    wheel->startAnimation();
    EXPECT_EQ(fills(*wheel), 13);
    wheel->stopAnimation();
    EXPECT_EQ(fills(*wheel), 0);
    wheel->setIndeterminate(false);
    EXPECT_EQ(fills(*wheel), 13) << "one that knows how far it is needs no animation";

    const auto bar = make<NSProgressIndicator>(CGRect(0, 0, 100, 12));
    bar->setDisplayedWhenStopped(false);
    EXPECT_EQ(drawn(*bar), "");
    bar->startAnimation();
    EXPECT_EQ(drawn(*bar), "progress bar, indeterminate at 0 in (0, 0) 100 × 12\n");
}

TEST(NSProgressIndicator, TellsAssistiveTechnologyHowFarItIs)
{
    const auto bar = make<NSProgressIndicator>();
    EXPECT_EQ(bar->accessibilityRole(), AccessibleRole::progressIndicator);
    EXPECT_EQ(bar->accessibilityValue(), "");
    bar->setIndeterminate(false);
    bar->setMaxValue(8);
    bar->setDoubleValue(2);
    EXPECT_EQ(bar->accessibilityValue(), "25 %");
}

TEST(NSProgressIndicator, AnUnknownNumberIsRefused)
{
    const auto indicator = make<NSProgressIndicator>();
    EXPECT_EQ(raised([&] { send(indicator, "setStyle:", 2); }),
              "NSInvalidArgumentException: NSProgressIndicator.setStyle:: takes 0 to 1, got 2");
    EXPECT_EQ(raised([&] { send(indicator, "setControlSize:", -1); }),
              "NSInvalidArgumentException: NSProgressIndicator.setControlSize:: takes 0 to 2, got -1");
}

TEST(NSProgressIndicator, EveryPropertyIsReadAndWrittenByName)
{
    const auto indicator = make<NSProgressIndicator>();
    const auto readsBack = [&](const char* property, const Value& value) {
        send(indicator, Selector::setterFor(property), value);
        EXPECT_EQ(send(indicator, property), value) << property;
    };
    readsBack("style", 1);
    readsBack("controlSize", 1);
    readsBack("minValue", 1.5);
    readsBack("maxValue", 20.0);
    readsBack("doubleValue", 7.0);
    send(indicator, "incrementBy:", 2.0);
    EXPECT_EQ(indicator->doubleValue(), 9);
    send(indicator, "setIndeterminate:", false);
    EXPECT_FALSE(send(indicator, "isIndeterminate").as<bool>());
    send(indicator, "setBezeled:", true);
    EXPECT_TRUE(send(indicator, "isBezeled").as<bool>());
    send(indicator, "setDisplayedWhenStopped:", false);
    EXPECT_FALSE(send(indicator, "isDisplayedWhenStopped").as<bool>());
    EXPECT_TRUE(indicator->usesThreadedAnimation());
    readsBack("usesThreadedAnimation", false);
}

TEST(NSProgressIndicator, IsStartedAndStoppedByNameWithAndWithoutASender)
{
    const auto indicator = make<NSProgressIndicator>();
    send(indicator, "startAnimation:", Value());
    EXPECT_TRUE(indicator->isAnimating());
    send(indicator, "stopAnimation:", indicator);
    EXPECT_FALSE(indicator->isAnimating());
    NSApplication::shared().sendAction("startAnimation:", indicator, nullptr);
    EXPECT_TRUE(indicator->isAnimating());
}

TEST(NSProgressIndicator, ComesBackFromAnArchiveAsItWas)
{
    const auto indicator = make<NSProgressIndicator>();
    indicator->setStyle(NSProgressIndicatorStyle::spinning);
    indicator->setControlSize(NSControlSize::small);
    indicator->setIndeterminate(false);
    indicator->setBezeled(true);
    indicator->setDisplayedWhenStopped(false);
    indicator->setUsesThreadedAnimation(false);
    indicator->setMaxValue(-1);
    indicator->setMinValue(-5);
    indicator->setDoubleValue(-3);
    const auto copy = std::dynamic_pointer_cast<NSProgressIndicator>(unarchivedObject(archivedObject(*indicator)));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->style(), NSProgressIndicatorStyle::spinning);
    EXPECT_EQ(copy->controlSize(), NSControlSize::small);
    EXPECT_FALSE(copy->isIndeterminate());
    EXPECT_TRUE(copy->isBezeled());
    EXPECT_FALSE(copy->isDisplayedWhenStopped());
    EXPECT_FALSE(copy->usesThreadedAnimation());
    EXPECT_EQ(fills(*copy), 13);
    EXPECT_EQ(copy->minValue(), -5);
    EXPECT_EQ(copy->maxValue(), -1);
    EXPECT_EQ(copy->doubleValue(), -3);
}

} // namespace
} // namespace RVCore::NSProgressIndicatorTests
