#include <AppKit/NSProgressIndicator.h>
#include <AppKit/NSView.h>
#include <AppKit/PaintingOrder.h>
#include <AppKit/ViewComposer.h>
#include <AppKit/ViewPlacement.h>
#include <Backend/Backend.h>
#include <CoreImage/CIFilter.h>

#include <QuartzCore/Compositor.h>
#include <QuartzCore/LayerPresentation.h>

namespace RVCore {

namespace {

using Kind = CompositionItem::Kind;

constexpr CGColor black{0, 0, 0, 1};

// The filter with the inputs that it has at this moment.
FilterStep stepOf(const std::shared_ptr<CIFilter>& filter, const LayerPresentation& shown)
{
    FilterStep step{filter, filter->inputs()};
    const auto keys = filter->inputKeys();
    for (std::size_t i = 0; i < keys.size(); ++i)
        step.inputs[i] = shown.filterInput(*filter, keys[i]).value_or(step.inputs[i]);
    return step;
}

} // namespace

void ViewComposer::add(NSView& root, const CGAffineTransform& placement, DispatchTime time, Composition& into)
{
    NSProgressIndicator::prepareFrame(root, {});
    m_into = &into;
    m_time = time;
    m_views.clear();
    m_layers.clear();
    addView(root, placement);
}

void ViewComposer::addView(NSView& view, const CGAffineTransform& placement)
{
    const CALayer* layer = view.layer().get();
    const CGFloat opacity = layer ? LayerPresentation(*layer, m_time).opacity() : view.alphaValue();
    if (view.isHidden() || (layer && layer->isHidden()) || opacity <= 0)
        return;
    const bool isGroup = beginGroup(view, layer, opacity, placement, view.frame().size);
    if (layer)
        addGround(*view.layer(), placement, view.frame().size);
    addInside(view, placement);
    if (layer)
        addBorder(*view.layer(), placement, view.frame().size);
    if (isGroup)
        m_into->endGroup();
}

// What a mask to bounds cuts.
void ViewComposer::addInside(NSView& view, const CGAffineTransform& placement)
{
    const std::shared_ptr<CALayer>& layer = view.layer();
    const CGSize size = view.frame().size;
    const bool isMasked = layer && layer->masksToBounds();
    if (isMasked)
        m_into->beginGroup(layer, {.placement = placement,
                                   .size = size,
                                   .cornerRadius = LayerPresentation(*layer, m_time).cornerRadius(),
                                   .clips = true});
    if (layer)
        addContents(*layer, placement, size);
    if (layer && layer->needsDisplay()) { // the layer shows what the view draws
        layer->didDisplay();
        view.drawingChanged({});
    }
    m_into->add(Kind::content, shared(view), placement, size).revision = view.drawingRevision({});
    if (layer)
        addSublayers(*layer, placement, view.isFlipped());
    addSubviews(view, placement);
    if (isMasked)
        m_into->endGroup();
}

void ViewComposer::addSubviews(NSView& view, const CGAffineTransform& placement)
{
    const auto shownZ = [&](const NSView& subview) {
        return subview.layer() ? LayerPresentation(*subview.layer(), m_time).zPosition() : 0;
    };
    const std::size_t first = m_views.size();
    appendInPaintingOrder(view.subviews(), shownZ, m_views);
    const std::size_t last = m_views.size();
    for (std::size_t i = first; i < last; ++i) {
        NSView& subview = *m_views[i];
        addView(subview, shownPlacementInSuperview(subview, m_time).concatenating(placement));
    }
    m_views.resize(first);
}

void ViewComposer::addSublayers(const CALayer& layer, const CGAffineTransform& placement, bool isFlipped)
{
    const auto shownZ = [&](const CALayer& sublayer) { return LayerPresentation(sublayer, m_time).zPosition(); };
    const std::size_t first = m_layers.size();
    appendInPaintingOrder(layer.sublayers(), shownZ, m_layers);
    const std::size_t last = m_layers.size();
    for (std::size_t i = first; i < last; ++i)
        addLayer(*m_layers[i], placement, layer.bounds(), isFlipped);
    m_layers.resize(first);
}

// `around` is the placement of the layer that it is in, `outer` that one's bounds.
void ViewComposer::addLayer(CALayer& layer, const CGAffineTransform& around, const CGRect& outer, bool isFlipped)
{
    const LayerPresentation shown(layer, m_time);
    if (layer.isHidden() || shown.opacity() <= 0)
        return;
    const CGSize size = shown.bounds().size;
    const CGAffineTransform placement =
        placementIn(outer, !isFlipped, {shown.position(), layer.anchorPoint(), shown.affineTransform(), size})
            .concatenating(around);
    const bool isGroup = beginGroup(layer, &layer, shown.opacity(), placement, size);
    addGround(layer, placement, size);
    if (layer.masksToBounds())
        m_into->beginGroup(
            shared(layer),
            {.placement = placement, .size = size, .cornerRadius = shown.cornerRadius(), .clips = true});
    addContents(layer, placement, size);
    addSublayers(layer, placement, isFlipped);
    if (layer.masksToBounds())
        m_into->endGroup();
    addBorder(layer, placement, size);
    if (isGroup)
        m_into->endGroup();
}

// Only where the owner cannot simply be painted onto what is below it.
bool ViewComposer::beginGroup(NSObject& owner, const CALayer* layer, CGFloat opacity,
                              const CGAffineTransform& placement, CGSize size)
{
    if (opacity >= 1 && (!layer || (layer->filters().empty() && layer->backgroundFilters().empty())))
        return false;
    Composition::Group group{.placement = placement, .size = size, .opacity = opacity};
    if (!layer) {
        m_into->beginGroup(shared(owner), group);
        return true;
    }
    const LayerPresentation shown(*layer, m_time);
    group.cornerRadius = shown.cornerRadius();
    m_into->beginGroup(shared(owner), group);
    for (const auto& filter : layer->filters())
        m_into->addFilter(stepOf(filter, shown));
    for (const auto& filter : layer->backgroundFilters())
        m_into->addBackgroundFilter(stepOf(filter, shown));
    return true;
}

void ViewComposer::addGround(CALayer& layer, const CGAffineTransform& placement, CGSize size)
{
    const LayerPresentation shown(layer, m_time);
    if (const auto color = shown.backgroundColor()) {
        CompositionItem& fill = m_into->add(Kind::fill, shared(layer), placement, size);
        fill.color = *color;
        fill.cornerRadius = shown.cornerRadius();
    }
}

void ViewComposer::addContents(CALayer& layer, const CGAffineTransform& placement, CGSize size)
{
    if (layer.contents())
        m_into->add(Kind::image, shared(layer), placement, size).image = layer.contents();
}

void ViewComposer::addBorder(CALayer& layer, const CGAffineTransform& placement, CGSize size)
{
    const LayerPresentation shown(layer, m_time);
    if (shown.borderWidth() <= 0)
        return;
    CompositionItem& border = m_into->add(Kind::border, shared(layer), placement, size);
    border.borderWidth = shown.borderWidth();
    border.cornerRadius = shown.cornerRadius();
    border.color = shown.borderColor().value_or(black);
}

Compositor makeViewCompositor()
{
    return Compositor(
        [](Bitmap& bitmap, int x, int y, CGFloat scale) { return Backend::shared().makeCanvas(bitmap, x, y, scale); },
        &drawContentOf);
}

void drawContentOf(NSObject& owner, Canvas& canvas)
{
    auto* view = dynamic_cast<NSView*>(&owner);
    if (!view)
        return;
    const CGRect bounds = view->bounds();
    if (view->isFlipped())
        canvas.concatenate(CGAffineTransform::translation(-bounds.minX(), -bounds.minY()));
    else
        canvas.concatenate({1, 0, 0, -1, -bounds.minX(), bounds.maxY()});
    view->draw(canvas, bounds);
}

} // namespace RVCore
