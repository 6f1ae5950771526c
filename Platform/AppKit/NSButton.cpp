#include <AppKit/KnownValue.h>
#include <AppKit/NSAccessibility.h>
#include <AppKit/NSButton.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSTrackingArea.h>
#include <Foundation/NSCoder.h>

namespace RVCore {

Class& NSButton::staticClass()
{
    static Class& theClass = defineClass<NSButton>("NSButton", NSControl::staticClass(), [](auto& publish) {
        publish.property("buttonType", &NSButton::buttonType, &NSButton::setButtonType);
        publish.readOnlyProperty("isBordered", &NSButton::isBordered);
        publish.method("setBordered:", &NSButton::setBordered);
        publish.property("bezelStyle", &NSButton::bezelStyle, &NSButton::setBezelStyle);
        publish.property("title", &NSButton::title, &NSButton::setTitle);
        publish.property("alternateTitle", &NSButton::alternateTitle, &NSButton::setAlternateTitle);
        publish.property("font", &NSButton::font, &NSButton::setFont);
        publish.property("image", &NSButton::image, &NSButton::setImage);
        publish.property("alternateImage", &NSButton::alternateImage, &NSButton::setAlternateImage);
        publish.property("imagePosition", &NSButton::imagePosition, &NSButton::setImagePosition);
        publish.property("imageScaling", &NSButton::imageScaling, &NSButton::setImageScaling);
        publish.property("state", &NSButton::state, &NSButton::setState);
        publish.property("allowsMixedState", &NSButton::allowsMixedState, &NSButton::setAllowsMixedState);
        publish.readOnlyProperty("nextState", &NSButton::nextState);
        publish.property("keyEquivalent", &NSButton::keyEquivalent, &NSButton::setKeyEquivalent);
        publish.property("keyEquivalentModifierMask", &NSButton::keyEquivalentModifierMask,
                         &NSButton::setKeyEquivalentModifierMask);
        publish.readOnlyProperty("isHighlighted", &NSButton::isHighlighted);
        publish.method("setHighlighted:", &NSButton::setHighlighted);
        publish.method("performClick:", [](NSButton& self, const ObjectRef&) { self.performClick(); });
    });
    return theClass;
}

void NSButton::init(const CGRect& frame)
{
    NSControl::init(frame);
    updateHoverArea();
}

void NSButton::init(NSCoder& coder)
{
    NSControl::init(coder);
    updateHoverArea();
    setButtonType(coder.decode<NSButtonType>("buttonType"));
    setBordered(coder.decode<bool>("bordered"));
    setBezelStyle(coder.decode<NSBezelStyle>("bezelStyle"));
    setTitle(coder.decode<std::string>("title"));
    setAlternateTitle(coder.decode<std::string>("alternateTitle"));
    setFont(coder.decode<std::shared_ptr<NSFont>>("font"));
    setImagePosition(coder.decode<NSCellImagePosition>("imagePosition"));
    setImageScaling(coder.decode<NSImageScaling>("imageScaling"));
    setAllowsMixedState(coder.decode<bool>("allowsMixedState"));
    setState(coder.decode<NSControlStateValue>("state"));
    setKeyEquivalent(coder.decode<std::string>("keyEquivalent"));
    setKeyEquivalentModifierMask(coder.decode<NSEventModifierFlags>("keyEquivalentModifierMask"));
}

void NSButton::encode(NSCoder& coder) const
{
    NSControl::encode(coder);
    coder.encode("buttonType", static_cast<int>(m_type));
    coder.encode("bordered", m_isBordered);
    coder.encode("bezelStyle", static_cast<int>(m_bezelStyle));
    coder.encode("title", m_title);
    coder.encode("alternateTitle", m_alternateTitle);
    coder.encode("font", font());
    coder.encode("imagePosition", static_cast<int>(m_imagePosition));
    coder.encode("imageScaling", static_cast<int>(m_imageScaling));
    coder.encode("allowsMixedState", m_allowsMixedState);
    coder.encode("state", static_cast<int>(m_state));
    coder.encode("keyEquivalent", m_keyEquivalent);
    coder.encode("keyEquivalentModifierMask", static_cast<std::uint32_t>(m_keyEquivalentMask));
}

void NSButton::setButtonType(NSButtonType type)
{
    requireKnown("NSButton.setButtonType:", type, NSButtonType::momentaryLight, NSButtonType::momentaryPushIn);
    if (m_type == type)
        return;
    m_type = type;
    contentChanged();
    if (!isPushButton()) {
        setBordered(false);
        setImagePosition(NSCellImagePosition::imageLeft);
    }
    updateHoverArea();
}

void NSButton::setBordered(bool bordered)
{
    if (m_isBordered == bordered)
        return;
    m_isBordered = bordered;
    contentChanged();
    updateHoverArea();
}

void NSButton::setBezelStyle(NSBezelStyle style)
{
    if (style != NSBezelStyle::rounded && style != NSBezelStyle::regularSquare && style != NSBezelStyle::toolbar)
        raiseInvalidArgument("NSButton.setBezelStyle:",
                             "takes 1, 2 or 11, got " + std::to_string(static_cast<int>(style)));
    if (m_bezelStyle == style)
        return;
    m_bezelStyle = style;
    contentChanged();
}

void NSButton::setTitle(const std::string& title)
{
    if (m_title == title)
        return;
    m_title = title;
    contentChanged();
    postAccessibilityChange(*this, AccessibleChange::name);
}

void NSButton::setAlternateTitle(const std::string& title)
{
    if (m_alternateTitle == title)
        return;
    m_alternateTitle = title;
    contentChanged();
}

std::shared_ptr<NSFont> NSButton::font() const
{
    return make<NSFont>(m_font);
}

void NSButton::setFont(const std::shared_ptr<NSFont>& font)
{
    if (!font)
        raiseInvalidArgument("NSButton.setFont:", "there is no font");
    if (m_font == font->fontDescription())
        return;
    m_font = font->fontDescription();
    contentChanged();
}

void NSButton::setImage(const std::shared_ptr<NSImage>& image)
{
    if (m_image == image)
        return;
    m_image = image;
    contentChanged();
    if (image && m_imagePosition == NSCellImagePosition::noImage)
        setImagePosition(m_title.empty() ? NSCellImagePosition::imageOnly : NSCellImagePosition::imageLeft);
}

void NSButton::setAlternateImage(const std::shared_ptr<NSImage>& image)
{
    if (m_alternateImage == image)
        return;
    m_alternateImage = image;
    contentChanged();
}

void NSButton::setImagePosition(NSCellImagePosition position)
{
    requireKnown("NSButton.setImagePosition:", position, NSCellImagePosition::noImage,
                 NSCellImagePosition::imageOverlaps);
    if (m_imagePosition == position)
        return;
    m_imagePosition = position;
    contentChanged();
}

void NSButton::setImageScaling(NSImageScaling scaling)
{
    requireKnown("NSButton.setImageScaling:", scaling, NSImageScaling::proportionallyDown,
                 NSImageScaling::proportionallyUpOrDown);
    if (m_imageScaling == scaling)
        return;
    m_imageScaling = scaling;
    setNeedsDisplay(true);
}

void NSButton::setState(NSControlStateValue state)
{
    requireKnown("NSButton.setState:", state, NSControlStateValue::mixed, NSControlStateValue::on);
    if (state == NSControlStateValue::mixed && !m_allowsMixedState)
        state = NSControlStateValue::on;
    if (m_state == state)
        return;
    m_state = state;
    contentChanged(); // a toggle may show something else
    postAccessibilityChange(*this, AccessibleChange::state);
    if (m_type != NSButtonType::radio || state != NSControlStateValue::on)
        return;
    for (const auto& button : radioGroup()) {
        if (button.get() != this)
            button->setState(NSControlStateValue::off);
    }
}

void NSButton::setAllowsMixedState(bool allows)
{
    if (m_allowsMixedState == allows)
        return;
    m_allowsMixedState = allows;
    if (!allows && m_state == NSControlStateValue::mixed)
        setState(NSControlStateValue::on);
}

NSControlStateValue NSButton::nextState() const
{
    if (m_type == NSButtonType::radio)
        return NSControlStateValue::on;
    if (m_state == NSControlStateValue::on)
        return NSControlStateValue::off;
    return m_state == NSControlStateValue::off && m_allowsMixedState ? NSControlStateValue::mixed
                                                                     : NSControlStateValue::on;
}

void NSButton::setKeyEquivalent(const std::string& key)
{
    if (m_keyEquivalent == key)
        return;
    m_keyEquivalent = key;
    setNeedsDisplay(true);
}

void NSButton::setKeyEquivalentModifierMask(NSEventModifierFlags mask)
{
    if (m_keyEquivalentMask == mask)
        return;
    m_keyEquivalentMask = mask;
    setNeedsDisplay(true);
}

void NSButton::setHighlighted(bool highlighted)
{
    if (m_isHighlighted == highlighted)
        return;
    m_isHighlighted = highlighted;
    setNeedsDisplay(true);
}

void NSButton::setEnabled(bool enabled)
{
    NSControl::setEnabled(enabled);
    if (!enabled) { // a press that is under way comes to nothing
        m_isTracking = false;
        setHighlighted(false);
    }
}

bool NSButton::isPushButton() const
{
    return m_type != NSButtonType::switchButton && m_type != NSButtonType::radio;
}

ControlKind NSButton::controlKind() const
{
    if (m_type == NSButtonType::switchButton)
        return ControlKind::checkBox;
    if (m_type == NSButtonType::radio)
        return ControlKind::radioButton;
    return m_bezelStyle == NSBezelStyle::toolbar ? ControlKind::toolButton : ControlKind::pushButton;
}

bool NSButton::changesState() const
{
    return m_type != NSButtonType::momentaryLight && m_type != NSButtonType::momentaryChange &&
           m_type != NSButtonType::momentaryPushIn;
}

void NSButton::performClick()
{
    if (!isEnabled())
        return;
    const auto alive = shared(*this); // the action may be the end of it
    if (changesState())
        setState(nextState());
    sendAction();
}

AccessibleRole NSButton::accessibilityRole() const
{
    switch (m_type) {
    case NSButtonType::switchButton:
        return AccessibleRole::checkBox;
    case NSButtonType::radio:
        return AccessibleRole::radioButton;
    default:
        return AccessibleRole::button;
    }
}

std::string NSButton::accessibilityLabel() const
{
    const std::string label = NSControl::accessibilityLabel();
    return label.empty() ? m_title : label;
}

AccessibleState NSButton::accessibilityState() const
{
    AccessibleState state = NSControl::accessibilityState();
    state.isPressable = true;
    state.isCheckable = changesState();
    state.isChecked = changesState() && m_state == NSControlStateValue::on;
    state.isMixed = changesState() && m_state == NSControlStateValue::mixed;
    return state;
}

bool NSButton::accessibilityPerformPress()
{
    if (!isEnabled())
        return false;
    performClick();
    return true;
}

// What the button shows, and with it perhaps its size.
void NSButton::contentChanged()
{
    invalidateIntrinsicContentSize();
    setNeedsDisplay(true);
}

// The look changes under the pointer only where there is a look.
void NSButton::updateHoverArea()
{
    if (hasLook() == (m_hoverArea != nullptr))
        return;
    if (m_hoverArea) {
        removeTrackingArea(m_hoverArea);
        m_hoverArea = nullptr;
        m_isHovered = false;
        return;
    }
    using Options = NSTrackingAreaOptions;
    m_hoverArea = make<NSTrackingArea>(
        CGRect(), Options::mouseEnteredAndExited | Options::activeInActiveApp | Options::inVisibleRect, *this);
    addTrackingArea(m_hoverArea);
}

} // namespace RVCore
