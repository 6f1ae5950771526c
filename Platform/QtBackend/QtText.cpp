#include <Foundation/NSException.h>

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtText.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace RVCore {

namespace {

constexpr QChar ellipsis(0x2026);
// Wider than any text, yet small enough for the fixed-point numbers inside Qt's layout.
constexpr qreal withoutLimit = 1 << 23;

// One line of the text that is set. A paragraph's lines share its layout, which is scaled when it is drawn.
struct Line {
    std::shared_ptr<QTextLayout> layout;
    int index = 0;
    CGFloat scale = 1;
    // In points.
    CGFloat top = 0;
    CGFloat height = 0;
    CGFloat ascent = 0;
    CGFloat width = 0;
    bool readsFromRight = false;

    QTextLine textLine() const { return layout->lineAt(index); }
};

// Blanks at the end of a paragraph that wraps take no room; Qt leaves them out where a line breaks only.
QString withoutTrailingBlanks(QString paragraph)
{
    while (paragraph.endsWith(u' ') || paragraph.endsWith(u'\t'))
        paragraph.chop(1);
    return paragraph;
}

// The text from top to bottom.
class Setter {
public:
    // `width` is the room of a line; 0 or less, or not a number, for as much as it takes.
    Setter(const TextDescription& text, CGFloat width)
        : m_text(text), m_font(toQtFont(text.font)),
          m_width(width > 0 ? std::min(width / m_font.scale, withoutLimit) : withoutLimit)
    {
        const QStringList paragraphs = toQString(text.text).split(u'\n');
        for (qsizetype i = 0; i < paragraphs.size() && !isFull(); ++i)
            addParagraph(text.wraps() ? withoutTrailingBlanks(paragraphs[i]) : paragraphs[i],
                         i + 1 == paragraphs.size());
    }

    const std::vector<Line>& lines() const { return m_lines; }

private:
    bool isFull() const
    {
        return m_text.maximumNumberOfLines > 0 &&
               m_lines.size() >= static_cast<std::size_t>(m_text.maximumNumberOfLines);
    }

    bool isLastAllowedLine() const
    {
        return m_text.maximumNumberOfLines > 0 &&
               m_lines.size() + 1 == static_cast<std::size_t>(m_text.maximumNumberOfLines);
    }

    std::shared_ptr<QTextLayout> makeLayout(const QString& paragraph, bool readsFromRight) const
    {
        auto layout = std::make_shared<QTextLayout>(paragraph, m_font.font);
        QTextOption option;
        option.setTextDirection(readsFromRight ? Qt::RightToLeft : Qt::LeftToRight);
        option.setTabStopDistance(2 * m_font.font.pixelSize());
        switch (m_text.lineBreakMode) {
        case NSLineBreakMode::wordWrapping:
            option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
            break;
        case NSLineBreakMode::charWrapping:
            option.setWrapMode(QTextOption::WrapAnywhere);
            break;
        default:
            option.setWrapMode(QTextOption::NoWrap);
            break;
        }
        if (m_text.alignment == NSTextAlignment::justified)
            option.setAlignment(Qt::AlignJustify);
        // Where lines do not break, blanks at the end are as good as any others.
        if (!m_text.wraps())
            option.setFlags(QTextOption::IncludeTrailingSpaces);
        layout->setTextOption(option);
        layout->setCacheEnabled(true);
        if (m_text.font.monospacedDigits)
            layout->setFormats(digitFormats(paragraph, m_font.font));
        return layout;
    }

    // Breaks the paragraph into lines of the room's width.
    void breakIntoLines(QTextLayout& layout) const
    {
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
            line.setLineWidth(m_width);
        layout.endLayout();
    }

    void addParagraph(const QString& paragraph, bool isLast)
    {
        const bool readsFromRight = paragraph.isRightToLeft();
        const auto layout = makeLayout(shortened(paragraph, readsFromRight), readsFromRight);
        breakIntoLines(*layout);
        for (int i = 0; i < layout->lineCount() && !isFull(); ++i) {
            const bool isRest = !isLast || i + 1 < layout->lineCount();
            if (isLastAllowedLine() && isRest)
                addElidedLine(paragraph.mid(layout->lineAt(i).textStart()), readsFromRight);
            else
                addLine(layout, i, readsFromRight);
        }
    }

    // What the line break mode leaves of a line that does not wrap.
    QString shortened(const QString& paragraph, bool readsFromRight) const
    {
        switch (m_text.lineBreakMode) {
        case NSLineBreakMode::truncatingHead:
        case NSLineBreakMode::truncatingTail:
        case NSLineBreakMode::truncatingMiddle:
            if (!fits(paragraph, readsFromRight))
                return elided(paragraph, readsFromRight);
            break;
        default:
            break;
        }
        return paragraph;
    }

    // The last of the allowed lines when there is more text: what follows is told by an ellipsis.
    void addElidedLine(const QString& rest, bool readsFromRight)
    {
        TextDescription single = m_text;
        single.lineBreakMode = NSLineBreakMode::truncatingTail;
        single.maximumNumberOfLines = 0;
        const Setter setter(single, rest, readsFromRight, m_width);
        addLine(setter.m_lines.front().layout, 0, readsFromRight);
    }

    // One line that ends in an ellipsis in any case.
    Setter(const TextDescription& text, const QString& rest, bool readsFromRight, qreal width)
        : m_text(text), m_font(toQtFont(text.font)), m_width(width)
    {
        const QString whole = rest + ellipsis;
        const auto layout =
            makeLayout(fits(whole, readsFromRight) ? whole : elided(rest, readsFromRight), readsFromRight);
        breakIntoLines(*layout);
        addLine(layout, 0, readsFromRight);
    }

    bool fits(const QString& line, bool readsFromRight) const { return widthOf(line, readsFromRight) <= m_width; }

    qreal widthOf(const QString& line, bool readsFromRight) const
    {
        const auto layout = makeLayout(line, readsFromRight);
        layout->beginLayout();
        QTextLine textLine = layout->createLine();
        if (textLine.isValid())
            textLine.setLineWidth(withoutLimit);
        layout->endLayout();
        return textLine.isValid() ? textLine.naturalTextWidth() : 0;
    }

    // The longest shortened form that fits, found by halving: fewer characters are never wider by more than their
    // ligatures, and whatever is found has been measured to fit. An ellipsis alone remains in any case.
    QString elided(const QString& line, bool readsFromRight) const
    {
        std::vector<int> boundaries;
        const QTextLayout characters(line, m_font.font);
        for (int position = 0; position < line.size(); position = characters.nextCursorPosition(position))
            boundaries.push_back(position);
        boundaries.push_back(static_cast<int>(line.size()));

        std::size_t kept = 0;
        std::size_t tooMany = boundaries.size() - 1; // that many are the whole line, which does not fit
        while (kept + 1 < tooMany) {
            const std::size_t middle = (kept + tooMany) / 2;
            (fits(withEllipsis(line, boundaries, middle), readsFromRight) ? kept : tooMany) = middle;
        }
        return withEllipsis(line, boundaries, kept);
    }

    // The line with only `kept` of its characters.
    QString withEllipsis(const QString& line, const std::vector<int>& boundaries, std::size_t kept) const
    {
        std::size_t head = kept;
        if (m_text.lineBreakMode == NSLineBreakMode::truncatingHead)
            head = 0;
        else if (m_text.lineBreakMode == NSLineBreakMode::truncatingMiddle)
            head = (kept + 1) / 2;
        const std::size_t tail = boundaries.size() - 1 - (kept - head);
        return line.left(boundaries[head]) + ellipsis + line.mid(boundaries[tail]);
    }

    void addLine(const std::shared_ptr<QTextLayout>& layout, int index, bool readsFromRight)
    {
        Line line;
        line.layout = layout;
        line.index = index;
        line.scale = m_font.scale;
        const QTextLine textLine = line.textLine();
        if (!m_lines.empty()) {
            const CGFloat gap = std::round(textLine.leading() * line.scale);
            line.top = m_lines.back().top + m_lines.back().height + std::max(gap, 0.0);
        }
        line.ascent = std::ceil(textLine.ascent() * line.scale);
        line.height = line.ascent + std::ceil(textLine.descent() * line.scale);
        line.width = textLine.naturalTextWidth() * line.scale;
        line.readsFromRight = readsFromRight;
        m_lines.push_back(std::move(line));
    }

    const TextDescription& m_text;
    const QtFont m_font;
    const qreal m_width; // of a line's room, in the font's pixels
    std::vector<Line> m_lines;
};

// Where the line's text begins in a room of this width, for what is not justified.
CGFloat leftEdge(const Line& line, CGFloat room, NSTextAlignment alignment)
{
    const CGFloat slack = room - line.width;
    const bool isNatural = alignment == NSTextAlignment::natural || alignment == NSTextAlignment::justified;
    if (slack < 0 || isNatural)
        return line.readsFromRight ? slack : 0;
    if (alignment == NSTextAlignment::center)
        return slack / 2;
    return alignment == NSTextAlignment::right ? slack : 0;
}

std::vector<CGFloat> lineWidths(const Setter& setter)
{
    std::vector<CGFloat> widths;
    for (const Line& line : setter.lines())
        widths.push_back(line.width);
    return widths;
}

void requireUsable(std::string_view operation, const FontDescription& font)
{
    requireFinite(operation, "font.size", font.size);
    if (font.size <= 0)
        raiseInvalidArgument(operation, "font.size must be above 0, got " + numberText(font.size));
}

} // namespace

// Qt 6.4 cannot switch the font's own tabular figures on, so the
// narrower digits are followed by the difference.
QList<QTextLayout::FormatRange> digitFormats(const QString& paragraph, const QFont& font)
{
    const QFontMetricsF metrics(font);
    qreal widest = 0;
    for (char digit = '0'; digit <= '9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QLatin1Char(digit)));
    QList<QTextLayout::FormatRange> formats;
    for (int i = 0; i < paragraph.size(); ++i) {
        if (paragraph[i] < u'0' || paragraph[i] > u'9')
            continue;
        const qreal missing = widest - metrics.horizontalAdvance(paragraph[i]);
        if (missing <= 0)
            continue;
        QTextLayout::FormatRange range;
        range.start = i;
        range.length = 1;
        range.format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
        range.format.setFontLetterSpacing(missing);
        formats.append(range);
    }
    return formats;
}

TextMetrics measureText(const TextDescription& text, CGFloat maximumWidth)
{
    requireUsable("Backend.measureText", text.font);
    const Setter setter(text, maximumWidth);
    const std::vector<CGFloat> widths = lineWidths(setter);
    const CGFloat limit = maximumWidth > 0 ? std::ceil(maximumWidth) : HUGE_VAL;
    CGFloat width = std::min(std::ceil(*std::max_element(widths.begin(), widths.end())), limit);
    // Where a glyph reaches beyond its advance, a line takes more room to stay one line than it covers. What the text
    // needs is the room in which it breaks as it does here.
    while (text.wraps() && width < limit && lineWidths(Setter(text, width)) != widths)
        ++width;
    const std::vector<Line>& lines = setter.lines();
    return {{width, lines.back().top + lines.back().height}, lines.front().ascent};
}

void drawText(QPainter& painter, const TextDescription& text, const CGRect& rect)
{
    requireUsable("Canvas.drawText", text.font);
    if (rect.isEmpty() || text.text.empty())
        return;
    painter.save();
    painter.setClipRect(toQRectF(rect), Qt::IntersectClip);
    painter.setPen(toQColor(text.color));
    const Setter setter(text, rect.size.width);
    for (const Line& line : setter.lines()) {
        if (line.top >= rect.size.height)
            break;
        const QTextLine textLine = line.textLine();
        painter.save();
        painter.translate(rect.minX() + leftEdge(line, rect.size.width, text.alignment),
                          rect.minY() + line.top + line.ascent);
        painter.scale(line.scale, line.scale);
        textLine.draw(&painter, QPointF(-textLine.naturalTextRect().left(), -textLine.y() - textLine.ascent()));
        painter.restore();
    }
    painter.restore();
}

} // namespace RVCore
