#include <AppKit/ExceptionReport.h>
#include <AppKit/KnownValue.h>
#include <AppKit/MainQueueDriver.h>
#include <AppKit/NSAnimation.h>
#include <Backend/Backend.h>
#include <Dispatch/DispatchClock.h>
#include <Dispatch/DispatchQueue.h>
#include <Foundation/Message.h>
#include <Foundation/NSException.h>

#include <QuartzCore/CAMediaTimingFunction.h>

#include <algorithm>
#include <cmath>
#include <system_error>

namespace RVCore {

// One way from a start to its end, with what was set when it began.
struct NSAnimation::Run {
    DispatchTime begin;
    double duration; // of the whole, in seconds
    double start;    // the progress that it began with
    double interval; // between two frames, in seconds
    bool isThreaded;
    std::vector<float> marks;
    float reached; // the progress of the last frame
    bool servesDesktop = false;

    DispatchTime end() const { return begin + duration * (1 - start); }
    // Also when the clock was replaced by one that shows less, as time does not go back.
    bool isOver(DispatchTime now) const { return now >= end() || now < begin; }
    float progressAt(DispatchTime now) const
    {
        return isOver(now) ? 1.0F : static_cast<float>(start + (now - begin) / duration);
    }
    DispatchTime frameAfter(DispatchTime now) const { return std::min(now + interval, std::max(end(), now)); }
};

namespace {

constexpr double shortestInterval = 0.001; // in seconds: what a thousand frames a second leave each

// The animation whose frame the calling thread, which is its own, is making.
struct OwnThread {
    const NSAnimation* animation = nullptr;
    bool isStopped = false; // by the frame
};
thread_local OwnThread ownThread;

std::string_view timingName(NSAnimationCurve curve)
{
    switch (curve) {
    case NSAnimationCurve::easeInOut:
        return kCAMediaTimingFunctionEaseInEaseOut;
    case NSAnimationCurve::easeIn:
        return kCAMediaTimingFunctionEaseIn;
    case NSAnimationCurve::easeOut:
        return kCAMediaTimingFunctionEaseOut;
    case NSAnimationCurve::linear:
        break;
    }
    return kCAMediaTimingFunctionLinear;
}

void tellOfMark(const ObjectRef& delegate, const ObjectRef& animation, float mark)
{
    static const Selector selector("animation:didReachProgressMark:");
    if (delegate && delegate->respondsToSelector(selector))
        send(delegate, selector, animation, mark);
}

} // namespace

Class& NSAnimation::staticClass()
{
    static Class& theClass = defineClass<NSAnimation>("NSAnimation", NSObject::staticClass(), [](auto& publish) {
        publish.initializer(
            "initWithDuration:animationCurve:",
            [](NSAnimation& self, double duration, NSAnimationCurve curve) { self.init(duration, curve); });
        publish.property("duration", &NSAnimation::duration, &NSAnimation::setDuration);
        publish.property("animationCurve", &NSAnimation::animationCurve, &NSAnimation::setAnimationCurve);
        publish.property("animationBlockingMode", &NSAnimation::animationBlockingMode,
                         &NSAnimation::setAnimationBlockingMode);
        publish.property("frameRate", &NSAnimation::frameRate, &NSAnimation::setFrameRate);
        publish.property("delegate", &NSAnimation::delegate,
                         [](NSAnimation& self, const ObjectRef& delegate) { self.setDelegate(delegate); });
        publish.property("currentProgress", &NSAnimation::currentProgress, &NSAnimation::setCurrentProgress);
        publish.readOnlyProperty("currentValue", &NSAnimation::currentValue);
        publish.property("progressMarks", &NSAnimation::progressMarks, &NSAnimation::setProgressMarks);
        publish.method("startAnimation", &NSAnimation::startAnimation);
        publish.method("stopAnimation", &NSAnimation::stopAnimation);
        publish.readOnlyProperty("isAnimating", &NSAnimation::isAnimating);
    });
    return theClass;
}

void NSAnimation::init(double duration, NSAnimationCurve curve)
{
    setDuration(duration);
    setAnimationCurve(curve);
}

void NSAnimation::setDuration(double duration)
{
    requireNotNegative("NSAnimation.setDuration:", "duration", duration);
    m_duration = duration;
}

void NSAnimation::setAnimationCurve(NSAnimationCurve curve)
{
    requireKnown("NSAnimation.setAnimationCurve:", curve, NSAnimationCurve::easeInOut, NSAnimationCurve::linear);
    m_curve = curve;
}

void NSAnimation::setAnimationBlockingMode(NSAnimationBlockingMode mode)
{
    requireKnown("NSAnimation.setAnimationBlockingMode:", mode, NSAnimationBlockingMode::blocking,
                 NSAnimationBlockingMode::nonblockingThreaded);
    m_blockingMode = mode;
}

void NSAnimation::setFrameRate(float frameRate)
{
    requireNotNegative("NSAnimation.setFrameRate:", "frameRate", frameRate);
    m_frameRate = frameRate;
}

void NSAnimation::setCurrentProgress(float progress)
{
    if (std::isnan(progress))
        raiseInvalidArgument("NSAnimation.setCurrentProgress:", "progress must be a number, got nan");
    m_progress = std::clamp(progress, 0.0F, 1.0F);
}

float NSAnimation::currentValue() const
{
    return static_cast<float>(CAMediaTimingFunction::functionWithName(timingName(m_curve))->value(currentProgress()));
}

void NSAnimation::setProgressMarks(const std::vector<float>& marks)
{
    for (const float mark : marks) {
        if (!(mark >= 0 && mark <= 1))
            raiseInvalidArgument("NSAnimation.setProgressMarks:",
                                 "a mark must be from 0 to 1, got " + numberText(mark));
    }
    m_marks = marks;
}

// The ones that run are held here, for a thread must not be the one that lets go of its animation last.
std::vector<std::shared_ptr<NSAnimation>>& NSAnimation::running()
{
    static auto& animations = *new std::vector<std::shared_ptr<NSAnimation>>;
    static const struct AtExit {
        ~AtExit() { endThreads(); } // as they use what ends with the program
    } atExit;
    return animations;
}

void NSAnimation::endThreads()
{
    for (const auto& animation : running())
        animation->m_thread.reset();
}

bool NSAnimation::delegateAgrees()
{
    static const Selector selector("animationShouldStart:");
    const auto delegate = m_delegate.lock();
    if (!delegate || !delegate->respondsToSelector(selector))
        return true;
    const Value answer = send(delegate, selector, shared(*this));
    return !answer.boolean() || *answer.boolean();
}

void NSAnimation::startAnimation()
{
    const auto alive = shared(*this); // who is asked may let go of it
    if (m_run || !delegateAgrees() || m_run)
        return;
    const float progress = currentProgress();
    const float start = progress < 1 ? progress : 0;
    const double interval = std::max(m_frameRate > 0 ? 1.0 / m_frameRate : 0, shortestInterval);
    const NSAnimationBlockingMode mode = m_blockingMode; // what the first frame sets counts for the next start
    const auto run = std::make_shared<Run>(Run{DispatchTime::now(), m_duration, start, interval,
                                               mode == NSAnimationBlockingMode::nonblockingThreaded, m_marks, start});
    m_run = run;
    m_isAnimating = true;
    running().push_back(alive);
    callReportingExceptions([&] { setCurrentProgress(start); });
    if (m_run != run)
        return; // that stopped it
    if (run->isThreaded)
        startThread(run);
    else
        stepLater(run, run->frameAfter(run->begin));
    if (mode == NSAnimationBlockingMode::blocking)
        waitForEnd(run);
}

void NSAnimation::startThread(const std::shared_ptr<Run>& run)
{
    try {
        m_thread =
            std::make_unique<DispatchThread>([this, run](DispatchThread& thread) { stepOnThread(run, thread); });
    } catch (const std::system_error&) { // the machine has no more threads
        leave();
        throw;
    }
}

// One frame, on the thread that makes them.
void NSAnimation::step(Run& run, DispatchTime now)
{
    const float progress = run.progressAt(now);
    callReportingExceptions([&] { setCurrentProgress(progress); });
    const float before = std::exchange(run.reached, progress);
    for (const float mark : run.marks) {
        if (mark <= before || mark > progress)
            continue;
        DispatchQueue::main().async([animation = weak_from_this(), mark] {
            if (const auto alive = std::static_pointer_cast<NSAnimation>(animation.lock()))
                tellOfMark(alive->delegate(), alive, mark);
        });
    }
}

void NSAnimation::stepLater(const std::shared_ptr<Run>& run, DispatchTime time)
{
    DispatchQueue::main().asyncAfter(time, [animation = std::weak_ptr(shared(*this)), run] {
        const auto alive = animation.lock();
        if (alive && alive->m_run == run)
            alive->stepOnMainThread(run);
    });
}

void NSAnimation::stepOnMainThread(const std::shared_ptr<Run>& run)
{
    const DispatchTime now = DispatchTime::now();
    step(*run, now);
    if (m_run != run)
        return; // the frame stopped it
    if (run->isOver(now))
        finishLater(run, "animationDidEnd:");
    else
        stepLater(run, run->frameAfter(now));
}

void NSAnimation::stepOnThread(const std::shared_ptr<Run>& run, DispatchThread& thread)
{
    ownThread.animation = this;
    DispatchTime next = run->frameAfter(run->begin);
    while (const auto now = thread.waitUntil(next)) {
        step(*run, *now);
        if (ownThread.isStopped || run->isOver(*now)) {
            finishLater(run, ownThread.isStopped ? "animationDidStop:" : "animationDidEnd:");
            return;
        }
        next = run->frameAfter(*now);
    }
}

// The delegate hears of the end behind the marks.
void NSAnimation::finishLater(const std::shared_ptr<Run>& run, const char* message)
{
    DispatchQueue::main().async([animation = weak_from_this(), run, message] {
        const auto alive = std::static_pointer_cast<NSAnimation>(animation.lock());
        if (alive && alive->m_run == run)
            alive->finish(message);
    });
}

void NSAnimation::waitForEnd(const std::shared_ptr<Run>& run)
{
    while (m_run == run) {
        if (DispatchClock::shared().moveOn(run->interval))
            continue;
        connectMainQueue(); // a backend that is new knows nothing of what waits
        run->servesDesktop = true;
        Backend::shared().run();
        run->servesDesktop = false;
        if (m_run == run) { // somebody ended the program's run, and meant the one that we are in
            stopAnimation();
            Backend::shared().stop();
        }
    }
}

void NSAnimation::stopAnimation()
{
    if (ownThread.animation == this)
        ownThread.isStopped = true;
    else if (m_run)
        finish("animationDidStop:");
}

std::shared_ptr<NSAnimation::Run> NSAnimation::leave()
{
    auto run = std::exchange(m_run, nullptr);
    m_thread.reset();
    m_isAnimating = false;
    std::erase(running(), shared(*this));
    return run;
}

void NSAnimation::finish(const char* message)
{
    const auto alive = shared(*this);
    const auto run = leave();
    if (run->servesDesktop)
        Backend::shared().stop();
    const auto delegate = m_delegate.lock();
    if (delegate && delegate->respondsToSelector(message))
        send(delegate, message, alive);
}

} // namespace RVCore
