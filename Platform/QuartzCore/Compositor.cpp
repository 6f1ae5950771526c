#include <CoreImage/FilterStep.h>
#include <Foundation/NSException.h>

#include <QuartzCore/Compositor.h>

namespace RVCore {

namespace {

using Kind = CompositionItem::Kind;

RoundedRect outlineOf(const CompositionItem& item)
{
    return {{{}, item.size}, item.cornerRadius};
}

void clipTo(const ClipOutline& outline, Canvas& canvas)
{
    canvas.concatenate(outline.placement);
    canvas.clip({{{}, outline.size}, outline.radius});
    canvas.concatenate(outline.placement.inverted());
}

void drawItem(const CompositionItem& item, Canvas& canvas, const Compositor::DrawContent& drawContent)
{
    const CanvasState state(canvas);
    canvas.concatenate(item.placement);
    switch (item.kind) {
    case Kind::fill:
        canvas.fill(outlineOf(item), item.color);
        break;
    case Kind::border:
        canvas.strokeInside(outlineOf(item), item.borderWidth, item.color);
        break;
    case Kind::image:
        if (item.image)
            canvas.drawImage(*item.image, {{}, item.size});
        break;
    case Kind::content:
        canvas.clip({{{}, item.size}, 0});
        drawContent(*item.owner, canvas);
        break;
    case Kind::group:
    case Kind::end:
        break;
    }
}

} // namespace

// On a bitmap that shows a part of the area.
class Compositor::SurfaceCanvas : public DeferredCanvas {
public:
    SurfaceCanvas(Compositor& compositor, Bitmap& bitmap, const PixelRect& place)
        : DeferredCanvas(compositor.m_canvasSteps), m_compositor(compositor), m_bitmap(bitmap), m_place(place)
    {
    }

    // The rectangle in points.
    CGRect inPoints(const PixelRect& rect) const
    {
        const CGFloat scale = m_compositor.m_scale;
        return {rect.x / scale, rect.y / scale, rect.width / scale, rect.height / scale};
    }

protected:
    std::unique_ptr<Canvas> makeCanvas() override
    {
        return m_compositor.m_makeCanvas(m_bitmap, m_place.x, m_place.y, m_compositor.m_scale);
    }

private:
    Compositor& m_compositor;
    Bitmap& m_bitmap;
    PixelRect m_place;
};

Compositor::Compositor(MakeCanvas makeCanvas, DrawContent drawContent)
    : m_makeCanvas(std::move(makeCanvas)), m_drawContent(std::move(drawContent))
{
}

const DamageRegion& Compositor::compose(CGSize area, CGFloat scale)
{
    struct AtEnd { // also when the frame is refused or drawing raises
        CompositionPlan& plan;
        bool isPainted = false;
        ~AtEnd()
        {
            plan.letGoOfOwners();
            if (!isPainted)
                plan.forget();
        }
    } atEnd{m_plan};
    requireFinite("Compositor.compose", "area", area);
    requireFinite("Compositor.compose", "scale", scale);
    const auto bounds = pictureBounds(area, scale);
    if (!bounds)
        raiseInvalidArgument("Compositor.compose", "an area of " + describe(area) + " at the scale " +
                                                       numberText(scale) + " is no picture");
    m_scale = scale;
    m_canvasSteps.clear(); // what a frame left in which drawing raised
    m_area.setPlace(*bounds);
    m_plan.make(m_area, scale);
    m_changed = m_area.damage;
    paint(0, static_cast<std::uint32_t>(composition().items().size()), m_area);
    atEnd.isPainted = true;
    return m_changed;
}

Bitmap Compositor::takePixels()
{
    invalidate();
    return std::exchange(m_area.bitmap, {});
}

void Compositor::paint(std::uint32_t first, std::uint32_t last, Surface& surface)
{
    if (surface.damage.isEmpty())
        return;
    const std::uint32_t start = firstToPaint(first, last, surface);
    for (const PixelRect& rect : surface.damage.rects()) {
        if (start == first)
            clearPixels(surface.target(), rect);
        else if (!replacesBackground(start)) // it will be painted over as a whole otherwise
            copyPixels(m_plan.group(start).background.placed(), surface.target(), rect);
    }
    SurfaceCanvas canvas(*this, surface.bitmap, surface.place);
    for (std::uint32_t index = start; index < last; ++index) {
        const CompositionItem& item = m_plan.item(index);
        if (item.kind == Kind::group) {
            if (m_plan.group(index).keepsBackground)
                paintBackground(index, surface);
            if (m_plan.group(index).hasSurface) {
                paintContent(index, surface);
                index = item.end;
            }
        } else if (item.kind != Kind::end) {
            paintItem(index, surface, canvas);
        }
    }
    surface.damage.clear();
}

// Whether the filtered background takes the place of what is behind the group, with nothing of that left to be seen.
bool Compositor::replacesBackground(std::uint32_t index) const
{
    const CompositionGroup& group = m_plan.group(index);
    return group.filtersBackground && m_plan.item(index).opacity >= 1 && group.backgroundMask.outlines.empty();
}

// The last group behind which nothing changed and whose background is as large as the damage: what was painted below
// it is at hand. Otherwise the first item.
std::uint32_t Compositor::firstToPaint(std::uint32_t first, std::uint32_t last, const Surface& surface) const
{
    std::uint32_t start = first;
    const PixelRect damage = surface.damage.bounds();
    for (std::uint32_t index = first; index < last; ++index) {
        if (m_plan.item(index).kind != Kind::group)
            continue;
        const CompositionGroup& group = m_plan.group(index);
        if (group.keepsBackground && group.background.damage.isEmpty() && group.background.place.contains(damage))
            start = index;
        if (group.hasSurface)
            index = m_plan.item(index).end;
    }
    return start;
}

void Compositor::paintItem(std::uint32_t index, const Surface& surface, SurfaceCanvas& canvas)
{
    for (const PixelRect& rect : surface.damage.rects()) {
        if (rect.intersection(m_plan.place(index)).isEmpty())
            continue;
        const CanvasState state(canvas);
        canvas.clip({canvas.inPoints(rect), 0});
        clipToGroups(index, canvas);
        drawItem(m_plan.item(index), canvas, m_drawContent);
    }
}

// The groups around the item, up to the one whose surface it is painted into.
void Compositor::clipToGroups(std::uint32_t index, Canvas& canvas) const
{
    for (std::uint32_t group = m_plan.item(index).group; group != CompositionItem::none;
         group = m_plan.item(group).group) {
        if (m_plan.item(group).clips)
            clipTo(CompositionPlan::outlineOf(m_plan.item(group)), canvas);
        if (m_plan.group(group).hasSurface)
            break;
    }
}

void Compositor::paintBackground(std::uint32_t index, Surface& surface)
{
    const CompositionItem& item = m_plan.item(index);
    CompositionGroup& group = m_plan.group(index);
    for (const PixelRect& rect : group.background.damage.rects())
        copyPixels(surface.placed(), group.background.target(), rect);
    if (!group.filtersBackground) {
        group.background.damage.clear();
        return;
    }
    group.filterBackground(item.backgroundFilters(composition().steps()), m_scale, m_scratch, m_part);
    blend(group.filteredBackground, group.background.place, item.opacity, group.backgroundMask, PixelBlend::mix,
          surface);
}

void Compositor::paintContent(std::uint32_t index, Surface& surface)
{
    const CompositionItem& item = m_plan.item(index);
    CompositionGroup& group = m_plan.group(index);
    const auto steps = item.filters(composition().steps());
    const bool isFiltered = !areNeutral(steps);
    const bool isNew = !group.content.damage.isEmpty() || group.isContentFilterNew;
    paint(index + 1, item.end, group.content);
    if (isFiltered && isNew)
        group.filterContent(steps, m_scale, m_scratch);
    blend(isFiltered ? group.filteredContent : group.content.bitmap, group.content.place, item.opacity,
          group.contentMask, PixelBlend::over, surface);
}

void Compositor::blend(const Bitmap& picture, const PixelRect& place, CGFloat opacity, OutlineMask& mask,
                       PixelBlend how, Surface& surface)
{
    const bool isMasked = !mask.outlines.empty();
    if (isMasked)
        paintMask(mask);
    const PlacedBitmap source{picture, place.x, place.y};
    const PlacedBitmap maskSource{mask.bitmap, mask.visible.x, mask.visible.y};
    for (const PixelRect& rect : surface.damage.rects()) {
        const PixelRect seen = rect.intersection(mask.visible);
        if (how == PixelBlend::mix && opacity >= 1 && !isMasked)
            copyPixels(source, surface.target(), seen);
        else
            blendPixels(source, opacity, isMasked ? &maskSource : nullptr, how, surface.target(), seen);
    }
}

void Compositor::paintMask(OutlineMask& mask)
{
    if (mask.painted == mask.outlines && mask.paintedPlace == mask.visible)
        return;
    mask.bitmap.resize(mask.visible.width, mask.visible.height);
    mask.bitmap.clear();
    SurfaceCanvas canvas(*this, mask.bitmap, mask.visible);
    if (!mask.visible.isEmpty()) {
        const CanvasState state(canvas);
        for (const ClipOutline& outline : mask.outlines)
            clipTo(outline, canvas);
        canvas.fill({canvas.inPoints(mask.visible), 0}, {1, 1, 1, 1});
    }
    mask.painted = mask.outlines;
    mask.paintedPlace = mask.visible;
}

namespace {

// What is drawn during its life is clipped and blended in as a group.
class DrawnGroup {
public:
    DrawnGroup(const CompositionItem& group, Canvas& canvas) : m_canvas(canvas), m_isTranslucent(group.opacity < 1)
    {
        canvas.save();
        if (group.clips)
            clipTo(CompositionPlan::outlineOf(group), canvas);
        if (m_isTranslucent)
            canvas.beginTransparencyLayer(group.opacity);
    }
    ~DrawnGroup()
    {
        if (m_isTranslucent)
            m_canvas.endTransparencyLayer();
        m_canvas.restore();
    }
    DrawnGroup(const DrawnGroup&) = delete;
    DrawnGroup& operator=(const DrawnGroup&) = delete;

private:
    Canvas& m_canvas;
    bool m_isTranslucent;
};

void drawItems(const std::vector<CompositionItem>& items, std::size_t first, std::size_t last, Canvas& canvas,
               const Compositor::DrawContent& drawContent)
{
    for (std::size_t i = first; i < last; ++i) {
        if (items[i].kind == Kind::group) {
            const DrawnGroup group(items[i], canvas);
            drawItems(items, i + 1, items[i].end, canvas, drawContent);
            i = items[i].end;
        } else {
            drawItem(items[i], canvas, drawContent);
        }
    }
}

} // namespace

void drawComposition(const Composition& composition, Canvas& canvas, const Compositor::DrawContent& drawContent)
{
    drawItems(composition.items(), 0, composition.items().size(), canvas, drawContent);
}

} // namespace RVCore
