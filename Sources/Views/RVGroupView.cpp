#include <Common/Misc/GlobalFunctions.h>
#include <ConstraintLibrary/ConstraintLibrary.h>
#include <Extensions/NSView+RVCore.h>
#include <Views/RVGroupViewElements.h>
#include <Views/RVSpacerView.h>

#include <algorithm>
#include <unordered_set>

namespace RVCore {

namespace {

void requirePadding(std::string_view operation, const EdgeInsets& padding)
{
    requireLayoutNumber(operation, "padding.top", padding.top);
    requireLayoutNumber(operation, "padding.left", padding.left);
    requireLayoutNumber(operation, "padding.bottom", padding.bottom);
    requireLayoutNumber(operation, "padding.right", padding.right);
}

} // namespace

Class& RVGroupView::staticClass()
{
    static Class& theClass =
        defineClass<RVGroupView>("RVCore.RVGroupView", RVBaseView::staticClass(), [](auto& publish) {
            publish.property("views", &RVGroupView::views, &RVGroupView::setViews);
            publish.property("spacing", &RVGroupView::spacing, &RVGroupView::setSpacing);
            publish.property("padding", &RVGroupView::padding, &RVGroupView::setPadding);
            publish.property("needsLayout", &RVGroupView::needsLayout, &RVGroupView::setNeedsLayout);
            publish.readOnlyProperty("intrinsicContentSize", &RVGroupView::intrinsicContentSize);
            publish.method("setVisibilityWithView:visible:", &RVGroupView::setVisibility);
        });
    return theClass;
}

void RVGroupView::init()
{
    init(Views(), Arrangement());
}

void RVGroupView::init(const Views& views, const Arrangement& arrangement)
{
    requireViews("RVGroupView.init", views);
    requireLayoutNumber("RVGroupView.init", "spacing", arrangement.spacing);
    m_views = views;
    m_resizePolicy = arrangement.resizePolicy;
    m_orientation = arrangement.orientation;
    m_spacing = arrangement.spacing;
    m_alignment = arrangement.alignment;

    RVBaseView::init(CGRect());
    setContentHuggingPriority(RVLayoutPriorityDefaultLow, NSLayoutConstraintOrientation::horizontal);
    setContentHuggingPriority(RVLayoutPriorityDefaultHigh, NSLayoutConstraintOrientation::vertical);
    setContentCompressionResistancePriority(RVLayoutPriorityDefaultHigh, NSLayoutConstraintOrientation::horizontal);
    setContentCompressionResistancePriority(RVLayoutPriorityDefaultHigh, NSLayoutConstraintOrientation::vertical);
    wantsAnimations(*this);
    // Nobody keeps or installs these. What remains is that the library has marked the group as laid out by
    // constraints.
    autoCreateConstraints({.installConstraints = false, .priority = RVLayoutPriorityDefaultMedium}, [this] {
        autoSetDimension(*this, LayoutDimension::width, 0);
        autoSetDimension(*this, LayoutDimension::height, 0);
    });
    configureViews(Elements());
}

void RVGroupView::init(const CGRect&)
{
    unimplementedInitializer("RVCore.RVGroupView", "init(frame:)");
}

void RVGroupView::init(NSCoder&)
{
    notSupportedError();
}

RVGroupView::Orientation RVGroupView::oppositeOrientation() const
{
    return m_orientation == Orientation::horizontal ? Orientation::vertical : Orientation::horizontal;
}

void RVGroupView::setViews(const Views& views)
{
    requireViews("RVGroupView.setViews", views);
    const Elements oldElements = elements();
    m_views = views;
    configureViews(oldElements);
}

// A hidden member has its size still, and no place: it may lie over any other.
bool RVGroupView::letsPointerFind(const NSView& subview) const
{
    return std::ranges::none_of(m_hiddenViews, [&](const HiddenView& entry) { return entry.view.get() == &subview; });
}

std::vector<NSView*> RVGroupView::subviewsInKeyOrder() const
{
    std::unordered_set<const NSView*> members;
    std::vector<NSView*> order;
    for (const auto& member : m_views) {
        if (member->superview() == this && members.insert(member.get()).second)
            order.push_back(member.get());
    }
    for (NSView* view : RVBaseView::subviewsInKeyOrder()) {
        if (!members.contains(view))
            order.push_back(view);
    }
    return order;
}

void RVGroupView::setSpacing(CGFloat spacing)
{
    requireLayoutNumber("RVGroupView.setSpacing", "spacing", spacing);
    m_spacing = spacing;
    configureSpacers();
}

void RVGroupView::setPadding(const EdgeInsets& padding)
{
    requirePadding("RVGroupView.setPadding", padding);
    m_padding = padding;
    configureSpacers();
}

void RVGroupView::setAlignment(const Edge& alignment)
{
    requireTargets("RVGroupView.setAlignment", alignment, m_viewsAlignment);
    m_alignment = alignment;
    configureConstraints();
}

void RVGroupView::setOrientation(Orientation orientation)
{
    m_orientation = orientation;
    configureConstraints();
}

void RVGroupView::setResizePolicy(ResizePolicy policy)
{
    m_resizePolicy = policy;
    configureConstraints();
}

// Rebuilds twice: once because the entries were assigned, and once because the caller asked for them.
template <class Entry> void RVGroupView::replaceEntries(PerView<Entry>& entries, PerView<Entry> replacement)
{
    entries = std::move(replacement);
    configureConstraints();
    configureConstraints();
}

void RVGroupView::alignViews(const std::function<PerView<Edge>()>& block)
{
    const char* operation = "RVGroupView.alignViews";
    if (!block)
        raiseInvalidArgument(operation, "there is no block to ask");
    PerView<Edge> alignments = block();
    requireTargets(operation, m_alignment, alignments);
    replaceEntries(m_viewsAlignment, std::move(alignments));
}

void RVGroupView::offsetViews(const std::function<PerView<Offset>()>& block)
{
    const char* operation = "RVGroupView.offsetViews";
    if (!block)
        raiseInvalidArgument(operation, "there is no block to ask");
    PerView<Offset> offsets = block();
    for (const auto& [view, offset] : offsets) {
        requireLayoutNumber(operation, "offset.x", offset.x);
        requireLayoutNumber(operation, "offset.y", offset.y);
    }
    replaceEntries(m_viewsOffsets, std::move(offsets));
}

void RVGroupView::setVisibility(const std::shared_ptr<NSView>& view, bool visible)
{
    if (!view)
        raiseInvalidArgument("RVGroupView.setVisibility", "view must not be absent");
    const auto isView = [&view](const auto& other) { return other->isEqual(*view); };
    const auto hidden =
        std::ranges::find_if(m_hiddenViews, [&](const HiddenView& entry) { return isView(entry.view); });
    const bool isHidden = hidden != m_hiddenViews.end();
    if (visible != isHidden)
        return; // it is as it shall be
    if (visible) {
        setAlpha(*view, 1.0);
        m_hiddenViews.erase(hidden);
        configureConstraints();
        return;
    }

    const Elements visibleElements = elements();
    const auto found = std::ranges::find_if(visibleElements.views, isView);
    if (found == visibleElements.views.end())
        fatalError("cannot hide " + view->description() + ": it is not a visible member of " + description());
    // The gap after the member goes with it, after the last member the one before it.
    const auto index = static_cast<std::size_t>(found - visibleElements.views.begin());
    const std::size_t spacerIndex = isView(visibleElements.views.back()) ? index : index + 1;
    if (spacerIndex >= visibleElements.spacers.size())
        fatalError("spacer index " + std::to_string(spacerIndex) + " is out of range");
    setAlpha(*view, 0.0);
    m_hiddenViews.push_back({view, visibleElements.spacers[spacerIndex]});
    configureConstraints();
    (*found)->letGoOfFocus(); // as what is typed would go where nobody sees it
}

void RVGroupView::setNeedsLayout(bool needsLayout)
{
    notifyIntrinsicContentSizeChanged();
    RVBaseView::setNeedsLayout(needsLayout);
}

void RVGroupView::requireViews(std::string_view operation, const Views& views) const
{
    for (const auto& view : views) {
        if (!view)
            raiseInvalidArgument(operation, "a member must not be absent");
        if (isDescendantOf(*view))
            raiseInvalidArgument(operation, view->description() + " cannot be a member: the group is in it");
    }
}

// Constraints can only be built between views of one tree. Asking before anything is stored lets a refused alignment
// change nothing.
void RVGroupView::requireTargets(std::string_view operation, const Edge& alignment,
                                 const PerView<Edge>& viewsAlignment)
{
    const NSView* group = this;
    const auto require = [&](const Edge& edge, const NSView*& known) {
        NSView* target = edge.view().get();
        if (!target || target == known)
            return;
        if (&target->rootView() != &rootView())
            raiseInvalidArgument(operation,
                                 target->description() + " and " + description() + " have no common ancestor");
        known = target;
    };
    const NSView* knownForAll = group;
    for (const auto& view : visibleViews()) {
        const auto own = viewsAlignment.find(view);
        const NSView* known = group;
        if (own != viewsAlignment.end())
            require(own->second, known);
        require(alignment, knownForAll); // the spacers follow it even when every member has its own
    }
}

} // namespace RVCore
