#include <AppKit/NSView.h>
#include <Dispatch/DispatchQueue.h>
#include <Extensions/NSWindow+RVCore.h>
#include <Foundation/Message.h>

#include <initializer_list>

namespace RVCore {

NSWindowStyleMask defaultStyleMask()
{
    auto mask = NSWindowStyleMask::borderless;
    for (const NSWindowStyleMask part :
         {NSWindowStyleMask::closable, NSWindowStyleMask::miniaturizable, NSWindowStyleMask::titled,
          NSWindowStyleMask::texturedBackground, NSWindowStyleMask::unifiedTitleAndToolbar})
        mask = mask | part;
    return mask;
}

NSWindowStyleMask defaultStyleMaskOf(const Class& windowClass)
{
    return send(windowClass, "defaultStyleMask").as<NSWindowStyleMask>();
}

CGRect frameForSize(const NSWindow& window, CGSize size)
{
    const CGRect frame = window.frame();
    return {frame.minX(), frame.origin.y + frame.size.height - size.height, size.width, size.height};
}

void resizeToNewContentSize(NSWindow& window, CGSize size, const ResizeOptions& options)
{
    const auto& content = window.contentView();
    const CGFloat chrome = window.frame().size.height - (content ? content->frame().size.height : 0);
    const auto frame = send(window, "frameForSize:", CGSize{size.width, size.height + chrome}).as<CGRect>();
    send(window, "setFrame:display:animate:", frame, true, true);
    if (!options.onDone)
        return;
    const auto duration = send(window, "animationResizeTime:", frame).as<double>();
    DispatchQueue::main().asyncAfter(DispatchTime::now() + duration, options.onDone);
}

bool publishWindowOperations()
{
    return addCategory<NSWindow>("RVCore", [](auto& publish) {
        publish.classMethod("defaultStyleMask", [](const Class&) { return defaultStyleMask(); });
        publish.classMethod("newDefaultWindowWithStyleMask:",
                            [](const Class& receiver, std::optional<NSWindowStyleMask> styleMask) {
                                return makeWindow(styleMask ? *styleMask : defaultStyleMaskOf(receiver));
                            });
        publish.initializer("initWithStyleMask:", [](NSWindow& self, std::optional<NSWindowStyleMask> styleMask) {
            self.init(CGRect(), styleMask ? *styleMask : defaultStyleMaskOf(self.classObject()),
                      NSBackingStoreType::buffered, false);
        });
        publish.method("frameForSize:", &frameForSize);
        publish.method("resizeToNewContentSize:animated:onDone:",
                       [](NSWindow& self, CGSize size, bool animated, const std::function<void()>& onDone) {
                           resizeToNewContentSize(self, size, {.animated = animated, .onDone = onDone});
                       });
    });
}

} // namespace RVCore
