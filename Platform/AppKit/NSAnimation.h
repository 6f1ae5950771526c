#pragma once

#include <Dispatch/DispatchThread.h>
#include <Foundation/NSObject.h>

#include <atomic>
#include <memory>
#include <vector>

namespace RVCore {

enum class NSAnimationCurve : int { easeInOut = 0, easeIn = 1, easeOut = 2, linear = 3 };

// Who waits while an animation runs: startAnimation itself, nobody, or nobody, with the frames on a thread of their
// own.
enum class NSAnimationBlockingMode : int { blocking = 0, nonblocking = 1, nonblockingThreaded = 2 };

// Calls `setCurrentProgress` again and again while a time passes; what moves is up to a subclass that overrides it.
//
//   startAnimation                          animationDidEnd:      The first call, with the progress that it starts
//   │ 0 ─── 0.1 ─── 0.2 ─ … ─ 0.9 ─── 1 │   to the delegate       from, is made by startAnimation, the last one is 1.
//   └──────────── duration ─────────────┘
//
// A delegate is any object that answers animationShouldStart:, animationDidEnd:, animationDidStop: or
// animation:didReachProgressMark:, each with the animation; it hears of them on the main thread.
//
// While it runs, the animation is kept alive. It is for the main thread, with one exception: in the threaded mode the
// calls of setCurrentProgress after the first one come from the animation's thread, and so may what these call. What
// is set while it runs counts from the next start on. An NSException that leaves setCurrentProgress is printed on
// standard error, and the animation goes on.
class NSAnimation : public NSObject {
    RVCORE_CLASS(NSAnimation)

public:
    void init() override { init(0.25, NSAnimationCurve::easeInOut); }
    using NSObject::init;
    // Raises NSInvalidArgumentException for a duration (in seconds) that is negative or not finite, and for a curve
    // that is none.
    virtual void init(double duration, NSAnimationCurve curve);

    double duration() const { return m_duration; }
    void setDuration(double duration); // as above
    NSAnimationCurve animationCurve() const { return m_curve; }
    void setAnimationCurve(NSAnimationCurve curve);
    // Default blocking. Blocked is only the caller: the main queue, windows and input are served meanwhile. A clock
    // that stands is moved on. The program's end stops the animation.
    NSAnimationBlockingMode animationBlockingMode() const { return m_blockingMode; }
    void setAnimationBlockingMode(NSAnimationBlockingMode mode);
    // Frames per second, at least 0; default 60. 0 stands for as many as possible, and there are no more than 1000.
    float frameRate() const { return m_frameRate; }
    void setFrameRate(float frameRate);
    std::shared_ptr<NSObject> delegate() const { return m_delegate.lock(); }
    void setDelegate(const std::weak_ptr<NSObject>& delegate) { m_delegate = delegate; } // not owned

    // How much of the time is over, from 0 to 1; clipped. What is not a number raises NSInvalidArgumentException.
    virtual float currentProgress() const { return m_progress; }
    virtual void setCurrentProgress(float progress);
    virtual float currentValue() const; // the progress as the curve has it
    // The delegate hears when the progress reaches them; each from 0 to 1, or NSInvalidArgumentException is raised.
    const std::vector<float>& progressMarks() const { return m_marks; }
    void setProgressMarks(const std::vector<float>& marks);

    // From the present progress, or if that is 1 from 0, unless the delegate answers no or it runs already.
    virtual void startAnimation();
    // No call of setCurrentProgress follows, and the delegate hears animationDidStop:. On the main thread it waits
    // for a call that is under way; from within setCurrentProgress on the animation's thread the delegate hears
    // later. Does nothing when the animation is not running.
    virtual void stopAnimation();
    bool isAnimating() const { return m_isAnimating; } // until the delegate hears of the end; safe from any thread

private:
    struct Run;

    void stepLater(const std::shared_ptr<Run>& run, DispatchTime time);
    void step(Run& run, DispatchTime now);
    void stepOnMainThread(const std::shared_ptr<Run>& run);
    void startThread(const std::shared_ptr<Run>& run);
    void stepOnThread(const std::shared_ptr<Run>& run, DispatchThread& thread);
    void waitForEnd(const std::shared_ptr<Run>& run);
    void finishLater(const std::shared_ptr<Run>& run, const char* message);
    std::shared_ptr<Run> leave(); // the run that it was in
    void finish(const char* message);
    bool delegateAgrees();
    static std::vector<std::shared_ptr<NSAnimation>>& running();
    static void endThreads();

    double m_duration = 0.25;
    std::atomic<NSAnimationCurve> m_curve = NSAnimationCurve::easeInOut; // the threaded mode asks for the value
    NSAnimationBlockingMode m_blockingMode = NSAnimationBlockingMode::blocking;
    float m_frameRate = 60;
    std::atomic<float> m_progress = 0;
    std::atomic<bool> m_isAnimating = false;
    std::vector<float> m_marks;
    std::weak_ptr<NSObject> m_delegate;
    std::shared_ptr<Run> m_run; // null when it is not running
    std::unique_ptr<DispatchThread> m_thread;
};

} // namespace RVCore
