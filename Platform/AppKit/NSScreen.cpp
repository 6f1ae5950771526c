#include <AppKit/NSScreen.h>
#include <Backend/Backend.h>

namespace RVCore {

Class& NSScreen::staticClass()
{
    static Class& theClass = defineClass<NSScreen>("NSScreen", NSObject::staticClass(), [](auto& publish) {
        publish.readOnlyProperty("frame", &NSScreen::frame);
        publish.readOnlyProperty("visibleFrame", &NSScreen::visibleFrame);
        publish.readOnlyProperty("backingScaleFactor", &NSScreen::backingScaleFactor);
        publish.classMethod("screens", [](const Class&) { return NSScreen::screens(); });
        publish.classMethod("mainScreen", [](const Class&) { return NSScreen::mainScreen(); });
    });
    return theClass;
}

std::vector<std::shared_ptr<NSScreen>> NSScreen::screens()
{
    const std::vector<ScreenDescription> descriptions = Backend::shared().screens();
    const CGFloat mainHeight = descriptions.front().frame.size.height;
    std::vector<std::shared_ptr<NSScreen>> screens;
    screens.reserve(descriptions.size());
    for (const ScreenDescription& description : descriptions)
        screens.push_back(make<NSScreen>(description, mainHeight));
    return screens;
}

std::shared_ptr<NSScreen> NSScreen::mainScreen()
{
    return screens().front();
}

void NSScreen::init(const ScreenDescription& description, CGFloat mainScreenHeight)
{
    const auto upright = [&](const CGRect& rect) {
        return CGRect({rect.minX(), mainScreenHeight - rect.maxY()}, rect.size);
    };
    m_frame = upright(description.frame);
    m_visibleFrame = upright(description.visibleFrame);
    m_backingScaleFactor = description.backingScale;
}

} // namespace RVCore
