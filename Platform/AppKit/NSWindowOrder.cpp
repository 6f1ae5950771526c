#include <AppKit/NSAccessibility.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSPopover.h>
#include <AppKit/NSView.h>
#include <AppKit/NSViewController.h>
#include <AppKit/NSWindow.h>
#include <AppKit/NSWindowController.h>
#include <AppKit/WindowSizes.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <ranges>

namespace RVCore {

namespace {

WindowStyle toWindowStyle(NSWindowStyleMask mask)
{
    return {.isTitled = contains(mask, NSWindowStyleMask::titled),
            .isClosable = contains(mask, NSWindowStyleMask::closable),
            .isMinimizable = contains(mask, NSWindowStyleMask::miniaturizable),
            .isResizable = contains(mask, NSWindowStyleMask::resizable)};
}

} // namespace

// --- On and off the screen

void NSWindow::makeBackend()
{
    if (m_backend)
        return;
    // A side that nothing in the content has given a length.
    if (m_geometry.contentSize != desktopSize(m_geometry.contentSize))
        applyContentSize(desktopSize(m_geometry.contentSize));
    m_backend = Backend::shared().makeWindow(*this, m_geometry.areaFor(m_geometry.contentSize));
    m_backend->setTitle(m_title);
    WindowStyle style = toWindowStyle(m_styleMask);
    style.isOpaque = isOpaque();
    m_backend->setStyle(style);
    limitsChanged();
    if (m_isPlaced)
        passOrigin();
    if (m_parent && m_parent->m_backend)
        m_backend->setParent(m_parent->m_backend.get());
    for (const Child& child : m_children) {
        if (child.window->m_backend)
            child.window->m_backend->setParent(m_backend.get());
    }
}

void NSWindow::show(WindowOrder order)
{
    const auto alive = shared(*this); // overrides may close the window
    const auto controller = m_contentViewController;
    const bool appears = !m_isVisible;
    if (controller && appears)
        controller->viewWillAppear();
    layoutIfNeeded(); // first, so that the window opens at the size that its content needs
    makeBackend();
    m_isOpen = true;
    m_isVisible = true;
    NSApplication::shared().windowShown(alive, {});
    m_backend->setVisible(true);
    const bool wasMiniaturized = std::exchange(m_isMiniaturized, false);
    if (wasMiniaturized)
        m_backend->setMinimized(false);
    m_comesBackWithParent = false;
    orderFamily(order);
    if (wasMiniaturized) {
        bringDescendantsBack();
        tellDelegate(&NSWindowDelegate::windowDidDeminiaturize);
    }
    if (controller && appears)
        controller->viewDidAppear();
}

void NSWindow::orderFront()
{
    show(WindowOrder::front);
}

void NSWindow::orderBack()
{
    show(WindowOrder::back);
}

void NSWindow::makeKeyAndOrderFront()
{
    const auto alive = shared(*this);
    orderFront();
    makeKeyWindow();
}

void NSWindow::orderOut()
{
    const auto alive = shared(*this);
    for (const auto& child : childWindows())
        child->orderOut();
    m_comesBackWithParent = false;
    leaveScreen();
}

void NSWindow::leaveScreen()
{
    if (!m_isVisible)
        return;
    const auto controller = m_contentViewController;
    if (controller)
        controller->viewWillDisappear();
    m_isVisible = false;
    m_events.windowClosed();
    m_backend->setVisible(false);
    if (std::exchange(m_isMiniaturized, false))
        m_backend->setMinimized(false);
    closePopovers();
    NSApplication::shared().windowLeftScreen(*this, {});
    if (controller)
        controller->viewDidDisappear();
}

// Those that point at something in this window, and the one whose own window this is.
void NSWindow::closePopovers()
{
    const auto popovers = m_popovers;
    for (const auto& popover : popovers) {
        if (const auto shown = popover.lock())
            shown->close();
    }
}

void NSWindow::close()
{
    if (!m_isOpen)
        return;
    const auto alive = shared(*this); // the application may hold the last reference
    m_isOpen = false;
    tellDelegate(&NSWindowDelegate::windowWillClose);
    for (const auto& child : childWindows()) {
        child->close();
        removeChildWindow(*child);
    }
    if (m_parent)
        m_parent->removeChildWindow(*this);
    leaveScreen();
    m_isOpen = false; // also when the delegate has shown it again
    NSApplication::shared().windowClosed(*this, {});
}

void NSWindow::performClose()
{
    const auto alive = shared(*this);
    if (!m_isOpen || !contains(m_styleMask, NSWindowStyleMask::closable))
        return;
    const auto listener = delegate();
    if (!listener || listener->windowShouldClose(*this))
        close();
}

// --- Minimising

void NSWindow::miniaturize()
{
    if (!isVisible())
        return;
    const auto alive = shared(*this);
    m_backend->setMinimized(true);
    setMiniaturized(true);
}

void NSWindow::deminiaturize()
{
    if (!m_isMiniaturized)
        return;
    const auto alive = shared(*this);
    m_backend->setMinimized(false);
    setMiniaturized(false);
}

void NSWindow::minimizedChanged(bool isMinimized)
{
    const auto alive = shared(*this);
    if (m_isVisible)
        setMiniaturized(isMinimized);
}

void NSWindow::setMiniaturized(bool isMiniaturized)
{
    if (m_isMiniaturized == isMiniaturized)
        return;
    m_isMiniaturized = isMiniaturized;
    if (isMiniaturized) {
        m_events.windowClosed();
        closePopovers();
        takeDescendantsOut();
        NSApplication::shared().windowLeftScreen(*this, {});
        tellDelegate(&NSWindowDelegate::windowDidMiniaturize);
    } else {
        orderFamily(WindowOrder::front);
        bringDescendantsBack();
        makeKeyWindow();
        contentNeedsFrame({}); // what moves waited meanwhile
        tellDelegate(&NSWindowDelegate::windowDidDeminiaturize);
    }
}

void NSWindow::takeDescendantsOut()
{
    for (const auto& child : childWindows()) {
        if (child->m_isMiniaturized)
            continue; // it has taken its own along
        child->takeDescendantsOut();
        if (child->isVisible()) {
            child->m_comesBackWithParent = true;
            child->leaveScreen();
        }
    }
}

void NSWindow::bringDescendantsBack()
{
    for (const auto& child : childWindows()) {
        if (child->m_comesBackWithParent)
            child->orderFront();
        child->bringDescendantsBack();
    }
}

// --- Keys

bool NSWindow::isKeyWindow() const
{
    return NSApplication::shared().keyWindow() == this;
}

bool NSWindow::canBecomeKeyWindow() const
{
    return contains(m_styleMask, NSWindowStyleMask::titled);
}

void NSWindow::makeKeyWindow()
{
    if (!isVisible() || !canBecomeKeyWindow())
        return;
    const auto alive = shared(*this);
    NSApplication::shared().setKeyWindow(this, {});
    if (isKeyWindow() && isVisible())
        m_backend->activate();
}

void NSWindow::keyChanged(bool isKey, AppKitKey)
{
    const auto alive = shared(*this);
    contentNeedsFrame({}); // what has the focus may look different
    auto* focused = dynamic_cast<NSView*>(firstResponder());
    if (isKey && focused)
        postAccessibilityChange(*focused, AccessibleChange::focus);
    tellDelegate(isKey ? &NSWindowDelegate::windowDidBecomeKey : &NSWindowDelegate::windowDidResignKey);
}

void NSWindow::activeChanged(bool isActive)
{
    const auto alive = shared(*this);
    // The order in which the user turns to windows is their order, too, whether or not the desktop raises them.
    if (isActive && isVisible()) {
        for (NSWindow* window : family())
            NSApplication::shared().windowOrdered(*window, WindowOrder::front, {});
    }
    NSApplication::shared().windowActivated(*this, isActive, {});
}

// --- Child windows

// This window with its child windows, those that can be seen, from the back to the front.
void NSWindow::addFamily(std::vector<NSWindow*>& backToFront)
{
    const auto addChildren = [&](NSWindowOrderingMode order) {
        for (const Child& child : m_children) {
            if (child.order == order)
                child.window->addFamily(backToFront);
        }
    };
    addChildren(NSWindowOrderingMode::below);
    if (isVisible())
        backToFront.push_back(this);
    addChildren(NSWindowOrderingMode::above);
}

std::vector<NSWindow*> NSWindow::family()
{
    NSWindow* eldest = this;
    while (eldest->m_parent)
        eldest = eldest->m_parent;
    std::vector<NSWindow*> windows;
    eldest->addFamily(windows);
    return windows;
}

void NSWindow::orderFamily(WindowOrder order)
{
    if (m_parent) {
        auto& siblings = m_parent->m_children;
        const auto own =
            std::ranges::find_if(siblings, [this](const Child& child) { return child.window.get() == this; });
        if (order == WindowOrder::front)
            std::rotate(own, own + 1, siblings.end());
        else
            std::rotate(siblings.begin(), own, own + 1);
    }
    std::vector<NSWindow*> windows = family();
    if (order == WindowOrder::back)
        std::ranges::reverse(windows);
    for (NSWindow* window : windows) {
        NSApplication::shared().windowOrdered(*window, order, {});
        window->m_backend->order(order);
    }
}

void NSWindow::addChildWindow(const std::shared_ptr<NSWindow>& child, NSWindowOrderingMode order)
{
    constexpr std::string_view operation = "NSWindow.addChildWindow:ordered:";
    if (!child)
        raiseInvalidArgument(operation, "there is no window");
    if (order != NSWindowOrderingMode::above && order != NSWindowOrderingMode::below)
        raiseInvalidArgument(operation, "ordered must be above (1) or below (-1), got " +
                                            std::to_string(static_cast<int>(order)));
    for (const NSWindow* window = this; window; window = window->m_parent) {
        if (window == child.get())
            raiseInvalidArgument(operation, child->description() + " is " +
                                                (window == this ? "the window itself" : "a parent of the window"));
    }
    if (child->m_parent)
        child->m_parent->removeChildWindow(*child);
    m_children.push_back({child, order});
    child->m_parent = this;
    if (child->m_backend && m_backend)
        child->m_backend->setParent(m_backend.get());
    if (child->isVisible() && isVisible())
        child->orderFamily(WindowOrder::front);
}

void NSWindow::removeChildWindow(NSWindow& child)
{
    const auto alive = shared(child); // this window may hold the last reference
    if (child.m_parent != this)
        return;
    std::erase_if(m_children, [&](const Child& entry) { return entry.window == alive; });
    child.m_parent = nullptr;
    child.m_comesBackWithParent = false;
    if (child.m_backend)
        child.m_backend->setParent(nullptr);
}

std::vector<std::shared_ptr<NSWindow>> NSWindow::childWindows() const
{
    std::vector<std::shared_ptr<NSWindow>> windows;
    windows.reserve(m_children.size());
    for (const Child& child : m_children)
        windows.push_back(child.window);
    return windows;
}

// --- The responder chain

NSResponder* NSWindow::nextResponder() const
{
    if (m_windowController)
        return m_windowController;
    return &NSApplication::shared();
}

NSWindowController* NSWindow::windowController() const
{
    return m_windowController;
}

void NSWindow::setWindowController(NSWindowController* controller, AppKitKey)
{
    m_windowController = controller;
}

} // namespace RVCore
