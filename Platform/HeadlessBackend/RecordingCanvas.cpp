#include <Foundation/NSException.h>
#include <Foundation/Stop.h>
#include <HeadlessBackend/RecordingCanvas.h>

#include <cmath>

namespace RVCore {

namespace {

// Trigonometry and divisions end differently in the last digits from machine to machine.
CGFloat rounded(CGFloat value)
{
    return std::round(value * 1e4) / 1e4;
}

std::string number(CGFloat value)
{
    return numberText(rounded(value));
}

std::string rectText(const CGRect& rect)
{
    return describe(
        CGRect(rounded(rect.minX()), rounded(rect.minY()), rounded(rect.size.width), rounded(rect.size.height)));
}

std::string shapeText(const RoundedRect& shape)
{
    return rectText(shape.rect) + (shape.radius == 0 ? "" : " radius " + number(shape.radius));
}

std::string colorText(const CGColor& color)
{
    return describe(CGColor{rounded(color.red), rounded(color.green), rounded(color.blue), rounded(color.alpha)});
}

std::string pixelsText(const CGImage& image)
{
    return std::to_string(image.width()) + " × " + std::to_string(image.height()) + " pixels";
}

std::string alignmentText(NSTextAlignment alignment)
{
    switch (alignment) {
    case NSTextAlignment::left:
        return ", left";
    case NSTextAlignment::right:
        return ", right";
    case NSTextAlignment::center:
        return ", center";
    case NSTextAlignment::justified:
        return ", justified";
    case NSTextAlignment::natural:
        break;
    }
    return "";
}

std::string lineBreakText(NSLineBreakMode mode)
{
    switch (mode) {
    case NSLineBreakMode::wordWrapping:
        return ", wordWrapping";
    case NSLineBreakMode::charWrapping:
        return ", charWrapping";
    case NSLineBreakMode::truncatingHead:
        return ", truncatingHead";
    case NSLineBreakMode::truncatingTail:
        return ", truncatingTail";
    case NSLineBreakMode::truncatingMiddle:
        return ", truncatingMiddle";
    case NSLineBreakMode::clipping:
        break;
    }
    return "";
}

} // namespace

std::string RecordingCanvas::text() const
{
    std::string result;
    for (const std::string& line : m_lines)
        result += line + "\n";
    return result;
}

void RecordingCanvas::record(const std::string& line)
{
    m_lines.push_back(std::string(2 * m_open.size(), ' ') + line);
}

void RecordingCanvas::save()
{
    record("save");
    m_open.push_back(Scope::state);
}

void RecordingCanvas::restore()
{
    if (m_open.empty() || m_open.back() != Scope::state)
        fatalError("Canvas.restore: no save to match");
    m_open.pop_back();
    record("restore");
}

void RecordingCanvas::concatenate(const CGAffineTransform& transform)
{
    record("transform " +
           describe(CGAffineTransform{rounded(transform.a), rounded(transform.b), rounded(transform.c),
                                      rounded(transform.d), rounded(transform.tx), rounded(transform.ty)}));
}

void RecordingCanvas::clip(const RoundedRect& shape)
{
    record("clip " + shapeText(shape));
}

void RecordingCanvas::fill(const RoundedRect& shape, const CGColor& color)
{
    record("fill " + shapeText(shape) + " " + colorText(color));
}

void RecordingCanvas::strokeInside(const RoundedRect& shape, CGFloat width, const CGColor& color)
{
    record("stroke " + shapeText(shape) + " width " + number(width) + " " + colorText(color));
}

void RecordingCanvas::drawText(const TextDescription& text, const CGRect& rect)
{
    std::string line = "text " + describe(text) + " in " + rectText(rect) + alignmentText(text.alignment) +
                       lineBreakText(text.lineBreakMode);
    if (text.maximumNumberOfLines > 0)
        line += ", at most " + std::to_string(text.maximumNumberOfLines) +
                (text.maximumNumberOfLines == 1 ? " line" : " lines");
    record(line);
}

void RecordingCanvas::drawImage(const CGImage& image, const CGRect& rect)
{
    record("image " + pixelsText(image) + " in " + rectText(rect));
}

void RecordingCanvas::drawMask(const CGImage& mask, const CGRect& rect, const CGColor& color)
{
    record("mask " + pixelsText(mask) + " in " + rectText(rect) + " " + colorText(color));
}

void RecordingCanvas::drawControl(const ControlDescription& control, const CGRect& rect)
{
    record(describe(control) + " in " + rectText(rect));
}

void RecordingCanvas::beginTransparencyLayer(CGFloat alpha)
{
    record("layer " + number(alpha));
    m_open.push_back(Scope::layer);
}

void RecordingCanvas::endTransparencyLayer()
{
    if (m_open.empty() || m_open.back() != Scope::layer)
        fatalError("Canvas.endTransparencyLayer: no layer to match");
    m_open.pop_back();
    record("end");
}

} // namespace RVCore
