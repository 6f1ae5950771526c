#include <AppKit/NSAccessibility.h>
#include <AppKit/NSCursor.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSTextField.h>
#include <AppKit/NSWindow.h>
#include <AppKit/TextFieldSession.h>

namespace RVCore {

bool NSTextField::acceptsFirstResponder() const
{
    return isInteractive();
}

bool NSTextField::canBecomeKeyView() const
{
    return m_isEditable && NSControl::canBecomeKeyView();
}

bool NSTextField::becomeFirstResponder()
{
    if (!NSControl::becomeFirstResponder())
        return false;
    m_session = std::make_shared<TextFieldSession>(*this);
    m_session->editor().perform(TextCommand::selectAll); // a click moves the caret right after this
    return true;
}

bool NSTextField::resignFirstResponder()
{
    const auto alive = shared(*this); // the delegate may let go of it
    if (const auto session = std::exchange(m_session, nullptr))
        session->finish();
    return NSControl::resignFirstResponder();
}

void NSTextField::takeEditedText(std::string text, AppKitKey)
{
    m_text.text = std::move(text);
    if (m_text.wraps() || !m_isEditable)
        textChanged();
    else
        setNeedsDisplay(true); // a line that is edited has the same size whatever it says
    postAccessibilityChange(*this, AccessibleChange::value);
}

AccessibleRole NSTextField::accessibilityRole() const
{
    return m_isEditable ? AccessibleRole::textField : AccessibleRole::staticText;
}

AccessibleState NSTextField::accessibilityState() const
{
    AccessibleState state = NSControl::accessibilityState();
    state.isEditable = isEnabled() && m_isEditable;
    return state;
}

bool NSTextField::setAccessibilityValue(const std::string& text)
{
    NSWindow* host = window();
    if (!isEnabled() || !m_isEditable || !host || !host->makeFirstResponder(this))
        return false;
    const auto alive = shared(*this);
    const auto session = m_session; // a delegate may end it between one step and the next, or has done so
    if (!session)
        return false;
    session->editor().perform(TextCommand::selectAll);
    if (text.empty())
        session->editor().perform(TextCommand::deleteSelection);
    else
        session->editor().compose({.committed = text}); // in place of the selection, as one edit
    return true;
}

TextRange NSTextField::selectedRange() const
{
    return m_session ? m_session->editor().selection() : TextRange();
}

void NSTextField::setSelectedRange(TextRange range)
{
    if (m_session)
        m_session->editor().select(range);
}

void NSTextField::perform(TextCommand command)
{
    const auto alive = shared(*this);
    if (const auto session = m_session)
        session->editor().perform(command);
}

void NSTextField::resetCursorRects()
{
    if (isInteractive())
        addCursorRect(bounds(), make<NSCursor>(CursorShape::iBeam));
}

bool NSTextField::handlePointer(NSEvent& event)
{
    const auto alive = shared(*this);
    const auto session = m_session;
    return session && session->handlePointer(event);
}

void NSTextField::mouseDown(NSEvent& event)
{
    if (!handlePointer(event))
        NSControl::mouseDown(event);
}

void NSTextField::mouseDragged(NSEvent& event)
{
    if (!handlePointer(event))
        NSControl::mouseDragged(event);
}

void NSTextField::mouseUp(NSEvent& event)
{
    if (!handlePointer(event))
        NSControl::mouseUp(event);
}

// The menu is about the text that is edited, so the field has to be that first.
void NSTextField::rightMouseDown(NSEvent& event)
{
    if (NSWindow* host = window(); host && isInteractive())
        host->makeFirstResponder(this);
    if (!handlePointer(event))
        NSControl::rightMouseDown(event);
}

void NSTextField::otherMouseDown(NSEvent& event)
{
    if (!handlePointer(event))
        NSControl::otherMouseDown(event);
}

void NSTextField::otherMouseUp(NSEvent& event)
{
    if (!handlePointer(event))
        NSControl::otherMouseUp(event);
}

void NSTextField::scrollWheel(NSEvent& event)
{
    if (!handlePointer(event))
        NSControl::scrollWheel(event);
}

void NSTextField::keyDown(NSEvent& event)
{
    const auto alive = shared(*this);
    const auto session = m_session;
    if (!session || !session->handleKey(event))
        NSControl::keyDown(event);
}

} // namespace RVCore
