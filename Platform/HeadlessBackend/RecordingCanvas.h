#pragma once

#include <CoreGraphics/Canvas.h>

#include <string>
#include <vector>

namespace RVCore {

// A canvas that writes down what is drawn, one operation to a line, for tests that compare with golden text:
//
//     save
//       transform [1, 0, 0, -1, 0, 50]
//       clip (0, 0) 100 × 50 radius 4
//       fill (0, 0) 100 × 50 rgba(1, 0, 0, 1)
//       stroke (0, 0) 100 × 50 radius 4 width 1 rgba(0, 0, 0, 1)
//       text "Hello" system 13 rgba(0, 0, 0, 1) in (0, 0) 40 × 17, right, truncatingTail, at most 2 lines
//       image 16 × 16 pixels in (0, 0) 8 × 8
//       mask 16 × 16 pixels in (0, 0) 8 × 8 rgba(0, 0, 0, 1)
//       push button, pressed in (0, 0) 60 × 22
//     restore
//     layer 0.5
//     end
//
// Numbers are rounded to four decimals. What is the default (no radius, natural alignment, clipping, any number of
// lines) is left out. Operations that do not match in pairs stop the program.
class RecordingCanvas : public Canvas {
public:
    const std::vector<std::string>& lines() const { return m_lines; }
    // All lines, each ended by a line feed.
    std::string text() const;
    void clear() { m_lines.clear(); }
    // Whether every save and layer has been matched.
    bool isBalanced() const { return m_open.empty(); }

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
    enum class Scope { state, layer };

    void record(const std::string& line);

    std::vector<std::string> m_lines;
    std::vector<Scope> m_open;
};

} // namespace RVCore
