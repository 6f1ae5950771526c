#pragma once

#include <AppKit/NSView.h>
#include <CoreGraphics/TextDescription.h>

#include <optional>

namespace RVCore {

class NSColor;
class NSFont;

// Text in a view: one line, or as many as it takes when it wraps. Its intrinsic size comes from the desktop's text
// metrics. Wrapping text is set at `preferredMaxLayoutWidth`; while that is 0, the intrinsic width is that of the
// longest unbroken line, and the height follows the width that layout gives. The text and how it is set are archived.
class NSTextField : public NSView {
    RVCORE_CLASS(NSTextField)

public:
    using NSView::init;
    void init(const CGRect& frame) override;
    void init(NSCoder& coder) override;
    void encode(NSCoder& coder) const override;

    const std::string& stringValue() const { return m_text.text; }
    void setStringValue(const std::string& text);
    std::shared_ptr<NSFont> font() const; // default: the system font, 13 points
    void setFont(const std::shared_ptr<NSFont>& font);
    std::shared_ptr<NSColor> textColor() const; // default: near black
    void setTextColor(const std::shared_ptr<NSColor>& color);
    NSTextAlignment alignment() const { return m_text.alignment; } // default natural
    void setAlignment(NSTextAlignment alignment);
    NSLineBreakMode lineBreakMode() const { return m_text.lineBreakMode; } // default clipping
    void setLineBreakMode(NSLineBreakMode mode);
    int maximumNumberOfLines() const { return m_text.maximumNumberOfLines; }      // default 0: no limit
    void setMaximumNumberOfLines(int count);                                      // at least 0
    CGFloat preferredMaxLayoutWidth() const { return m_preferredMaxLayoutWidth; } // default 0
    void setPreferredMaxLayoutWidth(CGFloat width);                               // at least 0

    CGSize intrinsicContentSize() const override;
    bool isFlipped() const override { return true; }
    AccessibleRole accessibilityRole() const override { return AccessibleRole::staticText; }
    std::string accessibilityValue() const override { return m_text.text; }
    void draw(Canvas& canvas, const CGRect& dirtyRect) override;

protected:
    void frameSizeDidChange() override;

private:
    struct Measured {
        CGSize size;
        CGFloat layoutWidth; // that the view had then
    };

    bool followsLayout() const { return m_text.wraps() && m_preferredMaxLayoutWidth == 0; }
    void textChanged();

    TextDescription m_text;
    CGFloat m_preferredMaxLayoutWidth = 0;
    mutable std::optional<Measured> m_measured; // of the present text
};

// A label: text that is shown, not edited, on no background.
template <std::derived_from<NSTextField> T = NSTextField> std::shared_ptr<T> makeTextField(const std::string& text)
{
    auto field = make<T>();
    field->setStringValue(text);
    return field;
}

} // namespace RVCore
