#include <ConstraintLibrary/ConstraintLibrary.h>
#include <Extensions/BlockingOverlay.h>

#include <QuartzCore/LayerMotion.h>

namespace RVCore {

std::shared_ptr<RVProgressBlockingView> putOverlayOver(NSView& covered, const BlockingViewContent& content)
{
    const LayerMotion::Scope none(nullptr); // in a group that moves all that is set, the content would fade out first
    auto overlay = make<RVProgressBlockingView>(content);
    overlay->setFrame(covered.bounds()); // so that no click gets past it before the next layout
    covered.addSubview(overlay);
    autoPinEdgesToSuperviewEdges(*overlay);
    return overlay;
}

void updateTexts(RVProgressBlockingView& overlay, const BlockingViewContent& content)
{
    overlay.setMessage(content.message);
    overlay.setTitle(content.title);
}

} // namespace RVCore
