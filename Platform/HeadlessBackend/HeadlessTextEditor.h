#pragma once

#include <Backend/Clipboard.h>
#include <Backend/TextEditor.h>

#include <memory>
#include <vector>

namespace RVCore {

// A small editor on code points, for tests of what stands above it:
//
//  - Every code point is a character of its own, and text runs from left to right. Letters, digits and everything
//    beyond ASCII make up words.
//  - Lines end at line feeds only, also where text wraps; metrics are those of HeadlessText.h.
//  - Keys: arrows, Home, End, Backspace and Delete, with command by words (Home and End: to the ends of the text),
//  with
//    shift selecting; command with A, C, X, V, Z, Y.
//  - What is typed without moving in between is undone at once. The caret does not blink. There is no context menu,
//    but its opening is counted.
class HeadlessTextEditor : public TextEditor, public std::enable_shared_from_this<HeadlessTextEditor> {
public:
    HeadlessTextEditor(TextEditorClient& client, Clipboard& clipboard, const TextDescription& content, CGSize size);

    void setContent(const TextDescription& content) override;
    void setSize(CGSize size) override;
    void setEditable(bool editable) override { m_isEditable = editable; }
    void detach() override { m_client = nullptr; }
    std::string text() const override;
    TextRange selection() const override;
    void select(TextRange range) override;
    CGRect caretRect() const override;
    CGPoint scrollOffset() const override { return m_scroll; }
    bool handleInput(const InputEvent& event, int clickCount) override;
    void compose(const TextComposition& composition) override;
    bool isComposing() const override { return !m_marked.empty(); }
    void commitComposition() override;
    bool canPerform(TextCommand command) const override;
    void perform(TextCommand command) override;
    void draw(Canvas& canvas, CGPoint origin) override;

    int contextMenuCount() const { return m_contextMenuCount; }

private:
    struct State {
        std::u32string text;
        std::size_t anchor = 0;
        std::size_t caret = 0;
    };

    bool handleKey(const InputEvent& event);
    bool handleMovement(const InputEvent& event);
    bool handleDeletion(const InputEvent& event);
    bool handleShortcut(const InputEvent& event);
    bool handlePress(const InputEvent& event, int clickCount);

    std::size_t selectionStart() const;
    std::size_t selectionEnd() const;
    std::size_t wordStart(std::size_t position) const;
    std::size_t wordEnd(std::size_t position) const;
    std::size_t lineStart(std::size_t position) const;
    std::size_t lineEnd(std::size_t position) const;
    std::size_t positionOf(std::size_t bytes) const;
    void moveTo(std::size_t position, bool extendsSelection);
    void replaceSelection(const std::u32string& replacement, bool isTyping);
    void restore(std::vector<State>& from, std::vector<State>& to);
    void requireUsable(const TextDescription& content) const;

    // Geometry, without scrolling.
    CGFloat lineHeight() const;
    CGFloat advance(std::size_t from, std::size_t to) const;
    CGFloat lineOffset(std::size_t start) const;
    CGPoint placeOf(std::size_t position) const;
    std::size_t positionAt(CGPoint point) const;
    void scrollToCaret();

    void changed(bool isOtherText);

    TextEditorClient* m_client;
    Clipboard& m_clipboard;
    TextDescription m_content; // without the text
    CGSize m_size;
    CGPoint m_scroll;
    State m_state;
    std::u32string m_marked;
    std::size_t m_markedCaret = 0;
    std::vector<State> m_undo;
    std::vector<State> m_redo;
    bool m_isTyping = false; // the next letter belongs to what is undone last
    bool m_isEditable = true;
    int m_contextMenuCount = 0;
};

} // namespace RVCore
