#include <AppKit/NSApplication.h>
#include <AppKit/NSTextField.h>
#include <AppKit/TextFieldSession.h>
#include <Backend/Backend.h>
#include <CoreGraphics/Canvas.h>

#include <algorithm>

namespace RVCore {

namespace {

constexpr EdgeInsets borderInsets{.top = 2, .left = 3, .bottom = 2, .right = 3};
constexpr CGFloat bezelRadius = 2; // of the ground, which must not show around the frame's corners
constexpr CGColor frameColor{0.7, 0.7, 0.72, 1};

// How much of the text's colour is left.
constexpr double placeholderOpacity = 0.45;
constexpr double disabledOpacity = 0.4;

// An editable field is as wide as this.
const std::string sampleOfWidth(20, '0');

CGColor faded(CGColor color, double opacity)
{
    color.alpha *= opacity;
    return color;
}

} // namespace

EdgeInsets NSTextField::textInsets() const
{
    if (m_isBezeled) {
        const CGSize around =
            Backend::shared().controlLook().sizeForContent(describeControl(ControlKind::textField), {});
        return {.top = around.height / 2,
                .left = around.width / 2,
                .bottom = around.height / 2,
                .right = around.width / 2};
    }
    if (m_isBordered)
        return borderInsets;
    return {};
}

CGRect NSTextField::textRect() const
{
    const EdgeInsets insets = textInsets();
    const CGRect rect = bounds();
    return {rect.minX() + insets.left, rect.minY() + insets.top,
            std::max(rect.size.width - insets.left - insets.right, 0.0),
            std::max(rect.size.height - insets.top - insets.bottom, 0.0)};
}

// Both without what is around the text.
CGSize NSTextField::labelSize() const
{
    Backend& backend = Backend::shared();
    const CGFloat width = textRect().size.width;
    CGSize size = backend.measureText(m_text, m_text.wraps() ? m_preferredMaxLayoutWidth : 0).size;
    if (followsLayout() && width > 0 && width < size.width)
        size.height = backend.measureText(m_text, width).size.height;
    return size;
}

CGSize NSTextField::editableSize() const
{
    Backend& backend = Backend::shared();
    CGSize size = backend.measureText({.text = sampleOfWidth, .font = m_text.font}, 0).size;
    if (!m_text.wraps())
        return size;
    if (m_preferredMaxLayoutWidth > 0)
        size.width = m_preferredMaxLayoutWidth;
    const CGFloat width = textRect().size.width;
    size.height = backend.measureText(m_text, followsLayout() && width > 0 ? width : size.width).size.height;
    return size;
}

CGSize NSTextField::intrinsicContentSize() const
{
    if (m_measured)
        return m_measured->size;
    const EdgeInsets insets = textInsets();
    CGSize size = m_isEditable ? editableSize() : labelSize();
    size.width += insets.left + insets.right;
    size.height += insets.top + insets.bottom;
    m_measured = {size, frame().size.width};
    return size;
}

void NSTextField::frameSizeDidChange()
{
    if (followsLayout() && !(m_measured && m_measured->layoutWidth == frame().size.width))
        textChanged(); // the height follows
    if (m_session)
        m_session->update();
}

void NSTextField::draw(Canvas& canvas, const CGRect&)
{
    drawFrame(canvas);
    drawText(canvas);
}

void NSTextField::drawFrame(Canvas& canvas) const
{
    const RoundedRect shape{bounds(), m_isBezeled ? bezelRadius : 0};
    if (m_drawsBackground && m_backgroundColor.alpha > 0)
        canvas.fill(shape, m_backgroundColor);
    if (m_isBezeled)
        canvas.drawControl(describeControl(ControlKind::textField), bounds());
    else if (m_isBordered)
        canvas.strokeInside(shape, 1, frameColor);
}

// Its own background where that covers what is behind it, else the window.
bool NSTextField::isOnDarkGround() const
{
    if (!m_drawsBackground || m_backgroundColor.alpha < 0.5)
        return NSApplication::shared().effectiveAppearance() == Appearance::dark;
    // Weights of ITU-R BT.601 for brightness.
    return 0.299 * m_backgroundColor.red + 0.587 * m_backgroundColor.green + 0.114 * m_backgroundColor.blue < 0.5;
}

CGColor NSTextField::shownTextColor() const
{
    if (m_hasOwnTextColor || !isOnDarkGround())
        return m_text.color;
    return Backend::shared().controlLook().textColor(Appearance::dark);
}

TextDescription NSTextField::shownText() const
{
    TextDescription text = m_text;
    text.color = shownTextColor();
    return text;
}

void NSTextField::drawText(Canvas& canvas) const
{
    const CGRect rect = textRect();
    TextDescription text = shownText();
    if (!isEnabled())
        text.color = faded(text.color, disabledOpacity);
    if (m_text.text.empty() && m_placeholder && !(m_session && m_session->editor().isComposing())) {
        text.text = *m_placeholder;
        text.color = faded(text.color, placeholderOpacity);
    } else if (m_session) {
        text.text.clear(); // the editor draws it
    }
    if (!text.text.empty())
        canvas.drawText(text, rect);
    if (m_session) {
        m_session->updatePlace();
        m_session->editor().draw(canvas, rect.origin);
    }
}

} // namespace RVCore
