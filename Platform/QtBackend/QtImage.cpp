#include <CoreGraphics/Bitmap.h>

#include <QImageReader>
#include <QPainter>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtImage.h>
#include <QtBackend/QtPixelGrid.h>

#include <cmath>

namespace RVCore {

CGImageRef readImage(const std::string& path)
{
    constexpr int largest = Bitmap::largestSide;
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
