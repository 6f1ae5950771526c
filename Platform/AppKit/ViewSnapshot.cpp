#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSScreen.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ViewComposer.h>
#include <AppKit/ViewSnapshot.h>
#include <Backend/Backend.h>
#include <Foundation/NSException.h>

#include <QuartzCore/Compositor.h>

namespace RVCore {

void paintViewTree(NSView& view, Canvas& canvas)
{
    ViewComposer composer;
    Composition composition;
    composer.add(view, {}, DispatchTime::now(), composition);
    drawComposition(composition, canvas, &drawContentOf);
}

namespace {

// Of the part of the view, in points from its top left corner.
Bitmap pictureOfPart(NSView& view, const CGRect& part, CGFloat scale, const std::optional<CGColor>& ground)
{
    Compositor compositor = makeViewCompositor();
    ViewComposer composer;
    Composition& composition = compositor.begin();
    if (ground)
        composition.add(CompositionItem::Kind::fill, shared(view), {}, part.size).color = *ground;
    composer.add(view, CGAffineTransform::translation(-part.minX(), -part.minY()), DispatchTime::now(), composition);
    compositor.compose(part.size, scale);
    return compositor.takePixels();
}

} // namespace

Bitmap pictureOfView(NSView& view, CGFloat scale, const std::optional<CGColor>& ground)
{
    return pictureOfPart(view, {{}, view.frame().size}, scale, ground);
}

std::shared_ptr<NSBitmapImageRep> NSView::bitmapImageRepForCachingDisplay(const CGRect& rect)
{
    requireFinite("NSView.bitmapImageRepForCachingDisplayInRect:", "rect", rect);
    const CGFloat scale = window() ? window()->backingScaleFactor() : NSScreen::mainScreen()->backingScaleFactor();
    const auto pixels = pictureBounds(rect.size, scale);
    if (!pixels || pixels->isEmpty())
        return nullptr;
    return make<NSBitmapImageRep>(rect.size, scale);
}

void NSView::cacheDisplay(const CGRect& rect, NSBitmapImageRep& representation)
{
    requireFinite("NSView.cacheDisplayInRect:toBitmapImageRep:", "rect", rect);
    const CGRect whole = bounds();
    const CGPoint fromTopLeft{rect.minX() - whole.minX(),
                              isFlipped() ? rect.minY() - whole.minY() : whole.maxY() - rect.maxY()};
    representation.setPixels(pictureOfPart(*this, {fromTopLeft, rect.size}, representation.scale(), std::nullopt));
}

void writeViewPicture(NSView& view, const std::string& path, CGFloat scale, const CGColor& ground)
{
    view.layoutSubtreeIfNeeded();
    Backend::shared().writePicture(path, pictureOfView(view, scale, ground), scale);
}

} // namespace RVCore
