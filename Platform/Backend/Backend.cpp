#include <Backend/Backend.h>
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
    const auto pixels = pictureBounds(size, scale);
    if (!pixels || pixels->isEmpty())
        raiseInvalidArgument("Backend.writePicture",
                             describe(size) + " points at the scale " + numberText(scale) + " are no picture");
    Bitmap picture(pixels->width, pixels->height);
    paint(*makeCanvas(picture, 0, 0, scale));
    writePicture(path, picture, scale);
}

} // namespace RVCore
