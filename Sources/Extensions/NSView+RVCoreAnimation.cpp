#include <AppKit/NSAnimationContext.h>
#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSImage.h>
#include <AppKit/NSViewAnimator.h>
#include <Extensions/NSView+RVCore.h>
#include <Extensions/NSView+RVCoreAnimation.h>
#include <Foundation/Message.h>
#include <Foundation/NSException.h>

namespace RVCore {

namespace {

// What a view does that has no fade of its own.
void fade(NSView& view, CGFloat alpha, CGFloat duration, const std::function<void()>& completion)
{
    requireFinite("animateAlpha", "alpha", alpha);
    requireNotNegative("animateAlpha", "duration", duration);
    wantsAnimations(view);
    NSAnimationContext::runAnimationGroup(
        [&](NSAnimationContext& context) {
            context.setDuration(duration);
            context.setAllowsImplicitAnimation(true);
            context.setTimingFunction(CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseInEaseOut));
            view.animator()->setAlphaValue(alpha);
        },
        [kept = shared(view), completion] {
            if (completion)
                completion();
        });
}

} // namespace

void animateAlpha(NSView& view, CGFloat alpha, const FadeOptions& options)
{
    send(view, "animateAlphaWithAlpha:duration:completion:", alpha, options.duration, options.completion);
}

void showAnimated(NSView& view, const std::function<void()>& completion)
{
    animateAlpha(view, 1.0, {.completion = completion});
}

void hideAnimated(NSView& view, const std::function<void()>& completion)
{
    animateAlpha(view, 0.0, {.completion = completion});
}

// The bounds are asked for each time: an override of what is sent may change them.
std::shared_ptr<NSImage> screenshot(NSView& view)
{
    const auto representation =
        send(view, "bitmapImageRepForCachingDisplayInRect:", view.bounds()).as<std::shared_ptr<NSBitmapImageRep>>();
    if (!representation)
        fatalError("there is no picture of " + view.description() + " with the bounds " + describe(view.bounds()));
    send(view, "cacheDisplayInRect:toBitmapImageRep:", view.bounds(), representation);
    auto image = make<NSImage>(view.bounds().size);
    image->addRepresentation(representation);
    return image;
}

bool publishViewAnimations()
{
    return addCategory<NSView>("RVCore", [](auto& publish) {
        publish.method("animateAlphaWithAlpha:duration:completion:", &fade);
        publish.method("showAnimatedWithCompletion:", &showAnimated);
        publish.method("hideAnimatedWithCompletion:", &hideAnimated);
        publish.method("screenshot", &screenshot);
    });
}

} // namespace RVCore
