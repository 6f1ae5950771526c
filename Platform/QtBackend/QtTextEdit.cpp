#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QMimeData>
#include <QResizeEvent>
#include <QScrollBar>
#include <QSyntaxHighlighter>
#include <QTextDocument>
#include <QtBackend/QtText.h>
#include <QtBackend/QtTextEdit.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

// Lays formats over the text that are not part of it.
class QtTextEdit::DigitSpacing : public QSyntaxHighlighter {
public:
    using QSyntaxHighlighter::QSyntaxHighlighter;

protected:
    void highlightBlock(const QString& text) override
    {
        for (const QTextLayout::FormatRange& range : digitFormats(text, document()->defaultFont()))
            setFormat(range.start, range.length, range.format);
    }
};

QtTextEdit::QtTextEdit()
{
    setFrameStyle(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // they scroll, but take no room
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setViewportMargins(0, 0, 0, 0);
    setAcceptRichText(false);
    setAcceptDrops(false);
    document()->setDocumentMargin(0);
}

void QtTextEdit::setTextSize(QSize size)
{
    if (size == this->size())
        return;
    const QSize oldSize = viewport()->size();
    resize(size);
    // A widget that is not shown is told its size when it is.
    QResizeEvent event(size, oldSize);
    QCoreApplication::sendEvent(this, &event);
    QResizeEvent viewportEvent(viewport()->size(), oldSize);
    resizeEvent(&viewportEvent);
    fitLine();
}

void QtTextEdit::setWrapping(QTextOption::WrapMode mode)
{
    setLineWrapMode(mode == QTextOption::NoWrap ? FixedPixelWidth : WidgetWidth);
    setWordWrapMode(mode);
    fitLine();
}

void QtTextEdit::setMonospacedDigits(bool monospaced)
{
    if (!monospaced) {
        delete std::exchange(m_digitSpacing, nullptr);
        return;
    }
    if (!m_digitSpacing)
        m_digitSpacing = new DigitSpacing(document());
    m_digitSpacing->rehighlight(); // the font may be another one
}

void QtTextEdit::fitLine()
{
    if (isSingleLine())
        setLineWrapColumnOrWidth(
            std::max(viewport()->width(), static_cast<int>(std::ceil(document()->idealWidth()))));
}

QString QtTextEdit::accepted(QString text) const
{
    if (!isSingleLine())
        return text;
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    for (QChar& character : text) {
        if (character == u'\n' || character == u'\r' || character == QChar::ParagraphSeparator ||
            character == QChar::LineSeparator)
            character = u' ';
    }
    return text;
}

QString QtTextEdit::text() const
{
    // The plain text would have ordinary spaces in place of those that do not break.
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    return text;
}

QString QtTextEdit::textWhenSet(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(u'\r', u'\n');
    text.replace(QChar::ParagraphSeparator, u'\n');
    return text;
}

int QtTextEdit::clampedPosition(int position) const
{
    return std::clamp(position, 0, document()->characterCount() - 1); // the last one ends the document
}

void QtTextEdit::insertFromMimeData(const QMimeData* source)
{
    if (isReadOnly() || !source->hasText())
        return;
    textCursor().insertText(accepted(source->text()));
    ensureCursorVisible();
}

} // namespace RVCore
