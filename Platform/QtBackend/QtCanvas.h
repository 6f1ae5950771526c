#pragma once

#include <CoreGraphics/Canvas.h>

#include <QTransform>

#include <functional>
#include <memory>
#include <vector>

class QPainter;

namespace RVCore {

// A canvas on a painter, which must outlive it and stand on an image. Operations that do not match in pairs stop the
// program.
class QtCanvas : public Canvas {
public:
    explicit QtCanvas(QPainter& painter);
    ~QtCanvas() override;
    QtCanvas(const QtCanvas&) = delete;
    QtCanvas& operator=(const QtCanvas&) = delete;

    // Where drawing goes just now, for what Qt draws by itself. Whoever draws leaves it as it was.
    QPainter& painter() const { return *m_painter; }

    void save() override;
    void restore() override;
    void concatenate(const CGAffineTransform& transform) override;
    void clip(const RoundedRect& shape) override;
    void fill(const RoundedRect& shape, const CGColor& color) override;
    void strokeInside(const RoundedRect& shape, CGFloat width, const CGColor& color) override;
    void drawText(const TextDescription& text, const CGRect& rect) override;
    void drawImage(const CGImage& image, const CGRect& rect) override;
    void drawMask(const CGImage& mask, const CGRect& rect, const CGColor& color) override;
    void drawControl(const ControlDescription& control, const CGRect& rect) override;
    void beginTransparencyLayer(CGFloat alpha) override;
    void endTransparencyLayer() override;

private:
    struct Layer;
    QPainter& innermostPainter() const;
    // Calls what draws in the rectangle under a transform that does not mirror it.
    void drawUpright(const CGRect& rect, const std::function<void()>& draw);

    QPainter* m_painter; // the innermost layer's, or the one that the canvas was made on
    QPainter* const m_outermost;
    QTransform m_fromDevice;                      // from the outermost device's pixels to points
    std::vector<std::unique_ptr<Layer>> m_scopes; // what is to be matched: a save where there is no layer
};

} // namespace RVCore
