#pragma once

#include <AppKit/NSView.h>
#include <Dispatch/DispatchTime.h>

#include <atomic>
#include <mutex>

namespace RVCore {

class ProgressWheel;

enum class NSProgressIndicatorStyle : int { bar = 0, spinning = 1 };

enum class NSControlSize : int { regular = 0, small = 1, mini = 2 };

// Shows how far something has come, or only that it goes on: a bar, which is as high as the desktop's style has it
// and as wide as it is made, or a wheel of spokes, 32 points across (small: 16, mini: 10). A wheel consists of layers
// (see ProgressWheel), so its view is always layer-backed.
//
// One that is indeterminate moves while it is animated and somebody can see it: a wheel goes on by a spoke twelve
// times a second, a bar by a little thirty times, and where people want less movement, both at a quarter of their
// speed. Where it stands is a function of the time alone. Stopped or out of sight, it costs nothing.
//
// Values that the enumerations do not have raise NSInvalidArgumentException.
class NSProgressIndicator : public NSView {
    RVCORE_CLASS(NSProgressIndicator)

public:
    NSProgressIndicator();
    ~NSProgressIndicator() override;
    using NSView::init;
    void init(NSCoder& coder) override;
    void encode(NSCoder& coder) const override; // what is set, not whether it is animated

    NSProgressIndicatorStyle style() const { return m_style; } // default bar
    virtual void setStyle(NSProgressIndicatorStyle style);
    NSControlSize controlSize() const { return m_controlSize; } // default regular
    virtual void setControlSize(NSControlSize size);
    // Whether nobody knows how far it has come. Default yes.
    bool isIndeterminate() const { return m_isIndeterminate; }
    virtual void setIndeterminate(bool indeterminate);
    // Whether a wheel stands on a plate, on which it is smaller. Default no. Bars are as the desktop's style has
    // them.
    bool isBezeled() const { return m_isBezeled; }
    virtual void setBezeled(bool bezeled);
    // Whether an indeterminate one is there while it is not animated. It keeps its place either way. Default yes.
    bool isDisplayedWhenStopped() const { return m_isDisplayedWhenStopped; }
    virtual void setDisplayedWhenStopped(bool displayed);

    // The value lies between the other two (0 and 100 by default) and is moved there; what is not a number counts as
    // the smaller one. The limits are finite; while the larger one is not larger, nothing has been done yet.
    //
    // The value may be read and set on any thread by who holds the indicator. It is there at once; the view and
    // assistive technology follow on the main queue, at most sixty times a second.
    double doubleValue() const; // default 0
    virtual void setDoubleValue(double value);
    void incrementBy(double delta) { setDoubleValue(doubleValue() + delta); }
    double minValue() const;
    virtual void setMinValue(double value);
    double maxValue() const;
    virtual void setMaxValue(double value);
    double fraction() const; // what has been done, from 0 to 1

    // Animation. Who is behind it, if anybody, makes no difference. Starting one that is animated and stopping one
    // that is not do nothing.
    virtual void startAnimation(const ObjectRef& sender = nullptr);
    virtual void stopAnimation(const ObjectRef& sender = nullptr); // it stays where it stands
    bool isAnimating() const { return m_isAnimating; }
    // For programs that say so. Views are painted on the main thread: while that is busy the sign stands either way,
    // and then is where it belongs. Default yes.
    bool usesThreadedAnimation() const { return m_usesThreadedAnimation; }
    virtual void setUsesThreadedAnimation(bool uses) { m_usesThreadedAnimation = uses; }
    // Where the moving sign of an indeterminate indicator stands: one time round from 0 to 1. Default 0. An animation
    // goes on setting it.
    double animationPhase() const { return m_phase; }
    void setAnimationPhase(double phase);

    bool isFlipped() const override { return true; }
    AccessibleRole accessibilityRole() const override { return AccessibleRole::progressIndicator; }
    std::string accessibilityValue() const override; // "25 %"; empty while it is not known
    CGSize intrinsicContentSize() const override;
    void draw(Canvas& canvas, const CGRect& dirtyRect) override;

    // For AppKit's own classes: before the tree below the root is painted. Wheels follow the appearance, and who was
    // out of sight goes on moving.
    static void prepareFrame(const NSView& root, AppKitKey);

protected:
    std::shared_ptr<CALayer> makeBackingLayer() override;
    void frameSizeDidChange() override;

private:
    // How long one time round takes and how long the sign stands in one place, in seconds.
    struct Pace {
        double turn = 1;
        double interval = 1;
        bool operator==(const Pace&) const = default;
    };

    void setLimit(double NSProgressIndicator::*limit, double value);
    double clamped(double value) const;
    void valueChanged();
    void showValue();
    void announceValue();
    CGFloat wheelSide() const;
    bool isDisplayed() const;
    void lookChanged();
    void makeWheel();
    void removeWheel();
    void updateWheel();
    void drawBar(Canvas& canvas);

    bool isMoving() const { return m_isAnimating && m_isIndeterminate; }
    bool canBeSeenMoving() const;
    Pace pace() const;
    double stepsAt(DispatchTime time) const;
    void moveFromHere();
    void move();
    void moveLater();

    mutable std::mutex m_valueMutex; // for the three below
    double m_value = 0;
    double m_minimum = 0;
    double m_maximum = 100;
    std::atomic<bool> m_valueIsNew = false; // the main queue holds a call that shows it
    std::atomic<double> m_valueShownAt;     // on the clock
    std::string m_announcedValue;           // to assistive technology
    NSProgressIndicatorStyle m_style = NSProgressIndicatorStyle::bar;
    NSControlSize m_controlSize = NSControlSize::regular;
    bool m_isIndeterminate = true;
    bool m_isBezeled = false;
    bool m_isDisplayedWhenStopped = true;
    bool m_usesThreadedAnimation = true;
    bool m_isAnimating = false;
    bool m_willMove = false; // the main queue holds the next step
    double m_phase = 0;
    double m_firstPhase = 0; // where the movement began
    DispatchTime m_begin{0};
    Pace m_pace;                            // since then
    std::unique_ptr<ProgressWheel> m_wheel; // of a spinning one
};

} // namespace RVCore
