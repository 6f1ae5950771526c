#include <FolderSizes/Colors.h>
#include <FolderSizes/EntryRow.h>
#include <FolderSizes/ScrollView.h>

#include <algorithm>

namespace FolderSizes {

using namespace RVCore;

namespace {

constexpr CGFloat knobWidth = 6;
constexpr CGFloat knobMargin = 4;
constexpr CGFloat smallestKnob = 24;
constexpr CGFloat roomAround = 12; // what is shown on purpose

} // namespace

Class& ScrollView::staticClass()
{
    static Class& theClass =
        defineClass<ScrollView>("FolderSizes.ScrollView", RVBaseView::staticClass(), [](auto&) {});
    return theClass;
}

void ScrollView::init(const std::shared_ptr<NSView>& content)
{
    RVBaseView::init();
    m_clip = makeView<RVBaseView>(*this);
    m_clip->setWantsLayer(true);
    m_clip->layer()->setMasksToBounds(true);
    autoPinEdgesToSuperviewEdges(*m_clip);
    m_content = content;
    m_clip->addSubview(content);
    for (const LayoutEdge edge : {LayoutEdge::top, LayoutEdge::left, LayoutEdge::right})
        autoPinEdgeToSuperviewEdge(*content, edge);
    // Down to the bottom if that is not more than its own constraints allow.
    autoSetPriority(yieldingPriority, [&] { autoPinEdgeToSuperviewEdge(*content, LayoutEdge::bottom); });
    m_knob = makeView<RVBaseView>(*this);
    setBackgroundColor(*m_knob, scrollKnobColor());
    m_knob->layer()->setCornerRadius(knobWidth / 2);
}

CGFloat ScrollView::largestOffset() const
{
    return std::max(height(*m_content) - height(*this), 0.0);
}

void ScrollView::setOffset(CGFloat offset)
{
    m_clip->setBoundsOrigin({0, std::clamp(offset, 0.0, largestOffset())});
    const CGFloat room = height(*this) - 2 * knobMargin;
    m_knob->setHidden(largestOffset() == 0 || room < smallestKnob);
    if (m_knob->isHidden())
        return;
    const CGFloat length = std::max(room * height(*this) / height(*m_content), smallestKnob);
    m_knob->setFrame({width(*this) - knobMargin - knobWidth,
                      knobMargin + (room - length) * this->offset() / largestOffset(), knobWidth, length});
}

void ScrollView::showView(const NSView& view)
{
    const CGRect place = view.convertRectTo(view.bounds(), m_content.get());
    const CGFloat highest = place.maxY() + roomAround - height(*this);
    setOffset(std::max(std::min(offset(), place.minY() - roomAround), highest));
}

void ScrollView::scrollWheel(NSEvent& event)
{
    setOffset(offset() - event.scrollingDeltaY());
}

void ScrollView::keyDown(NSEvent& event)
{
    const std::string& key = event.charactersIgnoringModifiers();
    const CGFloat page = height(*this) - 2 * roomAround;
    if (key == NSKey::pageDown)
        setOffset(offset() + page);
    else if (key == NSKey::pageUp)
        setOffset(offset() - page);
    else
        RVBaseView::keyDown(event);
}

void ScrollView::layout()
{
    RVBaseView::layout();
    setOffset(offset());
}

} // namespace FolderSizes
