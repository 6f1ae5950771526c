#pragma once

#include <Foundation/NSObject.h>
#include <Foundation/Selector.h>

#include <functional>
#include <optional>
#include <string_view>

namespace RVCore {

// Where what a user operates sends its action, the selector of a message that takes the sender or nothing. The target
// is not held, unless it is a closure: that one is held by everything that has it for its target.
class TargetAction {
public:
    ObjectRef target() const { return m_target.lock(); } // null when there is none, or once it has died
    void setTarget(const ObjectRef& target);
    const std::optional<Selector>& action() const { return m_action; }
    // Raises NSInvalidArgumentException for the operation when the action takes more than the sender.
    void setAction(const std::optional<Selector>& action, std::string_view operation);

    // An object that calls the closure when it is sent `closureAction`; null for an empty closure.
    static ObjectRef makeClosureTarget(std::function<void()> closure);
    static Selector closureAction();
    bool callsClosure() const { return m_closureTarget != nullptr; }

    // Whether the target has died, and the action so goes nowhere.
    bool hasLostTarget() const { return m_hasTarget && m_target.expired(); }

private:
    std::weak_ptr<NSObject> m_target;
    ObjectRef m_closureTarget;
    std::optional<Selector> m_action;
    bool m_hasTarget = false; // also once it has died
};

} // namespace RVCore
