#include <AppKit/NSAnimation.h>
#include <Dispatch/DispatchQueue.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Extensions/NSProgressIndicator+RVCore.h>
#include <Foundation/Message.h>
#include <Foundation/NSCoder.h>
#include <Foundation/NSException.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <mutex>
#include <thread>

namespace RVCore::NSProgressIndicatorRVCoreTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Writes down where it is set to, and the values that animations are asked for. It gets hold of its animations as
// their delegate.
class RecordingIndicator : public NSProgressIndicator {
    RVCORE_CLASS(RecordingIndicator)

public:
    void init() override
    {
        NSProgressIndicator::init();
        setIndeterminate(false);
        setMaxValue(1);
    }
    void setDoubleValue(double value) override
    {
        NSProgressIndicator::setDoubleValue(value);
        const std::lock_guard lock(m_mutex);
        m_values.push_back(value);
        m_wasSetByThread = m_wasSetByThread || std::this_thread::get_id() != m_mainThread;
    }
    std::vector<double> takeValues()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_values, {});
    }
    bool wasSetByThread()
    {
        const std::lock_guard lock(m_mutex);
        return m_wasSetByThread;
    }

    std::vector<std::shared_ptr<NSAnimation>> animations;
    std::vector<double> asked;
    bool lets = true; // animations start
    bool raises = false;

private:
    std::mutex m_mutex;
    std::vector<double> m_values;
    bool m_wasSetByThread = false;
    const std::thread::id m_mainThread = std::this_thread::get_id();
};

Class& RecordingIndicator::staticClass()
{
    static Class& theClass =
        defineClass<RecordingIndicator>("RecordingIndicator", NSProgressIndicator::staticClass(), [](auto& publish) {
            publish.method("animationShouldStart:",
                           [](RecordingIndicator& self, const std::shared_ptr<NSAnimation>& animation) {
                               self.animations.push_back(animation);
                               if (self.raises)
                                   raiseInvalidArgument("animationShouldStart:", "not now");
                               return self.lets;
                           });
            publish.method("setDoubleValueAnimatedWithValue:", [](RecordingIndicator& self, double value) {
                self.asked.push_back(value);
                setDoubleValueAnimated(self, value);
            });
        });
    return theClass;
}

class SetDoubleValueAnimated : public testing::Test {
protected:
    ~SetDoubleValueAnimated() override
    {
        clock.advance(10);
        if (bar)
            bar->animations.clear(); // which hold the indicator
    }

    NSAnimation& running() { return *bar->animations.back(); }

    ManualDispatchClock clock;
    std::shared_ptr<RecordingIndicator> bar = make<RecordingIndicator>();
};

TEST_F(SetDoubleValueAnimated, MovesEvenlyToTheValueWithinAFifthOfASecond)
{
    setDoubleValueAnimated(*bar, 0.8);
    EXPECT_EQ(bar->doubleValue(), 0);
    clock.advance(0.1);
    EXPECT_NEAR(bar->doubleValue(), 0.4, 1e-6) << "the curve is not asked";
    clock.advance(0.05);
    EXPECT_NEAR(bar->doubleValue(), 0.6, 1e-6);
    EXPECT_TRUE(running().isAnimating());
    clock.advance(0.05);
    EXPECT_EQ(bar->doubleValue(), 0.8);
    EXPECT_FALSE(running().isAnimating());
}

TEST_F(SetDoubleValueAnimated, AnAnimationThatWasNotLetStartIsNotWaitedFor)
{
    bar->lets = false;
    setDoubleValueAnimated(*bar, 0.5);
    clock.advance(1);
    EXPECT_EQ(bar->doubleValue(), 0);
    bar->lets = true;
    setDoubleValueAnimated(*bar, 0.8);
    clock.advance(0.2);
    EXPECT_EQ(bar->doubleValue(), 0.8);
}

TEST_F(SetDoubleValueAnimated, AnAnimationWhoseStartRaisedIsNotWaitedFor)
{
    bar->raises = true;
    EXPECT_THAT(raised([&] { setDoubleValueAnimated(*bar, 0.5); }), testing::HasSubstr("not now"));
    bar->raises = false;
    setDoubleValueAnimated(*bar, 0.7);
    clock.advance(1);
    EXPECT_EQ(bar->doubleValue(), 0.7);
}

TEST_F(SetDoubleValueAnimated, TheAnimationIsOneOfTheFrameworksWithAThreadOfItsOwn)
{
    setDoubleValueAnimated(*bar, 0.8);
    EXPECT_EQ(running().classObject().name(), "RVCore.RVProgressBarAnimation");
    EXPECT_EQ(running().classObject().superclass(), &NSAnimation::staticClass());
    EXPECT_EQ(running().duration(), 0.2);
    EXPECT_EQ(running().animationCurve(), NSAnimationCurve::easeIn);
    EXPECT_EQ(running().animationBlockingMode(), NSAnimationBlockingMode::nonblockingThreaded);
    EXPECT_EQ(running().frameRate(), 60);
    EXPECT_EQ(running().delegate(), bar);
    clock.advance(1);
    EXPECT_TRUE(bar->wasSetByThread());
}

TEST_F(SetDoubleValueAnimated, OfTheValuesThatComeOnTheWayOnlyTheLastOneIsGoneToAndOnce)
{
    setDoubleValueAnimated(*bar, 0.1);
    clock.advance(0.05);
    for (const double value : {0.3, 0.5, 0.7})
        setDoubleValueAnimated(*bar, value);
    clock.advance(0.15);
    EXPECT_EQ(bar->doubleValue(), 0.1) << "the one under way is not touched";
    EXPECT_THAT(bar->asked, ElementsAre(0.7));
    bar->takeValues();
    clock.advance(0.1);
    EXPECT_NEAR(bar->doubleValue(), 0.4, 1e-6);
    clock.advance(10);
    EXPECT_NEAR(bar->doubleValue(), 0.7, 1e-15);
    EXPECT_EQ(bar->animations.size(), 2U);
    EXPECT_TRUE(std::ranges::is_sorted(bar->takeValues()));
}

TEST_F(SetDoubleValueAnimated, AWaitingValueThatIsTheEndedOnesTargetIsForgotten)
{
    setDoubleValueAnimated(*bar, 0.5);
    setDoubleValueAnimated(*bar, 0.7);
    setDoubleValueAnimated(*bar, 0.5);
    clock.advance(10);
    EXPECT_EQ(bar->animations.size(), 1U);
    EXPECT_THAT(bar->asked, IsEmpty());
    // It does not come back with the next one.
    setDoubleValueAnimated(*bar, 0.6);
    clock.advance(10);
    EXPECT_EQ(bar->animations.size(), 2U);
    EXPECT_THAT(bar->asked, IsEmpty());
}

TEST_F(SetDoubleValueAnimated, HalfwayFromTwoTenthsToEightTenthsItIsAtOneHalf)
{
    bar->setDoubleValue(0.2);
    setDoubleValueAnimated(*bar, 0.8);
    running().stopAnimation();
    running().setCurrentProgress(0.5F);
    EXPECT_DOUBLE_EQ(bar->doubleValue(), 0.5);
    EXPECT_EQ(running().currentProgress(), 0.5F);
}

TEST_F(SetDoubleValueAnimated, TheProgressIsWidenedFrom32Bits)
{
    setDoubleValueAnimated(*bar, 1);
    running().stopAnimation();
    running().setCurrentProgress(0.1F);
    EXPECT_EQ(bar->doubleValue(), static_cast<double>(0.1F));
    running().setCurrentProgress(3);
    EXPECT_EQ(bar->doubleValue(), 1) << "from 0 to 1, as the inherited setter has it";
}

TEST_F(SetDoubleValueAnimated, StoppingEarlyIsAnEndAndTheWaitingValueIsGoneToFromThere)
{
    setDoubleValueAnimated(*bar, 0.8);
    setDoubleValueAnimated(*bar, 0.2);
    clock.advance(0.1);
    running().stopAnimation();
    EXPECT_THAT(bar->asked, ElementsAre(0.2));
    EXPECT_NEAR(bar->doubleValue(), 0.4, 1e-6) << "from the value reached so far";
    clock.advance(0.1);
    EXPECT_NEAR(bar->doubleValue(), 0.3, 1e-6);
    clock.advance(0.1);
    EXPECT_NEAR(bar->doubleValue(), 0.2, 1e-15);
}

TEST_F(SetDoubleValueAnimated, StoppingWithoutAWaitingValueLeavesItWhereItIs)
{
    setDoubleValueAnimated(*bar, 0.8);
    clock.advance(0.1);
    running().stopAnimation();
    clock.advance(10);
    EXPECT_NEAR(bar->doubleValue(), 0.4, 1e-6);
    setDoubleValueAnimated(*bar, 1);
    EXPECT_EQ(bar->animations.size(), 2U) << "and it can be moved again";
}

TEST_F(SetDoubleValueAnimated, TheValueThatItHasAlreadyTakesItsTimeAsWell)
{
    bar->setDoubleValue(0.5);
    setDoubleValueAnimated(*bar, 0.5);
    clock.advance(0.19);
    EXPECT_TRUE(running().isAnimating());
    clock.advance(0.01);
    EXPECT_FALSE(running().isAnimating());
    EXPECT_EQ(bar->doubleValue(), 0.5);
}

TEST_F(SetDoubleValueAnimated, AWaitingValueThatIsNoNumberDiffersFromEveryTarget)
{
    const double nan = std::nan("");
    setDoubleValueAnimated(*bar, nan);
    setDoubleValueAnimated(*bar, nan);
    clock.advance(10);
    EXPECT_EQ(bar->animations.size(), 2U);
    EXPECT_EQ(bar->doubleValue(), 0) << "which for an indicator is its smallest value";
}

TEST_F(SetDoubleValueAnimated, AValueThatIsSetMeanwhileIsOverriddenByTheNextStep)
{
    setDoubleValueAnimated(*bar, 0.8);
    clock.advance(0.1);
    bar->setDoubleValue(1);
    clock.advance(0.1);
    EXPECT_EQ(bar->doubleValue(), 0.8);
}

TEST_F(SetDoubleValueAnimated, AnEndThatNobodyWaitsForDoesNothing)
{
    animationDidEnd(*bar);
    animationDidStop(*bar);
    EXPECT_THAT(bar->asked, IsEmpty());
    EXPECT_THAT(bar->takeValues(), IsEmpty());
}

TEST_F(SetDoubleValueAnimated, WhichAnimationEndedMakesNoDifference)
{
    for (const char* message : {"animationDidEnd:", "animationDidStop:"}) {
        bar->asked.clear();
        setDoubleValueAnimated(*bar, 0.5);
        setDoubleValueAnimated(*bar, 0.6);
        send(bar, message, make<NSAnimation>());
        EXPECT_THAT(bar->asked, ElementsAre(0.6)) << message;
        clock.advance(10);
        bar->setDoubleValue(0);
        setDoubleValueAnimated(*bar, 0.5);
        setDoubleValueAnimated(*bar, 0.6);
        send(bar, message, Value());
        EXPECT_THAT(bar->asked, ElementsAre(0.6, 0.6)) << message;
        clock.advance(10);
    }
}

TEST_F(SetDoubleValueAnimated, TheTwoKeepEachOtherAliveUntilTheEndAndNoLonger)
{
    const std::weak_ptr<RecordingIndicator> watchedBar = bar;
    setDoubleValueAnimated(*bar, 0.5);
    const std::weak_ptr<NSAnimation> watchedAnimation = bar->animations.back();
    bar->animations.clear();
    setDoubleValueAnimated(*bar, 0.75);
    bar = nullptr;
    clock.advance(0.1);
    EXPECT_FALSE(watchedBar.expired());
    clock.advance(0.1);
    EXPECT_TRUE(watchedAnimation.expired());
    ASSERT_FALSE(watchedBar.expired()) << "it is on its way to the waiting value";
    watchedBar.lock()->animations.clear();
    clock.advance(0.2);
    EXPECT_TRUE(watchedBar.expired());
}

TEST_F(SetDoubleValueAnimated, EachIndicatorHasItsOwn)
{
    const auto other = make<RecordingIndicator>();
    setDoubleValueAnimated(*bar, 0.5);
    setDoubleValueAnimated(*other, 0.25);
    clock.advance(0.2);
    EXPECT_EQ(bar->doubleValue(), 0.5);
    EXPECT_EQ(other->doubleValue(), 0.25);
    other->animations.clear();
}

TEST_F(SetDoubleValueAnimated, IsPublishedInTwoCategories)
{
    const auto plain = make<NSProgressIndicator>();
    send(plain, "setDoubleValueAnimatedWithValue:", 50);
    clock.advance(0.1);
    EXPECT_NEAR(plain->doubleValue(), 25, 1e-4);
    const Class& theClass = NSProgressIndicator::staticClass();
    EXPECT_EQ(theClass.method("setDoubleValueAnimatedWithValue:")->category, "RVCore");
    EXPECT_EQ(theClass.method("animationDidEnd:")->category, "RVCore1");
    EXPECT_EQ(theClass.method("animationDidStop:")->category, "RVCore1");
}

TEST(RVProgressBarAnimationDeathTest, DurationAndCurveAreNoWayToMakeOne)
{
    EXPECT_DEATH(
        send(Class::named("RVCore.RVProgressBarAnimation")->alloc(), "initWithDuration:animationCurve:", 1.0, 0),
        "^Fatal error: Use of unimplemented initializer 'init\\(duration:animationCurve:\\)' for class "
        "'RVCore.RVProgressBarAnimation'\n$");
}

TEST(RVProgressBarAnimationDeathTest, AnArchiveIsNoWayToMakeOne)
{
    EXPECT_DEATH(
        send(Class::named("RVCore.RVProgressBarAnimation")->alloc(), "initWithCoder:", std::make_shared<NSCoder>()),
        "GlobalFunctions:12: Fatal error: Not Supported\n$");
}

} // namespace
} // namespace RVCore::NSProgressIndicatorRVCoreTests
