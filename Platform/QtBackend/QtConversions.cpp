#include <QGuiApplication>
#include <QtBackend/QtConversions.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

// Of text this large, fixed-point advances still count thirty thousand characters in a line.
constexpr CGFloat largestFontSize = 256;

int windowSide(CGFloat side)
{
    return static_cast<int>(std::clamp(std::ceil(side), 1.0, largestWindowSide));
}

float component(double value)
{
    return static_cast<float>(std::clamp(value, 0.0, 1.0));
}

} // namespace

QPointF toQPointF(CGPoint point)
{
    return {point.x, point.y};
}

QRectF toQRectF(const CGRect& rect)
{
    return {rect.minX(), rect.minY(), rect.size.width, rect.size.height};
}

QSize toQWindowSize(CGSize size)
{
    return {windowSide(size.width), windowSide(size.height)};
}

CGSize fromQSize(QSize size)
{
    return {static_cast<CGFloat>(size.width()), static_cast<CGFloat>(size.height())};
}

QPoint toQDesktopPoint(CGPoint point)
{
    const auto coordinate = [](CGFloat value) {
        return static_cast<int>(std::clamp(std::round(value), -largestWindowSide, largestWindowSide));
    };
    return {coordinate(point.x), coordinate(point.y)};
}

CGRect fromQRect(const QRect& rect)
{
    return {{CGFloat(rect.x()), CGFloat(rect.y())}, fromQSize(rect.size())};
}

Qt::WindowFlags toQWindowFlags(const WindowStyle& style)
{
    if (!style.isTitled)
        return Qt::Window | Qt::FramelessWindowHint;
    Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    flags.setFlag(Qt::WindowCloseButtonHint, style.isClosable);
    flags.setFlag(Qt::WindowMinimizeButtonHint, style.isMinimizable);
    flags.setFlag(Qt::WindowMaximizeButtonHint, style.isResizable);
    return flags;
}

QTransform toQTransform(const CGAffineTransform& transform)
{
    return {transform.a, transform.b, transform.c, transform.d, transform.tx, transform.ty};
}

QColor toQColor(const CGColor& color)
{
    return QColor::fromRgbF(component(color.red), component(color.green), component(color.blue),
                            component(color.alpha));
}

QPainterPath toQPainterPath(const RoundedRect& shape)
{
    QPainterPath path;
    if (shape.rect.isEmpty())
        return path;
    const CGFloat largest = std::min(shape.rect.size.width, shape.rect.size.height) / 2;
    const CGFloat radius = std::clamp(shape.radius, 0.0, largest);
    if (radius > 0)
        path.addRoundedRect(toQRectF(shape.rect), radius, radius);
    else
        path.addRect(toQRectF(shape.rect));
    return path;
}

QString toQString(const std::string& text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string fromQString(const QString& text)
{
    return text.toStdString();
}

QtFont toQtFont(const FontDescription& font)
{
    QFont result = QGuiApplication::font();
    if (!font.family.empty())
        result.setFamilies({toQString(font.family)});
    const CGFloat pixelSize = std::clamp(std::ceil(font.size), 1.0, largestFontSize);
    result.setPixelSize(static_cast<int>(pixelSize));
    result.setBold(font.bold);
    // Advances that do not depend on the device's pixels: what was measured in points holds at every scale. Grey
    // edges, because a picture may lie on any ground.
    result.setHintingPreference(QFont::PreferVerticalHinting);
    result.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return {result, font.size / pixelSize};
}

} // namespace RVCore
