#include <ConstraintLibrary/ConstraintLibrary.h>
#include <Dispatch/DispatchClock.h>
#include <Dispatch/DispatchQueue.h>
#include <Extensions/NSView+RVCoreAnimation.h>
#include <Extensions/NSView+RVCoreBlocking.h>
#include <Foundation/AssociatedObjects.h>

#include <QuartzCore/CALayer.h>

namespace RVCore {

namespace {

constexpr AssociationKey overlayKey{"progressBlockingView"};
constexpr AssociationKey startTimeKey{"progressBlockingViewStartTime"};

constexpr double shortestDisplay = 1.0; // in seconds

} // namespace

std::shared_ptr<RVProgressBlockingView> progressBlockingView(const NSView& view)
{
    const Value stored = associatedObject(view, overlayKey);
    return stored.object() ? std::dynamic_pointer_cast<RVProgressBlockingView>(*stored.object()) : nullptr;
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
        overlay->setMessage(content.message);
        overlay->setTitle(content.title);
        return;
    }
    const auto overlay = make<RVProgressBlockingView>(content);
    view.addSubview(overlay);
    autoPinEdgesToSuperviewEdges(*overlay);
    showAnimated(*overlay);
    if (const auto& layer = overlay->layer())
        layer->setZPosition(1.0);
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
    return addCategory<NSView>("RVCore", [](auto& publish) {
        using Text = std::optional<std::string>;
        publish.property("progressBlockingView", &progressBlockingView, &setProgressBlockingView);
        publish.method("showBlockingViewWithTitle:message:showProgress:",
                       [](NSView& self, const Text& title, const Text& message, bool showProgress) {
                           showBlockingView(self, {.title = title, .message = message, .showProgress = showProgress});
                       });
        publish.method("hideBlockingView", [](NSView& self) { hideBlockingView(self); });
    });
}

} // namespace RVCore
