#include <Foundation/NSException.h>

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QtBackend/QtApplication.h>
#include <QtBackend/QtCanvas.h>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtKeys.h>
#include <QtBackend/QtTextEdit.h>
#include <QtBackend/QtTextEditor.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

// A caret that nobody moves comes to rest after appearing and disappearing this often (some ten seconds at the usual
// rate), and with it the whole window.
constexpr int changesBeforeRest = 20;

Qt::Alignment toQtAlignment(NSTextAlignment alignment)
{
    switch (alignment) {
    case NSTextAlignment::left:
        return Qt::AlignLeft | Qt::AlignAbsolute;
    case NSTextAlignment::right:
        return Qt::AlignRight | Qt::AlignAbsolute;
    case NSTextAlignment::center:
        return Qt::AlignHCenter;
    case NSTextAlignment::justified:
        return Qt::AlignJustify;
    case NSTextAlignment::natural:
        break;
    }
    return Qt::AlignLeft; // where reading starts
}

QTextOption::WrapMode toQtWrapMode(NSLineBreakMode mode)
{
    switch (mode) {
    case NSLineBreakMode::wordWrapping:
        return QTextOption::WrapAtWordBoundaryOrAnywhere;
    case NSLineBreakMode::charWrapping:
        return QTextOption::WrapAnywhere;
    default:
        return QTextOption::NoWrap;
    }
}

// In UTF-16, where Qt counts, for a number of bytes of the text's UTF-8.
int toQtPosition(const std::string& text, std::size_t bytes)
{
    bytes = std::min(bytes, text.size());
    while (bytes > 0 && bytes < text.size() && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80)
        --bytes;
    return static_cast<int>(toQString(text.substr(0, bytes)).size());
}

const TextDescription& requireUsable(std::string_view operation, const TextDescription& content)
{
    requireFinite(operation, "font.size", content.font.size);
    if (content.font.size <= 0)
        raiseInvalidArgument(operation, "font.size must be above 0, got " + numberText(content.font.size));
    return content;
}

std::size_t fromQtPosition(const QString& text, int position)
{
    return fromQString(text.left(position)).size();
}

} // namespace

// Everything that may change something happens inside of one of these; the client hears of it when the outermost one
// is over, so that nothing of Qt's is under way if the client ends the editor.
class QtTextEditor::Change {
public:
    explicit Change(QtTextEditor& editor) : m_editor(editor.shared_from_this()) { ++m_editor->m_changeDepth; }
    ~Change() noexcept(false)
    {
        if (m_editor->m_changeDepth == 1)
            m_editor->settle();
        if (--m_editor->m_changeDepth == 0)
            m_editor->report();
    }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

private:
    const std::shared_ptr<QtTextEditor> m_editor;
};

QtTextEditor::QtTextEditor(TextEditorClient& client, const TextDescription& content, CGSize size)
    : m_client(&client), m_content(requireUsable("Backend.makeTextEditor", content)), m_edit(new QtTextEdit)
{
    applyStyle();
    setSize(size);
    m_edit->setPlainText(toQString(content.text));
    m_edit->fitLine();
    m_reportedText = m_edit->text();
    const auto changed = [this] { noteChange(); };
    QObject::connect(m_edit, &QTextEdit::textChanged, m_edit, changed);
    QObject::connect(m_edit, &QTextEdit::selectionChanged, m_edit, changed);
    QObject::connect(m_edit, &QTextEdit::cursorPositionChanged, m_edit, changed);
    m_blinkTimer.callOnTimeout([this] { callGuarded([this] { blink(); }); });
}

QtTextEditor::~QtTextEditor()
{
    QObject::disconnect(m_focusConnection);
    if (m_edit)
        m_edit->disconnect();
    delete m_edit.data();
}

void QtTextEditor::applyStyle()
{
    const QtFont font = toQtFont(m_content.font);
    m_scale = font.scale;
    m_edit->setFont(font.font);
    m_edit->document()->setDefaultFont(font.font);
    m_edit->setMonospacedDigits(m_content.font.monospacedDigits);
    QTextOption option;
    option.setAlignment(toQtAlignment(m_content.alignment));
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setTabStopDistance(2 * font.font.pixelSize());
    option.setFlags(m_content.wraps() ? QTextOption::Flags() : QTextOption::IncludeTrailingSpaces);
    m_edit->document()->setDefaultTextOption(option);
    m_edit->setWrapping(toQtWrapMode(m_content.lineBreakMode));
    setSize(m_size);
    // Baselines lie where text that is only drawn has them: see QtText.h.
    const qreal ascent = QFontMetricsF(font.font).ascent() * m_scale;
    m_baselineShift = std::ceil(ascent) - ascent;
}

void QtTextEditor::setContent(const TextDescription& content)
{
    requireUsable("TextEditor.setContent", content);
    ++m_changeDepth; // nothing of this is the user's
    const bool isOtherText = QtTextEdit::textWhenSet(toQString(content.text)) != m_edit->text();
    const TextDescription before = std::exchange(m_content, content);
    if (before.font != content.font || before.alignment != content.alignment ||
        before.lineBreakMode != content.lineBreakMode)
        applyStyle();
    if (isOtherText) {
        const QTextCursor cursor = m_edit->textCursor();
        const int anchor = cursor.anchor(), position = cursor.position();
        m_edit->setPlainText(toQString(content.text));
        QTextCursor kept = m_edit->textCursor();
        kept.setPosition(m_edit->clampedPosition(anchor));
        kept.setPosition(m_edit->clampedPosition(position), QTextCursor::KeepAnchor);
        m_edit->setTextCursor(kept);
        QGuiApplication::inputMethod()->reset();
        m_reportedText = m_edit->text();
    }
    settle();
    --m_changeDepth;
}

void QtTextEditor::setSize(CGSize size)
{
    m_size = size;
    const auto side = [&](CGFloat points) { return static_cast<int>(std::clamp(points / m_scale, 1.0, 1e6)); };
    // One line never scrolls up and down, however high its highest letters are.
    constexpr int enough = 1 << 14;
    m_edit->setTextSize({side(size.width), m_edit->isSingleLine() ? enough : side(size.height)});
}

void QtTextEditor::setEditable(bool editable)
{
    m_edit->setTextInteractionFlags(editable ? Qt::TextEditorInteraction
                                             : Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void QtTextEditor::detach()
{
    m_client = nullptr;
    m_blinkTimer.stop();
}

std::string QtTextEditor::text() const
{
    return fromQString(m_edit->text());
}

TextRange QtTextEditor::selection() const
{
    const QTextCursor cursor = m_edit->textCursor();
    const QString text = m_edit->text();
    const std::size_t start = fromQtPosition(text, cursor.selectionStart());
    return {start, fromQtPosition(text, cursor.selectionEnd()) - start};
}

void QtTextEditor::select(TextRange range)
{
    const Change change(*this);
    const std::string text = this->text();
    const std::size_t location = std::min(range.location, text.size());
    QTextCursor cursor = m_edit->textCursor();
    cursor.setPosition(toQtPosition(text, location));
    cursor.setPosition(toQtPosition(text, location + std::min(range.length, text.size() - location)),
                       QTextCursor::KeepAnchor);
    m_edit->setTextCursor(cursor);
}

CGRect QtTextEditor::caretRect() const
{
    // With what is being composed.
    const QRectF rect = m_edit->inputMethodQuery(Qt::ImCursorRectangle).toRectF();
    CGRect caret{rect.x() * m_scale, rect.y() * m_scale + m_baselineShift, rect.width() * m_scale,
                 rect.height() * m_scale};
    // Behind the last letter there is no room left for it where the text ends with the rectangle.
    const CGFloat hanging = caret.maxX() - m_size.width;
    if (hanging > 0 && hanging <= caret.size.width + 1)
        caret.origin.x -= hanging;
    return caret;
}

CGPoint QtTextEditor::scrollOffset() const
{
    return {m_edit->horizontalScrollBar()->value() * m_scale, m_edit->verticalScrollBar()->value() * m_scale};
}

bool QtTextEditor::handleInput(const InputEvent& event, int clickCount)
{
    const Change change(*this);
    switch (event.kind) {
    case InputKind::keyPressed:
        return handleKey(event);
    case InputKind::buttonPressed:
        return handlePress(event, clickCount);
    case InputKind::buttonReleased:
    case InputKind::pointerMoved:
        return handlePointer(event);
    case InputKind::scrolled:
        return scroll(event);
    default:
        return false;
    }
}

bool QtTextEditor::handleKey(const InputEvent& input)
{
    const std::string& key = input.charactersIgnoringModifiers;
    const bool isReturn = key == NSKey::carriageReturn || key == NSKey::enter;
    const bool isNewLine = isReturn && (input.modifiers & (InputModifier::option | InputModifier::shift)) != 0;
    if (key == NSKey::tab || key == NSKey::backTab || key == NSKey::escape)
        return false;
    if (isReturn && (!isNewLine || m_edit->isSingleLine()))
        return false;
    if (key == NSKey::menu) {
        const CGRect caret = caretRect();
        showContextMenu({caret.minX(), caret.maxY()});
        return true;
    }
    InputEvent plain = input;
    if (isNewLine)
        plain.modifiers = 0;
    QKeyEvent event = toQKeyEvent(plain);
    m_edit->keyPressEvent(&event);
    return event.isAccepted();
}

QMouseEvent QtTextEditor::mouseEvent(int type, const InputEvent& event) const
{
    const Qt::MouseButton button = event.button == 2 ? Qt::MiddleButton : Qt::LeftButton;
    const bool isDown = event.kind != InputKind::buttonReleased;
    const QPointF point(event.location.x / m_scale, (event.location.y - m_baselineShift) / m_scale);
    return {static_cast<QEvent::Type>(type),
            point,
            point,
            event.kind == InputKind::pointerMoved ? Qt::NoButton : button,
            isDown ? button : Qt::NoButton,
            toQtModifiers(event.modifiers)};
}

bool QtTextEditor::handlePress(const InputEvent& event, int clickCount)
{
    commitComposition();
    if (m_host) // where Qt looks for the pointer when a drag scrolls by itself
        m_edit->move(m_host->mapToGlobal(toQPointF(m_origin)).toPoint());
    if (event.button == 1) {
        showContextMenu(event.location);
        return true;
    }
    const bool extends = (event.modifiers & InputModifier::shift) != 0;
    if (clickCount <= 1 && !extends) {
        // Otherwise a press on the selection would begin to drag its text to somewhere else.
        QTextCursor cursor = m_edit->textCursor();
        cursor.clearSelection();
        m_edit->setTextCursor(cursor);
    }
    if (clickCount >= 2) {
        QMouseEvent press = mouseEvent(QEvent::MouseButtonDblClick, event);
        m_edit->mouseDoubleClickEvent(&press);
    }
    if (clickCount != 2) {
        QMouseEvent press = mouseEvent(QEvent::MouseButtonPress, event);
        m_edit->mousePressEvent(&press);
    }
    return true;
}

bool QtTextEditor::handlePointer(const InputEvent& event)
{
    if (event.kind == InputKind::buttonReleased) {
        QMouseEvent release = mouseEvent(QEvent::MouseButtonRelease, event);
        m_edit->mouseReleaseEvent(&release);
    } else {
        QMouseEvent move = mouseEvent(QEvent::MouseMove, event);
        m_edit->mouseMoveEvent(&move);
    }
    return true;
}

bool QtTextEditor::scroll(const InputEvent& event)
{
    const CGPoint before = scrollOffset();
    const auto by = [this](QScrollBar* bar, CGFloat points) {
        bar->setValue(bar->value() - static_cast<int>(std::lround(points / m_scale)));
    };
    by(m_edit->horizontalScrollBar(), event.scroll.x);
    by(m_edit->verticalScrollBar(), event.scroll.y);
    return scrollOffset() != before;
}

// Its entries act on the widget; what they change is reported like everything that no event of ours brings about.
void QtTextEditor::showContextMenu(CGPoint point)
{
    QMenu* menu = m_edit->createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QPoint place = QCursor::pos();
    if (m_host) {
        place = m_host->mapToGlobal(toQPointF({m_origin.x + point.x, m_origin.y + point.y})).toPoint();
        menu->winId(); // makes the window that the next line is about
        menu->windowHandle()->setTransientParent(m_host);
    }
    menu->popup(place);
}

QString QtTextEditor::composed() const
{
    return m_edit->textCursor().block().layout()->preeditAreaText();
}

void QtTextEditor::compose(const TextComposition& composition)
{
    const QString marked = toQString(composition.marked);
    QTextCharFormat format;
    format.setFontUnderline(true);
    QList<QInputMethodEvent::Attribute> attributes;
    attributes.append({QInputMethodEvent::Cursor, toQtPosition(composition.marked, composition.caret), 1, {}});
    if (!marked.isEmpty())
        attributes.append({QInputMethodEvent::TextFormat, 0, static_cast<int>(marked.size()), format});
    QInputMethodEvent event(marked, attributes);
    event.setCommitString(toQString(composition.committed));
    handleInputMethod(event);
}

void QtTextEditor::handleInputMethod(const QInputMethodEvent& event)
{
    if (m_edit->isReadOnly())
        return;
    const Change change(*this);
    QInputMethodEvent accepted(m_edit->accepted(event.preeditString()), event.attributes());
    accepted.setCommitString(m_edit->accepted(event.commitString()), event.replacementStart(),
                             event.replacementLength());
    m_edit->inputMethodEvent(&accepted);
}

void QtTextEditor::commitComposition()
{
    if (composed().isEmpty())
        return;
    QGuiApplication::inputMethod()->commit();
    // Where the desktop has no input method that would send it.
    if (const QString rest = composed(); !rest.isEmpty()) {
        QInputMethodEvent event;
        event.setCommitString(rest);
        handleInputMethod(event);
    }
}

void QtTextEditor::answer(QInputMethodQueryEvent& event) const
{
    for (std::uint32_t bit = 1; bit != 0; bit <<= 1) {
        const auto query = static_cast<Qt::InputMethodQuery>(bit);
        if (!event.queries().testFlag(query))
            continue;
        QVariant value = m_edit->inputMethodQuery(query);
        if (query == Qt::ImEnabled)
            value = !m_edit->isReadOnly();
        if (value.userType() == QMetaType::QRect || value.userType() == QMetaType::QRectF) {
            const QRectF rect = value.toRectF();
            value = QRectF(rect.topLeft() * m_scale, rect.size() * m_scale)
                        .translated(m_origin.x, m_origin.y + m_baselineShift);
        }
        event.setValue(query, value);
    }
}

bool QtTextEditor::canPerform(TextCommand command) const
{
    const bool isEditable = !m_edit->isReadOnly();
    const bool hasSelection = m_edit->textCursor().hasSelection();
    switch (command) {
    case TextCommand::undo:
        return isEditable && m_edit->document()->isUndoAvailable();
    case TextCommand::redo:
        return isEditable && m_edit->document()->isRedoAvailable();
    case TextCommand::cut:
    case TextCommand::deleteSelection:
        return isEditable && hasSelection;
    case TextCommand::copy:
        return hasSelection;
    case TextCommand::paste:
        return isEditable && m_edit->canPaste();
    case TextCommand::selectAll:
        return !m_edit->document()->isEmpty();
    }
    return false;
}

void QtTextEditor::perform(TextCommand command)
{
    if (!canPerform(command))
        return;
    const Change change(*this);
    commitComposition();
    switch (command) {
    case TextCommand::undo:
        m_edit->undo();
        break;
    case TextCommand::redo:
        m_edit->redo();
        break;
    case TextCommand::cut:
        m_edit->cut();
        break;
    case TextCommand::copy:
        m_edit->copy();
        break;
    case TextCommand::paste:
        m_edit->paste();
        break;
    case TextCommand::deleteSelection:
        m_edit->textCursor().removeSelectedText();
        break;
    case TextCommand::selectAll:
        m_edit->selectAll();
        break;
    }
}

void QtTextEditor::noteChange()
{
    m_hasMoved = true;
    reportLater();
}

// The context menu, or a drag that scrolls by itself: Qt is in the middle of it.
void QtTextEditor::reportLater()
{
    if (m_changeDepth > 0 || m_isReportPending)
        return;
    m_isReportPending = true;
    QMetaObject::invokeMethod(
        m_edit, [this] { callGuarded([this] { const Change change(*this); }); }, Qt::QueuedConnection);
}

// The line's width follows the text, and the scroll position the caret if that moved.
void QtTextEditor::settle()
{
    if (!std::exchange(m_hasMoved, false))
        return;
    m_edit->fitLine();
    m_edit->ensureCursorVisible();
}

void QtTextEditor::report()
{
    const auto alive = shared_from_this();
    m_isReportPending = false;
    restartBlinking();
    // What is only being composed changes the document, too, but not its text.
    const QString text = m_edit->text();
    if (std::exchange(m_reportedText, text) != text && m_client)
        m_client->textDidChange();
    if (m_client)
        m_client->editorNeedsDisplay();
}

void QtTextEditor::setHost(QWindow* window, CGPoint origin)
{
    m_origin = origin;
    if (m_host == window)
        return;
    m_host = window;
    QObject::disconnect(m_focusConnection);
    if (window)
        m_focusConnection = QObject::connect(window, &QWindow::activeChanged, m_edit, [this] { reportLater(); });
    restartBlinking();
}

void QtTextEditor::restartBlinking()
{
    m_isCaretShown = true;
    const int interval = QApplication::cursorFlashTime() / 2;
    if (!m_client || !m_host || !m_host->isActive() || m_edit->isReadOnly() || interval <= 0) {
        m_blinkTimer.stop();
        return;
    }
    m_blinksLeft = changesBeforeRest;
    m_blinkTimer.start(interval);
}

void QtTextEditor::blink()
{
    m_isCaretShown = !m_isCaretShown;
    if (--m_blinksLeft == 0)
        m_blinkTimer.stop(); // shown, for the number is even
    if (m_client)
        m_client->editorNeedsDisplay();
}

void QtTextEditor::draw(Canvas& canvas, CGPoint origin)
{
    auto* qtCanvas = dynamic_cast<QtCanvas*>(&canvas.target());
    if (!qtCanvas) {
        // A record of what is drawn: it cannot set selected text, but it can say what there is.
        TextDescription content = m_content;
        content.text = text();
        canvas.drawText(content, {origin, m_size});
        return;
    }
    QPainter& painter = qtCanvas->painter();
    painter.save();
    painter.setClipRect(toQRectF({origin, m_size}), Qt::IntersectClip);
    painter.translate(origin.x, origin.y);
    if (isActive() && m_isCaretShown && !m_edit->isReadOnly() && !m_edit->textCursor().hasSelection())
        drawCaret(painter);
    painter.translate(0, m_baselineShift);
    painter.scale(m_scale, m_scale);
    paint(painter);
    painter.restore();
}

void QtTextEditor::drawCaret(QPainter& painter) const
{
    painter.setRenderHint(QPainter::Antialiasing, false); // one sharp line
    painter.fillRect(toQRectF(caretRect()), toQColor(m_content.color));
    painter.setRenderHint(QPainter::Antialiasing, true);
}

void QtTextEditor::paint(QPainter& painter) const
{
    const QPointF offset(m_edit->horizontalScrollBar()->value(), m_edit->verticalScrollBar()->value());
    painter.translate(-offset);
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = QRectF(offset, m_edit->viewport()->size());
    context.palette = QGuiApplication::palette();
    context.palette.setColor(QPalette::Text, toQColor(m_content.color));
    if (m_edit->textCursor().hasSelection()) {
        const auto group = isActive() ? QPalette::Active : QPalette::Inactive;
        QAbstractTextDocumentLayout::Selection selection;
        selection.cursor = m_edit->textCursor();
        selection.format.setBackground(context.palette.brush(group, QPalette::Highlight));
        selection.format.setForeground(context.palette.brush(group, QPalette::HighlightedText));
        context.selections.append(selection);
    }
    m_edit->document()->documentLayout()->draw(&painter, context);
}

} // namespace RVCore
