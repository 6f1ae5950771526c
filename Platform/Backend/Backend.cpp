#include <Backend/Backend.h>
#include <CoreGraphics/PixelGrid.h>
#include <Foundation/NSException.h>
#include <Foundation/Stop.h>

namespace RVCore {

namespace {

struct Registration {
    int rank = 0;
    Backend::Factory factory = nullptr;
};

Registration& bestRegistration()
{
    static Registration registration;
    return registration;
}

std::unique_ptr<Backend>& current()
{
    static std::unique_ptr<Backend> backend;
    return backend;
}

// Whole pixels; a part of one at the edge counts as one.
int pictureSide(std::string_view name, CGFloat points, CGFloat scale)
{
    const CGFloat pixels = pixelsAcross(points, scale);
    if (!(pixels >= 1))
        raiseInvalidArgument("Backend.writePicture",
                             std::string(name) + " must be above 0, got " + numberText(points));
    if (pixels > Bitmap::largestSide)
        raiseInvalidArgument("Backend.writePicture", std::string(name) + " must be at most " +
                                                         std::to_string(Bitmap::largestSide) + " pixels, got " +
                                                         numberText(pixels));
    return static_cast<int>(pixels);
}

} // namespace

Backend& Backend::shared()
{
    if (!current()) {
        if (!bestRegistration().factory)
            fatalError("no backend is linked into this program: link RVCore::QtBackend or RVCore::HeadlessBackend");
        current() = bestRegistration().factory();
    }
    return *current();
}

void Backend::registerFactory(int rank, Factory factory)
{
    if (!bestRegistration().factory || rank > bestRegistration().rank)
        bestRegistration() = {rank, factory};
}

void Backend::install(std::unique_ptr<Backend> backend)
{
    current() = std::move(backend);
}

void Backend::writePicture(const std::string& path, CGSize size, CGFloat scale,
                           const std::function<void(Canvas&)>& paint)
{
    requireFinite("Backend.writePicture", "size", size);
    requireFinite("Backend.writePicture", "scale", scale);
    if (scale <= 0)
        raiseInvalidArgument("Backend.writePicture", "scale must be above 0, got " + numberText(scale));
    const int width = pictureSide("size.width", size.width, scale);
    Bitmap picture(width, pictureSide("size.height", size.height, scale));
    paint(*makeCanvas(picture, 0, 0, scale));
    writePicture(path, picture, scale);
}

} // namespace RVCore
