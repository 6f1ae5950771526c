#include <AppKit/NSAnimation.h>
#include <Common/Misc/GlobalFunctions.h>
#include <Extensions/NSProgressIndicator+RVCore.h>
#include <Foundation/AssociatedObjects.h>
#include <Foundation/Message.h>

namespace RVCore {

namespace {

// Beside each indicator: the animation that runs, and the latest value that came meanwhile.
struct AssociatedKeys {
    static constexpr AssociationKey currentAnimation{"currentAnimation"};
    static constexpr AssociationKey nextProgress{"nextProgress"};
};

// Sets the indicator's value on the way. The indicator holds it until it ends, and it holds the indicator.
class RVProgressBarAnimation : public NSAnimation {
    RVCORE_CLASS(RVProgressBarAnimation)

public:
    using NSAnimation::init;
    void init(const std::shared_ptr<NSProgressIndicator>& indicator, double initialValue, double newValue);
    // Not offered; these stop the program.
    void init(double duration, NSAnimationCurve curve) override;
    void init(NSCoder& coder) override;

    double newValue() const { return m_newValue; }
    void setCurrentProgress(float progress) override;

private:
    std::shared_ptr<NSProgressIndicator> m_indicator;
    double m_initialValue = 0;
    double m_newValue = 0;
};

Class& RVProgressBarAnimation::staticClass()
{
    static Class& theClass = defineClass<RVProgressBarAnimation>("RVCore.RVProgressBarAnimation",
                                                                 NSAnimation::staticClass(), [](auto&) {});
    return theClass;
}

void RVProgressBarAnimation::init(const std::shared_ptr<NSProgressIndicator>& indicator, double initialValue,
                                  double newValue)
{
    m_indicator = indicator;
    m_initialValue = initialValue;
    m_newValue = newValue;
    NSAnimation::init(0.2, NSAnimationCurve::easeIn);
}

void RVProgressBarAnimation::init(double, NSAnimationCurve)
{
    unimplementedInitializer("RVCore.RVProgressBarAnimation", "init(duration:animationCurve:)");
}

void RVProgressBarAnimation::init(NSCoder&)
{
    notSupportedError();
}

// By the linear progress: the curve shapes only currentValue, which nobody asks for.
void RVProgressBarAnimation::setCurrentProgress(float progress)
{
    NSAnimation::setCurrentProgress(progress);
    const double reached = currentProgress();
    if (m_indicator)
        m_indicator->setDoubleValue(m_initialValue + reached * (m_newValue - m_initialValue));
}

std::shared_ptr<RVProgressBarAnimation> currentAnimation(const NSProgressIndicator& indicator)
{
    return associatedObjectAs<RVProgressBarAnimation>(indicator, AssociatedKeys::currentAnimation);
}

std::optional<double> nextProgress(const NSProgressIndicator& indicator)
{
    return ValueConversion<double>::unwrap(associatedObject(indicator, AssociatedKeys::nextProgress));
}

} // namespace

void setDoubleValueAnimated(NSProgressIndicator& indicator, double value)
{
    if (currentAnimation(indicator)) {
        setAssociatedObject(indicator, AssociatedKeys::nextProgress, Value(value));
        return;
    }
    setAssociatedObject(indicator, AssociatedKeys::nextProgress, Value());
    const auto animation = make<RVProgressBarAnimation>(shared(indicator), indicator.doubleValue(), value);
    animation->setAnimationBlockingMode(NSAnimationBlockingMode::nonblockingThreaded);
    setAssociatedObject(indicator, AssociatedKeys::currentAnimation, Value(animation));
    animation->setDelegate(shared(indicator));
    // Where the delegate, a subclass of the indicator perhaps, does not want it or raises, nobody tells of its end.
    struct Starting {
        NSProgressIndicator& indicator;
        const std::shared_ptr<RVProgressBarAnimation>& animation;
        ~Starting()
        {
            if (!animation->isAnimating() && currentAnimation(indicator) == animation)
                setAssociatedObject(indicator, AssociatedKeys::currentAnimation, Value());
        }
    } const starting{indicator, animation};
    animation->startAnimation();
}

void animationDidEnd(NSProgressIndicator& indicator, const ObjectRef&)
{
    const auto alive = shared(indicator); // the animation may hold the last reference
    const auto ended = currentAnimation(indicator);
    if (!ended)
        return;
    setAssociatedObject(indicator, AssociatedKeys::currentAnimation, Value());
    if (const auto next = nextProgress(indicator); next && *next != ended->newValue())
        send(indicator, "setDoubleValueAnimatedWithValue:", *next);
    setAssociatedObject(indicator, AssociatedKeys::nextProgress, Value());
}

void animationDidStop(NSProgressIndicator& indicator, const ObjectRef& animation)
{
    animationDidEnd(indicator, animation);
}

bool publishProgressIndicatorOperations()
{
    return addCategory<NSProgressIndicator>(
               "RVCore",
               [](auto& publish) { publish.method("setDoubleValueAnimatedWithValue:", &setDoubleValueAnimated); }) &&
           addCategory<NSProgressIndicator>("RVCore1", [](auto& publish) {
               publish.method("animationDidEnd:", &animationDidEnd);
               publish.method("animationDidStop:", &animationDidStop);
           });
}

} // namespace RVCore
