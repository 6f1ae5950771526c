#include <Common/Misc/GlobalFunctions.h>
#include <ConstraintLibrary/ConstraintLibrary.h>
#include <Extensions/NSView+RVCore.h>
#include <Views/RVGroupView.h>

namespace RVCore {

namespace {

// One dimension with a further member. An absent metric replaces what was there, and the next member goes on from -1.
CGFloat adding(CGFloat metric, CGFloat accumulated, bool sums)
{
    if (metric == RVViewNoIntrinsicMetric)
        return RVViewNoIntrinsicMetric;
    if (sums)
        return accumulated + metric;
    return accumulated <= metric ? metric : accumulated;
}

} // namespace

CGSize RVGroupView::intrinsicContentSize() const
{
    const Views withoutHidden = m_hiddenViews.empty() ? Views() : visibleViews();
    const Views& visible = m_hiddenViews.empty() ? m_views : withoutHidden;
    const bool isHorizontal = m_orientation == Orientation::horizontal;
    CGSize total;
    for (const auto& view : visible) {
        const CGSize size = view->intrinsicContentSize(); // once: in nested groups, every question asks all below
        total.width = adding(size.width, total.width, isHorizontal);
        total.height = adding(size.height, total.height, !isHorizontal);
    }
    return {addSpacing(total.width, Orientation::horizontal, visible),
            addSpacing(total.height, Orientation::vertical, visible)};
}

CGFloat RVGroupView::addSpacing(CGFloat metric, Orientation orientation, const Views& visibleViews) const
{
    if (metric == RVViewNoIntrinsicMetric)
        return RVViewNoIntrinsicMetric;
    const CGFloat padding =
        orientation == Orientation::horizontal ? m_padding.left + m_padding.right : m_padding.top + m_padding.bottom;
    CGFloat additions = 0;
    if (orientation != m_orientation && m_viewsOffsets.empty())
        return padding + metric; // there is nothing to add; in large groups that is worth knowing
    for (const auto& view : visibleViews) {
        const CGFloat gap = orientation == m_orientation ? spacingForView(*view, visibleViews) : 0;
        additions = offsetForView(view, orientation) + (additions + gap);
    }
    return padding + (additions + metric);
}

CGFloat RVGroupView::spacingForView(const NSView& view, const Views& visibleViews) const
{
    return !visibleViews.empty() && view.isEqual(*visibleViews.front()) ? 0 : m_spacing;
}

void RVGroupView::notifyIntrinsicContentSizeChanged()
{
    if (intrinsicContentSize() == m_lastIntrinsicSize)
        return;
    m_lastIntrinsicSize = intrinsicContentSize();
    if (m_dimensionsConstraints) {
        if (hasIntrinsicSize(*this)) {
            m_dimensionsConstraints->width->setConstant(m_lastIntrinsicSize.width);
            m_dimensionsConstraints->height->setConstant(m_lastIntrinsicSize.height);
            autoInstall(*m_dimensionsConstraints->width);
            autoInstall(*m_dimensionsConstraints->height);
        } else {
            autoRemove(*m_dimensionsConstraints->width);
            autoRemove(*m_dimensionsConstraints->height);
        }
    }
    invalidateIntrinsicContentSize();
}

} // namespace RVCore
