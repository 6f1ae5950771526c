#include <Foundation/NSException.h>

#include <QBuffer>
#include <QImageWriter>
#include <QSaveFile>
#include <QtBackend/QtBitmap.h>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtPicture.h>

namespace RVCore {

namespace {

constexpr std::string_view operation = "Backend.writePicture";

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

void writePicture(const std::string& path, const Bitmap& picture, CGFloat scale)
{
    if (picture.isEmpty())
        raiseInvalidArgument(operation, "cannot write " + path + ": the picture is empty");
    QImage image = toQImage(picture);
    // What viewers make the picture's size out of: a point is 1/72 of an inch.
    const int dotsPerMeter = qRound(scale * 72 / 0.0254);
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    save(image, path);
}

} // namespace RVCore
