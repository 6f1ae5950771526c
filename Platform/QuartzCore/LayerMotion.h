#pragma once

#include <Dispatch/DispatchTime.h>

#include <QuartzCore/Forward.h>

#include <memory>
#include <optional>

namespace RVCore {

// How long and along which curve layers move what is set on them. While a motion is in force, a layer's setter gives
// the model its value at once, as ever, and the presentation goes there from where it stands; while none is, which is
// the rule, both jump. Each thread has its own; layers are for the main thread.
//
//     LayerMotion motion{.duration = 0.3};
//     {
//         const LayerMotion::Scope scope(&motion);
//         layer->setOpacity(0);
//     }
//     // motion.end is when the last of it is over
struct LayerMotion {
    double duration = 0.25;                                                // in seconds, finite and at least 0
    std::shared_ptr<const CAMediaTimingFunction> timingFunction = nullptr; // null for the one named "default"
    std::optional<DispatchTime> end = std::nullopt; // of the last change; nothing before the first
    // Position, bounds and transform jump, for people whom movement makes ill; fades go on, and it takes its time all
    // the same.
    bool reducesMovement = false;

    // Something that takes the duration from now on has begun.
    void begin();

    // The motion in force; null for none. It outlives its being so.
    static LayerMotion* current();
    static void setCurrent(LayerMotion* motion);
    // Puts a motion, or with null none, in force as long as it lives.
    class Scope {
    public:
        explicit Scope(LayerMotion* motion) : m_before(current()) { setCurrent(motion); }
        ~Scope() { setCurrent(m_before); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        LayerMotion* m_before;
    };
};

} // namespace RVCore
