#include <AppKit/LayoutContext.h>
#include <AppKit/LayoutPass.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewLayoutState.h>

namespace RVCore {

namespace {

std::size_t indexOf(std::string_view operation, NSLayoutConstraintOrientation orientation)
{
    if (orientation != NSLayoutConstraintOrientation::horizontal &&
        orientation != NSLayoutConstraintOrientation::vertical)
        raiseInvalidArgument(operation, "there is no orientation " + std::to_string(static_cast<int>(orientation)));
    return static_cast<std::size_t>(orientation);
}

} // namespace

CGSize NSView::intrinsicContentSize() const
{
    return {NSViewNoIntrinsicMetric, NSViewNoIntrinsicMetric};
}

void NSView::invalidateIntrinsicContentSize()
{
    if (LayoutContext* context = LayoutContext::of(*this)) {
        context->intrinsicSizeInvalidated(*this);
        requestFrame();
    }
}

NSLayoutPriority NSView::contentHuggingPriority(NSLayoutConstraintOrientation orientation) const
{
    return m_huggingPriorities[indexOf("NSView.contentHuggingPriorityForOrientation:", orientation)];
}

NSLayoutPriority NSView::contentCompressionResistancePriority(NSLayoutConstraintOrientation orientation) const
{
    return m_compressionResistancePriorities[indexOf("NSView.contentCompressionResistancePriorityForOrientation:",
                                                     orientation)];
}

void NSView::setContentHuggingPriority(NSLayoutPriority priority, NSLayoutConstraintOrientation orientation)
{
    constexpr std::string_view operation = "NSView.setContentHuggingPriority:forOrientation:";
    requirePriority(operation, priority);
    setContentPriority(m_huggingPriorities[indexOf(operation, orientation)], priority, orientation);
}

void NSView::setContentCompressionResistancePriority(NSLayoutPriority priority,
                                                     NSLayoutConstraintOrientation orientation)
{
    constexpr std::string_view operation = "NSView.setContentCompressionResistancePriority:forOrientation:";
    requirePriority(operation, priority);
    setContentPriority(m_compressionResistancePriorities[indexOf(operation, orientation)], priority, orientation);
}

void NSView::setContentPriority(NSLayoutPriority& field, NSLayoutPriority priority,
                                NSLayoutConstraintOrientation orientation)
{
    if (field == priority)
        return;
    field = priority;
    if (LayoutContext* context = LayoutContext::of(*this)) {
        context->contentPriorityChanged(*this, orientation);
        requestFrame();
    }
}

CGSize NSView::fittingSize()
{
    return fittingSize(NSLayoutPriorityFittingSizeCompression);
}

CGSize NSView::fittingSize(NSLayoutPriority priority)
{
    requirePriority("NSView.fittingSize", priority);
    updateConstraintsForSubtreeIfNeeded();
    return LayoutContext::fittingSize(*this, priority);
}

void NSView::setTranslatesAutoresizingMaskIntoConstraints(bool translates)
{
    if (m_translatesMask == translates)
        return;
    m_translatesMask = translates;
    frameRowsChanged();
}

void NSView::setAutoresizingMask(NSAutoresizingMask mask)
{
    if (m_autoresizingMask == mask)
        return;
    m_autoresizingMask = mask;
    frameRowsChanged();
}

void NSView::frameRowsChanged()
{
    if (LayoutContext* context = LayoutContext::of(*this)) {
        context->frameGiven(*this);
        requestFrame();
    }
}

std::vector<std::shared_ptr<NSLayoutConstraint>> NSView::constraints() const
{
    return m_layoutState ? m_layoutState->heldConstraints() : std::vector<std::shared_ptr<NSLayoutConstraint>>();
}

std::vector<std::shared_ptr<NSLayoutConstraint>>
NSView::constraintsAffectingLayout(NSLayoutConstraintOrientation orientation)
{
    const bool isVertical = indexOf("NSView.constraintsAffectingLayoutForOrientation:", orientation) == 1;
    rootView().updateConstraintsForSubtreeIfNeeded();
    std::vector<std::shared_ptr<NSLayoutConstraint>> result;
    for (NSLayoutConstraint* constraint : LayoutContext::ofTree(*this).constraintsAffecting(*this, isVertical))
        result.push_back(shared(*constraint));
    return result;
}

bool NSView::hasAmbiguousLayout()
{
    rootView().updateConstraintsForSubtreeIfNeeded();
    return LayoutContext::ofTree(*this).isAmbiguous(*this);
}

void NSView::markAncestors(bool LayoutMarks::*mark)
{
    NSView* top = this;
    for (NSView* view = m_superview; view; view = view->m_superview) {
        if (view->m_marks.*mark)
            return; // and so have all above it, and a frame is on its way
        view->m_marks.*mark = true;
        top = view;
    }
    top->requestFrame();
}

void NSView::setNeedsLayout(bool needsLayout)
{
    m_marks.layout = needsLayout;
    if (needsLayout)
        markAncestors(&LayoutMarks::descendantLayout);
}

void NSView::setNeedsUpdateConstraints(bool needsUpdate)
{
    m_marks.updateConstraints = needsUpdate;
    if (needsUpdate)
        markAncestors(&LayoutMarks::descendantUpdateConstraints);
}

void NSView::layout()
{
    LayoutContext* context = LayoutContext::of(*this);
    if (!context)
        return;
    for (const auto& [subview, frame] : context->takePlacements(*this)) {
        // An override that is told of its size may have changed the tree.
        if (subview->m_superview == this && LayoutContext::of(*subview) == context)
            subview->storeFrame(frame);
    }
}

void NSView::updateConstraints() {}

void NSView::updateConstraintsForSubtreeIfNeeded()
{
    LayoutPass::updateConstraints(*this);
}

void NSView::layoutSubtreeIfNeeded()
{
    LayoutPass::run(*this);
}

} // namespace RVCore
