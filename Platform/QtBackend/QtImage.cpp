#include <QImageReader>
#include <QPainter>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtImage.h>

#include <cmath>

namespace RVCore {

CGImageRef readImage(const std::string& path)
{
    constexpr int largest = 32767;
    QImageReader reader(toQString(path), "png");
    const QImage image = reader.read().convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    if (image.isNull() || image.width() > largest || image.height() > largest)
        return nullptr;
    std::vector<std::uint8_t> pixels;
    pixels.reserve(static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()) * 4);
    for (int row = 0; row < image.height(); ++row) {
        const uchar* line = image.constScanLine(row);
        pixels.insert(pixels.end(), line, line + std::ptrdiff_t(image.width()) * 4);
    }
    return std::make_shared<const CGImage>(image.width(), image.height(), std::move(pixels));
}

QImage toQImage(const CGImage& image)
{
    return {image.pixels().data(), image.width(), image.height(), static_cast<qsizetype>(image.bytesPerRow()),
            QImage::Format_RGBA8888_Premultiplied};
}

std::optional<QRect> snappedToDevice(const QTransform& toDevice, const CGRect& rect)
{
    constexpr CGFloat farthest = 1 << 24;
    if (toDevice.type() > QTransform::TxScale || toDevice.m11() <= 0 || toDevice.m22() <= 0)
        return std::nullopt;
    const QRectF onDevice = toDevice.mapRect(toQRectF(rect));
    for (const CGFloat edge : {onDevice.left(), onDevice.top(), onDevice.right(), onDevice.bottom()}) {
        if (!(std::abs(edge) < farthest))
            return std::nullopt;
    }
    const QPoint topLeft(qRound(onDevice.left()), qRound(onDevice.top()));
    return QRect(topLeft, QSize(qRound(onDevice.right()) - topLeft.x(), qRound(onDevice.bottom()) - topLeft.y()));
}

void drawPixels(QPainter& painter, const QImage& image, const CGRect& rect)
{
    if (rect.isEmpty())
        return;
    const QTransform toDevice = painter.deviceTransform();
    const auto pixels = snappedToDevice(toDevice, rect);
    if (!pixels) {
        painter.drawImage(toQRectF(rect), image);
        return;
    }
    painter.save();
    painter.setWorldTransform(toDevice.inverted() * painter.worldTransform()); // the device's own coordinates
    if (pixels->size() == image.size())
        painter.drawImage(pixels->topLeft(), image);
    else
        painter.drawImage(*pixels, image);
    painter.restore();
}

} // namespace RVCore
