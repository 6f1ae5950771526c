#include <AppKit/NSProgressIndicator.h>
#include <Foundation/Message.h>
#include <Foundation/NSCoder.h>
#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace RVCore {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

std::string drawn(NSProgressIndicator& indicator)
{
    RecordingCanvas canvas;
    indicator.draw(canvas, indicator.bounds());
    return canvas.text();
}

// The opacities of the spokes, clockwise from the top.
std::string spokes(NSProgressIndicator& wheel)
{
    RecordingCanvas canvas;
    wheel.draw(canvas, wheel.bounds());
    std::string result;
    for (const std::string& line : canvas.lines()) {
        const std::size_t start = line.find("rgba(0, 0, 0, ");
        if (start != std::string::npos)
            result += line.substr(start + 14, line.size() - start - 15) + " ";
    }
    return result;
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
    const auto wheel = make<NSProgressIndicator>(CGRect(0, 0, 40, 32));
    wheel->setStyle(NSProgressIndicatorStyle::spinning);
    EXPECT_THAT(spokes(*wheel), StartsWith("1 0.2667 0.3333 "));
    EXPECT_THAT(spokes(*wheel), EndsWith(" 0.8667 0.9333 "));
    EXPECT_EQ(std::ranges::count(spokes(*wheel), ' '), 12);
    wheel->setAnimationPhase(2.0 / 12);
    EXPECT_THAT(spokes(*wheel), StartsWith("0.8667 0.9333 1 0.2667 "));
    const std::string shifted = spokes(*wheel);
    wheel->setAnimationPhase(1 + 2.0 / 12 + 1e-9);
    EXPECT_EQ(spokes(*wheel), shifted) << "it goes round";
    EXPECT_THAT(drawn(*wheel), HasSubstr("transform [1, 0, 0, 1, 20, 16]")) << "in the middle";
}

TEST(NSProgressIndicator, AWheelThatKnowsHowFarItIsLightsItsSpokesUp)
{
    const auto wheel = make<NSProgressIndicator>(CGRect(0, 0, 32, 32));
    wheel->setStyle(NSProgressIndicatorStyle::spinning);
    wheel->setIndeterminate(false);
    wheel->setDoubleValue(25);
    EXPECT_EQ(spokes(*wheel), "1 1 1 0.2 0.2 0.2 0.2 0.2 0.2 0.2 0.2 0.2 ");
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
              "NSInvalidArgumentException: NSProgressIndicator.setControlSize:: takes 0 to 1, got -1");
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
}

TEST(NSProgressIndicator, ComesBackFromAnArchiveAsItWas)
{
    const auto indicator = make<NSProgressIndicator>();
    indicator->setStyle(NSProgressIndicatorStyle::spinning);
    indicator->setControlSize(NSControlSize::small);
    indicator->setIndeterminate(false);
    indicator->setMaxValue(-1);
    indicator->setMinValue(-5);
    indicator->setDoubleValue(-3);
    const auto copy = std::dynamic_pointer_cast<NSProgressIndicator>(unarchivedObject(archivedObject(*indicator)));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->style(), NSProgressIndicatorStyle::spinning);
    EXPECT_EQ(copy->controlSize(), NSControlSize::small);
    EXPECT_FALSE(copy->isIndeterminate());
    EXPECT_EQ(copy->minValue(), -5);
    EXPECT_EQ(copy->maxValue(), -1);
    EXPECT_EQ(copy->doubleValue(), -3);
}

} // namespace
} // namespace RVCore
