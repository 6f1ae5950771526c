#include <AppKit/NSColor.h>
#include <AppKit/NSWindow.h>
#include <Common/Misc/GlobalFunctions.h>
#include <Extensions/NSView+RVCore.h>
#include <Foundation/AssociatedObjects.h>

#include <QuartzCore/CALayer.h>

namespace RVCore {

namespace {

constexpr AssociationKey disableEventPropagationKey{"disableEventPropagation"};

void makeLayerBacked(NSView& view)
{
    if (!view.wantsLayer())
        view.setWantsLayer(true);
}

// The layer of a view that has been made layer-backed; a platform that does not supply one is broken.
CALayer& requiredLayer(const NSView& view)
{
    if (!view.layer())
        fatalError(view.description() + " has no layer although it wants one");
    return *view.layer();
}

} // namespace

CGFloat left(const NSView& view)
{
    return view.frame().origin.x;
}

CGFloat top(const NSView& view)
{
    return view.frame().origin.y;
}

CGFloat right(const NSView& view)
{
    return left(view) + width(view);
}

CGFloat bottom(const NSView& view)
{
    return top(view) + height(view);
}

CGFloat width(const NSView& view)
{
    return view.frame().size.width;
}

CGFloat height(const NSView& view)
{
    return view.frame().size.height;
}

CGFloat intrinsicWidth(const NSView& view)
{
    return view.intrinsicContentSize().width;
}

CGFloat intrinsicHeight(const NSView& view)
{
    return view.intrinsicContentSize().height;
}

bool hasIntrinsicSize(const NSView& view)
{
    return intrinsicWidth(view) != RVViewNoIntrinsicMetric && intrinsicHeight(view) != RVViewNoIntrinsicMetric;
}

std::shared_ptr<NSColor> backgroundColor(const NSView& view)
{
    const auto color = view.layer() ? view.layer()->backgroundColor() : std::nullopt;
    return color ? make<NSColor>(*color) : nullptr;
}

void setBackgroundColor(NSView& view, const std::shared_ptr<NSColor>& color)
{
    makeLayerBacked(view);
    if (const auto& layer = view.layer())
        layer->setBackgroundColor(color ? std::optional(color->cgColor()) : std::nullopt);
}

CGPoint center(NSView& view)
{
    makeLayerBacked(view);
    return requiredLayer(view).position();
}

void setCenter(NSView& view, CGPoint center)
{
    requireFinite("setCenter", "center", center);
    makeLayerBacked(view);
    if (const auto& layer = view.layer(); layer && layer->position() != center)
        layer->setPosition(center);
}

CGAffineTransform transform(NSView& view)
{
    makeLayerBacked(view);
    return requiredLayer(view).affineTransform();
}

void setTransform(NSView& view, const CGAffineTransform& transform)
{
    requireFinite("setTransform", "transform", transform);
    makeLayerBacked(view);
    if (const auto& layer = view.layer(); layer && layer->affineTransform() != transform)
        layer->setAffineTransform(transform);
}

CGFloat alpha(NSView& view)
{
    makeLayerBacked(view);
    return view.alphaValue();
}

void setAlpha(NSView& view, CGFloat alpha)
{
    requireFinite("setAlpha", "alpha", alpha);
    makeLayerBacked(view);
    view.setAlphaValue(alpha);
}

void wantsAnimations(NSView& view)
{
    makeLayerBacked(view);
    view.setLayerContentsRedrawPolicy(NSViewLayerContentsRedrawPolicy::onSetNeedsDisplay);
}

bool isFirstResponder(const NSView& view)
{
    const NSWindow* window = view.window();
    return window && window->firstResponder();
}

void setNeedsLayout(NSView& view)
{
    view.setNeedsLayout(true);
}

void setNeedsUpdateConstraints(NSView& view)
{
    view.setNeedsUpdateConstraints(true);
}

bool disableEventPropagation(NSView& view)
{
    // Anything that is no number counts as false.
    const Value stored = associatedObject(view, disableEventPropagationKey);
    return stored.boolean() && *stored.boolean() && !view.isHidden() && alpha(view) > 0;
}

void setDisableEventPropagation(NSView& view, bool disable)
{
    setAssociatedObject(view, disableEventPropagationKey, Value(disable));
}

bool publishViewOperations()
{
    NSView::setEventDefault([](NSView& view, NSEvent& event, NSView::InheritedHandler inherited) {
        if (!disableEventPropagation(view))
            inherited(view, event);
    });
    return addCategory<NSView>("RVCore", [](auto& publish) {
        publish.readOnlyProperty("left", &left);
        publish.readOnlyProperty("top", &top);
        publish.readOnlyProperty("right", &right);
        publish.readOnlyProperty("bottom", &bottom);
        publish.readOnlyProperty("width", &width);
        publish.readOnlyProperty("height", &height);
        publish.readOnlyProperty("intrinsicWidth", &intrinsicWidth);
        publish.readOnlyProperty("intrinsicHeight", &intrinsicHeight);
        publish.readOnlyProperty("hasIntrinsicSize", &hasIntrinsicSize);
        publish.initializer("initWithSuperview:", [](NSView& self, NSView& superview) {
            self.init();
            superview.addSubview(shared(self));
        });
        publish.property("backgroundColor", &backgroundColor, &setBackgroundColor);
        publish.property("center", &center, &setCenter);
        publish.property("transform", &transform, &setTransform);
        publish.property("alpha", &alpha, &setAlpha);
        publish.property("disableEventPropagation", &disableEventPropagation, &setDisableEventPropagation);
        publish.method("wantsAnimations", &wantsAnimations);
        publish.method("isFirstResponder", &isFirstResponder);
        publish.method("setNeedsLayout", &setNeedsLayout);
        publish.method("setNeedsUpdateConstraints", &setNeedsUpdateConstraints);
    });
}

} // namespace RVCore
