#include <AppKit/ExceptionReport.h>
#include <AppKit/LayoutContext.h>
#include <AppKit/MovingViews.h>
#include <AppKit/NSAccessibility.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSPopover.h>
#include <AppKit/NSScreen.h>
#include <AppKit/NSToolbar.h>
#include <AppKit/NSView.h>
#include <AppKit/NSViewController.h>
#include <AppKit/NSWindow.h>
#include <AppKit/NSWindowController.h>
#include <AppKit/PublishedDelegate.h>
#include <AppKit/ToolbarView.h>
#include <AppKit/WindowPainter.h>
#include <AppKit/WindowSizes.h>
#include <Dispatch/DispatchQueue.h>
#include <Foundation/NSException.h>

namespace RVCore {

namespace {

template <class Publisher> void publishGeometry(Publisher& publish)
{
    publish.initializer("initWithContentRect:styleMask:backing:defer:",
                        [](NSWindow& self, const CGRect& contentRect, NSWindowStyleMask styleMask,
                           NSBackingStoreType backing,
                           bool isDeferred) { self.init(contentRect, styleMask, backing, isDeferred); });
    publish.readOnlyProperty("styleMask", &NSWindow::styleMask);
    publish.readOnlyProperty("isResizable", &NSWindow::isResizable);
    publish.readOnlyProperty("frame", &NSWindow::frame);
    publish.method("frameRectForContentRect:", &NSWindow::frameRectForContentRect);
    publish.method("contentRectForFrameRect:", &NSWindow::contentRectForFrameRect);
    publish.method("setFrame:display:", [](NSWindow& self, const CGRect& frame, bool display) {
        self.setFrame(frame, {.display = display});
    });
    publish.method("setFrame:display:animate:", [](NSWindow& self, const CGRect& frame, bool display, bool animate) {
        self.setFrame(frame, {.display = display, .animate = animate});
    });
    publish.method("setFrameOrigin:", &NSWindow::setFrameOrigin);
    publish.method("animationResizeTime:", &NSWindow::animationResizeTime);
    publish.readOnlyProperty("isAnimatingFrame", &NSWindow::isAnimatingFrame);
    publish.method("center", &NSWindow::center);
    publish.property("contentSize", &NSWindow::contentSize, &NSWindow::setContentSize);
    publish.property("contentMinSize", &NSWindow::contentMinSize, &NSWindow::setContentMinSize);
    publish.property("contentMaxSize", &NSWindow::contentMaxSize, &NSWindow::setContentMaxSize);
    publish.readOnlyProperty("screen", &NSWindow::screen);
    publish.readOnlyProperty("backingScaleFactor", &NSWindow::backingScaleFactor);
}

template <class Publisher> void publishOrder(Publisher& publish)
{
    publish.readOnlyProperty("windowController", [](NSWindow& self) {
        return self.windowController() ? shared(*self.windowController()) : nullptr;
    });
    publish.readOnlyProperty("isVisible", &NSWindow::isVisible);
    publish.readOnlyProperty("isMiniaturized", &NSWindow::isMiniaturized);
    publish.method("orderFront", &NSWindow::orderFront);
    publish.method("orderBack", &NSWindow::orderBack);
    publish.method("orderOut", &NSWindow::orderOut);
    publish.method("makeKeyAndOrderFront", &NSWindow::makeKeyAndOrderFront);
    publish.method("makeKeyWindow", &NSWindow::makeKeyWindow);
    publish.readOnlyProperty("isKeyWindow", &NSWindow::isKeyWindow);
    publish.readOnlyProperty("canBecomeKeyWindow", &NSWindow::canBecomeKeyWindow);
    publish.method("miniaturize", &NSWindow::miniaturize);
    publish.method("deminiaturize", &NSWindow::deminiaturize);
    publish.method("close", &NSWindow::close);
    publish.method("performClose", &NSWindow::performClose);
    publish.method("addChildWindow:ordered:", &NSWindow::addChildWindow);
    publish.method("removeChildWindow:", &NSWindow::removeChildWindow);
    publish.readOnlyProperty("childWindows", &NSWindow::childWindows);
    publish.readOnlyProperty(
        "parentWindow", [](NSWindow& self) { return self.parentWindow() ? shared(*self.parentWindow()) : nullptr; });
}

constexpr double largestMinimumCost = 0.002; // in seconds, of a frame
constexpr std::uint32_t knownStyleBits = 1 | 2 | 4 | 8 | 256 | 4096 | 32768;

void requireKnownStyle(NSWindowStyleMask mask)
{
    const std::uint32_t unknown = static_cast<std::uint32_t>(mask) & ~knownStyleBits;
    if (unknown != 0)
        raiseInvalidArgument("NSWindow.initWithContentRect:styleMask:backing:defer:",
                             "styleMask has bits that no style has: " + std::to_string(unknown));
}

// A side that is 0 is left to the content.
CGFloat initialSide(CGFloat side)
{
    return side == 0 ? 0 : desktopSide(side);
}

} // namespace

Class& NSWindow::staticClass()
{
    static Class& theClass = defineClass<NSWindow>("NSWindow", NSResponder::staticClass(), [](auto& publish) {
        publish.property("title", &NSWindow::title, &NSWindow::setTitle);
        publishDelegate<NSWindowDelegate, NSWindow>(publish, "NSWindow", "NSWindowDelegate");
        publish.property("contentView", &NSWindow::contentView, &NSWindow::setContentView);
        publish.property("contentViewController", &NSWindow::contentViewController,
                         &NSWindow::setContentViewController);
        publish.readOnlyProperty("firstResponder", [](NSWindow& self) { return shared(*self.firstResponder()); });
        publish.method("makeFirstResponder:", [](NSWindow& self, const std::shared_ptr<NSResponder>& responder) {
            return self.makeFirstResponder(responder.get());
        });
        publish.property("toolbar", &NSWindow::toolbar, &NSWindow::setToolbar);
        publish.method("sendEvent:", &NSWindow::sendEvent);
        publish.property("acceptsMouseMovedEvents", &NSWindow::acceptsMouseMovedEvents,
                         &NSWindow::setAcceptsMouseMovedEvents);
        publish.method("selectNextKeyView", &NSWindow::selectNextKeyView);
        publish.method("selectPreviousKeyView", &NSWindow::selectPreviousKeyView);
        publish.method("layoutIfNeeded", &NSWindow::layoutIfNeeded);
        publishGeometry(publish);
        publishOrder(publish);
    });
    return theClass;
}

NSWindow::NSWindow() : m_painter(std::make_unique<WindowPainter>()) {}

NSWindow::~NSWindow()
{
    for (const Child& child : m_children) {
        child.window->m_parent = nullptr;
        if (child.window->m_backend)
            child.window->m_backend->setParent(nullptr);
    }
    m_backend.reset(); // no more calls from the desktop
    for (const auto& root : rootViews({}))
        root->setHostWindow(nullptr, {});
}

void NSWindow::init(CGSize contentSize)
{
    using Mask = NSWindowStyleMask;
    init(CGRect({}, requiredDesktopSize("NSWindow.init", contentSize)),
         Mask::titled | Mask::closable | Mask::miniaturizable | Mask::resizable);
}

void NSWindow::init(const CGRect& contentRect, NSWindowStyleMask styleMask, NSBackingStoreType backing, bool)
{
    constexpr std::string_view operation = "NSWindow.initWithContentRect:styleMask:backing:defer:";
    requireWindowRect(operation, "contentRect", contentRect);
    requireKnownStyle(styleMask);
    if (backing != NSBackingStoreType::buffered)
        raiseInvalidArgument(operation,
                             "backing must be buffered (2), got " + std::to_string(static_cast<int>(backing)));
    m_styleMask = styleMask;
    if (contains(styleMask, NSWindowStyleMask::titled))
        m_geometry.margins.top = usualTitleBarHeight;
    m_geometry.contentSize = {initialSide(contentRect.size.width), initialSide(contentRect.size.height)};
    m_geometry.origin = {contentRect.minX(), contentRect.maxY() - m_geometry.contentSize.height};
    m_isPlaced = contentRect.origin != CGPoint();
    setContentView(make<NSView>(CGRect({}, m_geometry.contentSize)));
}

void NSWindow::setTitle(const std::string& title)
{
    if (m_title == title)
        return;
    m_title = title;
    if (m_backend)
        m_backend->setTitle(title);
}

void NSWindow::setContentView(const std::shared_ptr<NSView>& view)
{
    if (!view)
        raiseInvalidArgument("NSWindow.setContentView:", "there is no view");
    if (view == m_contentView)
        return;
    if (view->isContentView())
        raiseInvalidArgument("NSWindow.setContentView:",
                             view->description() + " is the content view of another window");
    replaceContent(view, nullptr);
}

void NSWindow::takeContentView(const std::shared_ptr<NSView>& view)
{
    view->removeFromSuperview();
    if (m_contentView) {
        subtreeWillLeave(*m_contentView, {});
        m_contentView->setHostWindow(nullptr, {});
    }
    m_contentView = view;
    m_constraintRevision = 0;
    view->setHostWindow(this, {});
    view->setFrame({{}, m_geometry.contentSize});
    contentNeedsFrame({});
}

void NSWindow::setContentViewController(const std::shared_ptr<NSViewController>& controller)
{
    if (controller == m_contentViewController)
        return;
    const auto alive = shared(*this); // loading the view may do anything
    const std::shared_ptr<NSView> view = controller ? controller->view() : make<NSView>();
    if (view != m_contentView && view->isContentView())
        raiseInvalidArgument("NSWindow.setContentViewController:",
                             view->description() + " is the content view of another window");
    const CGSize size = !controller || controller->preferredContentSize() == CGSize()
                            ? view->frame().size
                            : controller->preferredContentSize();
    replaceContent(view, controller);
    if (size.width >= 1 && size.height >= 1)
        setContentSize(size);
}

void NSWindow::replaceContent(const std::shared_ptr<NSView>& view,
                              const std::shared_ptr<NSViewController>& controller)
{
    const auto alive = shared(*this); // what is told may close the window
    const auto old = m_contentViewController;
    const bool isOnScreen = isVisible();
    if (old && isOnScreen)
        old->viewWillDisappear();
    if (controller && isOnScreen)
        controller->viewWillAppear();
    m_contentViewController = controller;
    if (view != m_contentView)
        takeContentView(view);
    if (old && isOnScreen)
        old->viewDidDisappear();
    if (controller && isOnScreen)
        controller->viewDidAppear();
}

void NSWindow::sendEvent(NSEvent& event)
{
    if (isVisible())
        m_events.dispatch(event);
}

void NSWindow::subtreeWillLeave(NSView& subtree, AppKitKey)
{
    m_events.subtreeWillLeave(subtree);
    releaseKeysIn(subtree);
}

void NSWindow::layoutIfNeeded()
{
    const auto alive = shared(*this); // overrides may close the window
    layoutViews();
    updateMinimumContentSize(); // first, for it may stand in the way of a smaller size
    takeNeededSize();
    layoutViews();
}

void NSWindow::layoutViews()
{
    m_contentView->layoutSubtreeIfNeeded();
    if (m_toolbar)
        m_toolbar->view({})->layoutSubtreeIfNeeded();
}

// Grows to what the content needs, or shrinks to the most that it can be. A side that was made 0 stays so as long as
// the content needs none.
void NSWindow::takeNeededSize()
{
    const CGSize solved = m_contentView->frame().size;
    const auto neededSide = [](CGFloat side, CGFloat present) { return side == present ? side : desktopSide(side); };
    const CGSize needed{neededSide(solved.width, m_geometry.contentSize.width),
                        neededSide(solved.height, m_geometry.contentSize.height)};
    const auto isNew = [](CGFloat side, CGFloat present, CGFloat& asked) {
        const bool wasAsked = side == asked;
        asked = side == present ? 0 : side;
        return side != present && !wasAsked;
    };
    const bool isNewWidth = isNew(needed.width, m_geometry.contentSize.width, m_askedSize.width);
    const bool isNewHeight = isNew(needed.height, m_geometry.contentSize.height, m_askedSize.height);
    if (!isNewWidth && !isNewHeight)
        return;
    applyContentSize(needed);
    if (m_backend)
        m_backend->setContentSize(m_geometry.areaFor(needed));
}

void NSWindow::updateMinimumContentSize()
{
    const LayoutContext& context = LayoutContext::ofTree(*m_contentView);
    if (context.revision() == m_constraintRevision)
        return;
    m_constraintRevision = context.revision();
    const DispatchTime begin = DispatchTime::now();
    m_geometry.neededSize = desktopSize(m_contentView->fittingSize(NSLayoutPriorityWindowSizeStayPut));
    m_minimumCost = DispatchTime::now() - begin;
    limitsChanged();
}

// Nobody sees how small the content can be, so where that takes long to find out, no frame waits for it: it is done
// when there have been none for a while.
void NSWindow::updateMinimumAtRest()
{
    constexpr double rest = 0.2; // seconds
    if (m_waitsForRest || LayoutContext::ofTree(*m_contentView).revision() == m_constraintRevision)
        return;
    m_waitsForRest = true;
    DispatchQueue::main().asyncAfter(m_lastFrame + rest, [weak = std::weak_ptr(shared(*this))] {
        const auto window = weak.lock();
        if (!window)
            return;
        window->m_waitsForRest = false;
        if (DispatchTime::now() < window->m_lastFrame + rest)
            window->updateMinimumAtRest();
        else
            window->layoutIfNeeded();
    });
}

void NSWindow::contentNeedsFrame(AppKitKey)
{
    if (m_backend && m_isVisible)
        m_backend->requestFrame();
}

void NSWindow::prepareFrame()
{
    const auto alive = shared(*this);
    layoutViews();
    MovingViews::prepareFrame(*this);
    m_lastFrame = DispatchTime::now();
    if (m_minimumCost <= largestMinimumCost || m_contentView->frame().size != m_geometry.contentSize)
        layoutIfNeeded();
    else
        updateMinimumAtRest();
    m_events.contentMoved();
    const auto popovers = m_popovers; // they may close
    for (const auto& popover : popovers) {
        if (const auto shown = popover.lock())
            shown->follow({});
    }
}

void NSWindow::addPopover(NSPopover& popover, AppKitKey)
{
    std::erase_if(m_popovers, [](const auto& other) { return other.expired() || !other.lock()->isShown(); });
    m_popovers.push_back(shared(popover));
}

void NSWindow::setTextInput(const std::shared_ptr<TextEditor>& editor, CGPoint origin, AppKitKey)
{
    if (m_backend)
        m_backend->setTextInput(editor, origin);
}

void NSWindow::setCursor(CursorShape shape, AppKitKey)
{
    if (m_backend)
        m_backend->setCursor(shape);
}

void NSWindow::accessibilityChanged(const std::shared_ptr<AccessibleElement>& element, AccessibleChange change,
                                    AppKitKey)
{
    if (m_backend && m_isVisible)
        m_backend->accessibilityChanged(element, change);
}

std::vector<std::shared_ptr<AccessibleElement>> NSWindow::accessibleElements()
{
    const auto alive = shared(*this); // layout may close it
    return accessibleElementsOf(*this);
}

void NSWindow::paint(Canvas& canvas)
{
    const auto alive = shared(*this);
    WindowPainter::paint(*this, canvas);
    requestNextFrame();
}

WindowPixels NSWindow::paintPixels(CGFloat scale)
{
    const auto alive = shared(*this);
    std::span<const PixelRect> changed; // nothing when drawing raises
    callReportingExceptions([&] { changed = m_painter->paint(*this, scale).rects(); });
    requestNextFrame();
    return {m_painter->pixels(), changed, alive};
}

// As long as something moves.
void NSWindow::requestNextFrame()
{
    if (MovingViews::areSeenIn(*this))
        contentNeedsFrame({});
}

void NSWindow::writePicture(const std::string& path, CGFloat scale)
{
    const auto alive = shared(*this);
    layoutIfNeeded();
    WindowPainter painter;
    painter.paint(*this, scale);
    Backend::shared().writePicture(path, painter.pixels(), scale);
}

} // namespace RVCore
