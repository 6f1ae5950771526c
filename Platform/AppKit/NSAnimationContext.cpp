#include <AppKit/NSAnimationContext.h>
#include <AppKit/NSApplication.h>
#include <Dispatch/DispatchQueue.h>
#include <Foundation/NSException.h>

#include <algorithm>

namespace RVCore {

Class& NSAnimationContext::staticClass()
{
    using CallbackChanges = std::function<void(const std::shared_ptr<NSAnimationContext>&)>;
    static Class& theClass =
        defineClass<NSAnimationContext>("NSAnimationContext", NSObject::staticClass(), [](auto& publish) {
            const auto byName = [](const CallbackChanges& changes) {
                return changes ? Changes([changes](NSAnimationContext& context) { changes(shared(context)); })
                               : Changes();
            };
            publish.classMethod("currentContext", [](const Class&) { return currentContext(); });
            publish.classMethod("runAnimationGroup:completionHandler:",
                                [byName](const Class&, const CallbackChanges& changes, const Completion& completion) {
                                    runAnimationGroup(byName(changes), completion);
                                });
            publish.classMethod("runAnimationGroup:", [byName](const Class&, const CallbackChanges& changes) {
                runAnimationGroup(byName(changes));
            });
            publish.classMethod("beginGrouping", [](const Class&) { beginGrouping(); });
            publish.classMethod("endGrouping", [](const Class&) { endGrouping(); });
            publish.property("duration", &NSAnimationContext::duration, &NSAnimationContext::setDuration);
            publish.property("timingFunction", &NSAnimationContext::timingFunction,
                             &NSAnimationContext::setTimingFunction);
            publish.property("allowsImplicitAnimation", &NSAnimationContext::allowsImplicitAnimation,
                             &NSAnimationContext::setAllowsImplicitAnimation);
            publish.method("setCompletionHandler:", &NSAnimationContext::setCompletionHandler);
        });
    return theClass;
}

// The innermost one last; below all the program's own.
std::vector<std::shared_ptr<NSAnimationContext>>& NSAnimationContext::groups()
{
    static auto& groups = *new std::vector{make<NSAnimationContext>()}; // for views that outlive the statics
    return groups;
}

std::shared_ptr<NSAnimationContext> NSAnimationContext::currentContext()
{
    return groups().back();
}

bool NSAnimationContext::isCurrent() const
{
    return groups().back().get() == this;
}

void NSAnimationContext::begin(Kind kind)
{
    const NSAnimationContext& outer = *groups().back();
    const auto group = make<NSAnimationContext>();
    group->m_motion = outer.m_motion;
    group->m_motion.end.reset();
    group->m_motion.reducesMovement = NSApplication::shared().reducesMotion();
    group->m_timingFunction = outer.m_timingFunction;
    group->m_allowsImplicitAnimation = outer.m_allowsImplicitAnimation;
    group->m_kind = kind;
    group->m_motionBefore = LayerMotion::current();
    groups().push_back(group);
    LayerMotion::setCurrent(group->implicitMotion());
}

LayerMotion* NSAnimationContext::implicitMotion()
{
    return m_allowsImplicitAnimation ? &m_motion : nullptr;
}

void NSAnimationContext::end()
{
    const auto group = groups().back();
    groups().pop_back();
    LayerMotion::setCurrent(group->m_motionBefore);
    const Completion completion = std::exchange(group->m_completion, nullptr);
    if (completion)
        DispatchQueue::main().asyncAfter(group->m_motion.end.value_or(DispatchTime::now()), completion);
}

void NSAnimationContext::runAnimationGroup(const Changes& changes, Completion completion)
{
    if (!changes)
        raiseInvalidArgument("NSAnimationContext.runAnimationGroup:", "there are no changes");
    begin(Kind::call);
    const auto group = currentContext();
    group->m_completion = std::move(completion);
    struct AtEnd { // also when the changes raise
        const std::shared_ptr<NSAnimationContext>& group;
        ~AtEnd()
        {
            while (!group->isCurrent())
                end(); // one that the changes began and did not end
            end();
        }
    } const atEnd{group};
    changes(*group);
}

void NSAnimationContext::beginGrouping()
{
    begin(Kind::pieces);
}

void NSAnimationContext::endGrouping()
{
    if (currentContext()->m_kind != Kind::pieces)
        raiseInvalidArgument("NSAnimationContext.endGrouping", "no group was begun with beginGrouping");
    end();
}

void NSAnimationContext::setDuration(double duration)
{
    requireNotNegative("NSAnimationContext.setDuration:", "duration", duration);
    m_motion.duration = duration;
}

void NSAnimationContext::setTimingFunction(const std::shared_ptr<CAMediaTimingFunction>& function)
{
    m_timingFunction = function;
    m_motion.timingFunction = function;
}

void NSAnimationContext::setAllowsImplicitAnimation(bool allows)
{
    m_allowsImplicitAnimation = allows;
    const auto own = std::ranges::find(groups(), this, &std::shared_ptr<NSAnimationContext>::get);
    if (own == groups().end())
        return;
    if (const auto inner = std::next(own); inner != groups().end())
        (*inner)->m_motionBefore = implicitMotion(); // for when that one ends
    else
        LayerMotion::setCurrent(implicitMotion());
}

void NSAnimationContext::setCompletionHandler(Completion completion)
{
    const bool isUnderWay = std::ranges::count(groups(), this, &std::shared_ptr<NSAnimationContext>::get) > 0;
    if (m_kind == Kind::program || !isUnderWay)
        raiseInvalidArgument("NSAnimationContext.setCompletionHandler:", "this is no group that is under way");
    m_completion = std::move(completion);
}

} // namespace RVCore
