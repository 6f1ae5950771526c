#include <Foundation/NSException.h>

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <QSaveFile>
#include <QtBackend/QtCanvas.h>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtPicture.h>

#include <cmath>

namespace RVCore {

namespace {

constexpr std::string_view operation = "Backend.writePicture";

// Whole pixels; a part of one at the edge counts as one.
int pixelSide(std::string_view name, CGFloat points, CGFloat scale)
{
    constexpr int largest = 32767;
    // The products of decimal fractions miss whole numbers by a little.
    const CGFloat pixels = std::ceil(points * scale - 1e-6);
    if (!(pixels >= 1))
        raiseInvalidArgument(operation, std::string(name) + " must be above 0, got " + numberText(points));
    if (pixels > largest)
        raiseInvalidArgument(operation, std::string(name) + " must be at most " + std::to_string(largest) +
                                            " pixels, got " + numberText(pixels));
    return static_cast<int>(pixels);
}

QImage makeImage(CGSize size, CGFloat scale)
{
    requireFinite(operation, "size", size);
    requireFinite(operation, "scale", scale);
    if (scale <= 0)
        raiseInvalidArgument(operation, "scale must be above 0, got " + numberText(scale));
    const int width = pixelSide("size.width", size.width, scale);
    const int height = pixelSide("size.height", size.height, scale);
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        raiseInvalidArgument(operation,
                             "no memory for " + std::to_string(width) + " × " + std::to_string(height) + " pixels");
    image.setDevicePixelRatio(scale);
    // What viewers make the picture's size out of: a point is 1/72 of an inch.
    const int dotsPerMeter = qRound(scale * 72 / 0.0254);
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    image.fill(Qt::transparent);
    return image;
}

void save(const QImage& image, const std::string& path)
{
    const auto fail = [&](const QString& reason) {
        raiseInvalidArgument(operation, "cannot write " + path + ": " + fromQString(reason));
    };
    // Written beside the file and put in its place when whole.
    QBuffer encoded;
    encoded.open(QIODevice::WriteOnly);
    QImageWriter writer(&encoded, "png");
    if (!writer.write(image))
        fail(writer.errorString());

    QSaveFile file(toQString(path));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(file.errorString());
    // A disk that is nearly full takes a part of the data first, and only then says why it takes no more.
    for (QByteArrayView rest = encoded.data(); !rest.isEmpty();) {
        const qint64 written = file.write(rest.data(), rest.size());
        if (written <= 0)
            fail(file.errorString());
        rest = rest.sliced(written);
    }
    if (!file.commit())
        fail(file.errorString());
}

} // namespace

void writePicture(const std::string& path, CGSize size, CGFloat scale, const std::function<void(Canvas&)>& paint)
{
    QImage image = makeImage(size, scale);
    {
        QPainter painter(&image);
        QtCanvas canvas(painter);
        paint(canvas);
    }
    save(image, path);
}

} // namespace RVCore
