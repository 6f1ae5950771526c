#include <AppKit/NSView.h>
#include <AppKit/ViewComposer.h>
#include <AppKit/ViewSnapshot.h>
#include <Backend/Backend.h>

#include <QuartzCore/Compositor.h>

namespace RVCore {

void paintViewTree(NSView& view, Canvas& canvas)
{
    ViewComposer composer;
    Composition composition;
    composer.add(view, {}, DispatchTime::now(), composition);
    drawComposition(composition, canvas, &drawContentOf);
}

Bitmap pictureOfView(NSView& view, CGFloat scale, const std::optional<CGColor>& ground)
{
    Compositor compositor([](Bitmap& bitmap, int x, int y,
                             CGFloat pixels) { return Backend::shared().makeCanvas(bitmap, x, y, pixels); },
                          &drawContentOf);
    ViewComposer composer;
    Composition& composition = compositor.begin();
    if (ground)
        composition.add(CompositionItem::Kind::fill, shared(view), {}, view.frame().size).color = *ground;
    composer.add(view, {}, DispatchTime::now(), composition);
    compositor.compose(view.frame().size, scale);
    return compositor.takePixels();
}

void writeViewPicture(NSView& view, const std::string& path, CGFloat scale, const CGColor& ground)
{
    view.layoutSubtreeIfNeeded();
    Backend::shared().writePicture(path, pictureOfView(view, scale, ground), scale);
}

} // namespace RVCore
