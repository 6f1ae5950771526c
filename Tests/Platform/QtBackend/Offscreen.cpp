#include <Backend/Backend.h>
#include <Platform/QtBackend/Offscreen.h>

#include <QColor>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>

namespace RVCore {

namespace {

[[maybe_unused]] const bool isOffscreen = setenv("QT_QPA_PLATFORM", "offscreen", 1) == 0;

} // namespace

std::string temporaryPath(const std::string& name)
{
    static const QTemporaryDir folder;
    return folder.filePath(QString::fromStdString(name)).toStdString();
}

QImage paintedPicture(CGSize size, CGFloat scale, const std::function<void(Canvas&)>& paint)
{
    const std::string path = temporaryPath("painted.png");
    Backend::shared().writePicture(path, size, scale, paint);
    return QImage(QString::fromStdString(path)).convertToFormat(QImage::Format_ARGB32);
}

QRect inkBounds(const QImage& picture)
{
    QRect bounds;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) > 0)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

double inkArea(const QImage& picture)
{
    double area = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            area += qAlpha(picture.pixel(x, y)) / 255.0;
    }
    return area;
}

int largestDifference(const QImage& a, const QImage& b)
{
    if (a.size() != b.size())
        return 255;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            largest = std::max({largest, std::abs(qAlpha(p) - qAlpha(q)), std::abs(qRed(p) - qRed(q)),
                                std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return largest;
}

} // namespace RVCore
