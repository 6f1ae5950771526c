#include "WindowTesting.h"

#include <AppKit/NSAnimation.h>
#include <Dispatch/DispatchQueue.h>
#include <Foundation/KeyPath.h>
#include <Platform/Foundation/Raised.h>

#include <QuartzCore/CAMediaTimingFunction.h>

#include <algorithm>
#include <cmath>
#include <future>
#include <mutex>
#include <thread>

namespace RVCore::NSAnimationTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Mode = NSAnimationBlockingMode;

// Keeps the progress of every frame, and whether the main thread made it.
class RecordingAnimation : public NSAnimation {
    RVCORE_CLASS(RecordingAnimation)

public:
    void setCurrentProgress(float progress) override
    {
        NSAnimation::setCurrentProgress(progress);
        {
            const std::lock_guard lock(m_mutex);
            m_frames.push_back(currentProgress());
            m_ownThread = m_ownThread || std::this_thread::get_id() != m_mainThread;
        }
        if (onFrame)
            onFrame(*this);
    }
    std::vector<float> takeFrames()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_frames, {});
    }
    bool hadOwnThread() const { return m_ownThread; }

    std::function<void(RecordingAnimation&)> onFrame;

private:
    std::mutex m_mutex;
    std::vector<float> m_frames;
    bool m_ownThread = false;
    const std::thread::id m_mainThread = std::this_thread::get_id();
};

Class& RecordingAnimation::staticClass()
{
    static Class& theClass =
        defineClass<RecordingAnimation>("RecordingAnimation", NSAnimation::staticClass(), [](auto&) {});
    return theClass;
}

// Writes down what it is told, and when.
class AnimationDelegate : public NSObject {
    RVCORE_CLASS(AnimationDelegate)

public:
    void note(const std::string& text)
    {
        notes.push_back(text + " at " + numberText(DispatchClock::shared().seconds()));
        EXPECT_EQ(std::this_thread::get_id(), m_mainThread);
        if (onNote)
            onNote(text);
    }
    std::vector<std::string> take() { return std::exchange(notes, {}); }

    bool agrees = true;
    std::vector<std::string> notes;
    std::function<void(const std::string&)> onNote;

private:
    const std::thread::id m_mainThread = std::this_thread::get_id();
};

Class& AnimationDelegate::staticClass()
{
    using Animation = std::shared_ptr<NSAnimation>;
    static Class& theClass =
        defineClass<AnimationDelegate>("AnimationDelegate", NSObject::staticClass(), [](auto& publish) {
            publish.method("animationShouldStart:", [](AnimationDelegate& self, const Animation&) {
                self.note("should start");
                return self.agrees;
            });
            publish.method("animationDidEnd:", [](AnimationDelegate& self, const Animation&) { self.note("ended"); });
            publish.method("animationDidStop:",
                           [](AnimationDelegate& self, const Animation&) { self.note("stopped"); });
            publish.method(
                "animation:didReachProgressMark:",
                [](AnimationDelegate& self, const Animation&, float mark) { self.note("mark " + numberText(mark)); });
        });
    return theClass;
}

// One second in four frames, in each of the modes that do not block.
class NSAnimationTest : public WindowTest, public testing::WithParamInterface<Mode> {
protected:
    NSAnimationTest()
    {
        animation->setAnimationBlockingMode(GetParam());
        animation->setFrameRate(4);
        animation->setDelegate(delegate);
    }
    ~NSAnimationTest() override { animation->stopAnimation(); }

    std::shared_ptr<RecordingAnimation> animation = make<RecordingAnimation>(1.0, NSAnimationCurve::easeIn);
    std::shared_ptr<AnimationDelegate> delegate = make<AnimationDelegate>();
};

INSTANTIATE_TEST_SUITE_P(Modes, NSAnimationTest, testing::Values(Mode::nonblocking, Mode::nonblockingThreaded),
                         [](const auto& tested) {
                             return tested.param == Mode::nonblocking ? "nonblocking" : "nonblockingThreaded";
                         });

TEST_P(NSAnimationTest, EveryFrameSetsTheLinearProgress)
{
    animation->startAnimation();
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0));
    clock.advance(0.25);
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0.25));
    EXPECT_TRUE(animation->isAnimating());
    clock.advance(2);
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0.5, 0.75, 1));
    EXPECT_FALSE(animation->isAnimating());
    EXPECT_THAT(delegate->take(), ElementsAre("should start at 0", "ended at 1"));
    EXPECT_EQ(animation->hadOwnThread(), GetParam() == Mode::nonblockingThreaded);
}

TEST_P(NSAnimationTest, TheLastFrameIsAtTheEndAlsoBetweenTwoFrames)
{
    animation->setDuration(0.6);
    animation->startAnimation();
    clock.advance(1);
    EXPECT_THAT(animation->takeFrames(),
                ElementsAre(0, testing::FloatEq(0.25F / 0.6F), testing::FloatEq(0.5F / 0.6F), 1));
    EXPECT_THAT(delegate->take(), testing::Contains("ended at 0.6"));
}

TEST_P(NSAnimationTest, WithoutADurationItEndsSoonButNotAtOnce)
{
    animation->setDuration(0);
    animation->startAnimation();
    EXPECT_TRUE(animation->isAnimating());
    clock.advance(0);
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0, 1));
    EXPECT_THAT(delegate->take(), ElementsAre("should start at 0", "ended at 0"));
}

TEST_P(NSAnimationTest, ADelegateThatSaysNoKeepsItFromStarting)
{
    delegate->agrees = false;
    animation->startAnimation();
    EXPECT_FALSE(animation->isAnimating());
    clock.advance(2);
    EXPECT_THAT(animation->takeFrames(), IsEmpty());
    EXPECT_THAT(delegate->take(), ElementsAre("should start at 0"));
}

TEST_P(NSAnimationTest, StoppingTellsAtOnceAndNothingFollows)
{
    animation->startAnimation();
    clock.advance(0.5);
    animation->stopAnimation();
    EXPECT_FALSE(animation->isAnimating());
    EXPECT_THAT(delegate->take(), ElementsAre("should start at 0", "stopped at 0.5"));
    animation->takeFrames();
    animation->stopAnimation();
    clock.advance(2);
    EXPECT_THAT(animation->takeFrames(), IsEmpty());
    EXPECT_THAT(delegate->take(), IsEmpty());
}

TEST_P(NSAnimationTest, AFrameMayStopIt)
{
    animation->onFrame = [](RecordingAnimation& self) {
        if (self.currentProgress() >= 0.5F)
            self.stopAnimation();
    };
    animation->startAnimation();
    clock.advance(2);
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0, 0.25, 0.5));
    EXPECT_THAT(delegate->take(), ElementsAre("should start at 0", "stopped at 0.5"));
    EXPECT_FALSE(animation->isAnimating());
}

TEST_P(NSAnimationTest, TheFirstFrameMayStopIt)
{
    animation->onFrame = [](RecordingAnimation& self) { self.stopAnimation(); };
    animation->startAnimation();
    EXPECT_THAT(delegate->take(), ElementsAre("should start at 0", "stopped at 0"));
    clock.advance(2);
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0));
}

TEST_P(NSAnimationTest, StartingOneThatRunsDoesNothing)
{
    animation->startAnimation();
    clock.advance(0.5);
    delegate->take();
    animation->startAnimation();
    EXPECT_THAT(delegate->take(), IsEmpty());
    clock.advance(0.5);
    EXPECT_THAT(delegate->take(), ElementsAre("ended at 1"));
}

TEST_P(NSAnimationTest, AStoppedOneGoesOnWhereItStandsAndAFinishedOneFromTheStart)
{
    animation->startAnimation();
    clock.advance(0.5);
    animation->stopAnimation();
    clock.advance(10);
    animation->takeFrames();
    delegate->take();
    animation->startAnimation();
    clock.advance(2);
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0.5, 0.75, 1));
    EXPECT_THAT(delegate->take(), ElementsAre("should start at 10.5", "ended at 11"));
    animation->startAnimation();
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0));
}

TEST_P(NSAnimationTest, TheDelegateMayStartItAgain)
{
    delegate->onNote = [&](const std::string& text) {
        if (text == "ended" && delegate->notes.size() < 4)
            animation->startAnimation();
    };
    animation->startAnimation();
    clock.advance(5);
    EXPECT_THAT(delegate->take(), ElementsAre("should start at 0", "ended at 1", "should start at 1", "ended at 2"));
}

TEST_P(NSAnimationTest, ADelegateThatDiesHearsNothing)
{
    animation->startAnimation();
    clock.advance(0.5);
    delegate = nullptr;
    EXPECT_EQ(animation->delegate(), nullptr);
    clock.advance(1);
    EXPECT_FALSE(animation->isAnimating());
}

TEST_P(NSAnimationTest, OneThatIsLetGoOfRunsToItsEnd)
{
    const std::weak_ptr<NSAnimation> watched = animation;
    animation->startAnimation();
    animation = make<RecordingAnimation>();
    clock.advance(0.5);
    EXPECT_FALSE(watched.expired());
    clock.advance(0.5);
    EXPECT_TRUE(watched.expired());
    EXPECT_THAT(delegate->take(), ElementsAre("should start at 0", "ended at 1"));
}

TEST_P(NSAnimationTest, TheDelegateHearsOfMarksOnTheWay)
{
    animation->setProgressMarks({0.6F, 0.25F, 1});
    animation->startAnimation();
    clock.advance(2);
    EXPECT_THAT(delegate->take(), ElementsAre("should start at 0", "mark 0.25 at 0.25",
                                              "mark " + numberText(0.6F) + " at 0.75", "mark 1 at 1", "ended at 1"));
}

TEST_P(NSAnimationTest, WhatIsSetWhileItRunsCountsFromTheNextStartOn)
{
    animation->startAnimation();
    animation->setDuration(9);
    animation->setFrameRate(1);
    animation->setAnimationBlockingMode(Mode::blocking);
    clock.advance(1);
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0, 0.25, 0.5, 0.75, 1));
}

TEST_P(NSAnimationTest, AModeThatTheFirstFrameSetsCountsFromTheNextStartOn)
{
    animation->onFrame = [](RecordingAnimation& self) { self.setAnimationBlockingMode(Mode::blocking); };
    animation->startAnimation();
    EXPECT_TRUE(animation->isAnimating()) << "it did not wait";
    clock.advance(1);
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0, 0.25, 0.5, 0.75, 1));
}

TEST_P(NSAnimationTest, TheUsualFrameRateIs60AndNoneIs1000)
{
    EXPECT_EQ(make<NSAnimation>()->frameRate(), 60);
    animation->setFrameRate(60);
    animation->startAnimation();
    clock.advance(2);
    EXPECT_THAT(animation->takeFrames().size(), testing::AllOf(testing::Ge(61U), testing::Le(62U)));
    animation->setFrameRate(0);
    animation->startAnimation();
    clock.advance(2);
    EXPECT_THAT(animation->takeFrames().size(), testing::AllOf(testing::Ge(1001U), testing::Le(1002U)));
}

TEST_P(NSAnimationTest, AnExceptionInAFrameIsPrintedAndTheNextOneFollows)
{
    animation->onFrame = [](RecordingAnimation& self) {
        if (self.currentProgress() == 0.5F)
            raiseInvalidArgument("frame", "half is no good");
    };
    animation->startAnimation();
    testing::internal::CaptureStderr();
    clock.advance(1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "NSInvalidArgumentException: frame: half is no good\n");
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0, 0.25, 0.5, 0.75, 1));
}

TEST_P(NSAnimationTest, AClockThatIsReplacedEndsIt)
{
    clock.advance(100);
    animation->startAnimation();
    ManualDispatchClock another;
    another.advance(0.25);
    EXPECT_EQ(animation->currentProgress(), 1);
    EXPECT_FALSE(animation->isAnimating());
}

TEST_P(NSAnimationTest, TheValueFollowsTheCurve)
{
    animation->setCurrentProgress(0.5F);
    const std::pair<NSAnimationCurve, std::string_view> curves[] = {
        {NSAnimationCurve::easeInOut, kCAMediaTimingFunctionEaseInEaseOut},
        {NSAnimationCurve::easeIn, kCAMediaTimingFunctionEaseIn},
        {NSAnimationCurve::easeOut, kCAMediaTimingFunctionEaseOut},
        {NSAnimationCurve::linear, kCAMediaTimingFunctionLinear},
    };
    for (const auto& [curve, name] : curves) {
        animation->setAnimationCurve(curve);
        EXPECT_FLOAT_EQ(animation->currentValue(),
                        static_cast<float>(CAMediaTimingFunction::functionWithName(name)->value(0.5)));
    }
}

class NSAnimationBlocking : public WindowTest {};

TEST_F(NSAnimationBlocking, StartingMovesAClockThatStandsAndReturnsAtTheEnd)
{
    const auto animation = make<RecordingAnimation>(0.5, NSAnimationCurve::linear);
    EXPECT_EQ(animation->animationBlockingMode(), Mode::blocking);
    animation->setFrameRate(4);
    std::vector<double> others;
    DispatchQueue::main().asyncAfter(DispatchTime(0.1), [&] { others.push_back(clock.seconds()); });
    animation->startAnimation();
    EXPECT_FALSE(animation->isAnimating());
    EXPECT_THAT(animation->takeFrames(), ElementsAre(0, 0.5, 1));
    EXPECT_EQ(clock.seconds(), 0.5);
    EXPECT_THAT(others, ElementsAre(0.1));
}

TEST_F(NSAnimationBlocking, AFrameThatStopsItLetsTheStartReturn)
{
    const auto animation = make<RecordingAnimation>(100.0, NSAnimationCurve::linear);
    animation->setFrameRate(1);
    animation->onFrame = [](RecordingAnimation& self) {
        if (self.currentProgress() >= 0.02F)
            self.stopAnimation();
    };
    animation->startAnimation();
    EXPECT_EQ(clock.seconds(), 2);
}

// By the system's clock.
class NSAnimationInRealTime : public testing::Test {
protected:
    NSAnimationInRealTime() { Backend::install(std::make_unique<HeadlessBackend>()); }
    ~NSAnimationInRealTime() override { Backend::install(nullptr); }
};

TEST_F(NSAnimationInRealTime, ABlockingStartServesTheMainQueueAndReturnsAtTheEnd)
{
    const auto animation = make<RecordingAnimation>(0.03, NSAnimationCurve::linear);
    int others = 0;
    DispatchQueue::main().async([&] { ++others; });
    const DispatchTime start = DispatchTime::now();
    animation->startAnimation();
    EXPECT_GE(DispatchTime::now() - start, 0.03);
    EXPECT_EQ(animation->currentProgress(), 1);
    EXPECT_FALSE(animation->isAnimating());
    EXPECT_EQ(others, 1);
}

TEST_F(NSAnimationInRealTime, TheEndOfTheProgramsRunStopsABlockingOne)
{
    const auto animation = make<RecordingAnimation>(1000.0, NSAnimationCurve::linear);
    const auto delegate = make<AnimationDelegate>();
    animation->setDelegate(delegate);
    DispatchQueue::main().async([] { Backend::shared().stop(); });
    animation->startAnimation();
    EXPECT_FALSE(animation->isAnimating());
    EXPECT_THAT(delegate->notes.back(), HasSubstr("stopped"));
}

TEST_F(NSAnimationInRealTime, AThreadedOneRunsWhileTheMainThreadIsBusy)
{
    const auto animation = make<RecordingAnimation>(0.02, NSAnimationCurve::linear);
    animation->setAnimationBlockingMode(Mode::nonblockingThreaded);
    std::promise<void> last;
    animation->onFrame = [&](RecordingAnimation& self) {
        if (self.currentProgress() == 1)
            last.set_value();
    };
    animation->startAnimation();
    last.get_future().wait();
    const auto frames = animation->takeFrames();
    EXPECT_TRUE(std::ranges::is_sorted(frames));
    EXPECT_TRUE(animation->isAnimating()); // the main queue has not been served
    while (animation->isAnimating())
        DispatchQueue::main().runDue();
}

TEST_F(NSAnimationInRealTime, StoppingAThreadedOneInTheMiddleWaitsForItsFrame)
{
    for (int round = 0; round < 50; ++round) {
        const auto animation = make<RecordingAnimation>(1000.0, NSAnimationCurve::linear);
        animation->setAnimationBlockingMode(Mode::nonblockingThreaded);
        animation->setFrameRate(0);
        std::promise<void> started;
        animation->onFrame = [&, count = 0](RecordingAnimation&) mutable {
            if (++count == 2)
                started.set_value();
        };
        animation->startAnimation();
        started.get_future().wait();
        animation->stopAnimation();
        animation->onFrame = nullptr; // nobody reads it any more
        EXPECT_FALSE(animation->isAnimating());
    }
}

TEST(NSAnimation, StartsWithTheUsualValues)
{
    const auto animation = make<NSAnimation>();
    EXPECT_EQ(animation->duration(), 0.25);
    EXPECT_EQ(animation->animationCurve(), NSAnimationCurve::easeInOut);
    EXPECT_EQ(animation->animationBlockingMode(), Mode::blocking);
    EXPECT_EQ(animation->frameRate(), 60);
    EXPECT_EQ(animation->currentProgress(), 0);
    EXPECT_EQ(animation->delegate(), nullptr);
    EXPECT_FALSE(animation->isAnimating());
    animation->stopAnimation();
}

TEST(NSAnimation, BadInputRaisesAndSaysWhat)
{
    const auto animation = make<NSAnimation>(2.0, NSAnimationCurve::linear);
    const double nan = std::nan("");
    EXPECT_EQ(raised([&] { animation->setDuration(-1); }),
              "NSInvalidArgumentException: NSAnimation.setDuration:: duration must not be negative, got -1");
    EXPECT_THAT(raised([&] { animation->setDuration(nan); }), HasSubstr("duration must be finite, got nan"));
    EXPECT_THAT(raised([&] { make<NSAnimation>(HUGE_VAL, NSAnimationCurve::linear); }), HasSubstr("got inf"));
    EXPECT_THAT(raised([&] { animation->setFrameRate(-1); }), HasSubstr("frameRate must not be negative"));
    EXPECT_THAT(raised([&] { animation->setCurrentProgress(static_cast<float>(nan)); }), HasSubstr("got nan"));
    EXPECT_THAT(raised([&] { animation->setProgressMarks({0.5F, 1.5F}); }), HasSubstr("got 1.5"));
    EXPECT_THAT(raised([&] { setValueForKeyPath(*animation, "animationCurve", 4); }),
                HasSubstr("takes 0 to 3, got 4"));
    EXPECT_THAT(raised([&] { setValueForKeyPath(*animation, "animationBlockingMode", -1); }),
                HasSubstr("takes 0 to 2, got -1"));
    EXPECT_EQ(animation->duration(), 2);
    animation->setCurrentProgress(7);
    EXPECT_EQ(animation->currentProgress(), 1);
}

TEST(NSAnimation, EverythingIsReachedByName)
{
    const ManualDispatchClock clock;
    const auto delegate = make<AnimationDelegate>();
    const ObjectRef animation = Class::named("NSAnimation")->alloc();
    send(animation, "initWithDuration:animationCurve:", 0.5, 1);
    const std::pair<const char*, Value> values[] = {
        {"duration", 0.75},
        {"animationCurve", 2},
        {"animationBlockingMode", 1},
        {"frameRate", 30.0},
        {"delegate", delegate},
        {"currentProgress", 0.5},
        {"progressMarks", Value::Array{0.25, 0.5}},
    };
    for (const auto& [name, value] : values) {
        setValueForKeyPath(*animation, name, value);
        EXPECT_EQ(valueForKeyPath(*animation, name), value) << name;
    }
    send(animation, "startAnimation");
    EXPECT_EQ(send(animation, "isAnimating"), Value(true));
    send(animation, "stopAnimation");
    EXPECT_THAT(delegate->take(), ElementsAre("should start at 0", "stopped at 0"));
    EXPECT_GT(*send(animation, "currentValue").floatingPoint(), 0.5);
}

} // namespace
} // namespace RVCore::NSAnimationTests
