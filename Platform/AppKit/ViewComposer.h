#pragma once

#include <AppKit/Forward.h>
#include <CoreGraphics/CGAffineTransform.h>
#include <Dispatch/DispatchTime.h>

#include <vector>

namespace RVCore {

class CALayer;
class Canvas;
class Composition;
class Compositor;
class LayerPresentation;
class NSObject;

// Puts view trees into a composition, as they are to be seen at one moment: with what moves where it is then. Keeps
// its memory from one frame to the next.
class ViewComposer {
public:
    // The root's top left corner lies at this placement's origin.
    void add(NSView& root, const CGAffineTransform& placement, DispatchTime time, Composition& into);

private:
    void addView(NSView& view, const CGAffineTransform& placement);
    void addInside(NSView& view, const CGAffineTransform& placement);
    void addSubviews(NSView& view, const CGAffineTransform& placement);
    void addSublayers(const CALayer& layer, const CGAffineTransform& placement, bool isFlipped);
    void addLayer(CALayer& layer, const CGAffineTransform& around, const CGRect& outer, bool isFlipped);
    bool beginGroup(NSObject& owner, const CALayer* layer, CGFloat opacity, const CGAffineTransform& placement,
                    CGSize size);
    void addGround(CALayer& layer, const CGAffineTransform& placement, CGSize size);
    void addContents(CALayer& layer, const CGAffineTransform& placement, CGSize size);
    void addBorder(CALayer& layer, const CGAffineTransform& placement, CGSize size);

    Composition* m_into = nullptr;
    DispatchTime m_time{0};
    std::vector<NSView*> m_views;   // the subviews of the views that are under way
    std::vector<CALayer*> m_layers; // and the sublayers of the layers
};

// A compositor for what view composers put together: on the backend's canvases.
Compositor makeViewCompositor();

// Draws what a content item of a composition stands for: a view's own drawing, without what is in it.
void drawContentOf(NSObject& owner, Canvas& canvas);

} // namespace RVCore
