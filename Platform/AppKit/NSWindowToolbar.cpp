#include <AppKit/NSToolbar.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ToolbarView.h>

namespace RVCore {

std::vector<std::shared_ptr<NSView>> NSWindow::rootViews(AppKitKey) const
{
    std::vector<std::shared_ptr<NSView>> roots;
    if (m_contentView)
        roots.push_back(m_contentView);
    if (m_toolbar)
        roots.push_back(m_toolbar->view({}));
    return roots;
}

void NSWindow::setToolbar(const std::shared_ptr<NSToolbar>& toolbar)
{
    if (toolbar == m_toolbar)
        return;
    const auto alive = shared(*this); // delegates are told of new frames
    const auto next = toolbar;        // the argument may be the former window's
    NSWindow* const former = next ? next->window() : nullptr;
    const auto formerAlive = former ? shared(*former) : nullptr;
    // Every window has what it is to have before anybody is told.
    const auto old = releaseToolbar();
    if (former)
        former->releaseToolbar();
    m_toolbar = next;
    if (next)
        next->view({})->setHostWindow(this, {});
    if (former)
        former->toolbarHeightChanged({});
    toolbarHeightChanged({});
}

std::shared_ptr<NSToolbar> NSWindow::releaseToolbar()
{
    if (m_toolbar) {
        const auto view = m_toolbar->view({});
        view->close();
        subtreeWillLeave(*view, {});
        view->setHostWindow(nullptr, {});
    }
    return std::exchange(m_toolbar, nullptr);
}

void NSWindow::toolbarHeightChanged(AppKitKey)
{
    const auto alive = shared(*this);
    const bool isShown = m_toolbar && m_toolbar->isVisible();
    const CGFloat height = isShown ? ToolbarView::barHeight() : 0;
    if (m_toolbar && !isShown) {
        m_toolbar->view({})->close();
        subtreeWillLeave(*m_toolbar->view({}), {});
    }
    const CGFloat added = height - m_geometry.toolbarHeight;
    m_geometry.toolbarHeight = height;
    placeToolbar();
    contentNeedsFrame({});
    if (added == 0)
        return;
    m_animation.reset(); // it was on its way to a frame of another height
    m_geometry.origin.y -= added;
    limitsChanged(); // first, for a limit may stand in the way of the size
    if (m_backend)
        m_backend->setContentSize(m_geometry.areaFor(m_geometry.contentSize));
    tellDelegate(&NSWindowDelegate::windowDidResize);
}

void NSWindow::placeToolbar()
{
    if (m_toolbar)
        m_toolbar->view({})->setFrame(
            {0, m_geometry.contentSize.height, m_geometry.contentSize.width, m_geometry.toolbarHeight});
}

} // namespace RVCore
