#pragma once

#include <Backend/InputEvent.h>
#include <CoreGraphics/Canvas.h>

#include <cstddef>
#include <string>

namespace RVCore {

// A part of a text, counted in bytes of its UTF-8. What is given may end anywhere: inside a character it counts as
// that character's start, beyond the text as the text's end.
struct TextRange {
    std::size_t location = 0;
    std::size_t length = 0;

    std::size_t end() const { return location + length; }
    bool operator==(const TextRange&) const = default;
};

// What an input method has under way (text that is shown at the caret but not part of the text yet) and what it is
// done with, which goes into the text in place of the selection.
struct TextComposition {
    std::string marked = {};
    std::size_t caret = 0; // in the marked text, in bytes
    std::string committed = {};
};

enum class TextCommand : std::uint8_t { undo, redo, cut, copy, paste, deleteSelection, selectAll };

// What an editor tells whoever it works for. It touches nothing of its own after these calls, so they may end it.
class TextEditorClient {
public:
    virtual ~TextEditorClient() = default;
    // The user changed the text.
    virtual void textDidChange() = 0;
    // Text, selection, caret or scroll position look different now. Comes after textDidChange.
    virtual void editorNeedsDisplay() = 0;
};

// One session of editing a text in a rectangle of points with its origin at the top left: caret, selection, movement
// by characters, words and lines, clipboard, undo, input methods, scrolling. Text that wraps (TextDescription.wraps)
// has as many lines as it takes, and any other is one line that scrolls sideways; line feeds that a user brings into
// that one become spaces. Bytes that are not UTF-8 become U+FFFD.
class TextEditor {
public:
    virtual ~TextEditor() = default;

    // The text and how it is set; the number of lines has no limit here. Another text than the present one ends a
    // composition, forgets what could be undone, and keeps as much of the selection as lies in it. No client call.
    virtual void setContent(const TextDescription& content) = 0;
    virtual void setSize(CGSize size) = 0;
    // A text that is not editable can still be selected and copied; it shows no caret. Default editable.
    virtual void setEditable(bool editable) = 0;
    // No call reaches the client from now on.
    virtual void detach() = 0;

    virtual std::string text() const = 0; // without what is being composed
    // Empty at the caret when nothing is selected.
    virtual TextRange selection() const = 0;
    // The caret goes to the range's end.
    virtual void select(TextRange range) = 0;
    // In the editor's rectangle; outside of it when scrolled away.
    virtual CGRect caretRect() const = 0;
    // How far the text has moved to the left and up.
    virtual CGPoint scrollOffset() const = 0;

    // Keys, scrolling, and the pointer with buttons down, its location in the editor's rectangle: clickCount 2
    // selects words, 3 the paragraph, shift extends the selection, the second button and the menu key open the
    // context menu. Returns whether the event was used. Return, Tab and Escape never are, except that Return with
    // option or shift starts a new line where text wraps.
    virtual bool handleInput(const InputEvent& event, int clickCount) = 0;
    virtual void compose(const TextComposition& composition) = 0;
    virtual bool isComposing() const = 0; // whether there is marked text
    // What is being composed becomes part of the text.
    virtual void commitComposition() = 0;
    virtual bool canPerform(TextCommand command) const = 0;
    virtual void perform(TextCommand command) = 0; // without effect when it cannot

    // The text with selection and caret, its rectangle's origin here, clipped to it.
    virtual void draw(Canvas& canvas, CGPoint origin) = 0;
};

} // namespace RVCore
