#pragma once

#include <QTextEdit>

namespace RVCore {

// The widget whose text machinery edits: it lays out, moves, selects, composes and undoes, but is never shown, never
// has the focus, and paints nothing. Its handlers are called as the desktop would call them.
class QtTextEdit : public QTextEdit {
public:
    QtTextEdit();

    using QTextEdit::inputMethodEvent;
    using QTextEdit::keyPressEvent;
    using QTextEdit::mouseDoubleClickEvent;
    using QTextEdit::mouseMoveEvent;
    using QTextEdit::mousePressEvent;
    using QTextEdit::mouseReleaseEvent;

    // Of the text, with no room around it.
    void setTextSize(QSize size);
    // NoWrap makes it a single line.
    void setWrapping(QTextOption::WrapMode mode);
    // Whether all digits advance alike.
    void setMonospacedDigits(bool monospaced);
    bool isSingleLine() const { return wordWrapMode() == QTextOption::NoWrap; }
    // A single line is laid out as wide as it is, or as the widget if that is wider, so that it is aligned in there.
    // To be called when one of these may have changed.
    void fitLine();
    // As it may come in from outside: without line feeds in a single line.
    QString accepted(QString text) const;
    // With line feeds between paragraphs; positions are the same as in the document.
    QString text() const;
    // What `text` would be once this has been set.
    static QString textWhenSet(QString text);
    // Between 0 and its length.
    int clampedPosition(int position) const;

protected:
    void insertFromMimeData(const QMimeData* source) override;

private:
    class DigitSpacing;
    DigitSpacing* m_digitSpacing = nullptr; // belongs to the document
};

} // namespace RVCore
