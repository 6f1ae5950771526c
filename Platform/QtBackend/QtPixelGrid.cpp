#include <CoreGraphics/PixelGrid.h>

#include <QTransform>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtPixelGrid.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

constexpr CGFloat farthest = 1 << 24; // in pixels; integers and rounding end somewhere

int pixelAt(CGFloat edge)
{
    return static_cast<int>(nearestPixel(edge));
}

bool liesStraight(const QTransform& toDevice)
{
    return toDevice.type() <= QTransform::TxScale && toDevice.isInvertible();
}

// A mirrored rectangle lies like any other.
std::optional<QRect> pixelsOf(const QTransform& toDevice, const CGRect& rect)
{
    if (!liesStraight(toDevice))
        return std::nullopt;
    const QRectF onDevice = toDevice.mapRect(toQRectF(rect));
    for (const CGFloat edge : {onDevice.left(), onDevice.top(), onDevice.right(), onDevice.bottom()}) {
        if (!(std::abs(edge) < farthest))
            return std::nullopt;
    }
    const QPoint topLeft(pixelAt(onDevice.left()), pixelAt(onDevice.top()));
    return QRect(topLeft, QSize(pixelAt(onDevice.right()) - topLeft.x(), pixelAt(onDevice.bottom()) - topLeft.y()));
}

bool isCircle(const RoundedRect& shape)
{
    return 2 * shape.radius >= std::max(shape.rect.size.width, shape.rect.size.height);
}

CGFloat wholePixels(CGFloat length, CGFloat scale)
{
    return std::max(pixelAt(std::min(length * scale, farthest)), 1) / scale;
}

} // namespace

std::optional<QRect> snappedToDevice(const QTransform& toDevice, const CGRect& rect)
{
    if (toDevice.m11() <= 0 || toDevice.m22() <= 0)
        return std::nullopt;
    return pixelsOf(toDevice, rect);
}

RoundedRect alignedToDevice(const QTransform& toDevice, const RoundedRect& shape)
{
    const auto pixels = shape.rect.isEmpty() || isCircle(shape) ? std::nullopt : pixelsOf(toDevice, shape.rect);
    if (!pixels)
        return shape;
    const QRectF aligned =
        toDevice.inverted().mapRect(QRectF(pixels->topLeft(), pixels->size().expandedTo(QSize(1, 1))));
    return {{aligned.x(), aligned.y(), aligned.width(), aligned.height()}, shape.radius};
}

CGSize lineAlignedToDevice(const QTransform& toDevice, CGFloat width)
{
    if (!liesStraight(toDevice))
        return {width, width};
    return {wholePixels(width, std::abs(toDevice.m11())), wholePixels(width, std::abs(toDevice.m22()))};
}

} // namespace RVCore
