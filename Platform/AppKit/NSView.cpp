#include <AppKit/LayoutContext.h>
#include <AppKit/LayoutRows.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ViewLayoutState.h>
#include <Foundation/NSException.h>

#include <QuartzCore/CALayer.h>

#include <algorithm>

namespace RVCore {

namespace {

void requireLayoutRect(std::string_view operation, const CGRect& rect)
{
    requireLayoutNumber(operation, "frame.x", rect.origin.x);
    requireLayoutNumber(operation, "frame.y", rect.origin.y);
    requireLayoutNumber(operation, "frame.width", rect.size.width);
    requireLayoutNumber(operation, "frame.height", rect.size.height);
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
        publish.method("setNeedsDisplay:", &NSView::setNeedsDisplay);
        publish.readOnlyProperty("intrinsicContentSize", &NSView::intrinsicContentSize);
        publish.method("invalidateIntrinsicContentSize", &NSView::invalidateIntrinsicContentSize);
        publish.method("contentHuggingPriorityForOrientation:", &NSView::contentHuggingPriority);
        publish.method("setContentHuggingPriority:forOrientation:", &NSView::setContentHuggingPriority);
        publish.method("contentCompressionResistancePriorityForOrientation:",
                       &NSView::contentCompressionResistancePriority);
        publish.method("setContentCompressionResistancePriority:forOrientation:",
                       &NSView::setContentCompressionResistancePriority);
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

NSView::NSView() = default;

NSView::~NSView()
{
    if (m_layoutState)
        m_layoutState->viewWillDie();
    for (const auto& subview : m_subviews)
        subview->m_superview = nullptr; // they may live on, as roots
    if (m_layer)
        m_layer->setChangeHandler(nullptr);
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
    const CGSize oldSize = m_frame.size;
    storeFrame(frame);
    if (oldSize != frame.size)
        resizeSubviews(oldSize);
    if (LayoutContext* context = LayoutContext::of(*this))
        context->frameGiven(*this);
}

void NSView::storeFrame(const CGRect& frame)
{
    if (m_frame == frame)
        return;
    const bool isResized = m_frame.size != frame.size;
    m_frame = frame;
    syncLayerGeometry();
    requestFrame();
    if (isResized) {
        setNeedsLayout(true);
        frameSizeDidChange();
    }
}

// Outside a layout pass, subviews whose masks stretch follow at once; constraints see to it within one.
void NSView::resizeSubviews(CGSize oldSize)
{
    for (std::size_t i = 0; i < m_subviews.size(); ++i) {
        const auto subview = m_subviews[i];
        if (!subview->m_translatesMask || subview->m_autoresizingMask == NSAutoresizingMask::none)
            continue;
        subview->setFrame(frameAfterAutoresizing(*subview, oldSize, m_frame.size));
    }
}

void NSView::setBoundsOrigin(CGPoint origin)
{
    requireFinite("NSView.setBoundsOrigin:", "origin", origin);
    if (m_boundsOrigin == origin)
        return;
    m_boundsOrigin = origin;
    requestFrame();
}

CGPoint NSView::pointInSuperview(CGPoint point) const
{
    // Seen from the visible top left corner first, then from the superview's origin.
    CGPoint fromTop{point.x - m_boundsOrigin.x, point.y - m_boundsOrigin.y};
    if (!isFlipped())
        fromTop = mirrored(fromTop, m_frame.size.height);
    if (m_superview && !m_superview->isFlipped())
        return {m_frame.minX() + fromTop.x, m_frame.maxY() - fromTop.y};
    return {m_frame.minX() + fromTop.x, m_frame.minY() + fromTop.y};
}

CGPoint NSView::pointFromSuperview(CGPoint point) const
{
    CGPoint fromTop{point.x - m_frame.minX(), point.y - m_frame.minY()};
    if (m_superview && !m_superview->isFlipped())
        fromTop.y = m_frame.maxY() - point.y;
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

CGRect NSView::convertRectTo(const CGRect& rect, const NSView* view) const
{
    const CGPoint first = convertPointTo(rect.origin, view);
    const CGPoint second = convertPointTo({rect.maxX(), rect.maxY()}, view);
    return {std::min(first.x, second.x), std::min(first.y, second.y), rect.size.width, rect.size.height};
}

CGRect NSView::convertRectFrom(const CGRect& rect, const NSView* view) const
{
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
    const auto kept = view; // the argument may be an element of the list that it is taken out of
    if (kept->m_superview == this) {
        const auto place = std::find(m_subviews.begin(), m_subviews.end(), kept);
        m_subviews.erase(place);
        m_subviews.insert(m_subviews.begin() + static_cast<std::ptrdiff_t>(std::min(index, m_subviews.size())), kept);
        requestFrame();
        return;
    }
    kept->removeFromSuperview();
    attach(kept, std::min(index, m_subviews.size()));
}

void NSView::attach(const std::shared_ptr<NSView>& view, std::size_t index)
{
    if (view->m_layoutState)
        view->m_layoutState->ownedContext.reset(); // it was laid out as a root of its own
    view->m_superview = this;
    m_subviews.insert(m_subviews.begin() + static_cast<std::ptrdiff_t>(index), view);
    if (LayoutContext* context = LayoutContext::of(*this))
        context->subtreeAdded(*view);
    if (view->m_needsLayout || view->m_descendantNeedsLayout)
        view->markAncestors(&NSView::m_descendantNeedsLayout);
    if (view->m_needsUpdateConstraints || view->m_descendantNeedsUpdateConstraints)
        view->markAncestors(&NSView::m_descendantNeedsUpdateConstraints);
    requestFrame();
    view->didMoveToSuperview();
}

void NSView::removeFromSuperview()
{
    if (!m_superview)
        return;
    const auto alive = shared(*this);
    NSView& superview = *m_superview;
    if (NSWindow* host = window())
        host->contentViewWillDetach(*this);
    detach();
    const auto place = std::find(superview.m_subviews.begin(), superview.m_subviews.end(), alive);
    superview.m_subviews.erase(place);
    superview.requestFrame();
    didMoveToSuperview();
}

void NSView::detach()
{
    std::vector<NSView*> open{this};
    while (!open.empty()) {
        NSView& view = *open.back();
        open.pop_back();
        for (const auto& subview : view.m_subviews)
            open.push_back(subview.get());
        if (!view.m_layoutState)
            continue;
        const auto references = view.m_layoutState->references(); // a copy: deactivating may end a constraint
        std::vector<std::shared_ptr<NSLayoutConstraint>> crossing;
        for (NSLayoutConstraint* constraint : references) {
            const NSView* holder = constraint->holder();
            if (holder && holder != this && isDescendantOf(*holder))
                crossing.push_back(shared(*constraint));
        }
        for (const auto& constraint : crossing)
            constraint->setActive(false);
    }
    if (LayoutContext* context = LayoutContext::of(*m_superview))
        context->subtreeWillBeRemoved(*this);
    m_superview = nullptr;
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
}

void NSView::setAlphaValue(CGFloat alpha)
{
    requireFinite("NSView.setAlphaValue:", "alpha", alpha);
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
    if (m_layer)
        m_layer->setChangeHandler(nullptr);
    m_layer = wantsLayer ? makeBackingLayer() : nullptr;
    syncLayerGeometry();
    if (m_layer)
        m_layer->setChangeHandler([this] { requestFrame(); });
    requestFrame();
}

std::shared_ptr<CALayer> NSView::makeBackingLayer()
{
    return make<CALayer>();
}

// A layer that was moved by hand stays so until the frame changes.
void NSView::syncLayerGeometry()
{
    if (!m_layer)
        return;
    const CGPoint anchor = m_layer->anchorPoint();
    m_layer->setBounds({{}, m_frame.size});
    m_layer->setPosition(
        {m_frame.minX() + anchor.x * m_frame.size.width, m_frame.minY() + anchor.y * m_frame.size.height});
}

void NSView::setNeedsDisplay(bool needsDisplay)
{
    if (needsDisplay)
        requestFrame();
}

void NSView::draw(Canvas&, const CGRect&) {}

const std::string& NSView::identifier() const
{
    static const std::string none;
    return m_identifier ? *m_identifier : none;
}

void NSView::setIdentifier(const std::string& identifier)
{
    m_identifier = identifier.empty() ? nullptr : std::make_unique<std::string>(identifier);
}

void NSView::requestFrame()
{
    if (NSWindow* host = window())
        host->contentNeedsFrame();
}

} // namespace RVCore
