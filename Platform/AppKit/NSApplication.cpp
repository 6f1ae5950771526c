#include <AppKit/EventMonitor.h>
#include <AppKit/ExceptionReport.h>
#include <AppKit/KnownValue.h>
#include <AppKit/MainQueueDriver.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <Backend/Backend.h>
#include <Foundation/Message.h>
#include <Foundation/NSException.h>

#include <algorithm>

namespace RVCore {

namespace {

bool hasApplicationEnded = false;

// Whether the object answers the action, and did so.
bool perform(NSObject& object, Selector action, const ObjectRef& sender)
{
    if (!object.respondsToSelector(action))
        return false;
    const auto alive = shared(object); // what it does may be the end of it
    if (action.argumentCount() == 0)
        send(object, action);
    else
        send(object, action, sender);
    return true;
}

std::string nameOf(const ObjectRef& object)
{
    return object ? object->description() : "nobody";
}

} // namespace

Class& NSApplication::staticClass()
{
    static Class& theClass =
        defineClass<NSApplication>("NSApplication", NSResponder::staticClass(), [](auto& publish) {
            publish.method("run", &NSApplication::run);
            publish.method("terminate", &NSApplication::terminate);
            publish.method("sendEvent:", &NSApplication::sendEvent);
            publish.method("postEvent:", &NSApplication::postEvent);
            publish.readOnlyProperty("windows", &NSApplication::windows);
            publish.readOnlyProperty("orderedWindows", &NSApplication::orderedWindows);
            publish.readOnlyProperty("keyWindow", [](NSApplication& self) {
                return self.keyWindow() ? RVCore::shared(*self.keyWindow()) : nullptr;
            });
            publish.readOnlyProperty("isActive", &NSApplication::isActive);
            publish.property("appearance", &NSApplication::appearance, &NSApplication::setAppearance);
            publish.readOnlyProperty("effectiveAppearance", &NSApplication::effectiveAppearance);
            publish.property("reducesMotion", &NSApplication::reducesMotion, &NSApplication::setReducesMotion);
            publish.method("sendAction:to:from:", &NSApplication::sendAction);
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

// At the end of the program. Windows that are still open end before the rest, for as they do, they may come back
// here.
NSApplication::~NSApplication()
{
    m_orderedWindows.clear();
    m_keyWindow.reset();
    auto last = std::exchange(m_windows, {});
    last.clear();
    hasApplicationEnded = true;
}

bool NSApplication::hasEnded()
{
    return hasApplicationEnded;
}

void NSApplication::run()
{
    if (m_windows.empty() || m_isRunning)
        return;
    connectMainQueue(); // a backend that is new knows nothing of what waits
    struct Running {    // also when an exception ends it
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
    EventMonitor::show(event, {});
    const auto own = event.window();
    if (event.hasWindow() && !own)
        return;
    if (NSWindow* window = own ? own.get() : keyWindow())
        RVCore::shared(*window)->sendEvent(event);
}

void NSApplication::postEvent(const std::shared_ptr<NSEvent>& event)
{
    if (!event)
        raiseInvalidArgument("NSApplication.postEvent:", "there is no event");
    Backend::shared().callLater([this, event] { callReportingExceptions([&] { sendEvent(*event); }); });
}

bool NSApplication::reducesMotion() const
{
    return m_reducesMotion ? *m_reducesMotion : Backend::shared().prefersReducedMotion();
}

void NSApplication::setAppearance(std::optional<Appearance> appearance)
{
    if (appearance)
        requireKnown("NSApplication.setAppearance:", *appearance, Appearance::light, Appearance::dark);
    if (m_appearance == appearance)
        return;
    m_appearance = appearance;
    for (const auto& window : m_windows)
        window->contentView()->setNeedsDisplay(true);
}

Appearance NSApplication::effectiveAppearance() const
{
    return m_appearance ? *m_appearance : Backend::shared().controlLook().desktopAppearance();
}

bool NSApplication::sendAction(Selector action, const ObjectRef& target, const ObjectRef& sender)
{
    if (action.argumentCount() > 1)
        raiseInvalidArgument("NSApplication.sendAction:to:from:", "an action takes the sender or nothing, " +
                                                                      action.name() + " takes " +
                                                                      std::to_string(action.argumentCount()));
    if (target) {
        if (!perform(*target, action, sender))
            raiseInvalidArgument("NSApplication.sendAction:to:from:", nameOf(target) + " does not answer " +
                                                                          action.name() + ", sent by " +
                                                                          nameOf(sender));
        return true;
    }
    const NSWindow* window = keyWindow();
    for (NSResponder* responder = window ? window->firstResponder() : nullptr; responder;
         responder = responder->nextResponder()) {
        if (perform(*responder, action, sender))
            return true;
    }
    return perform(*this, action, sender);
}

void NSApplication::windowShown(const std::shared_ptr<NSWindow>& window, AppKitKey)
{
    connectMainQueue(); // not before there is a desktop: one that is made must be made on this thread
    if (std::find(m_windows.begin(), m_windows.end(), window) == m_windows.end())
        m_windows.push_back(window);
}

std::vector<std::shared_ptr<NSWindow>> NSApplication::orderedWindows() const
{
    std::vector<std::shared_ptr<NSWindow>> windows;
    windows.reserve(m_orderedWindows.size());
    for (NSWindow* window : m_orderedWindows)
        windows.push_back(RVCore::shared(*window));
    return windows;
}

void NSApplication::windowOrdered(NSWindow& window, WindowOrder order, AppKitKey)
{
    std::erase(m_orderedWindows, &window);
    m_orderedWindows.insert(order == WindowOrder::front ? m_orderedWindows.begin() : m_orderedWindows.end(), &window);
}

void NSApplication::windowLeftScreen(NSWindow& window, AppKitKey)
{
    std::erase(m_orderedWindows, &window);
    if (keyWindow() != &window)
        return;
    // One that is on its way off the screen may still be on the list.
    const auto next = std::ranges::find_if(m_orderedWindows, [](const NSWindow* candidate) {
        return candidate->isVisible() && candidate->canBecomeKeyWindow();
    });
    if (next == m_orderedWindows.end())
        setKeyWindow(nullptr, {});
    else
        (*next)->makeKeyWindow();
}

void NSApplication::windowActivated(NSWindow& window, bool isActive, AppKitKey)
{
    if (isActive) {
        m_activeWindow = RVCore::shared(window);
        if (window.isVisible() && window.canBecomeKeyWindow())
            setKeyWindow(&window, {});
    } else if (m_activeWindow.lock().get() == &window) {
        m_activeWindow.reset();
    }
    if (NSWindow* key = keyWindow())
        key->contentNeedsFrame({}); // controls look different while another program has the keys
}

void NSApplication::setKeyWindow(NSWindow* window, AppKitKey)
{
    const auto old = m_keyWindow.lock();
    if (old.get() == window)
        return;
    const auto next = window ? RVCore::shared(*window) : nullptr;
    m_keyWindow = next;
    if (old)
        old->keyChanged(false, {});
    // Who was told may have chosen another one.
    if (next && keyWindow() == window)
        next->keyChanged(true, {});
}

void NSApplication::windowClosed(NSWindow& window, AppKitKey)
{
    std::erase_if(m_windows, [&](const auto& open) { return open.get() == &window; });
    if (m_windows.empty())
        terminate();
}

} // namespace RVCore
