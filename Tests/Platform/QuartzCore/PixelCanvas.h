#pragma once

#include <CoreGraphics/Bitmap.h>
#include <CoreGraphics/Canvas.h>

#include <vector>

namespace RVCore {

// A canvas on a bitmap that paints what can be said exactly without a drawing library: rectangles, rounded ones,
// their borders and images under transforms, every pixel whose centre is inside. Everything else it leaves out.
class PixelCanvas : public Canvas {
public:
    PixelCanvas(Bitmap& bitmap, int x, int y, CGFloat scale);

    void save() override { m_states.push_back(m_states.back()); }
    void restore() override { m_states.pop_back(); }
    void concatenate(const CGAffineTransform& transform) override;
    void clip(const RoundedRect& shape) override;
    void fill(const RoundedRect& shape, const CGColor& color) override;
    void strokeInside(const RoundedRect& shape, CGFloat width, const CGColor& color) override;
    void drawText(const TextDescription&, const CGRect&) override {}
    void drawImage(const CGImage& image, const CGRect& rect) override;
    void drawMask(const CGImage&, const CGRect&, const CGColor&) override {}
    void drawControl(const ControlDescription&, const CGRect&) override {}
    void beginTransparencyLayer(CGFloat) override { save(); }
    void endTransparencyLayer() override { restore(); }

private:
    struct Clip {
        CGAffineTransform fromDevice;
        RoundedRect shape;
    };
    struct State {
        CGAffineTransform toDevice;
        std::vector<Clip> clips;
    };

    template <class ColorAt> void paint(const RoundedRect& shape, ColorAt colorAt);

    Bitmap& m_bitmap;
    std::vector<State> m_states;
};

} // namespace RVCore
