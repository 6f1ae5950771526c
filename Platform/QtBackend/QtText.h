#pragma once

#include <CoreGraphics/TextDescription.h>

#include <QTextLayout>

class QPainter;

namespace RVCore {

// Setting text. Measuring and drawing share one layout, so what is drawn is as large as what was measured.
//
//  - Every line is as high as its highest font, ascent and descent each rounded up to whole points; with a font's
//  line
//    gap, if it has one, between lines.
//  - Text that wraps breaks where the script's rules allow it, and inside a word that is wider than the line. Blanks
//  at
//    the end of such a line take no room.
//  - Truncation removes whole characters in the order in which they are read, not seen.
//  - A line that is wider than its room starts at the edge where reading starts.
//  - Monospaced digits: each digit is given the advance of the widest one.

// Formats that give every digit of the paragraph the advance of the font's widest one.
QList<QTextLayout::FormatRange> digitFormats(const QString& paragraph, const QFont& font);

// Backend.measureText.
TextMetrics measureText(const TextDescription& text, CGFloat maximumWidth);

// Sets the text in the rectangle from its top, clipped to it, in the painter's coordinates.
void drawText(QPainter& painter, const TextDescription& text, const CGRect& rect);

} // namespace RVCore
