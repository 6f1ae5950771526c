#include <AppKit/AppKitKey.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSViewController.h>
#include <AppKit/NSWindow.h>
#include <AppKit/NSWindowController.h>
#include <Foundation/NSException.h>

#include <utility>

namespace RVCore {

Class& NSWindowController::staticClass()
{
    static Class& theClass =
        defineClass<NSWindowController>("NSWindowController", NSResponder::staticClass(), [](auto& publish) {
            publish.initializer(
                "initWithWindow:",
                [](NSWindowController& self, const std::shared_ptr<NSWindow>& window) { self.init(window); });
            publish.property("window", &NSWindowController::window, &NSWindowController::setWindow);
            publish.readOnlyProperty("isWindowLoaded", &NSWindowController::isWindowLoaded);
            publish.property("contentViewController", &NSWindowController::contentViewController,
                             &NSWindowController::setContentViewController);
            publish.method("showWindow:", &NSWindowController::showWindow);
            publish.method("close", &NSWindowController::close);
            publish.method("loadWindow", &NSWindowController::loadWindow);
            publish.method("windowDidLoad", &NSWindowController::windowDidLoad);
        });
    return theClass;
}

NSWindowController::~NSWindowController()
{
    if (m_window)
        m_window->setWindowController(nullptr, {});
}

void NSWindowController::init(const std::shared_ptr<NSWindow>& window)
{
    setWindow(window);
}

const std::shared_ptr<NSWindow>& NSWindowController::window()
{
    if (!m_window && !std::exchange(m_wasAskedToLoad, true)) {
        loadWindow();
        if (m_window)
            windowDidLoad();
    }
    return m_window;
}

void NSWindowController::setWindow(const std::shared_ptr<NSWindow>& window)
{
    if (window == m_window)
        return;
    if (window && window->windowController())
        raiseInvalidArgument("NSWindowController.setWindow:",
                             window->description() + " is another controller's window");
    if (m_window)
        m_window->setWindowController(nullptr, {});
    m_window = window;
    if (m_window)
        m_window->setWindowController(this, {});
}

std::shared_ptr<NSViewController> NSWindowController::contentViewController()
{
    return window() ? m_window->contentViewController() : nullptr;
}

void NSWindowController::setContentViewController(const std::shared_ptr<NSViewController>& controller)
{
    if (!window())
        raiseInvalidArgument("NSWindowController.setContentViewController:", "there is no window");
    m_window->setContentViewController(controller);
}

void NSWindowController::showWindow(const ObjectRef&)
{
    if (const auto own = window())
        own->makeKeyAndOrderFront();
}

void NSWindowController::close()
{
    if (const auto own = m_window)
        own->close();
}

NSResponder* NSWindowController::nextResponder() const
{
    return &NSApplication::shared();
}

} // namespace RVCore
