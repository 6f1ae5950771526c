#include <Common/Misc/GlobalFunctions.h>
#include <ConstraintLibrary/ConstraintLibrary.h>
#include <Extensions/NSView+RVCore.h>
#include <Views/RVGroupViewElements.h>
#include <Views/RVIntrinsicView.h>
#include <Views/RVSpacerView.h>

#include <algorithm>
#include <cstdio>
#include <ranges>
#include <unordered_set>
#include <utility>

namespace RVCore {

namespace {

// Just below the platform's own levels: the chain and the alignment, then what ties both to the group.
constexpr float chainPriority = RVLayoutPriorityDefaultHigh + -1.0F;
constexpr float endsPriority = chainPriority + -1.0F;

// The edges and the axis that an orientation stands for. Edges are absolute, never mirrored.
struct Axes {
    LayoutEdge mainStart;
    LayoutEdge mainEnd;
    LayoutEdge crossStart;
    LayoutEdge crossEnd;
    LayoutAxis center;  // what is aligned across
    LayoutAxis hugging; // what names the main axis when hugging is set
};

constexpr Axes horizontalAxes{LayoutEdge::left,   LayoutEdge::right,      LayoutEdge::top,
                              LayoutEdge::bottom, LayoutAxis::horizontal, LayoutAxis::horizontal};
constexpr Axes verticalAxes{LayoutEdge::top,   LayoutEdge::bottom,   LayoutEdge::left,
                            LayoutEdge::right, LayoutAxis::vertical, LayoutAxis::vertical};

const Axes& axesOf(RVGroupView::Orientation orientation)
{
    return orientation == RVGroupView::Orientation::horizontal ? horizontalAxes : verticalAxes;
}

using ObjectSet = std::unordered_set<ObjectRef, ObjectHash, ObjectEqual>;

// The elements of a list, in order, that are not in the set.
template <class T>
std::vector<std::shared_ptr<T>> without(const ObjectSet& left, const std::vector<std::shared_ptr<T>>& list)
{
    if (left.empty())
        return list;
    std::vector<std::shared_ptr<T>> result;
    result.reserve(list.size());
    std::ranges::copy_if(list, std::back_inserter(result),
                         [&left](const auto& element) { return !left.contains(element); });
    return result;
}

} // namespace

RVGroupView::Views RVGroupView::visibleViews() const
{
    ObjectSet hidden;
    for (const HiddenView& entry : m_hiddenViews)
        hidden.insert(entry.view);
    return without(hidden, m_views);
}

RVGroupView::Elements RVGroupView::elements() const
{
    ObjectSet hiddenSpacers;
    for (const HiddenView& entry : m_hiddenViews)
        hiddenSpacers.insert(entry.spacer);
    Elements result{visibleViews(), without(hiddenSpacers, m_spacers), {}};
    if (result.views.empty() || result.spacers.empty())
        return result;
    const std::size_t pairs = std::min(result.views.size(), result.spacers.size());
    result.layout.reserve(2 * pairs + 1);
    for (std::size_t i = 0; i < pairs; ++i) {
        result.layout.push_back(result.spacers[i]);
        result.layout.push_back(result.views[i]);
    }
    result.layout.push_back(result.spacers.back());
    return result;
}

const NSView* RVGroupView::expandingView(const Elements& elements) const
{
    switch (m_resizePolicy) {
    case ResizePolicy::trailingView:
        return elements.trailingView();
    case ResizePolicy::leadingView:
        return elements.leadingView();
    case ResizePolicy::leadingEdge:
        return elements.leadingSpacer();
    case ResizePolicy::trailingEdge:
        return elements.trailingSpacer();
    }
    return nullptr;
}

const RVGroupView::Edge& RVGroupView::alignmentForView(const std::shared_ptr<NSView>& view) const
{
    if (m_viewsAlignment.empty())
        return m_alignment;
    const auto own = m_viewsAlignment.find(view);
    return own != m_viewsAlignment.end() ? own->second : m_alignment;
}

CGFloat RVGroupView::offsetForView(const std::shared_ptr<NSView>& view, Orientation orientation) const
{
    if (m_viewsOffsets.empty())
        return 0;
    const auto own = m_viewsOffsets.find(view);
    if (own == m_viewsOffsets.end())
        return 0;
    return orientation == Orientation::horizontal ? own->second.x : own->second.y;
}

// The two orientations differ on purpose.
float RVGroupView::huggingPriorityForView(const NSView& view, const NSView* expandingView) const
{
    if (expandingView && view.isEqual(*expandingView))
        return RVLayoutPriorityDefaultLow;
    return m_orientation == Orientation::horizontal ? RVLayoutPriorityDefaultLow + 1 : RVLayoutPriorityDefaultHigh;
}

void RVGroupView::configureViews(const Elements& oldElements)
{
    autoRemoveConstraints(std::exchange(m_viewsIntrinsicConstraints, {}));
    autoRemoveConstraints(std::exchange(m_layoutConstraints, {}));
    removeElements(oldElements);
    wrapViews();
    warnOfViewsWithoutSize();
    const ConstraintCreation memberSize{.priority = RVLayoutPriorityDefaultMedium, .identifier = "member size"};
    m_viewsIntrinsicConstraints = autoCreateConstraints(memberSize, [this] {
        for (const auto& view : m_views) {
            if (!hasIntrinsicSize(*view))
                continue;
            autoSetDimension(*view, LayoutDimension::width, intrinsicWidth(*view),
                             NSLayoutRelation::greaterThanOrEqual);
            autoSetDimension(*view, LayoutDimension::height, intrinsicHeight(*view),
                             NSLayoutRelation::greaterThanOrEqual);
        }
    });
    if (!m_views.empty()) {
        createSpacers();
        for (const auto& element : elements().layout)
            addSubview(element);
    }
    configureConstraints();
}

// Takes the old elements and the hidden members with their spacers out of the hierarchy and forgets the spacers.
void RVGroupView::removeElements(const Elements& oldElements)
{
    for (const auto& element : oldElements.layout | std::views::reverse) // so that nothing behind it has to move up
        element->removeFromSuperview();
    for (const HiddenView& entry : m_hiddenViews) {
        entry.view->removeFromSuperview();
        entry.spacer->removeFromSuperview();
    }
    m_spacers.clear();
    m_hiddenViews.clear();
}

// Gives members that cannot say how large they are, but that their constraints can size, a wrapper of that size.
void RVGroupView::wrapViews()
{
    for (auto& view : m_views) {
        if (hasIntrinsicSize(*view))
            continue;
        CGSize size = view->intrinsicContentSize();
        if (size.width == RVViewNoIntrinsicMetric)
            size.width = view->fittingSize().width;
        if (size.height == RVViewNoIntrinsicMetric)
            size.height = view->fittingSize().height;
        if (size.width > 0 && size.height > 0)
            view = make<RVIntrinsicView>(view, size);
    }
}

void RVGroupView::warnOfViewsWithoutSize() const
{
    for (const auto& view : m_views) {
        if (hasIntrinsicSize(*view))
            continue;
        std::printf("RVGroupView warning: cannot determine view size: %s\n", view->description().c_str());
        std::printf("Make sure the view has an intrinsic content size or you can specify dimension constraints "
                    "manually.\n");
    }
}

void RVGroupView::createSpacers()
{
    for (std::size_t i = 0; i <= m_views.size(); ++i) {
        auto spacer = make<RVSpacerView>();
        spacer->setContentHuggingPriority(RVLayoutPriorityDefaultLow, NSLayoutConstraintOrientation::horizontal);
        spacer->setContentHuggingPriority(RVLayoutPriorityDefaultHigh, NSLayoutConstraintOrientation::vertical);
        spacer->setContentCompressionResistancePriority(RVLayoutPriorityDefaultHigh,
                                                        NSLayoutConstraintOrientation::horizontal);
        spacer->setContentCompressionResistancePriority(RVLayoutPriorityDefaultHigh,
                                                        NSLayoutConstraintOrientation::vertical);
        m_spacers.push_back(std::move(spacer));
    }
}

void RVGroupView::configureSpacers()
{
    configureSpacers(elements());
}

// Spacing and padding along the axis live in the spacers' sizes alone.
void RVGroupView::configureSpacers(const Elements& elements)
{
    if (elements.views.empty() || elements.layout.empty())
        return;
    const bool isHorizontal = m_orientation == Orientation::horizontal;
    for (const auto& spacer : elements.spacers) {
        CGFloat gap = m_spacing;
        if (spacer.get() == elements.leadingSpacer())
            gap = isHorizontal ? m_padding.left : m_padding.top;
        else if (spacer.get() == elements.trailingSpacer())
            gap = isHorizontal ? m_padding.right : m_padding.bottom;
        spacer->setSize({isHorizontal ? gap : 1.0, spacer->size().height});
        spacer->setSize({spacer->size().width, isHorizontal ? 1.0 : gap});
    }
}

void RVGroupView::configureConstraints()
{
    autoRemoveConstraints(std::exchange(m_layoutConstraints, {}));
    RVCore::setNeedsUpdateConstraints(*this);
    RVCore::setNeedsLayout(*this);
    notifyIntrinsicContentSizeChanged();
    const Elements visibleElements = elements();
    if (visibleElements.layout.empty())
        return;
    configureSpacers(visibleElements);
    try {
        createLayoutConstraints(visibleElements);
    } catch (...) {
        // An alignment target that has left the tree. Rather none of the constraints than the first few.
        autoRemoveConstraints(std::exchange(m_layoutConstraints, {}));
        throw;
    }
}

void RVGroupView::createLayoutConstraints(const ConstraintCreation& creation, const std::function<void()>& closure)
{
    LayoutConstraints created = autoCreateConstraints(creation, closure);
    std::ranges::move(created, std::back_inserter(m_layoutConstraints));
}

void RVGroupView::createLayoutConstraints(const Elements& elements)
{
    const Axes& axes = axesOf(m_orientation);
    const Views& layout = elements.layout;

    // 1. The chain: every element begins where the one before it ends.
    createLayoutConstraints({.priority = chainPriority, .identifier = "chain"}, [&] {
        for (std::size_t i = 1; i < layout.size(); ++i)
            autoPinEdge(*layout[i], axes.mainStart, axes.mainEnd, *layout[i - 1],
                        offsetForView(layout[i], m_orientation));
    });
    // 2. Its ends are the group's.
    createLayoutConstraints({.priority = endsPriority, .identifier = "ends"}, [&] {
        autoPinEdgeToSuperviewEdge(*layout.front(), axes.mainStart);
        autoPinEdgeToSuperviewEdge(*layout.back(), axes.mainEnd);
    });
    // 3. Which element gives way when there is room to spare.
    setHuggingPriorities(elements);
    // 4. Where every element goes across the axis.
    createLayoutConstraints({.priority = chainPriority, .identifier = "alignment"}, [&] {
        for (const auto& element : layout)
            alignElement(*element, alignmentForView(element), offsetForView(element, oppositeOrientation()));
    });
    // 5. Every element stays inside the padding across the axis.
    const bool isHorizontal = m_orientation == Orientation::horizontal;
    createLayoutConstraints({.priority = endsPriority, .identifier = "inside padding"}, [&] {
        for (const auto& element : layout) {
            autoPinEdgeToSuperviewEdge(*element, axes.crossStart, isHorizontal ? m_padding.top : m_padding.left,
                                       NSLayoutRelation::greaterThanOrEqual);
            autoPinEdgeToSuperviewEdge(*element, axes.crossEnd, isHorizontal ? m_padding.bottom : m_padding.right,
                                       NSLayoutRelation::greaterThanOrEqual);
        }
    });
}

// One block for all neighbours of equal priority: there are thousands of elements at times, and two or three runs.
void RVGroupView::setHuggingPriorities(const Elements& elements)
{
    const NSView* expanding = expandingView(elements);
    const auto priorityOf = [&](const auto& element) { return huggingPriorityForView(*element, expanding); };
    const Views& layout = elements.layout;
    for (auto first = layout.begin(); first != layout.end();) {
        const float priority = priorityOf(*first);
        const auto last =
            std::find_if(first, layout.end(), [&](const auto& it) { return priorityOf(it) != priority; });
        autoSetPriority(priority, [&] {
            for (auto element = first; element != last; ++element)
                autoSetContentHuggingPriorityForAxis(**element, axesOf(m_orientation).hugging);
        });
        first = last;
    }
}

void RVGroupView::alignElement(NSView& element, const Edge& edge, CGFloat offset)
{
    const Axes& axes = axesOf(m_orientation);
    NSView& target = edge.view() ? *edge.view() : *this;
    switch (edge.edgeCase()) {
    case Edge::Case::center:
        autoAlignAxis(element, axes.center, target, offset);
        break;
    case Edge::Case::leading:
        autoPinEdge(element, axes.crossStart, axes.crossStart, target, offset);
        break;
    case Edge::Case::trailing:
        autoPinEdge(element, axes.crossEnd, axes.crossEnd, target, offset);
        break;
    case Edge::Case::fill:
        autoPinEdge(element, axes.crossStart, axes.crossStart, target, offset);
        autoPinEdge(element, axes.crossEnd, axes.crossEnd, target);
        break;
    }
}

} // namespace RVCore
