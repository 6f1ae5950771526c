#include <AppKit/TargetAction.h>
#include <Foundation/NSException.h>

#include <string>

namespace RVCore {

namespace {

class ClosureTarget : public NSObject {
    RVCORE_CLASS(ClosureTarget)

public:
    using NSObject::init;
    void init(std::function<void()> closure) { m_closure = std::move(closure); }

    void perform(const ObjectRef&)
    {
        const auto alive = shared(*this); // the closure may give its sender another target
        m_closure();
    }

private:
    std::function<void()> m_closure;
};

Class& ClosureTarget::staticClass()
{
    static Class& theClass = defineClass<ClosureTarget>("ClosureTarget", NSObject::staticClass(), [](auto& publish) {
        publish.method("performClosure:", &ClosureTarget::perform);
    });
    return theClass;
}

} // namespace

void TargetAction::setTarget(const ObjectRef& target)
{
    const ObjectRef kept = target; // it may be what is let go of
    const bool calledClosure = callsClosure();
    m_target = kept;
    m_hasTarget = kept != nullptr;
    m_closureTarget = std::dynamic_pointer_cast<ClosureTarget>(kept);
    if (calledClosure && !callsClosure() && m_action == closureAction())
        m_action.reset(); // nobody else answers it
}

void TargetAction::setAction(const std::optional<Selector>& action, std::string_view operation)
{
    if (action && action->argumentCount() > 1)
        raiseInvalidArgument(operation, "an action takes the sender or nothing, " + action->name() + " takes " +
                                            std::to_string(action->argumentCount()));
    m_action = action;
}

ObjectRef TargetAction::makeClosureTarget(std::function<void()> closure)
{
    return closure ? make<ClosureTarget>(std::move(closure)) : nullptr;
}

Selector TargetAction::closureAction()
{
    return "performClosure:";
}

} // namespace RVCore
