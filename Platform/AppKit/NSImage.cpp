#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSImage.h>
#include <Backend/Backend.h>
#include <CoreGraphics/Canvas.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>

namespace RVCore {

namespace {

struct ImageStore {
    std::map<std::string, std::shared_ptr<NSImage>> images;
    std::vector<std::string> folders;
};

ImageStore& store()
{
    static ImageStore theStore;
    return theStore;
}

std::shared_ptr<NSImage> readFromFolders(const std::string& name)
{
    struct Variant {
        const char* suffix;
        CGFloat scale;
    };
    constexpr std::array<Variant, 2> variants{{{"@2x.png", 2}, {".png", 1}}};
    for (const std::string& folder : store().folders) {
        for (const auto& [suffix, scale] : variants) {
            const CGImageRef bitmap =
                Backend::shared().readImage((std::filesystem::path(folder) / name).string() + suffix);
            if (bitmap)
                return make<NSImage>(bitmap, CGSize{bitmap->width() / scale, bitmap->height() / scale});
        }
    }
    return nullptr;
}

} // namespace

Class& NSImage::staticClass()
{
    static Class& theClass = defineClass<NSImage>("NSImage", NSObject::staticClass(), [](auto& publish) {
        publish.initializer("initWithSize:", [](NSImage& self, CGSize size) { self.init(size); });
        publish.readOnlyProperty("size", &NSImage::size);
        publish.readOnlyProperty("representations", &NSImage::representations);
        publish.method("addRepresentation:", &NSImage::addRepresentation);
        publish.readOnlyProperty("isTemplate", &NSImage::isTemplate);
        publish.method("setTemplate:", &NSImage::setTemplate);
        publish.classMethod("imageNamed:", [](const Class&, const std::string& name) { return imageNamed(name); });
    });
    return theClass;
}

void NSImage::init(CGSize size)
{
    requireNotNegative("NSImage.initWithSize:", "size", size);
    m_size = size;
}

void NSImage::init(const CGImageRef& image, CGSize size)
{
    constexpr std::string_view operation = "NSImage.initWithCGImage:size:";
    if (!image)
        raiseInvalidArgument(operation, "there is no image");
    requireNotNegative(operation, "size", size);
    m_size = size;
    addRepresentation(make<NSBitmapImageRep>(image, size));
}

void NSImage::init(CGSize size, DrawingHandler handler)
{
    constexpr std::string_view operation = "NSImage.init";
    requireNotNegative(operation, "size", size);
    if (!handler)
        raiseInvalidArgument(operation, "there is nothing that draws");
    m_size = size;
    m_handler = std::move(handler);
}

void NSImage::addRepresentation(const std::shared_ptr<NSBitmapImageRep>& representation)
{
    if (!representation)
        raiseInvalidArgument("NSImage.addRepresentation:", "there is no representation");
    m_representations.push_back(representation);
}

// A canvas does not tell how many pixels it has to a point, and more of them lose least.
const NSBitmapImageRep* NSImage::bestRepresentation() const
{
    const auto best = std::ranges::max_element(m_representations, {}, [](const auto& representation) {
        return std::int64_t{representation->pixelsWide()} * representation->pixelsHigh();
    });
    return best == m_representations.end() ? nullptr : best->get();
}

CGImageRef NSImage::bitmap() const
{
    const NSBitmapImageRep* best = bestRepresentation();
    return best ? best->image() : nullptr;
}

void NSImage::draw(Canvas& canvas, const CGRect& rect, const CGColor& templateColor) const
{
    if (m_handler) {
        const CanvasState state(canvas);
        m_handler(canvas, rect);
    } else if (const NSBitmapImageRep* best = bestRepresentation()) {
        best->draw(canvas, rect, m_isTemplate ? &templateColor : nullptr);
    }
}

CGSize scaledImageSize(CGSize image, CGSize room, NSImageScaling scaling)
{
    if (scaling == NSImageScaling::none || image.width <= 0 || image.height <= 0)
        return image;
    room = {std::max(room.width, 0.0), std::max(room.height, 0.0)};
    if (scaling == NSImageScaling::axesIndependently)
        return room;
    CGFloat factor = std::min(room.width / image.width, room.height / image.height);
    if (scaling == NSImageScaling::proportionallyDown)
        factor = std::min(factor, 1.0);
    return {image.width * factor, image.height * factor};
}

std::shared_ptr<NSImage> imageNamed(const std::string& name)
{
    if (name.empty() || name.find('/') != std::string::npos)
        return nullptr;
    const auto known = store().images.find(name);
    if (known != store().images.end())
        return known->second;
    auto image = readFromFolders(name);
    if (image)
        store().images[name] = image;
    return image;
}

void registerImage(const std::string& name, const std::shared_ptr<NSImage>& image)
{
    if (name.empty())
        raiseInvalidArgument("registerImage", "the name is empty");
    if (image)
        store().images[name] = image;
    else
        store().images.erase(name);
}

void addImageFolder(const std::string& path)
{
    store().folders.push_back(path);
}

} // namespace RVCore
