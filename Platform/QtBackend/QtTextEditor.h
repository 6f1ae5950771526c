#pragma once

#include <Backend/TextEditor.h>

#include <QPointer>
#include <QString>
#include <QTimer>
#include <QVariant>
#include <QWindow>

#include <memory>
#include <optional>

class QInputMethodEvent;
class QInputMethodQueryEvent;
class QMouseEvent;
class QPainter;

namespace RVCore {

class QtTextEdit;

// An editing session by Qt's text machinery, painted where the canvas says.
class QtTextEditor : public TextEditor, public std::enable_shared_from_this<QtTextEditor> {
public:
    QtTextEditor(TextEditorClient& client, const TextDescription& content, CGSize size);
    ~QtTextEditor() override;
    QtTextEditor(const QtTextEditor&) = delete;
    QtTextEditor& operator=(const QtTextEditor&) = delete;

    void setContent(const TextDescription& content) override;
    void setSize(CGSize size) override;
    void setEditable(bool editable) override;
    void detach() override;
    std::string text() const override;
    TextRange selection() const override;
    void select(TextRange range) override;
    CGRect caretRect() const override;
    CGPoint scrollOffset() const override;
    bool handleInput(const InputEvent& event, int clickCount) override;
    void compose(const TextComposition& composition) override;
    bool isComposing() const override { return !composed().isEmpty(); }
    void commitComposition() override;
    bool canPerform(TextCommand command) const override;
    void perform(TextCommand command) override;
    void draw(Canvas& canvas, CGPoint origin) override;

    // The window that it is shown in, and where; null for none. The caret blinks while that window has the keyboard.
    void setHost(QWindow* window, CGPoint origin);
    // What that window gets from an input method.
    void handleInputMethod(const QInputMethodEvent& event);
    void answer(QInputMethodQueryEvent& event) const;

private:
    class Change;

    void applyStyle();
    bool handleKey(const InputEvent& event);
    bool handlePress(const InputEvent& event, int clickCount);
    bool handlePointer(const InputEvent& event);
    bool scroll(const InputEvent& event);
    QMouseEvent mouseEvent(int type, const InputEvent& event) const;
    void showContextMenu(CGPoint point);
    QString composed() const;
    void noteChange();
    void reportLater();
    void settle();
    void report();
    void restartBlinking();
    void blink();
    bool isActive() const { return !m_host || m_host->isActive(); }
    void drawCaret(QPainter& painter) const;
    void paint(QPainter& painter) const;

    TextEditorClient* m_client;
    TextDescription m_content; // its text is the one that was set
    CGFloat m_scale = 1;       // see toQtFont
    CGSize m_size;
    CGFloat m_baselineShift = 0; // in points
    QPointer<QtTextEdit> m_edit; // ends with the application at the latest
    QPointer<QWindow> m_host;
    CGPoint m_origin;
    QMetaObject::Connection m_focusConnection;
    QTimer m_blinkTimer;
    int m_blinksLeft = 0;
    bool m_isCaretShown = true;
    int m_changeDepth = 0;
    QString m_reportedText;
    bool m_hasMoved = false; // text, selection or caret since the latest settling
    bool m_isReportPending = false;
};

} // namespace RVCore
