#include <AppKit/AppKitKey.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSTextField.h>
#include <AppKit/NSWindow.h>
#include <AppKit/TextFieldSession.h>
#include <Backend/Backend.h>

namespace RVCore {

namespace {

InputEvent keyInput(const NSEvent& event)
{
    InputEvent input;
    input.kind = InputKind::keyPressed;
    input.time = event.timestamp();
    input.modifiers = static_cast<std::uint32_t>(event.modifierFlags());
    input.characters = event.characters();
    input.charactersIgnoringModifiers = event.charactersIgnoringModifiers();
    input.keyCode = event.keyCode();
    input.isRepeat = event.isARepeat();
    return input;
}

InputKind pointerKind(NSEventType type)
{
    switch (type) {
    case NSEventType::leftMouseDown:
    case NSEventType::rightMouseDown:
    case NSEventType::otherMouseDown:
        return InputKind::buttonPressed;
    case NSEventType::leftMouseUp:
    case NSEventType::rightMouseUp:
    case NSEventType::otherMouseUp:
        return InputKind::buttonReleased;
    case NSEventType::scrollWheel:
        return InputKind::scrolled;
    default:
        return InputKind::pointerMoved;
    }
}

} // namespace

TextFieldSession::TextFieldSession(NSTextField& field)
    : m_field(field),
      m_editor(Backend::shared().makeTextEditor(*this, field.textDescription({}), field.textRect({}).size)),
      m_original(field.stringValue())
{
    m_editor->setEditable(field.isEditable());
    tellInputMethods(false);
}

TextFieldSession::~TextFieldSession()
{
    m_editor->detach();
}

void TextFieldSession::update()
{
    // What a delegate makes of the user's text in answer to a change is the user's, too.
    if (!m_isTelling && m_field.stringValue() != m_editor->text())
        m_original = m_field.stringValue();
    m_editor->setContent(m_field.textDescription({}));
    m_editor->setSize(m_field.textRect({}).size);
    m_editor->setEditable(m_field.isEditable());
    tellInputMethods(false);
}

void TextFieldSession::finish()
{
    const auto alive = shared_from_this();
    m_editor->commitComposition();
    m_editor->detach();
    tellInputMethods(true);
    endEditing();
}

void TextFieldSession::endEditing()
{
    m_original = m_field.stringValue();
    if (!std::exchange(m_hasBegun, false))
        return;
    if (const auto delegate = m_field.delegate())
        delegate->controlTextDidEndEditing(m_field);
}

void TextFieldSession::tellInputMethods(bool isEnding)
{
    NSWindow* window = m_field.window();
    if (!window)
        return;
    const CGPoint inWindow = m_field.convertPointTo(m_field.textRect({}).origin, nullptr);
    const bool takesText = !isEnding && m_field.isEditable();
    window->setTextInput(takesText ? m_editor : nullptr, {inWindow.x, window->areaSize().height - inWindow.y}, {});
}

void TextFieldSession::textDidChange()
{
    const auto alive = shared_from_this(); // the delegate may end editing, and the field
    const auto field = shared(m_field);
    field->takeEditedText(m_editor->text(), {});
    tellChange(*field);
}

void TextFieldSession::tellChange(NSTextField& field)
{
    const auto delegate = field.delegate();
    const bool wasTelling = std::exchange(m_isTelling, true);
    if (!std::exchange(m_hasBegun, true) && delegate)
        delegate->controlTextDidBeginEditing(field);
    if (m_hasBegun && delegate) // unless that ended it
        delegate->controlTextDidChange(field);
    m_isTelling = wasTelling;
}

void TextFieldSession::editorNeedsDisplay()
{
    m_field.setNeedsDisplay(true);
}

bool TextFieldSession::handleKey(NSEvent& event)
{
    const auto alive = shared_from_this();
    if (m_editor->handleInput(keyInput(event), 0))
        return true;
    const std::string& key = event.charactersIgnoringModifiers();
    if (key == NSKey::carriageReturn || key == NSKey::enter)
        return handleReturn(event);
    return key == NSKey::escape && revert();
}

bool TextFieldSession::handleReturn(NSEvent& event)
{
    if (!m_field.isEditable())
        return false;
    if (event.isARepeat())
        return true; // a key that is held ends editing once
    const auto field = shared(m_field);
    m_editor->commitComposition();
    endEditing();
    if (field->isEditing())
        field->perform(TextCommand::selectAll);
    return field->sendAction();
}

bool TextFieldSession::revert()
{
    if (m_editor->isComposing()) {
        m_editor->compose({});
        return true;
    }
    if (m_original == m_field.stringValue())
        return false;
    const auto field = shared(m_field);
    field->takeEditedText(m_original, {});
    m_editor->setContent(field->textDescription({}));
    m_editor->perform(TextCommand::selectAll);
    tellChange(*field);
    return true;
}

bool TextFieldSession::handlePointer(NSEvent& event)
{
    constexpr int middleButton = 2;
    if (event.buttonNumber() > middleButton)
        return false; // the side buttons mean something else, if anything
    const auto alive = shared_from_this();
    const CGPoint inField = m_field.convertPointFrom(event.locationInWindow(), nullptr);
    const CGPoint origin = m_field.textRect({}).origin;
    InputEvent input;
    input.kind = pointerKind(event.type());
    input.time = event.timestamp();
    input.modifiers = static_cast<std::uint32_t>(event.modifierFlags());
    input.location = {inField.x - origin.x, inField.y - origin.y};
    input.button = event.buttonNumber();
    input.scroll = {event.scrollingDeltaX(), event.scrollingDeltaY()};
    input.isPreciseScroll = event.hasPreciseScrollingDeltas();
    return m_editor->handleInput(input, event.clickCount());
}

} // namespace RVCore
