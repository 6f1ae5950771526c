#pragma once

#include <Backend/TextEditor.h>

#include <string>
#include <vector>

namespace RVCore {

// What keyboards and pointers report, for tests.

inline InputEvent keyPress(const std::string& key, std::uint32_t modifiers = 0)
{
    InputEvent event;
    event.kind = InputKind::keyPressed;
    event.modifiers = modifiers;
    event.charactersIgnoringModifiers = key;
    // Desktops give shortcuts no text, or a control character.
    event.characters = (modifiers & InputModifier::command) != 0 ? std::string() : key;
    return event;
}

inline InputEvent pointer(InputKind kind, CGPoint location, std::uint32_t modifiers = 0)
{
    InputEvent event;
    event.kind = kind;
    event.location = location;
    event.modifiers = modifiers;
    return event;
}

// ASCII text, letter by letter.
inline void typeInto(TextEditor& editor, const std::string& text)
{
    for (const char letter : text)
        editor.handleInput(keyPress(std::string(1, letter)), 0);
}

inline void click(TextEditor& editor, CGPoint location, int clickCount = 1, std::uint32_t modifiers = 0)
{
    for (int count = 1; count <= clickCount; ++count) {
        editor.handleInput(pointer(InputKind::buttonPressed, location, modifiers), count);
        editor.handleInput(pointer(InputKind::buttonReleased, location, modifiers), count);
    }
}

// Writes down what an editor tells.
class RecordingEditorClient : public TextEditorClient {
public:
    void textDidChange() override { ++changeCount; }
    void editorNeedsDisplay() override { ++displayCount; }

    int changeCount = 0;
    int displayCount = 0;
};

} // namespace RVCore
