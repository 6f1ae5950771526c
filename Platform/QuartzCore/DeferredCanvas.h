#pragma once

#include <CoreGraphics/Canvas.h>

#include <memory>
#include <vector>

namespace RVCore {

// Stands in for a canvas that is made when something is first drawn: contents that draw nothing, and frames in which
// only groups are blended, need none. Transforms and clips wait until then, and those of a state that is left before
// have never been.
class DeferredCanvas : public Canvas {
public:
    // What waits. The memory is the owner's, so that it serves the next frame, too; several canvases may use it one
    // inside the other.
    struct Step {
        enum class Kind : std::uint8_t { save, concatenate, clip };
        Kind kind = Kind::save;
        CGAffineTransform transform;
        RoundedRect shape;
    };

    explicit DeferredCanvas(std::vector<Step>& memory) : m_steps(memory), m_first(memory.size()) {}

    void save() override { m_steps.push_back({Step::Kind::save, {}, {}}); }
    void restore() override;
    void concatenate(const CGAffineTransform& transform) override
    {
        m_steps.push_back({Step::Kind::concatenate, transform, {}});
    }
    void clip(const RoundedRect& shape) override { m_steps.push_back({Step::Kind::clip, {}, shape}); }

    void fill(const RoundedRect& shape, const CGColor& color) override { ready().fill(shape, color); }
    void strokeInside(const RoundedRect& shape, CGFloat width, const CGColor& color) override
    {
        ready().strokeInside(shape, width, color);
    }
    void drawText(const TextDescription& text, const CGRect& rect) override { ready().drawText(text, rect); }
    void drawImage(const CGImage& image, const CGRect& rect) override { ready().drawImage(image, rect); }
    void drawMask(const CGImage& mask, const CGRect& rect, const CGColor& color) override
    {
        ready().drawMask(mask, rect, color);
    }
    void drawControl(const ControlDescription& control, const CGRect& rect) override
    {
        ready().drawControl(control, rect);
    }
    void beginTransparencyLayer(CGFloat alpha) override { ready().beginTransparencyLayer(alpha); }
    void endTransparencyLayer() override;
    Canvas& target() override { return ready(); }

protected:
    virtual std::unique_ptr<Canvas> makeCanvas() = 0;

private:
    Canvas& ready();

    std::vector<Step>& m_steps;
    const std::size_t m_first; // of its own
    std::unique_ptr<Canvas> m_canvas;
};

} // namespace RVCore
