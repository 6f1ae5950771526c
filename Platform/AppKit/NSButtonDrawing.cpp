#include <AppKit/NSButton.h>
#include <AppKit/NSFont.h>
#include <Backend/Backend.h>
#include <CoreGraphics/Canvas.h>

#include <QuartzCore/CALayer.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

// Of a picture that has no grey of its own, and of a button without a bezel that could go down.
constexpr CGFloat disabledOpacity = 0.5;
constexpr CGFloat pressedOpacity = 0.6;

constexpr CGFloat ringMargin = 2; // between a title and the focus ring around it
constexpr CGFloat ringWidth = 2;

} // namespace

bool NSButton::showsAlternate() const
{
    if (m_type == NSButtonType::momentaryChange)
        return m_isHighlighted;
    return m_type == NSButtonType::toggle && (m_isHighlighted || m_state != NSControlStateValue::off);
}

const std::string& NSButton::shownTitle() const
{
    return showsAlternate() && !m_alternateTitle.empty() ? m_alternateTitle : m_title;
}

const std::shared_ptr<NSImage>& NSButton::shownImage() const
{
    return showsAlternate() && m_alternateImage ? m_alternateImage : m_image;
}

TextDescription NSButton::titleDescription() const
{
    TextDescription text;
    text.text = shownTitle();
    text.font = m_font;
    text.alignment = isContentCentered() ? NSTextAlignment::center : NSTextAlignment::natural;
    text.lineBreakMode = NSLineBreakMode::truncatingTail;
    return text;
}

ButtonContent NSButton::content() const
{
    ButtonContent content;
    content.imagePosition = m_imagePosition;
    content.imageScaling = m_imageScaling;
    content.isCentered = isContentCentered();
    content.title = Backend::shared().measureText(titleDescription(), 0).size;
    if (const auto& image = shownImage())
        content.image = image->size();
    return content;
}

ControlDescription NSButton::look() const
{
    ControlDescription description = describeControl(controlKind());
    const bool showsState = m_type != NSButtonType::toggle && changesState();
    if (showsState && m_state != NSControlStateValue::off)
        description.value = m_state == NSControlStateValue::on ? ControlValue::on : ControlValue::mixed;
    description.isPressed = m_isHighlighted && m_type != NSButtonType::momentaryChange;
    description.isHovered = m_isHovered;
    description.isDefault = isDefaultButton();
    description.hasText = !shownTitle().empty() && m_imagePosition != NSCellImagePosition::imageOnly &&
                          !(isPushButton() && m_bezelStyle != NSBezelStyle::rounded);
    return description;
}

CGSize NSButton::intrinsicContentSize() const
{
    const CGSize natural = naturalSize(content());
    if (hasLook())
        return Backend::shared().controlLook().sizeForContent(look(), natural);
    return {std::ceil(natural.width), std::ceil(natural.height)};
}

void NSButton::draw(Canvas& canvas, const CGRect&)
{
    const ControlDescription description = look();
    if (hasLook())
        drawLook(canvas, description);
    const CGRect room =
        hasLook() ? Backend::shared().controlLook().contentRect(description, bounds().size) : bounds();
    const ButtonLayout layout = layoutButton(content(), room);
    drawContent(canvas, description, layout);
    drawFocusRing(canvas, description, layout);
}

void NSButton::drawContent(Canvas& canvas, const ControlDescription& description, const ButtonLayout& layout)
{
    const auto& image = shownImage();
    const bool isFaded = !isEnabled() && image && !image->isTemplate();
    const bool isDimmed = m_isHighlighted && !hasLook() && !showsAlternate();
    const CanvasState state(canvas);
    canvas.clip({bounds(), 0});
    if (isDimmed)
        canvas.beginTransparencyLayer(pressedOpacity);
    if (!layout.image.isEmpty()) {
        if (isFaded)
            canvas.beginTransparencyLayer(disabledOpacity);
        image->draw(canvas, layout.image, contentColor(description.kind));
        if (isFaded)
            canvas.endTransparencyLayer();
    }
    if (!layout.title.isEmpty()) {
        TextDescription text = titleDescription();
        text.color = contentColor(hasLook() ? description.kind : ControlKind::checkBox);
        canvas.drawText(text, layout.title);
    }
    if (isDimmed)
        canvas.endTransparencyLayer();
}

// The style puts the ring of a push button where it belongs, and has one for the title of a check box. On a picture
// or a colour neither could be seen.
void NSButton::drawFocusRing(Canvas& canvas, const ControlDescription& description, const ButtonLayout& layout)
{
    if (!description.hasFocus)
        return;
    if (!hasLook()) {
        ControlLook& theLook = Backend::shared().controlLook();
        const CGFloat radius = layer() ? layer()->cornerRadius() : 0;
        const RoundedRect outer{bounds(), radius};
        const RoundedRect inner{bounds().insetBy(ringWidth, ringWidth), std::max(radius - ringWidth, 0.0)};
        canvas.strokeInside(outer, ringWidth, theLook.accentColor(description.appearance));
        canvas.strokeInside(inner, ringWidth / 2, theLook.windowColor(description.appearance));
    } else if (!isPushButton()) {
        const CGRect around = layout.title.isEmpty() ? bounds() : layout.title;
        canvas.drawControl(describeControl(ControlKind::focusRing),
                           around.insetBy(-ringMargin, 0).intersection(bounds()));
    }
}

void NSButton::drawLook(Canvas& canvas, const ControlDescription& description)
{
    ControlDescription shown = description;
    shown.hasFocus = description.hasFocus && isPushButton();
    canvas.drawControl(shown, bounds());
}

} // namespace RVCore
