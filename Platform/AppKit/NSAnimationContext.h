#pragma once

#include <AppKit/AppKitKey.h>
#include <AppKit/Forward.h>
#include <Foundation/NSObject.h>

#include <QuartzCore/CAMediaTimingFunction.h>
#include <QuartzCore/LayerMotion.h>

#include <functional>
#include <memory>

namespace RVCore {

// How long and along which curve what is set through animators takes: a group of changes that belong together, and
// who hears when the last of them is over.
//
//     NSAnimationContext::runAnimationGroup(
//         [&](NSAnimationContext& context) {
//             context.setDuration(0.3);
//             view->animator()->setAlphaValue(0);
//         },
//         [view] { view->removeFromSuperview(); });
//
// Values count for what is set after them. Groups nest; an inner one starts with the values of the one around it, and
// each has its own end. Outside of all groups there is the program's own context, with which every outermost group
// starts. The end is a matter of time alone: the completion comes when it has come, on the main queue, whatever
// became of views, windows and properties meanwhile, and exactly once. Main thread only.
class NSAnimationContext : public NSObject {
    RVCORE_CLASS(NSAnimationContext)

public:
    using Changes = std::function<void(NSAnimationContext& context)>;
    using Completion = std::function<void()>;

    // The innermost group that is under way, else the program's own context.
    static std::shared_ptr<NSAnimationContext> currentContext();
    // Runs the changes as a group. The completion, which may be absent, comes after the last of what they animate,
    // and never within this call: soon where that took no time or was nothing. What the changes raise passes through,
    // and the completion comes all the same. Absent changes raise NSInvalidArgumentException.
    static void runAnimationGroup(const Changes& changes, Completion completion = nullptr);
    // The same in pieces. Ending a group that was not begun like this raises NSInvalidArgumentException.
    static void beginGrouping();
    static void endGrouping();

    double duration() const { return m_motion.duration; } // in seconds; default 0.25
    // Raises NSInvalidArgumentException for one that is negative or not finite.
    void setDuration(double duration);
    // Null (the default) stands for the curve named "default".
    std::shared_ptr<CAMediaTimingFunction> timingFunction() const { return m_timingFunction; }
    void setTimingFunction(const std::shared_ptr<CAMediaTimingFunction>& function);
    // Whether what is set on layers and layer-backed views themselves moves, too. Default no.
    bool allowsImplicitAnimation() const { return m_allowsImplicitAnimation; }
    void setAllowsImplicitAnimation(bool allows);
    // Of a group that is under way; raises NSInvalidArgumentException for any other context.
    void setCompletionHandler(Completion completion);

    // When the last of what has been animated with it is over; nothing before the first.
    std::optional<DispatchTime> motionEnd() const { return m_motion.end; }

    // For animators.
    LayerMotion& motion(AppKitKey) { return m_motion; }

private:
    enum class Kind : std::uint8_t { program, pieces, call };

    static std::vector<std::shared_ptr<NSAnimationContext>>& groups();
    static void begin(Kind kind);
    static void end();
    bool isCurrent() const;
    LayerMotion* implicitMotion(); // null when there is none

    LayerMotion m_motion;
    std::shared_ptr<CAMediaTimingFunction> m_timingFunction;
    Completion m_completion;
    LayerMotion* m_motionBefore = nullptr; // that was in force when the group began
    Kind m_kind = Kind::program;
    bool m_allowsImplicitAnimation = false;
};

} // namespace RVCore
