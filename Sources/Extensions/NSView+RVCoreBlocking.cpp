#include <Dispatch/DispatchClock.h>
#include <Dispatch/DispatchQueue.h>
#include <Extensions/BlockingOverlay.h>
#include <Extensions/NSView+RVCoreAnimation.h>
#include <Extensions/NSView+RVCoreBlocking.h>

#include <QuartzCore/CALayer.h>

namespace RVCore {

namespace {

constexpr AssociationKey overlayKey{"progressBlockingView"};
constexpr AssociationKey startTimeKey{"progressBlockingViewStartTime"};

constexpr double shortestDisplay = 1.0; // in seconds

} // namespace

std::shared_ptr<RVProgressBlockingView> progressBlockingView(const NSView& view)
{
    return associatedObjectAs<RVProgressBlockingView>(view, overlayKey);
}

void setProgressBlockingView(NSView& view, const std::shared_ptr<RVProgressBlockingView>& overlay)
{
    setAssociatedObject(view, overlayKey, Value(overlay));
}

std::optional<double> progressBlockingViewStartTime(const NSView& view)
{
    const Value stored = associatedObject(view, startTimeKey);
    return ValueConversion<double>::unwrap(stored);
}

void setProgressBlockingViewStartTime(NSView& view, std::optional<double> startTime)
{
    setAssociatedObject(view, startTimeKey, startTime ? Value(*startTime) : Value());
}

void showBlockingView(NSView& view, const BlockingViewContent& content)
{
    if (!view.wantsLayer())
        view.setWantsLayer(true);
    if (const auto overlay = progressBlockingView(view)) {
        updateTexts(*overlay, content);
        return;
    }
    const auto overlay = putOverlayOver(view, content);
    showAnimated(*overlay);
    if (const auto& layer = overlay->layer())
        layer->setZPosition(overlayZPosition);
    setProgressBlockingView(view, overlay);
    setProgressBlockingViewStartTime(view, DispatchClock::shared().secondsSince1970());
    overlay->takeKeys(); // last: who loses them may show or hide overlays
}

void hideBlockingView(NSView& view)
{
    const auto overlay = progressBlockingView(view);
    if (!overlay)
        return;
    const auto startTime = progressBlockingViewStartTime(view);
    if (!startTime)
        fatalError(view.description() + " is covered by " + overlay->description() +
                   ", and nobody knows since when: it has no progressBlockingViewStartTime");
    const double elapsed = DispatchClock::shared().secondsSince1970() - *startTime;
    const double delay = elapsed < shortestDisplay ? shortestDisplay - elapsed : 0; // NaN is not less
    const DispatchTime begin = DispatchTime::now() + delay;
    setProgressBlockingView(view, nullptr);
    setProgressBlockingViewStartTime(view, std::nullopt);
    DispatchQueue::main().asyncAfter(begin, [overlay] {
        hideAnimated(*overlay, [overlay] {
            overlay->removeFromSuperview();
            overlay->giveKeysBack();
        });
    });
}

bool publishViewBlocking()
{
    return addCategory<NSView>("RVCore", [](auto& publish) { publishBlocking<NSView>(publish); });
}

} // namespace RVCore
