#include <AppKit/KeyViewLoop.h>
#include <AppKit/LayoutContext.h>
#include <AppKit/NSAccessibility.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ViewSnapshot.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

CGFloat desktopSide(CGFloat side)
{
    return std::clamp(std::ceil(side), 1.0, 32767.0);
}

CGSize desktopSize(CGSize size)
{
    return {desktopSide(size.width), desktopSide(size.height)};
}

CGSize requiredDesktopSize(std::string_view operation, CGSize size)
{
    requireFinite(operation, "size", size);
    if (size.width < 1 || size.height < 1)
        raiseInvalidArgument(operation, "a window's content is at least 1 × 1, got " + describe(size));
    return desktopSize(size);
}

} // namespace

Class& NSWindow::staticClass()
{
    static Class& theClass = defineClass<NSWindow>("NSWindow", NSResponder::staticClass(), [](auto& publish) {
        publish.property("title", &NSWindow::title, &NSWindow::setTitle);
        publish.property("contentView", &NSWindow::contentView, &NSWindow::setContentView);
        publish.property("contentSize", &NSWindow::contentSize, &NSWindow::setContentSize);
        publish.readOnlyProperty("backingScaleFactor", &NSWindow::backingScaleFactor);
        publish.readOnlyProperty("isVisible", &NSWindow::isVisible);
        publish.method("makeKeyAndOrderFront", &NSWindow::makeKeyAndOrderFront);
        publish.method("close", &NSWindow::close);
        publish.readOnlyProperty("firstResponder", [](NSWindow& self) { return shared(*self.firstResponder()); });
        publish.method("makeFirstResponder:", [](NSWindow& self, const std::shared_ptr<NSResponder>& responder) {
            return self.makeFirstResponder(responder.get());
        });
        publish.method("sendEvent:", &NSWindow::sendEvent);
        publish.property("acceptsMouseMovedEvents", &NSWindow::acceptsMouseMovedEvents,
                         &NSWindow::setAcceptsMouseMovedEvents);
        publish.method("selectNextKeyView", &NSWindow::selectNextKeyView);
        publish.method("selectPreviousKeyView", &NSWindow::selectPreviousKeyView);
        publish.method("layoutIfNeeded", &NSWindow::layoutIfNeeded);
    });
    return theClass;
}

NSWindow::NSWindow() = default;

NSWindow::~NSWindow()
{
    m_backend.reset(); // no more calls from the desktop
    if (m_contentView)
        m_contentView->setHostWindow(nullptr, {});
}

void NSWindow::init(CGSize contentSize)
{
    m_contentSize = requiredDesktopSize("NSWindow.init", contentSize);
    setContentView(make<NSView>(CGRect({}, m_contentSize)));
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
    view->removeFromSuperview();
    if (m_contentView) {
        subtreeWillLeave(*m_contentView, {});
        m_contentView->setHostWindow(nullptr, {});
    }
    m_contentView = view;
    m_constraintRevision = 0;
    view->setHostWindow(this, {});
    view->setFrame({{}, m_contentSize});
    contentNeedsFrame({});
}

void NSWindow::setContentSize(CGSize size)
{
    const CGSize wholeSize = requiredDesktopSize("NSWindow.setContentSize:", size);
    if (m_contentSize == wholeSize)
        return;
    applyContentSize(wholeSize);
    if (m_backend)
        m_backend->setContentSize(wholeSize);
}

void NSWindow::applyContentSize(CGSize size)
{
    m_contentSize = size;
    m_contentView->setFrame({{}, size});
    contentNeedsFrame({});
}

CGFloat NSWindow::backingScaleFactor() const
{
    return m_backend ? m_backend->backingScale() : 1;
}

void NSWindow::makeKeyAndOrderFront()
{
    layoutIfNeeded(); // first, so that the window opens at the size that its content needs
    if (!m_backend) {
        m_backend = Backend::shared().makeWindow(*this, m_contentSize);
        m_backend->setTitle(m_title);
        m_backend->setMinimumContentSize(m_minimumContentSize);
    }
    m_isVisible = true;
    NSApplication::shared().windowShown(shared(*this), {});
    m_backend->setVisible(true);
}

void NSWindow::close()
{
    if (!m_isVisible)
        return;
    const auto alive = shared(*this); // the application may hold the last reference
    m_isVisible = false;
    m_events.windowClosed();
    m_backend->setVisible(false);
    NSApplication::shared().windowClosed(*this, {});
}

void NSWindow::sendEvent(NSEvent& event)
{
    if (m_isVisible)
        m_events.dispatch(event);
}

bool NSWindow::performKeyEquivalent(NSEvent& event)
{
    const auto content = m_contentView;
    return content->performKeyEquivalent(event);
}

void NSWindow::keyDown(NSEvent& event)
{
    const std::string& key = event.charactersIgnoringModifiers();
    const NSEventModifierFlags flags = event.modifierFlags();
    if (isShortcut(event)) {
        NSResponder::keyDown(event); // the views have had their chance, see WindowEvents
        return;
    }
    if (performKeyEquivalent(event))
        return;
    if (key == NSKey::backTab || (key == NSKey::tab && contains(flags, NSEventModifierFlags::shift)))
        selectPreviousKeyView();
    else if (key == NSKey::tab)
        selectNextKeyView();
    else
        NSResponder::keyDown(event);
}

bool NSWindow::makeFirstResponder(NSResponder* responder)
{
    if (!responder)
        responder = this;
    NSResponder* const present = firstResponder();
    if (responder == present)
        return true;
    const auto* view = dynamic_cast<const NSView*>(responder);
    if (responder != this && (!responder->acceptsFirstResponder() || (view && view->window() != this)))
        return false;
    const auto keptNext = shared(*responder);
    const auto keptPresent = shared(*present);
    if (present != this && !present->resignFirstResponder())
        return false;
    m_firstResponder.reset();
    contentNeedsFrame({});
    if (responder != this) {
        m_firstResponder = keptNext;
        if (!responder->becomeFirstResponder())
            m_firstResponder.reset();
    }
    if (auto* focused = dynamic_cast<NSView*>(firstResponder()))
        postAccessibilityChange(*focused, AccessibleChange::focus);
    return firstResponder() == responder;
}

NSResponder* NSWindow::firstResponder() const
{
    const auto responder = m_firstResponder.lock();
    return responder ? responder.get() : const_cast<NSWindow*>(this);
}

void NSWindow::selectNextKeyView()
{
    if (NSView* next = keyViewAfter(*m_contentView, dynamic_cast<NSView*>(firstResponder())))
        makeFirstResponder(next);
}

void NSWindow::selectPreviousKeyView()
{
    if (NSView* previous = keyViewBefore(*m_contentView, dynamic_cast<NSView*>(firstResponder())))
        makeFirstResponder(previous);
}

void NSWindow::subtreeWillLeave(NSView& subtree, AppKitKey)
{
    const auto responder = m_firstResponder.lock();
    const auto* view = dynamic_cast<const NSView*>(responder.get());
    if (!view || !view->isDescendantOf(subtree))
        return;
    m_firstResponder.reset();
    responder->resignFirstResponder(); // whatever it says: it goes
}

void NSWindow::layoutIfNeeded()
{
    const auto alive = shared(*this); // overrides may close the window
    m_contentView->layoutSubtreeIfNeeded();
    updateMinimumContentSize(); // first, for it may stand in the way of a smaller size
    takeNeededSize();
    m_contentView->layoutSubtreeIfNeeded();
}

// Grows to what the content needs, or shrinks to the most that it can be.
void NSWindow::takeNeededSize()
{
    const CGSize needed = desktopSize(m_contentView->frame().size);
    const auto isNew = [](CGFloat side, CGFloat present, CGFloat& asked) {
        const bool wasAsked = side == asked;
        asked = side == present ? 0 : side;
        return side != present && !wasAsked;
    };
    const bool isNewWidth = isNew(needed.width, m_contentSize.width, m_askedSize.width);
    const bool isNewHeight = isNew(needed.height, m_contentSize.height, m_askedSize.height);
    if (!isNewWidth && !isNewHeight)
        return;
    applyContentSize(needed);
    if (m_backend)
        m_backend->setContentSize(needed);
}

void NSWindow::updateMinimumContentSize()
{
    const LayoutContext& context = LayoutContext::ofTree(*m_contentView);
    if (context.revision() == m_constraintRevision)
        return;
    m_constraintRevision = context.revision();
    m_minimumContentSize = desktopSize(m_contentView->fittingSize(NSLayoutPriorityWindowSizeStayPut));
    if (m_backend)
        m_backend->setMinimumContentSize(m_minimumContentSize);
}

void NSWindow::contentNeedsFrame(AppKitKey)
{
    if (m_backend && m_isVisible)
        m_backend->requestFrame();
}

void NSWindow::contentSizeChanged(CGSize size)
{
    const auto alive = shared(*this);
    if (size != m_contentSize && size.width >= 1 && size.height >= 1)
        applyContentSize(size);
}

void NSWindow::prepareFrame()
{
    const auto alive = shared(*this);
    layoutIfNeeded();
    m_events.contentMoved();
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
    layoutIfNeeded();
    return accessibleElementsIn(*m_contentView);
}

void NSWindow::paint(Canvas& canvas)
{
    const auto alive = shared(*this);
    const auto content = m_contentView;
    paintViewTree(*content, canvas);
}

} // namespace RVCore
