#include <AppKit/LayoutRows.h>
#include <AppKit/NSView.h>

#include <algorithm>
#include <array>

namespace RVCore {

namespace {

// Adds factor × (the view's left edge, seen from the ancestor's left edge), or the top edges when vertical.
void addPosition(LayoutRow& row, const NSView& view, const NSView& ancestor, bool isVertical, double factor,
                 const VariablesOfView& variables)
{
    for (const NSView* current = &view; current != &ancestor; current = current->superview()) {
        const ViewVariables& own = variables(*current);
        row.terms.push_back({isVertical ? own.y : own.x, factor});
    }
}

void addAttribute(LayoutRow& row, const NSView& view, NSLayoutAttribute attribute, const NSView& ancestor,
                  double factor, const VariablesOfView& variables)
{
    const ViewVariables& own = variables(view);
    const auto addEdge = [&](bool isVertical, double shareOfExtent) {
        addPosition(row, view, ancestor, isVertical, factor, variables);
        if (shareOfExtent != 0)
            row.terms.push_back({isVertical ? own.height : own.width, factor * shareOfExtent});
    };
    switch (attribute) {
    case NSLayoutAttribute::left:
        return addEdge(false, 0);
    case NSLayoutAttribute::centerX:
        return addEdge(false, 0.5);
    case NSLayoutAttribute::right:
        return addEdge(false, 1);
    case NSLayoutAttribute::top:
        return addEdge(true, 0);
    case NSLayoutAttribute::centerY:
        return addEdge(true, 0.5);
    case NSLayoutAttribute::bottom:
        return addEdge(true, 1);
    case NSLayoutAttribute::width:
        row.terms.push_back({own.width, factor});
        return;
    case NSLayoutAttribute::height:
        row.terms.push_back({own.height, factor});
        return;
    case NSLayoutAttribute::notAnAttribute:
        return;
    }
}

// How one axis of a frame follows its superview's extent W: position = a·W + b, extent = c·W + d. The segments that
// the mask lets stretch share what W gains in proportion to their present lengths, or equally when those sum up to
// nothing; when none may stretch, the segment at the far end of the superview's own axis takes it all.
struct AxisLaw {
    double positionFactor;
    double positionConstant;
    double extentFactor;
    double extentConstant;
};

// `available` is the superview's present extent. With `fromTop`, vertical positions count from the top.
AxisLaw axisLaw(const NSView& view, bool isVertical, double available, bool fromTop)
{
    const CGRect& frame = view.frame();
    const double extent = std::max(0.0, isVertical ? frame.size.height : frame.size.width);
    const double near = isVertical ? frame.minY() : frame.minX(); // distance from the superview's own origin
    const double far = available - near - extent;
    const NSAutoresizingMask mask = view.autoresizingMask();
    using Mask = NSAutoresizingMask;
    const std::array<double, 3> lengths{near, extent, far};
    std::array<bool, 3> stretches{contains(mask, isVertical ? Mask::minYMargin : Mask::minXMargin),
                                  contains(mask, isVertical ? Mask::height : Mask::width),
                                  contains(mask, isVertical ? Mask::maxYMargin : Mask::maxXMargin)};
    if (std::none_of(stretches.begin(), stretches.end(), [](bool stretch) { return stretch; }))
        stretches[2] = true;

    double sum = 0;
    double count = 0;
    bool hasNegative = false;
    for (std::size_t i = 0; i < 3; ++i) {
        if (stretches[i]) {
            sum += lengths[i];
            ++count;
            hasNegative = hasNegative || lengths[i] < 0;
        }
    }
    const bool isProportional = sum > 0 && !hasNegative;
    std::array<double, 3> shares{};
    for (std::size_t i = 0; i < 3; ++i) {
        if (stretches[i])
            shares[i] = isProportional ? lengths[i] / sum : 1 / count;
    }
    // In a superview that is not flipped, the top is the far end.
    const std::size_t first = isVertical && fromTop && !view.superview()->isFlipped() ? 2 : 0;
    return {shares[first], lengths[first] - shares[first] * available, shares[1], lengths[1] - shares[1] * available};
}

// extent relation constant, at the priority.
void setExtentRow(LayoutRow& row, LayoutVariable extent, LayoutRelation relation, double constant,
                  NSLayoutPriority priority)
{
    row.terms.assign(1, {extent, 1});
    row.relation = relation;
    row.constant = constant;
    row.priority = priority;
}

bool makeFrameRow(const NSView& view, ViewLayoutState::OwnRow kind, bool isRoot, const VariablesOfView& variables,
                  LayoutRow& row)
{
    const bool isVertical = kind == ViewLayoutState::verticalPosition || kind == ViewLayoutState::verticalExtent;
    const bool isExtent = kind == ViewLayoutState::horizontalExtent || kind == ViewLayoutState::verticalExtent;
    if (isRoot) {
        if (!isExtent)
            return false;
        const ViewVariables& own = variables(view);
        const CGSize size = view.frame().size;
        const bool isHeld = view.translatesAutoresizingMaskIntoConstraints() && !view.isContentView();
        setExtentRow(row, isVertical ? own.height : own.width, LayoutRelation::equal,
                     std::max(0.0, isVertical ? size.height : size.width),
                     isHeld ? NSLayoutPriorityRequired : NSLayoutPriorityWindowSizeStayPut);
        return true;
    }
    if (!view.translatesAutoresizingMaskIntoConstraints())
        return false;
    const ViewVariables& own = variables(view);
    const CGSize available = view.superview()->frame().size;
    const AxisLaw law = axisLaw(view, isVertical, isVertical ? available.height : available.width, true);
    const ViewVariables& outer = variables(*view.superview());
    row.terms.assign(1, {isExtent ? (isVertical ? own.height : own.width) : (isVertical ? own.y : own.x), 1});
    const double factor = isExtent ? law.extentFactor : law.positionFactor;
    if (factor != 0)
        row.terms.push_back({isVertical ? outer.height : outer.width, -factor});
    row.relation = LayoutRelation::equal;
    row.constant = isExtent ? law.extentConstant : law.positionConstant;
    row.priority = NSLayoutPriorityRequired;
    return true;
}

} // namespace

void makeConstraintRow(const NSLayoutConstraint& constraint, const NSView& holder, const VariablesOfView& variables,
                       LayoutRow& row)
{
    row.terms.clear();
    addAttribute(row, *constraint.firstItem(), constraint.firstAttribute(), holder, 1, variables);
    if (constraint.secondItem())
        addAttribute(row, *constraint.secondItem(), constraint.secondAttribute(), holder, -constraint.multiplier(),
                     variables);
    row.relation = static_cast<LayoutRelation>(constraint.relation());
    row.constant = constraint.constant();
    row.priority = constraint.priority();
}

bool makeOwnRow(const NSView& view, ViewLayoutState::OwnRow kind, CGSize intrinsicSize, bool isRoot,
                const VariablesOfView& variables, LayoutRow& row)
{
    const auto makeContentRow = [&](NSLayoutConstraintOrientation orientation, bool isHugging) {
        const bool isVertical = orientation == NSLayoutConstraintOrientation::vertical;
        const double metric = isVertical ? intrinsicSize.height : intrinsicSize.width;
        if (metric == NSViewNoIntrinsicMetric)
            return false;
        const ViewVariables& own = variables(view);
        setExtentRow(row, isVertical ? own.height : own.width,
                     isHugging ? LayoutRelation::lessThanOrEqual : LayoutRelation::greaterThanOrEqual, metric,
                     isHugging ? view.contentHuggingPriority(orientation)
                               : view.contentCompressionResistancePriority(orientation));
        return true;
    };
    const auto makeNotNegativeRow = [&](LayoutVariable extent) {
        setExtentRow(row, extent, LayoutRelation::greaterThanOrEqual, 0, NSLayoutPriorityRequired);
        return true;
    };
    switch (kind) {
    case ViewLayoutState::widthNotNegative:
        return makeNotNegativeRow(variables(view).width);
    case ViewLayoutState::heightNotNegative:
        return makeNotNegativeRow(variables(view).height);
    case ViewLayoutState::widthHugging:
        return makeContentRow(NSLayoutConstraintOrientation::horizontal, true);
    case ViewLayoutState::widthResistance:
        return makeContentRow(NSLayoutConstraintOrientation::horizontal, false);
    case ViewLayoutState::heightHugging:
        return makeContentRow(NSLayoutConstraintOrientation::vertical, true);
    case ViewLayoutState::heightResistance:
        return makeContentRow(NSLayoutConstraintOrientation::vertical, false);
    default:
        return makeFrameRow(view, kind, isRoot, variables, row);
    }
}

CGRect frameAfterAutoresizing(const NSView& view, CGSize oldSize, CGSize newSize)
{
    const AxisLaw horizontal = axisLaw(view, false, oldSize.width, false);
    const AxisLaw vertical = axisLaw(view, true, oldSize.height, false);
    return {horizontal.positionFactor * newSize.width + horizontal.positionConstant,
            vertical.positionFactor * newSize.height + vertical.positionConstant,
            horizontal.extentFactor * newSize.width + horizontal.extentConstant,
            vertical.extentFactor * newSize.height + vertical.extentConstant};
}

} // namespace RVCore
