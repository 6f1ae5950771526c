#pragma once

#include <Backend/TextEditor.h>

#include <memory>
#include <string>

namespace RVCore {

class NSEvent;
class NSTextField;

// One field's being edited, from when it becomes the first responder until it is so no more. It passes on to the
// desktop's text editor what happens to the field, and to the field what the user does to the text. The field holds
// it; it ends before the field does.
class TextFieldSession : private TextEditorClient, public std::enable_shared_from_this<TextFieldSession> {
public:
    explicit TextFieldSession(NSTextField& field);
    ~TextFieldSession() override;
    TextFieldSession(const TextFieldSession&) = delete;
    TextFieldSession& operator=(const TextFieldSession&) = delete;

    TextEditor& editor() const { return *m_editor; }

    // The field's text, its looks or its place have changed.
    void update();
    // The field may have moved, or the caret in it.
    void updatePlace() { tellInputMethods(false); }
    // The last part of a session: what is being composed becomes text, and the delegate hears of the end.
    void finish();

    // Whether the event was used.
    bool handleKey(NSEvent& event);
    bool handlePointer(NSEvent& event);

private:
    void textDidChange() override;
    void editorNeedsDisplay() override;

    bool handleReturn(NSEvent& event);
    bool revert();
    void tellChange(NSTextField& field);
    void endEditing();
    void tellInputMethods(bool isEnding);

    NSTextField& m_field;
    std::shared_ptr<TextEditor> m_editor;
    std::string m_original;   // what Escape brings back
    bool m_hasBegun = false;  // the delegate was told so
    bool m_isTelling = false; // the delegate is being told of a change
};

} // namespace RVCore
