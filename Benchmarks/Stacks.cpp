#include "Stacks.h"

#include <Foundation/Stop.h>
#include <RVCore.h>

namespace RVCore {

CGFloat StackShape::length(CGFloat spare) const
{
    return static_cast<CGFloat>(count) * (memberLength() + stackSpacing) - stackSpacing + spare;
}

CGSize StackShape::size(CGFloat spare) const
{
    return isVertical ? CGSize{stackBreadth, length(spare)} : CGSize{length(spare), stackBreadth};
}

void Stack::check(CGFloat spare) const
{
    CGFloat expected = 0;
    for (std::size_t i = 0; i < shape.count; ++i) {
        const CGRect frame = memberFrame(i);
        const CGFloat length = shape.memberLength() + (shape.stretches(i) ? spare : 0);
        const CGFloat start = shape.isVertical ? frame.origin.y : frame.origin.x;
        const CGFloat extent = shape.isVertical ? frame.size.height : frame.size.width;
        if (start != expected || extent != length)
            fatalError("member " + std::to_string(i) + " is at " + std::to_string(start) + " and " +
                       std::to_string(extent) + " long, not at " + std::to_string(expected) + " and " +
                       std::to_string(length));
        expected += length + stackSpacing;
    }
}

GroupStack::GroupStack(const StackShape& stackShape)
    : Stack(stackShape), m_host(make<NSView>(CGRect({}, shape.size(100))))
{
    RVGroupView::Views members;
    for (std::size_t i = 0; i < shape.count; ++i)
        members.push_back(make<RVSpacerView>(CGSize{50, 20}));
    m_group =
        makeGroupView(members, {.orientation = shape.isVertical ? RVGroupView::Orientation::vertical
                                                                : RVGroupView::Orientation::horizontal,
                                .spacing = stackSpacing,
                                .resizePolicy = shape.leadingStretches ? RVGroupView::ResizePolicy::leadingView
                                                                       : RVGroupView::ResizePolicy::trailingView});
    m_host->addSubview(m_group);
    autoPinEdgesToSuperviewEdges(*m_group);
    m_host->layoutSubtreeIfNeeded();
}

void GroupStack::resize(CGFloat spare)
{
    m_host->setFrameSize(shape.size(spare));
    m_host->layoutSubtreeIfNeeded();
}

CGRect GroupStack::memberFrame(std::size_t index) const
{
    return m_group->views()[index]->frame();
}

void GroupStack::setVisible(bool visible)
{
    m_group->setVisibility(m_group->views()[shape.count / 2], visible);
    m_host->layoutSubtreeIfNeeded();
}

} // namespace RVCore
