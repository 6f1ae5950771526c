#pragma once

#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGImage.h>
#include <CoreGraphics/ControlDescription.h>
#include <CoreGraphics/TextDescription.h>

namespace RVCore {

struct RoundedRect {
    CGRect rect;
    CGFloat radius = 0; // of the corners; more than half of a side counts as half

    bool operator==(const RoundedRect&) const = default;
};

// What drawing is done on: points, the origin at the top left, y downward. Edges are antialiased; straight ones that
// lie along the device's rows and columns are moved to the nearest pixel's. What it stands on (a window, an image, a
// printed record) is the backend's. Every `save` is matched by a `restore`, most easily with
// CanvasState.
class Canvas {
public:
    virtual ~Canvas() = default;

    // Keeps and brings back transform and clip.
    virtual void save() = 0;
    virtual void restore() = 0;
    // What is drawn from now on passes through this transform first.
    virtual void concatenate(const CGAffineTransform& transform) = 0;
    virtual void clip(const RoundedRect& shape) = 0;

    virtual void fill(const RoundedRect& shape, const CGColor& color) = 0;
    // A line of this width along the inside of the shape's edge.
    virtual void strokeInside(const RoundedRect& shape, CGFloat width, const CGColor& color) = 0;
    // Sets the text in the rectangle from its top, aligned and broken as it says, clipped to it. It stands upright
    // even where the transform mirrors the vertical axis.
    virtual void drawText(const TextDescription& text, const CGRect& rect) = 0;
    // Stretches the image to fill the rectangle, whose edges are moved to the nearest device pixels; upright like
    // text.
    virtual void drawImage(const CGImage& image, const CGRect& rect) = 0;
    // The same with the colour in place of the image's own, as thick as the image is opaque.
    virtual void drawMask(const CGImage& mask, const CGRect& rect, const CGColor& color) = 0;
    // Draws a control without its content, as the desktop's style has it (see ControlLook.h); upright, too.
    virtual void drawControl(const ControlDescription& control, const CGRect& rect) = 0;

    // What is drawn until the matching end is composed first, then blended in with this opacity (0 to 1) as a whole.
    // Nests with save and restore; the end brings back transform and clip, too.
    virtual void beginTransparencyLayer(CGFloat alpha) = 0;
    virtual void endTransparencyLayer() = 0;

    // The canvas that does the work, ready to be drawn on: another one where this one stands in for it. For backends
    // that draw on their own canvases in more ways than these.
    virtual Canvas& target() { return *this; }
};

// Saves on construction, restores at the end of the scope.
class CanvasState {
public:
    explicit CanvasState(Canvas& canvas);
    ~CanvasState();
    CanvasState(const CanvasState&) = delete;
    CanvasState& operator=(const CanvasState&) = delete;

private:
    Canvas& m_canvas;
};

} // namespace RVCore
