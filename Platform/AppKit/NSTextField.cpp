#include <AppKit/NSAccessibility.h>
#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSTextField.h>
#include <AppKit/NSWindow.h>
#include <AppKit/PublishedDelegate.h>
#include <AppKit/TextFieldSession.h>
#include <Foundation/NSException.h>
#include <Foundation/Utf8.h>

namespace RVCore {

namespace {

constexpr CGColor defaultTextColor{0.11, 0.11, 0.12, 1};

} // namespace

Class& NSTextField::staticClass()
{
    static Class& theClass = defineClass<NSTextField>("NSTextField", NSControl::staticClass(), [](auto& publish) {
        publish.property("stringValue", &NSTextField::stringValue, &NSTextField::setStringValue);
        publish.property("font", &NSTextField::font, &NSTextField::setFont);
        publish.property("textColor", &NSTextField::textColor, &NSTextField::setTextColor);
        publish.property("alignment", &NSTextField::alignment, &NSTextField::setAlignment);
        publish.property("lineBreakMode", &NSTextField::lineBreakMode, &NSTextField::setLineBreakMode);
        publish.property("maximumNumberOfLines", &NSTextField::maximumNumberOfLines,
                         &NSTextField::setMaximumNumberOfLines);
        publish.property("preferredMaxLayoutWidth", &NSTextField::preferredMaxLayoutWidth,
                         &NSTextField::setPreferredMaxLayoutWidth);
        publish.property("placeholderString", &NSTextField::placeholderString, &NSTextField::setPlaceholderString);
        publish.readOnlyProperty("isEditable", &NSTextField::isEditable);
        publish.method("setEditable:", &NSTextField::setEditable);
        publish.readOnlyProperty("isSelectable", &NSTextField::isSelectable);
        publish.method("setSelectable:", &NSTextField::setSelectable);
        publish.readOnlyProperty("isBordered", &NSTextField::isBordered);
        publish.method("setBordered:", &NSTextField::setBordered);
        publish.readOnlyProperty("isBezeled", &NSTextField::isBezeled);
        publish.method("setBezeled:", &NSTextField::setBezeled);
        publish.property("drawsBackground", &NSTextField::drawsBackground, &NSTextField::setDrawsBackground);
        publish.property("backgroundColor", &NSTextField::backgroundColor, &NSTextField::setBackgroundColor);
        publishDelegate<NSTextFieldDelegate, NSTextField>(publish, "NSTextField", "NSTextFieldDelegate");
        publish.readOnlyProperty("isEditing", &NSTextField::isEditing);
        const auto command = [&](const char* selector, TextCommand what) {
            publish.method(selector, [what](NSTextField& self, const ObjectRef&) { self.perform(what); });
        };
        command("undo:", TextCommand::undo);
        command("redo:", TextCommand::redo);
        command("cut:", TextCommand::cut);
        command("copy:", TextCommand::copy);
        command("paste:", TextCommand::paste);
        command("delete:", TextCommand::deleteSelection);
        command("selectAll:", TextCommand::selectAll);
    });
    return theClass;
}

NSTextField::NSTextField()
{
    m_text.color = defaultTextColor; // whichever initialiser follows
}

NSTextField::~NSTextField() = default;

void NSTextField::init(const CGRect& frame)
{
    NSControl::init(frame);
}

void NSTextField::setStringValue(const std::string& text)
{
    std::string wellFormed = wellFormedText(text);
    if (m_text.text == wellFormed)
        return;
    m_text.text = std::move(wellFormed);
    textChanged();
    looksChanged();
    postAccessibilityChange(*this, AccessibleChange::value);
}

void NSTextField::setPlaceholderString(const std::optional<std::string>& placeholder)
{
    const auto wellFormed = placeholder ? std::optional(wellFormedText(*placeholder)) : std::nullopt;
    if (m_placeholder == wellFormed)
        return;
    m_placeholder = wellFormed;
    setNeedsDisplay(true);
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
    looksChanged();
}

std::shared_ptr<NSColor> NSTextField::textColor() const
{
    return make<NSColor>(shownTextColor());
}

void NSTextField::setTextColor(const std::shared_ptr<NSColor>& color)
{
    if (!color)
        raiseInvalidArgument("NSTextField.setTextColor:", "there is no colour");
    if (m_hasOwnTextColor && m_text.color == color->cgColor())
        return;
    m_hasOwnTextColor = true;
    m_text.color = color->cgColor();
    looksChanged();
}

void NSTextField::setAlignment(NSTextAlignment alignment)
{
    if (m_text.alignment == alignment)
        return;
    m_text.alignment = alignment;
    looksChanged();
}

void NSTextField::setLineBreakMode(NSLineBreakMode mode)
{
    if (m_text.lineBreakMode == mode)
        return;
    m_text.lineBreakMode = mode;
    textChanged();
    looksChanged();
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
    requireLayoutNumber("NSTextField.setPreferredMaxLayoutWidth:", "width", width);
    if (m_preferredMaxLayoutWidth == width)
        return;
    m_preferredMaxLayoutWidth = width;
    textChanged();
}

void NSTextField::setEditable(bool editable)
{
    if (m_isEditable == editable)
        return;
    m_isEditable = editable;
    textChanged();
    postAccessibilityChange(*this, AccessibleChange::state);
    interactionChanged();
}

void NSTextField::setSelectable(bool selectable)
{
    if (m_isSelectable == selectable)
        return;
    m_isSelectable = selectable;
    postAccessibilityChange(*this, AccessibleChange::state);
    interactionChanged();
}

void NSTextField::setEnabled(bool enabled)
{
    if (isEnabled() == enabled)
        return;
    NSControl::setEnabled(enabled);
    interactionChanged();
}

void NSTextField::interactionChanged()
{
    invalidateCursorRects();
    if (!isInteractive() && hasKeyboardFocus())
        window()->makeFirstResponder(nullptr);
    looksChanged();
}

void NSTextField::setBordered(bool bordered)
{
    if (m_isBordered == bordered)
        return;
    m_isBordered = bordered;
    textChanged();
    looksChanged();
}

void NSTextField::setBezeled(bool bezeled)
{
    if (m_isBezeled == bezeled)
        return;
    m_isBezeled = bezeled;
    textChanged();
    looksChanged();
}

void NSTextField::setDrawsBackground(bool draws)
{
    if (m_drawsBackground == draws)
        return;
    m_drawsBackground = draws;
    setNeedsDisplay(true);
}

std::shared_ptr<NSColor> NSTextField::backgroundColor() const
{
    return make<NSColor>(m_backgroundColor);
}

void NSTextField::setBackgroundColor(const std::shared_ptr<NSColor>& color)
{
    if (!color)
        raiseInvalidArgument("NSTextField.setBackgroundColor:", "there is no colour");
    if (m_backgroundColor == color->cgColor())
        return;
    m_backgroundColor = color->cgColor();
    setNeedsDisplay(true);
}

void NSTextField::textChanged()
{
    m_measured.reset();
    invalidateIntrinsicContentSize();
    setNeedsDisplay(true);
}

// What is edited is to look, lie and read as the field does.
void NSTextField::looksChanged()
{
    setNeedsDisplay(true);
    if (m_session)
        m_session->update();
}

} // namespace RVCore
