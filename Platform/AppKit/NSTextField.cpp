#include <AppKit/NSAccessibility.h>
#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSTextField.h>
#include <Backend/Backend.h>
#include <CoreGraphics/Canvas.h>
#include <Foundation/NSCoder.h>
#include <Foundation/NSException.h>

namespace RVCore {

namespace {

constexpr CGColor defaultTextColor{0.11, 0.11, 0.12, 1};

} // namespace

Class& NSTextField::staticClass()
{
    static Class& theClass = defineClass<NSTextField>("NSTextField", NSView::staticClass(), [](auto& publish) {
        publish.property("stringValue", &NSTextField::stringValue, &NSTextField::setStringValue);
        publish.property("font", &NSTextField::font, &NSTextField::setFont);
        publish.property("textColor", &NSTextField::textColor, &NSTextField::setTextColor);
        publish.property("alignment", &NSTextField::alignment, &NSTextField::setAlignment);
        publish.property("lineBreakMode", &NSTextField::lineBreakMode, &NSTextField::setLineBreakMode);
        publish.property("maximumNumberOfLines", &NSTextField::maximumNumberOfLines,
                         &NSTextField::setMaximumNumberOfLines);
        publish.property("preferredMaxLayoutWidth", &NSTextField::preferredMaxLayoutWidth,
                         &NSTextField::setPreferredMaxLayoutWidth);
    });
    return theClass;
}

void NSTextField::init(const CGRect& frame)
{
    NSView::init(frame);
    m_text.color = defaultTextColor;
}

void NSTextField::encode(NSCoder& coder) const
{
    NSView::encode(coder);
    coder.encode("text", m_text.text);
    coder.encode("fontFamily", m_text.font.family);
    coder.encode("fontSize", m_text.font.size);
    coder.encode("bold", m_text.font.bold);
    coder.encode("monospacedDigits", m_text.font.monospacedDigits);
    coder.encode("textColor", m_text.color);
    coder.encode("alignment", static_cast<int>(m_text.alignment));
    coder.encode("lineBreakMode", static_cast<int>(m_text.lineBreakMode));
    coder.encode("maximumNumberOfLines", m_text.maximumNumberOfLines);
    coder.encode("preferredMaxLayoutWidth", m_preferredMaxLayoutWidth);
}

void NSTextField::init(NSCoder& coder)
{
    NSView::init(coder);
    setStringValue(coder.decode<std::string>("text"));
    const FontDescription font{coder.decode<std::string>("fontFamily"), coder.decode<CGFloat>("fontSize"),
                               coder.decode<bool>("bold"), coder.decode<bool>("monospacedDigits")};
    setFont(make<NSFont>(font));
    setTextColor(make<NSColor>(coder.decode<CGColor>("textColor")));
    setAlignment(coder.decode<NSTextAlignment>("alignment"));
    setLineBreakMode(coder.decode<NSLineBreakMode>("lineBreakMode"));
    setMaximumNumberOfLines(coder.decode<int>("maximumNumberOfLines"));
    setPreferredMaxLayoutWidth(coder.decode<CGFloat>("preferredMaxLayoutWidth"));
}

void NSTextField::setStringValue(const std::string& text)
{
    if (m_text.text == text)
        return;
    m_text.text = text;
    textChanged();
}

std::shared_ptr<NSFont> NSTextField::font() const
{
    return make<NSFont>(m_text.font);
}

void NSTextField::setFont(const std::shared_ptr<NSFont>& font)
{
    if (!font)
        raiseInvalidArgument("NSTextField.setFont:", "there is no font");
    if (m_text.font == font->fontDescription())
        return;
    m_text.font = font->fontDescription();
    textChanged();
}

std::shared_ptr<NSColor> NSTextField::textColor() const
{
    return make<NSColor>(m_text.color);
}

void NSTextField::setTextColor(const std::shared_ptr<NSColor>& color)
{
    if (!color)
        raiseInvalidArgument("NSTextField.setTextColor:", "there is no colour");
    if (m_text.color == color->cgColor())
        return;
    m_text.color = color->cgColor();
    setNeedsDisplay(true);
}

void NSTextField::setAlignment(NSTextAlignment alignment)
{
    if (m_text.alignment == alignment)
        return;
    m_text.alignment = alignment;
    setNeedsDisplay(true);
}

void NSTextField::setLineBreakMode(NSLineBreakMode mode)
{
    if (m_text.lineBreakMode == mode)
        return;
    m_text.lineBreakMode = mode;
    textChanged();
}

void NSTextField::setMaximumNumberOfLines(int count)
{
    if (count < 0)
        raiseInvalidArgument("NSTextField.setMaximumNumberOfLines:",
                             "the count must not be negative, got " + std::to_string(count));
    if (m_text.maximumNumberOfLines == count)
        return;
    m_text.maximumNumberOfLines = count;
    textChanged();
}

void NSTextField::setPreferredMaxLayoutWidth(CGFloat width)
{
    constexpr std::string_view operation = "NSTextField.setPreferredMaxLayoutWidth:";
    requireLayoutNumber(operation, "width", width);
    if (width < 0)
        raiseInvalidArgument(operation, "the width must not be negative, got " + numberText(width));
    if (m_preferredMaxLayoutWidth == width)
        return;
    m_preferredMaxLayoutWidth = width;
    textChanged();
}

void NSTextField::textChanged()
{
    m_measured.reset();
    invalidateIntrinsicContentSize();
    setNeedsDisplay(true);
    postAccessibilityChange(*this, AccessibleChange::value);
}

CGSize NSTextField::intrinsicContentSize() const
{
    if (m_measured)
        return m_measured->size;
    Backend& backend = Backend::shared();
    const CGFloat width = frame().size.width;
    CGSize size = backend.measureText(m_text, m_text.wraps() ? m_preferredMaxLayoutWidth : 0).size;
    if (followsLayout() && width > 0 && width < size.width)
        size.height = backend.measureText(m_text, width).size.height;
    m_measured = {size, width};
    return size;
}

void NSTextField::frameSizeDidChange()
{
    if (followsLayout() && !(m_measured && m_measured->layoutWidth == frame().size.width))
        textChanged(); // the height follows
}

void NSTextField::draw(Canvas& canvas, const CGRect&)
{
    if (!m_text.text.empty())
        canvas.drawText(m_text, bounds());
}

} // namespace RVCore
