#include <AppKit/NSButton.h>
#include <AppKit/NSWindow.h>

#include <algorithm>

namespace RVCore {

namespace {

NSEventModifierFlags deliberate(NSEventModifierFlags flags)
{
    return flags & (NSEventModifierFlags::shift | NSEventModifierFlags::control | NSEventModifierFlags::option |
                    NSEventModifierFlags::command);
}

bool isReturn(const std::string& key)
{
    return key == NSKey::carriageReturn || key == NSKey::enter;
}

// Letters of either case, ASCII ones only: others are compared as they are.
std::string lowerCase(std::string text)
{
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

} // namespace

// Also by what lies over the button, or cuts it off.
bool NSButton::isInside(const NSEvent& event)
{
    const NSView* hit = rootView().hitTest(event.locationInWindow());
    return hit && hit->isDescendantOf(*this);
}

void NSButton::mouseDown(NSEvent&)
{
    if (!isEnabled())
        return;
    m_isTracking = true;
    setHighlighted(true);
}

void NSButton::mouseDragged(NSEvent& event)
{
    if (m_isTracking)
        setHighlighted(isInside(event));
}

void NSButton::mouseUp(NSEvent& event)
{
    if (!m_isTracking)
        return;
    m_isTracking = false;
    setHighlighted(false);
    if (isInside(event))
        performClick();
}

void NSButton::mouseCaptureLost()
{
    m_isTracking = false;
    setHighlighted(false);
}

void NSButton::mouseEntered(NSEvent&)
{
    setHovered(true);
}

void NSButton::mouseExited(NSEvent&)
{
    setHovered(false);
}

void NSButton::setHovered(bool hovered)
{
    m_isHovered = hovered;
    setNeedsDisplay(true);
}

void NSButton::keyDown(NSEvent& event)
{
    const std::string& key = event.charactersIgnoringModifiers();
    const bool isPlain = deliberate(event.modifierFlags()) == NSEventModifierFlags::none;
    const bool isRadio = m_type == NSButtonType::radio;
    if (!isPlain || !isEnabled())
        return NSControl::keyDown(event);
    if (key == NSKey::space || isReturn(key)) {
        if (!event.isARepeat())
            performClick();
    } else if (isRadio && (key == NSKey::down || key == NSKey::right)) {
        chooseNeighbor(1);
    } else if (isRadio && (key == NSKey::up || key == NSKey::left)) {
        chooseNeighbor(-1);
    } else {
        NSControl::keyDown(event);
    }
}

bool NSButton::isDefaultButton() const
{
    return isReturn(m_keyEquivalent) && m_keyEquivalentMask == NSEventModifierFlags::none;
}

bool NSButton::matchesKeyEquivalent(const NSEvent& event) const
{
    const std::string& key = event.charactersIgnoringModifiers();
    if (m_keyEquivalent.empty() || key.empty())
        return false;
    NSEventModifierFlags wanted = deliberate(m_keyEquivalentMask);
    if (lowerCase(m_keyEquivalent) != m_keyEquivalent)
        wanted = wanted | NSEventModifierFlags::shift;
    const bool isSameKey =
        lowerCase(key) == lowerCase(m_keyEquivalent) || (isReturn(key) && isReturn(m_keyEquivalent));
    return isSameKey && deliberate(event.modifierFlags()) == wanted;
}

bool NSButton::performKeyEquivalent(NSEvent& event)
{
    if (!isEnabled() || !canBeSeen() || !matchesKeyEquivalent(event))
        return NSControl::performKeyEquivalent(event);
    if (!event.isARepeat())
        performClick();
    return true;
}

// This button and the others that it excludes, in the order in which they lie in the superview.
std::vector<std::shared_ptr<NSButton>> NSButton::radioGroup() const
{
    std::vector<std::shared_ptr<NSButton>> group;
    if (!superview())
        return group;
    for (const auto& sibling : superview()->subviews()) {
        auto button = std::dynamic_pointer_cast<NSButton>(sibling);
        if (button && button->m_type == NSButtonType::radio && button->action() == action())
            group.push_back(std::move(button));
    }
    return group;
}

void NSButton::chooseNeighbor(int step)
{
    auto group = radioGroup();
    std::erase_if(group, [this](const auto& button) {
        return button.get() != this && (!button->isEnabled() || button->isInvisible());
    });
    const auto self = std::ranges::find(group, this, [](const auto& button) { return button.get(); });
    if (self == group.end() || group.size() < 2)
        return;
    const auto count = static_cast<int>(group.size());
    const auto place = (static_cast<int>(self - group.begin()) + step + count) % count;
    const auto neighbor = group[static_cast<std::size_t>(place)];
    if (NSWindow* host = window())
        host->makeFirstResponder(neighbor.get());
    neighbor->performClick();
}

} // namespace RVCore
