#include <Foundation/NSException.h>
#include <HeadlessBackend/HeadlessWindow.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace RVCore {

namespace {

// A desktop knows whole points only, and no more of them than its protocol can count.
CGFloat allowedSide(CGFloat side)
{
    return std::clamp(std::ceil(side), 1.0, 32767.0);
}

} // namespace

HeadlessWindow::HeadlessWindow(std::shared_ptr<List> list, WindowClient& client, CGSize contentSize)
    : m_list(std::move(list)), m_client(client)
{
    requireFinite("Backend.makeWindow", "contentSize", contentSize);
    m_contentSize = allowed(contentSize);
    m_list->push_back(this);
}

HeadlessWindow::~HeadlessWindow()
{
    std::erase(*m_list, this);
}

CGSize HeadlessWindow::allowed(CGSize size) const
{
    return {std::max(allowedSide(size.width), m_minimumContentSize.width),
            std::max(allowedSide(size.height), m_minimumContentSize.height)};
}

// The client is told unless it knows the resulting size already.
void HeadlessWindow::resize(CGSize size, CGSize known)
{
    m_contentSize = allowed(size);
    m_needsFrame = true;
    if (m_contentSize != known)
        m_client.contentSizeChanged(m_contentSize);
}

void HeadlessWindow::setContentSize(CGSize size)
{
    requireFinite("WindowBackend.setContentSize", "size", size);
    if (size != m_contentSize)
        resize(size, size);
}

void HeadlessWindow::setMinimumContentSize(CGSize size)
{
    requireFinite("WindowBackend.setMinimumContentSize", "size", size);
    m_minimumContentSize = {allowedSide(size.width), allowedSide(size.height)};
    if (allowed(m_contentSize) != m_contentSize)
        resize(m_contentSize, m_contentSize);
}

void HeadlessWindow::setVisible(bool visible)
{
    m_needsFrame = m_needsFrame || (visible && !m_isVisible);
    m_isVisible = visible;
}

void HeadlessWindow::userResize(CGSize size)
{
    if (allowed(size) != m_contentSize)
        resize(size, m_contentSize);
}

void HeadlessWindow::userInput(const InputEvent& event)
{
    if (m_isVisible)
        m_client.handleInput(event);
}

void HeadlessWindow::setBackingScale(CGFloat scale)
{
    m_backingScale = scale;
    m_needsFrame = true;
}

void HeadlessWindow::accessibilityChanged(const std::shared_ptr<AccessibleElement>& element, AccessibleChange change)
{
    m_accessibilityChanges.emplace_back(element ? element->name() : m_title, change);
}

std::vector<std::pair<std::string, AccessibleChange>> HeadlessWindow::takeAccessibilityChanges()
{
    return std::exchange(m_accessibilityChanges, {});
}

bool HeadlessWindow::flushFrame()
{
    if (!m_isVisible || !m_needsFrame)
        return false;
    // Preparing or painting may end the window's life; the list, which this call keeps alive, tells.
    const std::shared_ptr<List> list = m_list;
    const auto isAlive = [&] { return std::find(list->begin(), list->end(), this) != list->end(); };
    m_client.prepareFrame();
    if (!isAlive() || !m_isVisible)
        return false;
    // What preparing asks for is in this frame; what painting asks for is the next one.
    m_needsFrame = false;
    ++m_frameCount;
    RecordingCanvas canvas;
    m_client.paint(canvas);
    if (isAlive())
        m_lastFrame = std::move(canvas);
    return true;
}

} // namespace RVCore
