#pragma once

#include <AppKit/NSResponder.h>

namespace RVCore {

// Looks after a window, which it holds; the way back does not own. On the responder chain it follows its window. Main
// thread only.
class NSWindowController : public NSResponder {
    RVCORE_CLASS(NSWindowController)

public:
    ~NSWindowController() override;

    // Without a window: loadWindow makes it when it is first asked for.
    void init() override { init(std::shared_ptr<NSWindow>()); }
    // A window that is another controller's raises NSInvalidArgumentException.
    using NSObject::init;
    virtual void init(const std::shared_ptr<NSWindow>& window);

    // Loads it first if need be: loadWindow, then windowDidLoad, once. Null when that makes none.
    const std::shared_ptr<NSWindow>& window();
    void setWindow(const std::shared_ptr<NSWindow>& window);
    bool isWindowLoaded() const { return m_window != nullptr; }

    // The window's. Null without a window; setting it then raises NSInvalidArgumentException.
    std::shared_ptr<NSViewController> contentViewController();
    void setContentViewController(const std::shared_ptr<NSViewController>& controller);

    // Shows the window as the key window in front; does nothing without one.
    virtual void showWindow(const ObjectRef& sender);
    // Closes the window if it is loaded.
    virtual void close();

    NSResponder* nextResponder() const override; // the application

    // For subclasses that make their window late. The default makes none.
    virtual void loadWindow() {}
    virtual void windowDidLoad() {}

private:
    std::shared_ptr<NSWindow> m_window;
    bool m_wasAskedToLoad = false;
};

} // namespace RVCore
