#include <QtBackend/QtBitmap.h>

namespace RVCore {

namespace {

// What the canvas stands on, made before it.
struct PaintedBitmap {
    PaintedBitmap(Bitmap& bitmap, CGFloat scale) : image(toQImage(bitmap))
    {
        image.setDevicePixelRatio(scale);
        painter.begin(&image);
    }

    QImage image;
    QPainter painter;
};

class QtBitmapCanvas : private PaintedBitmap, public QtCanvas {
public:
    QtBitmapCanvas(Bitmap& bitmap, int x, int y, CGFloat scale)
        : PaintedBitmap(bitmap, scale), QtCanvas(PaintedBitmap::painter)
    {
        concatenate(CGAffineTransform::translation(-x / scale, -y / scale));
    }
};

constexpr QImage::Format format = QImage::Format_ARGB32_Premultiplied; // words 0xAARRGGBB, as in a bitmap

} // namespace

QImage toQImage(Bitmap& bitmap)
{
    if (bitmap.isEmpty())
        return {};
    return {reinterpret_cast<uchar*>(bitmap.row(0).data()), bitmap.width(), bitmap.height(),
            static_cast<qsizetype>(bitmap.bytesPerRow()), format};
}

QImage toQImage(const Bitmap& bitmap)
{
    if (bitmap.isEmpty())
        return {};
    return {reinterpret_cast<const uchar*>(bitmap.row(0).data()), bitmap.width(), bitmap.height(),
            static_cast<qsizetype>(bitmap.bytesPerRow()), format};
}

std::unique_ptr<Canvas> makeBitmapCanvas(Bitmap& bitmap, int x, int y, CGFloat scale)
{
    return std::make_unique<QtBitmapCanvas>(bitmap, x, y, scale);
}

} // namespace RVCore
