#include <AppKit/LayoutContext.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ViewSnapshot.h>
#include <Foundation/NSException.h>

#include <algorithm>

namespace RVCore {

namespace {

void requireContentSize(std::string_view operation, CGSize size)
{
    requireFinite(operation, "size", size);
    if (size.width < 1 || size.height < 1)
        raiseInvalidArgument(operation, "a window's content is at least 1 × 1, got " + describe(size));
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
        publish.method("layoutIfNeeded", &NSWindow::layoutIfNeeded);
    });
    return theClass;
}

NSWindow::NSWindow() = default;

NSWindow::~NSWindow()
{
    m_backend.reset(); // no more calls from the desktop
    if (m_contentView)
        m_contentView->m_hostWindow = nullptr;
}

void NSWindow::init(CGSize contentSize)
{
    requireContentSize("NSWindow.init", contentSize);
    m_contentSize = contentSize;
    setContentView(make<NSView>(CGRect({}, contentSize)));
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
    if (view->m_hostWindow)
        raiseInvalidArgument("NSWindow.setContentView:",
                             view->description() + " is the content view of another window");
    view->removeFromSuperview();
    if (m_contentView) {
        contentViewWillDetach(*m_contentView);
        m_contentView->m_hostWindow = nullptr;
        m_contentView->frameRowsChanged();
    }
    m_contentView = view;
    view->m_hostWindow = this;
    view->setFrame({{}, m_contentSize});
    view->frameRowsChanged(); // from now on the window holds its size
    m_constraintRevision = 0;
    contentNeedsFrame();
}

void NSWindow::setContentSize(CGSize size)
{
    requireContentSize("NSWindow.setContentSize:", size);
    if (m_contentSize == size)
        return;
    applyContentSize(size);
    if (m_backend)
        m_backend->setContentSize(size);
}

void NSWindow::applyContentSize(CGSize size)
{
    m_contentSize = size;
    m_contentView->setFrame({{}, size});
    contentNeedsFrame();
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
    NSApplication::shared().windowShown(shared(*this));
    m_backend->setVisible(true);
}

void NSWindow::close()
{
    if (!m_isVisible)
        return;
    const auto alive = shared(*this); // the application may hold the last reference
    m_isVisible = false;
    m_backend->setVisible(false);
    NSApplication::shared().windowClosed(*this);
}

bool NSWindow::makeFirstResponder(NSResponder* responder)
{
    if (responder && responder != this && !responder->acceptsFirstResponder())
        return false;
    m_firstResponder = responder ? responder : this;
    return true;
}

void NSWindow::contentViewWillDetach(NSView& subtree)
{
    const auto* view = dynamic_cast<const NSView*>(m_firstResponder);
    if (view && view->isDescendantOf(subtree))
        m_firstResponder = this;
}

void NSWindow::layoutIfNeeded()
{
    m_contentView->layoutSubtreeIfNeeded();
    if (const CGSize needed = m_contentView->frame().size; needed != m_contentSize) {
        applyContentSize(needed);
        m_contentView->layoutSubtreeIfNeeded();
        if (m_backend)
            m_backend->setContentSize(needed);
    }
    const LayoutContext* context = LayoutContext::of(*m_contentView);
    if (context->revision() == m_constraintRevision)
        return;
    m_constraintRevision = context->revision();
    const CGSize minimum = m_contentView->fittingSize(NSLayoutPriorityWindowSizeStayPut);
    m_minimumContentSize = {std::max(1.0, minimum.width), std::max(1.0, minimum.height)};
    if (m_backend)
        m_backend->setMinimumContentSize(m_minimumContentSize);
}

void NSWindow::contentNeedsFrame()
{
    if (m_backend && m_isVisible)
        m_backend->requestFrame();
}

void NSWindow::contentSizeChanged(CGSize size)
{
    if (size != m_contentSize && size.width >= 1 && size.height >= 1)
        applyContentSize(size);
}

void NSWindow::paint(Canvas& canvas)
{
    paintViewTree(*m_contentView, canvas);
}

} // namespace RVCore
