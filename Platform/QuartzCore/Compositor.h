#pragma once

#include <CoreGraphics/Canvas.h>

#include <QuartzCore/CompositionPlan.h>
#include <QuartzCore/DeferredCanvas.h>

#include <functional>
#include <vector>

namespace RVCore {

// Turns compositions into pixels, frame after frame, and paints only what differs from the frame before:
//
//     Composition& next = compositor.begin();
//     … next.add(…) …
//     const DamageRegion& changed = compositor.compose(size, scale);
//
// Groups that are translucent or filtered are painted into surfaces of their own, which stay as they are while only
// their opacity moves. What lies behind a group whose opacity moves is kept, and so is, unfiltered, what lies behind
// background filters, so that nothing of it is drawn again while only the opacity or the filters move. As long as no
// content has to be drawn, a frame of the same items allocates nothing.
// See Documentation/Compositor.md. For one thread at a time.
class Compositor {
public:
    // A canvas in points of the area, `scale` pixels each, on a bitmap whose first pixel is this one of the area.
    using MakeCanvas = std::function<std::unique_ptr<Canvas>(Bitmap& bitmap, int x, int y, CGFloat scale)>;
    // Draws a content item's owner, in the item's coordinates; what lies outside the item's size is cut off.
    using DrawContent = std::function<void(NSObject& owner, Canvas& canvas)>;

    Compositor(MakeCanvas makeCanvas, DrawContent drawContent);

    // The composition for the next frame, empty.
    Composition& begin() { return m_plan.begin(); }
    // Paints the frame and returns what differs from the one before, in pixels. The sides are in points; edges that
    // fall between pixels are moved outward. What drawing raises passes through, and the next frame is painted as a
    // whole. Raises NSInvalidArgumentException for a scale that is not finite and above 0, and for an area of more
    // pixels than bitmaps have.
    const DamageRegion& compose(CGSize area, CGFloat scale);
    // The next frame is painted as a whole.
    void invalidate() { m_plan.forget(); }

    // The frame, from the area's top left pixel on.
    const Bitmap& pixels() const { return m_area.bitmap; }
    // Takes the frame out; the next one is painted as a whole.
    Bitmap takePixels();
    const Composition& composition() const { return m_plan.composition(); }

private:
    class SurfaceCanvas;

    void paint(std::uint32_t first, std::uint32_t last, Surface& surface);
    std::uint32_t firstToPaint(std::uint32_t first, std::uint32_t last, const Surface& surface) const;
    bool replacesBackground(std::uint32_t index) const;
    void paintItem(std::uint32_t index, const Surface& surface, SurfaceCanvas& canvas);
    void clipToGroups(std::uint32_t index, Canvas& canvas) const;
    void paintBackground(std::uint32_t index, Surface& surface);
    void paintContent(std::uint32_t index, Surface& surface);
    void blend(const Bitmap& picture, const PixelRect& place, CGFloat opacity, OutlineMask& mask, PixelBlend how,
               Surface& surface);
    void paintMask(OutlineMask& mask);

    MakeCanvas m_makeCanvas;
    DrawContent m_drawContent;
    CompositionPlan m_plan;
    Surface m_area;
    DamageRegion m_changed; // in the latest frame
    CGFloat m_scale = 1;
    FilterScratch m_scratch;
    Bitmap m_part;
    std::vector<DeferredCanvas::Step> m_canvasSteps;
};

// Draws the composition on a canvas all at once. Filters, which need pixels, are left out.
void drawComposition(const Composition& composition, Canvas& canvas, const Compositor::DrawContent& drawContent);

} // namespace RVCore
