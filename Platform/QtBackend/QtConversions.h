#pragma once

#include <Backend/WindowPlacement.h>
#include <CoreGraphics/Canvas.h>

#include <QColor>
#include <QFont>
#include <QPainterPath>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QTransform>

#include <string>

namespace RVCore {

// Every passage between the project's types and Qt's. 1 point is 1 of Qt's device-independent pixels.

QPointF toQPointF(CGPoint point);
QRectF toQRectF(const CGRect& rect);
// Sides rounded up, from 1 to 32,767: what a window can have.
QSize toQWindowSize(CGSize size);
CGSize fromQSize(QSize size);
// Rounded, and clipped to ±32,767: where a window can be.
QPoint toQDesktopPoint(CGPoint point);
CGRect fromQRect(const QRect& rect);
Qt::WindowFlags toQWindowFlags(const WindowStyle& style);
QTransform toQTransform(const CGAffineTransform& transform);
// Components outside 0 … 1 are taken as the nearest of these.
QColor toQColor(const CGColor& color);
// Without points where the shape is empty.
QPainterPath toQPainterPath(const RoundedRect& shape);
// Bytes that are not UTF-8 become U+FFFD.
QString toQString(const std::string& text);
std::string fromQString(const QString& text);
// Qt sets fonts of whole sizes only. What is set in this one has the size asked for when it is scaled by this factor;
// advances are proportional to the size.
struct QtFont {
    QFont font;
    CGFloat scale = 1;
};
QtFont toQtFont(const FontDescription& font);

} // namespace RVCore
