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
    return std::clamp(std::ceil(side), 1.0, largestWindowSide);
}

// Nor does it place anything further away.
CGFloat allowedCoordinate(CGFloat coordinate)
{
    return std::clamp(std::round(coordinate), -largestWindowSide, largestWindowSide);
}

} // namespace

HeadlessWindow::HeadlessWindow(std::shared_ptr<List> list, WindowClient& client, CGSize contentSize)
    : m_list(std::move(list)), m_client(client)
{
    requireFinite("Backend.makeWindow", "contentSize", contentSize);
    m_contentSize = allowed(contentSize);
    m_list->made.push_back(this);
    m_list->ordered.push_back(this);
}

HeadlessWindow::~HeadlessWindow()
{
    std::erase(m_list->made, this);
    std::erase(m_list->ordered, this);
}

bool HeadlessWindow::isAlive(const HeadlessWindow* window, const List& list)
{
    return std::find(list.made.begin(), list.made.end(), window) != list.made.end();
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

void HeadlessWindow::setMaximumContentSize(CGSize size)
{
    requireFinite("WindowBackend.setMaximumContentSize", "size", size);
    m_maximumContentSize = {allowedSide(size.width), allowedSide(size.height)};
}

void HeadlessWindow::setOrigin(CGPoint origin)
{
    requireFinite("WindowBackend.setOrigin", "origin", origin);
    m_origin = {allowedCoordinate(origin.x), allowedCoordinate(origin.y)};
}

WindowPlacement HeadlessWindow::placement() const
{
    const EdgeInsets usual{.top = m_style.isTitled ? usualTitleBarHeight : 0};
    return {m_origin, m_margins.value_or(usual)};
}

void HeadlessWindow::setVisible(bool visible)
{
    m_needsFrame = m_needsFrame || (visible && !m_isVisible);
    if (visible && !m_isVisible)
        order(WindowOrder::front);
    m_isVisible = visible;
    if (!visible)
        setActive(false);
}

void HeadlessWindow::order(WindowOrder order)
{
    std::vector<HeadlessWindow*>& windows = m_list->ordered;
    std::erase(windows, this);
    windows.insert(order == WindowOrder::front ? windows.end() : windows.begin(), this);
}

void HeadlessWindow::activate()
{
    if (!m_isVisible || m_isActive)
        return;
    // What is told may end the life of any window.
    const std::shared_ptr<List> list = m_list;
    const auto active = std::find_if(list->made.begin(), list->made.end(),
                                     [](const HeadlessWindow* window) { return window->m_isActive; });
    if (active != list->made.end())
        (*active)->setActive(false);
    if (isAlive(this, *list))
        setActive(true);
}

void HeadlessWindow::setActive(bool isActive)
{
    if (m_isActive == isActive)
        return;
    m_isActive = isActive;
    m_client.activeChanged(isActive);
}

void HeadlessWindow::setTextInput(const std::shared_ptr<TextEditor>& editor, CGPoint origin)
{
    m_textInput = editor;
    m_textInputOrigin = origin;
}

void HeadlessWindow::userResize(CGSize size)
{
    if (!m_style.isResizable)
        return;
    const CGSize possible = allowed(
        {std::min(size.width, m_maximumContentSize.width), std::min(size.height, m_maximumContentSize.height)});
    if (possible != m_contentSize)
        resize(possible, m_contentSize);
}

void HeadlessWindow::userMove(CGPoint origin)
{
    if (m_origin == origin)
        return;
    setOrigin(origin);
    m_client.placementChanged();
}

void HeadlessWindow::userMinimize(bool isMinimized)
{
    if (m_isMinimized == isMinimized)
        return;
    m_isMinimized = isMinimized;
    m_client.minimizedChanged(isMinimized);
}

void HeadlessWindow::setMargins(const EdgeInsets& margins)
{
    m_margins = margins;
    m_client.placementChanged();
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
    m_client.backingScaleChanged();
}

void HeadlessWindow::accessibilityChanged(const std::shared_ptr<AccessibleElement>& element, AccessibleChange change)
{
    m_accessibilityChanges.emplace_back(element ? element->name() : m_title, change);
}

std::vector<std::pair<std::string, AccessibleChange>> HeadlessWindow::takeAccessibilityChanges()
{
    return std::exchange(m_accessibilityChanges, {});
}

void HeadlessWindow::setElsewhere(bool isElsewhere)
{
    if (m_isElsewhere && !isElsewhere)
        m_needsFrame = true;
    m_isElsewhere = isElsewhere;
}

bool HeadlessWindow::flushFrame()
{
    if (!isExposed() || !m_needsFrame)
        return false;
    // Preparing or painting may end the window's life; the list, which this call keeps alive, tells.
    const std::shared_ptr<List> list = m_list;
    m_client.prepareFrame();
    if (!isAlive(this, *list) || !m_isVisible)
        return false;
    // What preparing asks for is in this frame; what painting asks for is the next one.
    m_needsFrame = false;
    ++m_frameCount;
    RecordingCanvas canvas;
    m_client.paint(canvas);
    if (isAlive(this, *list))
        m_lastFrame = std::move(canvas);
    return true;
}

} // namespace RVCore
