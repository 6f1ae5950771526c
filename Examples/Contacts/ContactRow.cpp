#include <Backend/Backend.h>
#include <Contacts/ColorText.h>
#include <Contacts/ContactRow.h>

namespace Contacts {

using namespace RVCore;

namespace {

constexpr CGFloat cornerRadius = 6;
constexpr CGFloat focusWidth = 2;
constexpr CGFloat chosenOpacity = 0.25;
constexpr CGFloat pressedOpacity = 0.12;
constexpr CGFloat paleOpacity = 0.65; // of what is said beside the name
constexpr CGFloat margin = 10;
constexpr CGFloat dotSize = 10;
constexpr CGFloat starWidth = 16;
constexpr CGFloat nameHeight = 18;
constexpr CGFloat emailHeight = 16;
constexpr CGFloat padding = 5; // above and below
constexpr CGFloat width = 200;

CGColor withOpacity(CGColor color, double opacity)
{
    color.alpha *= opacity;
    return color;
}

TextDescription makeText(const std::string& text, const std::shared_ptr<NSFont>& font, const CGColor& color)
{
    TextDescription description;
    description.text = text;
    description.font = font->fontDescription();
    description.color = color;
    description.lineBreakMode = NSLineBreakMode::truncatingTail;
    return description;
}

} // namespace

Class& ContactRow::staticClass()
{
    static Class& theClass = defineClass<ContactRow>("Contacts.ContactRow", NSButton::staticClass(), [](auto&) {});
    return theClass;
}

void ContactRow::init(const CGRect& frame)
{
    NSButton::init(frame);
    setButtonType(NSButtonType::radio);
    setContentHuggingPriority(RVLayoutPriorityDefaultHigh, NSLayoutConstraintOrientation::vertical);
}

void ContactRow::show(const Contact& contact, bool showsEmail)
{
    setTitle(contact.name.empty() ? "No Name" : contact.name);
    m_email = contact.email;
    m_color = colorFromText(contact.colour);
    m_isFavourite = contact.isFavourite;
    if (showsEmail != m_showsEmail) {
        m_showsEmail = showsEmail;
        invalidateIntrinsicContentSize();
    }
    setNeedsDisplay(true);
}

CGSize ContactRow::intrinsicContentSize() const
{
    return {width, padding + nameHeight + (m_showsEmail ? emailHeight : 0) + padding};
}

void ContactRow::draw(Canvas& canvas, const CGRect&)
{
    ControlLook& look = Backend::shared().controlLook();
    const Appearance appearance = NSApplication::shared().effectiveAppearance();
    const CGColor accent = look.accentColor(appearance);
    const RoundedRect shape{bounds(), cornerRadius};
    if (state() == NSControlStateValue::on)
        canvas.fill(shape, withOpacity(accent, chosenOpacity));
    else if (isHighlighted())
        canvas.fill(shape, withOpacity(accent, pressedOpacity));
    if (hasKeyboardFocus())
        canvas.strokeInside(shape, focusWidth, accent);

    const CGFloat middle = padding + nameHeight / 2;
    canvas.fill({{margin, middle - dotSize / 2, dotSize, dotSize}, dotSize / 2}, m_color);
    drawTexts(canvas, look.textColor(appearance));
}

void ContactRow::drawTexts(Canvas& canvas, const CGColor& color) const
{
    const CGFloat left = margin + dotSize + margin;
    const CGFloat right = bounds().size.width - margin;
    const CGFloat nameRight = m_isFavourite ? right - starWidth : right;
    canvas.drawText(makeText(title(), systemFontOfSize(13), color),
                    {left, padding, std::max(nameRight - left, 0.0), nameHeight});
    if (m_isFavourite)
        canvas.drawText(makeText("★", systemFontOfSize(12), withOpacity(color, paleOpacity)),
                        {right - starWidth, padding, starWidth, nameHeight});
    if (m_showsEmail)
        canvas.drawText(makeText(m_email, systemFontOfSize(11), withOpacity(color, paleOpacity)),
                        {left, padding + nameHeight, std::max(right - left, 0.0), emailHeight});
}

} // namespace Contacts
