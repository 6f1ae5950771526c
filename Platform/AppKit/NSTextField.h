#pragma once

#include <AppKit/NSControl.h>
#include <AppKit/NSTextFieldDelegate.h>
#include <Backend/TextEditor.h>
#include <CoreGraphics/TextDescription.h>

namespace RVCore {

class NSFont;
class TextFieldSession;

// Text in a view: a label, or with the defaults a field to type in. It is one line, or as many as it takes when it
// wraps. Texts are UTF-8; bytes that are not become U+FFFD.
//
// Size: a label is as large as its text. A field that is editable is as wide as twenty digits whatever its text is,
// so that no window grows while somebody types; in one line it is one line high. Wrapping text is set at
// `preferredMaxLayoutWidth`; while that is none, a label's intrinsic width is that of the longest unbroken line, and
// the height follows the width that layout gives. A border adds its room.
//
// Editing: a click puts the caret there, Tab selects all. Return tells the delegate of the end, selects all, and
// sends the action, and only it does; where the action goes nowhere the key goes on to the window. Escape brings back
// the text that editing began with; when there is nothing to bring back, it goes on. Where text wraps, Return with
// shift or option starts a new line; in one line, pasted line feeds become spaces. A field that leaves its window
// while it is edited keeps what was typed.
class NSTextField : public NSControl {
    RVCORE_CLASS(NSTextField)

public:
    NSTextField();
    ~NSTextField() override;

    using NSControl::init;
    void init(const CGRect& frame) override;
    void init(NSCoder& coder) override;
    void encode(NSCoder& coder) const override;

    // Text. The value is the present one also while it is edited; setting another one then replaces what is edited,
    // keeps the selection where it can, and forgets what could be undone.
    const std::string& stringValue() const { return m_text.text; }
    virtual void setStringValue(const std::string& text);
    // What an empty field says about itself. Default absent.
    const std::optional<std::string>& placeholderString() const { return m_placeholder; }
    virtual void setPlaceholderString(const std::optional<std::string>& placeholder);
    std::shared_ptr<NSFont> font() const; // default: the system font, 13 points
    void setFont(const std::shared_ptr<NSFont>& font);
    std::shared_ptr<NSColor> textColor() const; // default: near black, near white where the ground is dark
    void setTextColor(const std::shared_ptr<NSColor>& color);
    NSTextAlignment alignment() const { return m_text.alignment; } // default natural
    void setAlignment(NSTextAlignment alignment);
    NSLineBreakMode lineBreakMode() const { return m_text.lineBreakMode; } // default clipping
    void setLineBreakMode(NSLineBreakMode mode);
    int maximumNumberOfLines() const { return m_text.maximumNumberOfLines; }      // default 0: no limit
    void setMaximumNumberOfLines(int count);                                      // at least 0
    CGFloat preferredMaxLayoutWidth() const { return m_preferredMaxLayoutWidth; } // default 0
    void setPreferredMaxLayoutWidth(CGFloat width);                               // 0 or less for none

    // What a user may do.
    bool isEditable() const { return m_isEditable; } // default yes; what is editable is selectable, too
    virtual void setEditable(bool editable);
    bool isSelectable() const { return m_isSelectable; } // default yes
    virtual void setSelectable(bool selectable);
    void setEnabled(bool enabled) override;

    // What is around the text. With both a bezel and a border, it is the bezel that is drawn.
    bool isBordered() const { return m_isBordered; } // a plain line; default no
    virtual void setBordered(bool bordered);
    bool isBezeled() const { return m_isBezeled; } // the desktop's frame of a text field; default yes
    virtual void setBezeled(bool bezeled);
    bool drawsBackground() const { return m_drawsBackground; } // default yes
    void setDrawsBackground(bool draws);
    std::shared_ptr<NSColor> backgroundColor() const; // default white
    virtual void setBackgroundColor(const std::shared_ptr<NSColor>& color);

    // Not held.
    std::shared_ptr<NSTextFieldDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(const std::shared_ptr<NSTextFieldDelegate>& delegate) { m_delegate = delegate; }

    // Editing. The selection counts bytes of the text; nothing, and without effect, while the field is not the first
    // responder.
    bool isEditing() const { return m_session != nullptr; }
    TextRange selectedRange() const;
    void setSelectedRange(TextRange range);
    void perform(TextCommand command);

    CGSize intrinsicContentSize() const override;
    // A field if it is editable, otherwise a text. Setting the value does what a user would do who types it in place
    // of the present text, and leaves the field the first responder.
    AccessibleRole accessibilityRole() const override;
    std::string accessibilityValue() const override { return m_text.text; }
    bool setAccessibilityValue(const std::string& text) override;
    AccessibleState accessibilityState() const override;
    void draw(Canvas& canvas, const CGRect& dirtyRect) override;
    bool acceptsFirstResponder() const override;
    bool canBecomeKeyView() const override;
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    void resetCursorRects() override;
    void mouseDown(NSEvent& event) override;
    void mouseDragged(NSEvent& event) override;
    void mouseUp(NSEvent& event) override;
    void rightMouseDown(NSEvent& event) override;
    void otherMouseDown(NSEvent& event) override;
    void otherMouseUp(NSEvent& event) override;
    void scrollWheel(NSEvent& event) override;
    void keyDown(NSEvent& event) override;

    // For AppKit's own classes: what the user made of the text, how it is set, and where.
    void takeEditedText(std::string text, AppKitKey);
    TextDescription textDescription(AppKitKey) const { return shownText(); }
    CGRect textRect(AppKitKey) const { return textRect(); }

protected:
    void frameSizeDidChange() override;

private:
    struct Measured {
        CGSize size;
        CGFloat layoutWidth; // that the view had then
    };

    bool isInteractive() const { return isEnabled() && (m_isEditable || m_isSelectable); }
    bool followsLayout() const { return m_text.wraps() && m_preferredMaxLayoutWidth <= 0; }
    EdgeInsets textInsets() const;
    CGRect textRect() const;
    CGSize labelSize() const;
    CGSize editableSize() const;
    void textChanged();
    void looksChanged();
    void interactionChanged();
    void drawFrame(Canvas& canvas) const;
    void drawText(Canvas& canvas) const;
    bool isOnDarkGround() const;
    CGColor shownTextColor() const;
    TextDescription shownText() const;
    bool handlePointer(NSEvent& event);

    TextDescription m_text;
    std::optional<std::string> m_placeholder;
    CGFloat m_preferredMaxLayoutWidth = 0;
    mutable std::optional<Measured> m_measured; // of the present text
    CGColor m_backgroundColor{1, 1, 1, 1};
    bool m_hasOwnTextColor = false;
    bool m_isEditable = true;
    bool m_isSelectable = true;
    bool m_isBordered = false;
    bool m_isBezeled = true;
    bool m_drawsBackground = true;
    std::weak_ptr<NSTextFieldDelegate> m_delegate;
    std::shared_ptr<TextFieldSession> m_session; // while it is the first responder
};

} // namespace RVCore
