#include <AppKit/LayoutContext.h>
#include <AppKit/LayoutRows.h>
#include <AppKit/MovingViews.h>
#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSCursor.h>
#include <AppKit/NSTrackingArea.h>
#include <AppKit/NSView.h>
#include <AppKit/NSViewAnimator.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ViewExplanation.h>
#include <AppKit/ViewLayoutState.h>
#include <AppKit/ViewPlacement.h>
#include <CoreImage/CIFilter.h>
#include <Foundation/KeyPath.h>
#include <Foundation/NSException.h>

#include <QuartzCore/CALayer.h>
#include <QuartzCore/LayerMotion.h>

#include <algorithm>
#include <atomic>

namespace RVCore {

namespace {

void requireLayoutRect(std::string_view operation, const CGRect& rect)
{
    requireLayoutNumber(operation, "frame.x", rect.origin.x);
    requireLayoutNumber(operation, "frame.y", rect.origin.y);
    requireLayoutNumber(operation, "frame.width", rect.size.width);
    requireLayoutNumber(operation, "frame.height", rect.size.height);
}

// Before the view gets the layer that would refuse them.
void requireFilters(std::string_view operation, const std::vector<std::shared_ptr<CIFilter>>& filters)
{
    if (std::ranges::count(filters, nullptr) > 0)
        raiseInvalidArgument(operation, "a filter is absent");
}

std::uint64_t nextDrawingRevision()
{
    static std::atomic<std::uint64_t> last = 0; // views may be made on any thread
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

// Vertical positions in a view that is not flipped run the other way; mirroring twice gives the point back.
CGPoint mirrored(CGPoint point, CGFloat height)
{
    return {point.x, height - point.y};
}

} // namespace

Class& NSView::staticClass()
{
    static Class& theClass = defineClass<NSView>("NSView", NSResponder::staticClass(), [](auto& publish) {
        using Orientation = NSLayoutConstraintOrientation;
        publish.initializer("initWithFrame:", [](NSView& self, const CGRect& frame) { self.init(frame); });
        publish.property("frame", &NSView::frame, &NSView::setFrame);
        publish.method("setFrameOrigin:", &NSView::setFrameOrigin);
        publish.method("setFrameSize:", &NSView::setFrameSize);
        publish.readOnlyProperty("bounds", &NSView::bounds);
        publish.method("setBoundsOrigin:", &NSView::setBoundsOrigin);
        publish.readOnlyProperty("isFlipped", &NSView::isFlipped);
        publish.method("convertPoint:toView:", [](NSView& self, CGPoint point, const std::shared_ptr<NSView>& view) {
            return self.convertPointTo(point, view.get());
        });
        publish.method("convertPoint:fromView:",
                       [](NSView& self, CGPoint point, const std::shared_ptr<NSView>& view) {
                           return self.convertPointFrom(point, view.get());
                       });
        publish.method("convertRect:toView:",
                       [](NSView& self, const CGRect& rect, const std::shared_ptr<NSView>& view) {
                           return self.convertRectTo(rect, view.get());
                       });
        publish.method("convertRect:fromView:",
                       [](NSView& self, const CGRect& rect, const std::shared_ptr<NSView>& view) {
                           return self.convertRectFrom(rect, view.get());
                       });
        publish.readOnlyProperty("superview",
                                 [](NSView& self) { return self.superview() ? shared(*self.superview()) : nullptr; });
        publish.readOnlyProperty("subviews", &NSView::subviews);
        publish.readOnlyProperty("window",
                                 [](NSView& self) { return self.window() ? shared(*self.window()) : nullptr; });
        publish.method("addSubview:", &NSView::addSubview);
        publish.method("removeFromSuperview", &NSView::removeFromSuperview);
        publish.method("isDescendantOf:", &NSView::isDescendantOf);
        publish.readOnlyProperty("isHidden", &NSView::isHidden);
        publish.method("setHidden:", &NSView::setHidden);
        publish.property("alphaValue", &NSView::alphaValue, &NSView::setAlphaValue);
        publish.property("wantsLayer", &NSView::wantsLayer, &NSView::setWantsLayer);
        publish.readOnlyProperty("layer", &NSView::layer);
        publish.property("layerContentsRedrawPolicy", &NSView::layerContentsRedrawPolicy,
                         &NSView::setLayerContentsRedrawPolicy);
        publish.property("contentFilters", &NSView::contentFilters, &NSView::setContentFilters);
        publish.property("backgroundFilters", &NSView::backgroundFilters, &NSView::setBackgroundFilters);
        publish.property("layerUsesCoreImageFilters", &NSView::layerUsesCoreImageFilters,
                         &NSView::setLayerUsesCoreImageFilters);
        publish.readOnlyProperty("animator", &NSView::animator);
        publish.method("setValue:forKeyPath:", &NSView::setValue);
        publish.method("setNeedsDisplay:", &NSView::setNeedsDisplay);
        publish.method("bitmapImageRepForCachingDisplayInRect:", &NSView::bitmapImageRepForCachingDisplay);
        publish.method("cacheDisplayInRect:toBitmapImageRep:", &NSView::cacheDisplay);
        publish.readOnlyProperty("intrinsicContentSize", &NSView::intrinsicContentSize);
        publish.method("invalidateIntrinsicContentSize", &NSView::invalidateIntrinsicContentSize);
        publish.method("contentHuggingPriorityForOrientation:", &NSView::contentHuggingPriority);
        publish.method("setContentHuggingPriority:forOrientation:", &NSView::setContentHuggingPriority);
        publish.method("contentCompressionResistancePriorityForOrientation:",
                       &NSView::contentCompressionResistancePriority);
        publish.method("setContentCompressionResistancePriority:forOrientation:",
                       &NSView::setContentCompressionResistancePriority);
        publish.method("hitTest:", [](NSView& self, CGPoint point) {
            NSView* hit = self.hitTest(point);
            return hit ? shared(*hit) : nullptr;
        });
        publish.readOnlyProperty("isHiddenOrHasHiddenAncestor", &NSView::isHiddenOrHasHiddenAncestor);
        publish.readOnlyProperty("trackingAreas", &NSView::trackingAreas);
        publish.method("addTrackingArea:", &NSView::addTrackingArea);
        publish.method("removeTrackingArea:", &NSView::removeTrackingArea);
        publish.method("addCursorRect:cursor:", &NSView::addCursorRect);
        publish.method("resetCursorRects", &NSView::resetCursorRects);
        publish.method("invalidateCursorRects", &NSView::invalidateCursorRects);
        publish.readOnlyProperty("canBecomeKeyView", &NSView::canBecomeKeyView);
        publish.property("nextKeyView", &NSView::nextKeyView, &NSView::setNextKeyView);
        publish.property("accessibilityLabel", &NSView::accessibilityLabel, &NSView::setAccessibilityLabel);
        publish.readOnlyProperty("accessibilityRole", &NSView::accessibilityRole);
        publish.property("accessibilityValue", &NSView::accessibilityValue, &NSView::setAccessibilityValue);
        publish.method("accessibilityPerformPress", &NSView::accessibilityPerformPress);
        publish.readOnlyProperty("isAccessibilityModal", &NSView::isAccessibilityModal);
        publish.method("setAccessibilityModal:", &NSView::setAccessibilityModal);
        publish.readOnlyProperty("fittingSize", [](NSView& self) { return self.fittingSize(); });
        publish.property("translatesAutoresizingMaskIntoConstraints",
                         &NSView::translatesAutoresizingMaskIntoConstraints,
                         &NSView::setTranslatesAutoresizingMaskIntoConstraints);
        publish.property("autoresizingMask", &NSView::autoresizingMask, &NSView::setAutoresizingMask);
        publish.readOnlyProperty("constraints", &NSView::constraints);
        publish.method("constraintsAffectingLayoutForOrientation:", [](NSView& self, Orientation orientation) {
            return self.constraintsAffectingLayout(orientation);
        });
        publish.readOnlyProperty("hasAmbiguousLayout", &NSView::hasAmbiguousLayout);
        publish.method("explainLayout", &explainLayout);
        publish.method("ambiguousViews", &ambiguousViews);
        publish.property("needsLayout", &NSView::needsLayout, &NSView::setNeedsLayout);
        publish.property("needsUpdateConstraints", &NSView::needsUpdateConstraints,
                         &NSView::setNeedsUpdateConstraints);
        publish.method("layout", &NSView::layout);
        publish.method("updateConstraints", &NSView::updateConstraints);
        publish.method("updateConstraintsForSubtreeIfNeeded", &NSView::updateConstraintsForSubtreeIfNeeded);
        publish.method("layoutSubtreeIfNeeded", &NSView::layoutSubtreeIfNeeded);
        publish.property("identifier", &NSView::identifier, &NSView::setIdentifier);
    });
    return theClass;
}

NSView::NSView() : m_drawingRevision(nextDrawingRevision()) {}

NSView::~NSView()
{
    if (m_layoutState)
        m_layoutState->viewWillDie(*this);
    for (const auto& subview : m_subviews)
        subview->m_superview = nullptr; // they may live on, as roots
    if (m_layer) {
        m_layer->setChangeHandler(nullptr);
        MovingViews::remove(*this);
    }
}

void NSView::init()
{
    init(CGRect());
}

void NSView::init(const CGRect& frame)
{
    requireLayoutRect("NSView.initWithFrame:", frame);
    m_frame = frame;
}

void NSView::setFrame(const CGRect& frame)
{
    requireLayoutRect("NSView.setFrame:", frame);
    const CGRect oldFrame = m_frame;
    m_frame = frame;
    // Of a root also when the frame is equal: its content may have made that of a smaller one that it was given.
    if (oldFrame != frame || !m_superview)
        frameRowsChanged();
    if (oldFrame == frame)
        return;
    if (oldFrame.size != frame.size)
        resizeSubviews(oldFrame.size);
    frameChanged(oldFrame);
}

void NSView::storeFrame(const CGRect& frame)
{
    const CGRect oldFrame = m_frame;
    m_frame = frame;
    if (oldFrame != frame)
        frameChanged(oldFrame);
}

void NSView::frameChanged(const CGRect& oldFrame)
{
    syncLayerGeometry();
    requestFrame();
    if (oldFrame.size != m_frame.size) {
        if (LayoutContext* context = LayoutContext::of(*this); context && !isFlipped())
            context->subviewsFollowHeight(*this);
        invalidateCursorRects();
        setNeedsLayout(true);
        frameSizeDidChange();
    }
}

// Outside a layout pass, subviews whose masks stretch follow at once; constraints see to it within one. The rows that
// say how they follow stay as they are.
void NSView::resizeSubviews(CGSize oldSize)
{
    const auto subviews = m_subviews; // overrides may change the list
    for (const auto& subview : subviews) {
        if (!subview->m_translatesMask || subview->m_autoresizingMask == NSAutoresizingMask::none)
            continue;
        const CGSize oldSubviewSize = subview->m_frame.size;
        subview->storeFrame(frameAfterAutoresizing(*subview, oldSize, m_frame.size));
        if (subview->m_frame.size != oldSubviewSize)
            subview->resizeSubviews(oldSubviewSize);
    }
}

void NSView::setBoundsOrigin(CGPoint origin)
{
    requireLayoutNumber("NSView.setBoundsOrigin:", "origin.x", origin.x);
    requireLayoutNumber("NSView.setBoundsOrigin:", "origin.y", origin.y);
    if (m_boundsOrigin == origin)
        return;
    m_boundsOrigin = origin;
    drawingChanged({});
    requestFrame();
}

// Where a view is painted in its superview, on the canvas that runs down from the visible top left corner: only where
// its layer puts it elsewhere than its frame does, and not where it is squeezed to nothing.
std::optional<CGAffineTransform> NSView::ownPlacement() const
{
    if (!m_layer || !m_superview)
        return std::nullopt;
    const CGPoint anchor = m_layer->anchorPoint();
    const CGPoint usual{m_frame.minX() + anchor.x * m_frame.size.width,
                        m_frame.minY() + anchor.y * m_frame.size.height};
    const CGAffineTransform transform = m_layer->affineTransform();
    if ((transform == CGAffineTransform() && m_layer->position() == usual) ||
        transform.a * transform.d == transform.b * transform.c)
        return std::nullopt;
    return placementInSuperview(*this);
}

bool NSView::isTransformedInRoot() const
{
    for (const NSView* view = this; view; view = view->m_superview) {
        if (view->ownPlacement())
            return true;
    }
    return false;
}

CGPoint NSView::pointInSuperview(CGPoint point) const
{
    if (const auto placement = ownPlacement()) {
        const CGRect outer = m_superview->bounds();
        const CGPoint onCanvas = placement->apply(
            {point.x - m_boundsOrigin.x, isFlipped() ? point.y - m_boundsOrigin.y : bounds().maxY() - point.y});
        return {onCanvas.x + outer.minX(),
                m_superview->isFlipped() ? onCanvas.y + outer.minY() : outer.maxY() - onCanvas.y};
    }
    // Seen from the visible top left corner first, then from the superview's origin.
    CGPoint fromTop{point.x - m_boundsOrigin.x, point.y - m_boundsOrigin.y};
    if (!isFlipped())
        fromTop = mirrored(fromTop, m_frame.size.height);
    if (m_superview && m_superview->isFlipped())
        return {m_frame.minX() + fromTop.x, m_frame.minY() + fromTop.y};
    return {m_frame.minX() + fromTop.x, m_frame.maxY() - fromTop.y};
}

CGPoint NSView::pointFromSuperview(CGPoint point) const
{
    if (const auto placement = ownPlacement()) {
        const CGRect outer = m_superview->bounds();
        const CGPoint inside = placement->inverted().apply(
            {point.x - outer.minX(), m_superview->isFlipped() ? point.y - outer.minY() : outer.maxY() - point.y});
        return {inside.x + m_boundsOrigin.x, isFlipped() ? inside.y + m_boundsOrigin.y : bounds().maxY() - inside.y};
    }
    CGPoint fromTop{point.x - m_frame.minX(), m_frame.maxY() - point.y};
    if (m_superview && m_superview->isFlipped())
        fromTop.y = point.y - m_frame.minY();
    if (!isFlipped())
        fromTop = mirrored(fromTop, m_frame.size.height);
    return {fromTop.x + m_boundsOrigin.x, fromTop.y + m_boundsOrigin.y};
}

CGPoint NSView::convertToRoot(CGPoint point) const
{
    for (const NSView* view = this; view; view = view->m_superview)
        point = view->pointInSuperview(point);
    return point;
}

CGPoint NSView::convertFromRoot(CGPoint point) const
{
    std::vector<const NSView*> path;
    for (const NSView* view = this; view; view = view->m_superview)
        path.push_back(view);
    for (auto view = path.rbegin(); view != path.rend(); ++view)
        point = (*view)->pointFromSuperview(point);
    return point;
}

CGPoint NSView::convertPointTo(CGPoint point, const NSView* view) const
{
    if (view == this)
        return point;
    const auto root = [](const NSView* current) {
        while (current->m_superview)
            current = current->m_superview;
        return current;
    };
    if (view && root(view) != root(this))
        raiseInvalidArgument("NSView.convertPoint",
                             description() + " and " + view->description() + " are in different trees");
    point = convertToRoot(point);
    return view ? view->convertFromRoot(point) : point;
}

CGPoint NSView::convertPointFrom(CGPoint point, const NSView* view) const
{
    return view ? view->convertPointTo(point, this) : convertFromRoot(point);
}

namespace {

// What encloses the corners of a rectangle after each has been converted.
template <class Convert> CGRect convertedCorners(const CGRect& rect, Convert convert)
{
    const CGPoint corners[] = {convert(rect.origin), convert({rect.maxX(), rect.minY()}),
                               convert({rect.minX(), rect.maxY()}), convert({rect.maxX(), rect.maxY()})};
    const auto [left, right] = std::ranges::minmax(corners, {}, &CGPoint::x);
    const auto [low, high] = std::ranges::minmax(corners, {}, &CGPoint::y);
    return {left.x, low.y, right.x - left.x, high.y - low.y};
}

} // namespace

CGRect NSView::convertRectTo(const CGRect& rect, const NSView* view) const
{
    if (isTransformedInRoot() || (view && view->isTransformedInRoot()))
        return convertedCorners(rect, [&](CGPoint corner) { return convertPointTo(corner, view); });
    const CGPoint first = convertPointTo(rect.origin, view);
    const CGPoint second = convertPointTo({rect.maxX(), rect.maxY()}, view);
    return {std::min(first.x, second.x), std::min(first.y, second.y), rect.size.width, rect.size.height};
}

CGRect NSView::convertRectFrom(const CGRect& rect, const NSView* view) const
{
    if (isTransformedInRoot() || (view && view->isTransformedInRoot()))
        return convertedCorners(rect, [&](CGPoint corner) { return convertPointFrom(corner, view); });
    const CGPoint first = convertPointFrom(rect.origin, view);
    const CGPoint second = convertPointFrom({rect.maxX(), rect.maxY()}, view);
    return {std::min(first.x, second.x), std::min(first.y, second.y), rect.size.width, rect.size.height};
}

void NSView::addSubview(const std::shared_ptr<NSView>& view)
{
    insertSubview(view, m_subviews.size());
}

void NSView::insertSubview(const std::shared_ptr<NSView>& view, std::size_t index)
{
    if (!view)
        raiseInvalidArgument("NSView.addSubview:", "there is no view");
    if (isDescendantOf(*view))
        raiseInvalidArgument("NSView.addSubview:",
                             view->description() + " cannot be put into " +
                                 (view.get() == this ? "itself" : "its own descendant " + description()));
    if (view->m_hostWindow)
        raiseInvalidArgument("NSView.addSubview:", view->description() + " is a window's content view");
    const auto kept = view; // the argument may be an element of the list that it is taken out of
    if (kept->m_superview == this) {
        const auto place = std::find(m_subviews.begin(), m_subviews.end(), kept);
        m_subviews.erase(place);
        m_subviews.insert(m_subviews.begin() + static_cast<std::ptrdiff_t>(std::min(index, m_subviews.size())), kept);
        requestFrame();
        return;
    }
    kept->leaveSuperview();
    attach(kept, std::min(index, m_subviews.size()));
}

void NSView::attach(const std::shared_ptr<NSView>& view, std::size_t index)
{
    if (view->m_layoutState)
        view->m_layoutState->dropContext(); // it was laid out as a root of its own
    view->m_superview = this;
    m_subviews.insert(m_subviews.begin() + static_cast<std::ptrdiff_t>(index), view);
    if (LayoutContext* context = LayoutContext::of(*this))
        context->subtreeAdded(*view);
    if (view->m_marks.layout || view->m_marks.descendantLayout)
        view->markAncestors(&LayoutMarks::descendantLayout);
    if (view->m_marks.updateConstraints || view->m_marks.descendantUpdateConstraints)
        view->markAncestors(&LayoutMarks::descendantUpdateConstraints);
    requestFrame();
    view->didMoveToSuperview();
}

void NSView::removeFromSuperview()
{
    if (!m_superview)
        return;
    const auto alive = shared(*this);
    leaveSuperview();
    didMoveToSuperview();
}

void NSView::leaveSuperview()
{
    if (!m_superview)
        return;
    NSView& superview = *m_superview;
    if (NSWindow* host = window())
        host->subtreeWillLeave(*this, {});
    if (m_superview != &superview)
        return; // the first responder took it out when it was told
    takeOutCrossingConstraints();
    if (LayoutContext* context = LayoutContext::of(superview))
        context->subtreeWillBeRemoved(*this);
    m_superview = nullptr;
    auto& siblings = superview.m_subviews;
    const auto isThis = [this](const auto& subview) { return subview.get() == this; };
    // The last one is found at once: views are often taken out from the end.
    siblings.erase(isThis(siblings.back()) ? siblings.end() - 1
                                           : std::find_if(siblings.begin(), siblings.end(), isThis));
    superview.requestFrame();
}

// Those of views above that refer to this view or to anything in it.
void NSView::takeOutCrossingConstraints()
{
    std::vector<std::shared_ptr<NSLayoutConstraint>> crossing;
    std::vector<const NSView*> open{this};
    while (!open.empty()) {
        const NSView& view = *open.back();
        open.pop_back();
        for (const auto& subview : view.m_subviews)
            open.push_back(subview.get());
        if (!view.m_layoutState)
            continue;
        view.m_layoutState->references().forEach([&](NSLayoutConstraint& constraint) {
            const NSView* holder = constraint.holder();
            if (holder && holder != this && isDescendantOf(*holder))
                crossing.push_back(shared(constraint));
        });
    }
    for (const auto& constraint : crossing)
        constraint->setActive(false);
}

bool NSView::isDescendantOf(const NSView& view) const
{
    for (const NSView* current = this; current; current = current->m_superview) {
        if (current == &view)
            return true;
    }
    return false;
}

NSView& NSView::rootView()
{
    NSView* current = this;
    while (current->m_superview)
        current = current->m_superview;
    return *current;
}

void NSView::setHostWindow(NSWindow* window, AppKitKey)
{
    m_hostWindow = window;
    frameRowsChanged(); // a window's content is held by the window's size, any other root by its own frame
}

NSWindow* NSView::window() const
{
    const NSView* current = this;
    while (current->m_superview)
        current = current->m_superview;
    return current->m_hostWindow;
}

void NSView::setHidden(bool hidden)
{
    if (m_isHidden == hidden)
        return;
    m_isHidden = hidden;
    requestFrame();
    if (hidden)
        letGoOfFocus(); // as what is typed would go where nobody sees it
}

bool NSView::isHiddenOrHasHiddenAncestor() const
{
    for (const NSView* view = this; view; view = view->m_superview) {
        if (view->m_isHidden)
            return true;
    }
    return false;
}

bool NSView::canBeSeen() const
{
    for (const NSView* view = this; view; view = view->m_superview) {
        if (view->isInvisible())
            return false;
    }
    return true;
}

CGFloat NSView::alphaValue() const
{
    return m_layer ? m_layer->opacity() : m_alphaValue;
}

void NSView::setAlphaValue(CGFloat alpha)
{
    requireFinite("NSView.setAlphaValue:", "alpha", alpha);
    if (m_layer) {
        m_layer->setOpacity(alpha); // which tells of the change
        return;
    }
    alpha = std::clamp(alpha, 0.0, 1.0);
    if (m_alphaValue == alpha)
        return;
    m_alphaValue = alpha;
    requestFrame();
}

void NSView::setWantsLayer(bool wantsLayer)
{
    if (wantsLayer == this->wantsLayer())
        return;
    m_alphaValue = alphaValue();
    if (m_layer) {
        m_layer->setChangeHandler(nullptr);
        MovingViews::remove(*this);
    }
    m_layer = wantsLayer ? makeBackingLayer() : nullptr;
    if (m_layer) {
        const LayerMotion::Scope none(nullptr); // a new layer does not come from anywhere
        m_layer->setOpacity(m_alphaValue);
        syncLayerGeometry();
        m_layer->setChangeHandler([this] { layerChanged(); });
    }
    requestFrame();
}

void NSView::layerChanged()
{
    if (m_layer->animationEnd())
        MovingViews::add(*this);
    requestFrame();
}

std::vector<std::shared_ptr<CIFilter>> NSView::contentFilters() const
{
    return m_layer ? m_layer->filters() : CALayer::FilterList();
}

void NSView::setContentFilters(const std::vector<std::shared_ptr<CIFilter>>& filters)
{
    requireFilters("NSView.setContentFilters:", filters);
    setWantsLayer(wantsLayer() || !filters.empty());
    if (m_layer)
        m_layer->setFilters(filters);
}

std::vector<std::shared_ptr<CIFilter>> NSView::backgroundFilters() const
{
    return m_layer ? m_layer->backgroundFilters() : CALayer::FilterList();
}

void NSView::setBackgroundFilters(const std::vector<std::shared_ptr<CIFilter>>& filters)
{
    requireFilters("NSView.setBackgroundFilters:", filters);
    setWantsLayer(wantsLayer() || !filters.empty());
    if (m_layer)
        m_layer->setBackgroundFilters(filters);
}

std::shared_ptr<NSViewAnimator> NSView::animator()
{
    return make<NSViewAnimator>(shared(*this));
}

void NSView::setValue(const Value& value, std::string_view keyPath)
{
    // The layer has to hear of what changes in its filters.
    constexpr std::string_view content = "contentFilters.";
    if (m_layer && keyPath.starts_with(content))
        m_layer->setValue(value, "filters." + std::string(keyPath.substr(content.size())));
    else if (m_layer && keyPath.starts_with("backgroundFilters."))
        m_layer->setValue(value, keyPath);
    else
        setValueAlongKeyPath(*this, keyPath, value);
}

std::shared_ptr<CALayer> NSView::makeBackingLayer()
{
    return make<CALayer>();
}

// A layer that was moved by hand stays so until the frame changes. One that has had no size appears where it is.
void NSView::syncLayerGeometry()
{
    if (!m_layer)
        return;
    const bool isFirst = m_layer->bounds().size == CGSize();
    const LayerMotion::Scope scope(isFirst ? nullptr : LayerMotion::current());
    const CGPoint anchor = m_layer->anchorPoint();
    m_layer->setBounds({{}, m_frame.size});
    m_layer->setPosition(
        {m_frame.minX() + anchor.x * m_frame.size.width, m_frame.minY() + anchor.y * m_frame.size.height});
}

void NSView::setNeedsDisplay(bool needsDisplay)
{
    if (!needsDisplay)
        return;
    drawingChanged({});
    requestFrame();
}

void NSView::drawingChanged(AppKitKey)
{
    m_drawingRevision = nextDrawingRevision();
}

void NSView::draw(Canvas&, const CGRect&) {}

void NSView::requestFrame()
{
    if (NSWindow* host = window())
        host->contentNeedsFrame({});
}

} // namespace RVCore
