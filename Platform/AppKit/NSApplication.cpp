#include <AppKit/NSApplication.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <Backend/Backend.h>
#include <Foundation/NSException.h>

#include <algorithm>

namespace RVCore {

Class& NSApplication::staticClass()
{
    static Class& theClass = defineClass<NSApplication>("NSApplication", NSObject::staticClass(), [](auto& publish) {
        publish.method("run", &NSApplication::run);
        publish.method("terminate", &NSApplication::terminate);
        publish.method("sendEvent:", &NSApplication::sendEvent);
        publish.method("postEvent:", &NSApplication::postEvent);
        publish.readOnlyProperty("windows", &NSApplication::windows);
        publish.classMethod("sharedApplication",
                            [](const Class&) { return RVCore::shared(NSApplication::shared()); });
    });
    return theClass;
}

NSApplication& NSApplication::shared()
{
    static const auto application = make<NSApplication>();
    return *application;
}

void NSApplication::run()
{
    if (m_windows.empty() || m_isRunning)
        return;
    struct Running { // also when an exception ends it
        bool& flag;
        explicit Running(bool& isRunning) : flag(isRunning) { flag = true; }
        ~Running() { flag = false; }
    } running(m_isRunning);
    Backend::shared().run();
}

void NSApplication::terminate()
{
    if (m_isRunning)
        Backend::shared().stop();
}

void NSApplication::sendEvent(NSEvent& event)
{
    const auto own = event.window();
    if (NSWindow* window = own ? own.get() : keyWindow())
        RVCore::shared(*window)->sendEvent(event);
}

void NSApplication::postEvent(const std::shared_ptr<NSEvent>& event)
{
    if (!event)
        raiseInvalidArgument("NSApplication.postEvent:", "there is no event");
    Backend::shared().callLater([this, event] { sendEvent(*event); });
}

void NSApplication::windowShown(const std::shared_ptr<NSWindow>& window, AppKitKey)
{
    if (std::find(m_windows.begin(), m_windows.end(), window) == m_windows.end())
        m_windows.push_back(window);
}

void NSApplication::windowClosed(NSWindow& window, AppKitKey)
{
    std::erase_if(m_windows, [&](const auto& open) { return open.get() == &window; });
    if (m_windows.empty())
        terminate();
}

} // namespace RVCore
