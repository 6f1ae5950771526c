#include <AppKit/AppKitKey.h>
#include <AppKit/NSAnimationContext.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSView.h>
#include <AppKit/NSViewAnimator.h>
#include <Foundation/NSException.h>

namespace RVCore {

namespace {

// A view that became layer-backed for a change that failed is what it was.
class LayerBacking {
public:
    explicit LayerBacking(NSView& view) : m_view(view), m_isNew(!view.wantsLayer()) { view.setWantsLayer(true); }
    ~LayerBacking()
    {
        if (m_isNew && !m_isKept)
            m_view.setWantsLayer(false);
    }
    LayerBacking(const LayerBacking&) = delete;
    LayerBacking& operator=(const LayerBacking&) = delete;
    void keep() { m_isKept = true; }

private:
    NSView& m_view;
    bool m_isNew;
    bool m_isKept = false;
};

} // namespace

Class& NSViewAnimator::staticClass()
{
    static Class& theClass =
        defineClass<NSViewAnimator>("NSViewAnimator", NSObject::staticClass(), [](auto& publish) {
            publish.property("alphaValue", &NSViewAnimator::alphaValue, &NSViewAnimator::setAlphaValue);
            publish.property("frame", &NSViewAnimator::frame, &NSViewAnimator::setFrame);
            publish.method("setFrameOrigin:", &NSViewAnimator::setFrameOrigin);
            publish.method("setFrameSize:", &NSViewAnimator::setFrameSize);
            publish.method("setValue:forKeyPath:", &NSViewAnimator::setValue);
        });
    return theClass;
}

void NSViewAnimator::init(const std::shared_ptr<NSView>& view)
{
    if (!view)
        raiseInvalidArgument("NSViewAnimator.init", "there is no view");
    m_view = view;
}

NSView& NSViewAnimator::view() const
{
    if (!m_view)
        raiseInvalidArgument("NSViewAnimator", "an animator is got from its view");
    return *m_view;
}

CGFloat NSViewAnimator::alphaValue() const
{
    return view().alphaValue();
}

CGRect NSViewAnimator::frame() const
{
    return view().frame();
}

template <class Change> void NSViewAnimator::animate(const Change& change)
{
    LayerBacking backing(view());
    const auto context = NSAnimationContext::currentContext();
    LayerMotion& motion = context->motion({});
    motion.reducesMovement = NSApplication::shared().reducesMotion();
    {
        const LayerMotion::Scope scope(&motion);
        change(view());
    }
    motion.begin(); // a value that it has already takes its time like any other
    backing.keep();
}

void NSViewAnimator::setAlphaValue(CGFloat alpha)
{
    animate([&](NSView& view) { view.setAlphaValue(alpha); });
}

void NSViewAnimator::setFrame(const CGRect& frame)
{
    animate([&](NSView& view) { view.setFrame(frame); });
}

void NSViewAnimator::setFrameOrigin(CGPoint origin)
{
    animate([&](NSView& view) { view.setFrameOrigin(origin); });
}

void NSViewAnimator::setFrameSize(CGSize size)
{
    animate([&](NSView& view) { view.setFrameSize(size); });
}

void NSViewAnimator::setValue(const Value& value, std::string_view keyPath)
{
    animate([&](NSView& view) { view.setValue(value, keyPath); });
}

} // namespace RVCore
