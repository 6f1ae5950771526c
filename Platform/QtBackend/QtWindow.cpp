#include <Foundation/NSException.h>

#include <QCloseEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QPainter>
#include <QScreen>
#include <QtBackend/QtAccessibility.h>
#include <QtBackend/QtApplication.h>
#include <QtBackend/QtBitmap.h>
#include <QtBackend/QtCanvas.h>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtFrameLog.h>
#include <QtBackend/QtInput.h>
#include <QtBackend/QtTextEditor.h>
#include <QtBackend/QtWindow.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace RVCore {

QtWindowSurface::QtWindowSurface(WindowClient& client, QSize size)
    : m_client(&client), m_knownSize(fromQSize(size)), m_store(std::make_unique<QBackingStore>(this))
{
    setSurfaceType(QSurface::RasterSurface);
    m_knownScale = devicePixelRatio();
    resize(size);
    m_clock.start();
    m_frameTimer.setSingleShot(true);
    m_frameTimer.setTimerType(Qt::PreciseTimer);
    m_frameTimer.callOnTimeout(this, [this] { paintFrame(); });
}

QtWindowSurface::~QtWindowSurface() = default;

void QtWindowSurface::abandon()
{
    m_client = nullptr;
    m_frameTimer.stop();
    hide();
    if (m_callDepth > 0)
        deleteLater();
    else
        delete this;
}

// The client may end the window's life in any call.
void QtWindowSurface::call(const std::function<void(WindowClient&)>& closure)
{
    if (!m_client)
        return;
    ++m_callDepth;
    callGuarded([&] { closure(*m_client); });
    --m_callDepth;
    if (m_callDepth == 0 && m_client && m_needsFrame)
        scheduleFrame(); // a frame that was due meanwhile had to wait
}

void QtWindowSurface::reportSize(CGSize size)
{
    if (size == m_knownSize)
        return;
    m_knownSize = size;
    call([&](WindowClient& client) { client.contentSizeChanged(size); });
}

void QtWindowSurface::setContentSize(CGSize content)
{
    m_knownSize = content;
    const QSize size = toQWindowSize(content).expandedTo(m_minimumSize);
    updateLimits(size);
    resize(size);
    // A desktop that wants another size says so later, in a resize event.
    reportSize(fromQSize(this->size()));
}

void QtWindowSurface::setMinimumContentSize(CGSize content)
{
    m_minimumSize = toQWindowSize(content);
    setContentSize(m_knownSize);
}

void QtWindowSurface::setMaximumContentSize(CGSize content)
{
    m_maximumSize = toQWindowSize(content);
    updateLimits(size());
}

// A window that the user cannot resize has the one size that it has.
void QtWindowSurface::updateLimits(QSize present)
{
    // Off screen there is nobody to tell, about which Qt complains.
    if (QGuiApplication::platformName() == "offscreen")
        return;
    setMinimumSize(m_isResizable ? m_minimumSize : present);
    setMaximumSize(m_isResizable ? m_maximumSize.expandedTo(m_minimumSize) : present);
}

void QtWindowSurface::setStyle(const WindowStyle& style)
{
    m_isResizable = style.isResizable;
    QSurfaceFormat surfaceFormat = format();
    surfaceFormat.setAlphaBufferSize(style.isOpaque ? -1 : 8);
    setFormat(surfaceFormat);
    setFlags(toQWindowFlags(style));
    updateLimits(size());
}

void QtWindowSurface::setOrigin(CGPoint origin)
{
    m_askedOrigin = toQDesktopPoint(origin);
    setFramePosition(*m_askedOrigin);
}

// Of window managers that draw borders in the X server's own way Qt reports places that are beside the real ones by
// the border's width. One as near as that to what was asked for is what was asked for.
WindowPlacement QtWindowSurface::placement() const
{
    QPoint origin = framePosition();
    const QMargins margins = frameMargins();
    const auto isNear = [&](int a, int b) { return std::abs(a - b) <= margins.left(); };
    // And on Wayland nobody knows where it is.
    const bool isKnown = !QGuiApplication::platformName().startsWith("wayland");
    if (m_askedOrigin &&
        (!isKnown || (isNear(origin.x(), m_askedOrigin->x()) && isNear(origin.y(), m_askedOrigin->y()))))
        origin = *m_askedOrigin;
    return {{CGFloat(origin.x()), CGFloat(origin.y())},
            {CGFloat(margins.top()), CGFloat(margins.left()), CGFloat(margins.bottom()), CGFloat(margins.right())}};
}

void QtWindowSurface::reportPlacement()
{
    const WindowPlacement present = placement();
    if (!isVisible() || present == m_knownPlacement)
        return;
    m_knownPlacement = present;
    call([](WindowClient& client) { client.placementChanged(); });
}

// What the desktop tells as a side effect of something else.
void QtWindowSurface::reportState()
{
    const QPointer<QtWindowSurface> alive = this;
    reportPlacement();
    if (!alive || !isVisible())
        return;
    // A window manager may forget to take the state back; a window that can be seen is not minimised.
    const bool isMinimized = windowStates().testFlag(Qt::WindowMinimized) && !isExposed();
    if (isMinimized != m_isMinimized) {
        m_isMinimized = isMinimized;
        call([&](WindowClient& client) { client.minimizedChanged(isMinimized); });
    }
    if (!alive)
        return;
    if (const CGFloat scale = devicePixelRatio(); scale != m_knownScale) {
        m_knownScale = scale;
        call([](WindowClient& client) { client.backingScaleChanged(); });
    }
}

void QtWindowSurface::requestFrame()
{
    m_needsFrame = true;
    scheduleFrame();
}

double QtWindowSurface::frameInterval() const
{
    return 1000 / (screen() && screen()->refreshRate() > 0 ? screen()->refreshRate() : 60);
}

// As soon as the screen can show the next frame, and at once if it has been waiting for one. A desktop that says
// itself when that is is asked; elsewhere the timer's whole milliseconds come out even, as frames count from when the
// one before was due.
void QtWindowSurface::scheduleFrame()
{
    if (!isVisible() || !isExposed() || m_frameTimer.isActive())
        return;
    if (QGuiApplication::platformName().startsWith("wayland"))
        requestUpdate();
    else
        m_frameTimer.start(static_cast<int>(std::lround(std::max(0.0, m_lastFrame + frameInterval() - now()))));
}

void QtWindowSurface::setTextInput(const std::shared_ptr<QtTextEditor>& editor, CGPoint origin)
{
    const auto before = m_textInput.lock();
    if (before && before != editor)
        before->setHost(nullptr, {});
    m_textInput = editor;
    if (editor)
        editor->setHost(this, origin);
    if (QGuiApplication::focusWindow() == this && (editor || before))
        QGuiApplication::inputMethod()->update(before == editor ? Qt::ImQueryInput : Qt::ImQueryAll);
}

// Without an editor the window takes no text: to be asked and to answer nothing says so.
bool QtWindowSurface::handleInputMethod(QEvent& event)
{
    const auto editor = m_textInput.lock();
    if (!editor || (event.type() != QEvent::InputMethod && event.type() != QEvent::InputMethodQuery))
        return false;
    if (event.type() == QEvent::InputMethod)
        call([&](WindowClient&) { editor->handleInputMethod(static_cast<const QInputMethodEvent&>(event)); });
    else
        editor->answer(static_cast<QInputMethodQueryEvent&>(event));
    event.accept();
    return true;
}

bool QtWindowSurface::event(QEvent* event)
{
    if (handleInputMethod(*event))
        return true;
    const bool isHandled = QWindow::event(event);
    // What was asked for while nobody could see the window is due when somebody can.
    if (event->type() == QEvent::UpdateRequest)
        paintFrame();
    else if (event->type() == QEvent::Expose && !isExposed())
        m_frameTimer.stop();
    else if (event->type() == QEvent::Expose && m_needsFrame)
        scheduleFrame();
    else if (event->type() == QEvent::Leave)
        report(pointerLeft());
    else if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ThemeChange)
        requestFrame(); // light may have become dark
    if (event->type() == QEvent::Expose || event->type() == QEvent::WindowStateChange)
        reportState();
    return isHandled;
}

// Something has become visible, for which the desktop remembers nothing.
void QtWindowSurface::paintEvent(QPaintEvent*)
{
    m_needsFrame = true;
    m_isStoreStale = true;
    paintFrame();
}

void QtWindowSurface::resizeEvent(QResizeEvent*)
{
    reportSize(fromQSize(size()));
    // The desktop asks for the paint of the new size right after this; where it does not, the frame comes on its own.
    m_needsFrame = true;
    scheduleFrame();
}

void QtWindowSurface::moveEvent(QMoveEvent*)
{
    reportPlacement();
}

void QtWindowSurface::focusInEvent(QFocusEvent*)
{
    call([](WindowClient& client) { client.activeChanged(true); });
}

void QtWindowSurface::focusOutEvent(QFocusEvent*)
{
    call([](WindowClient& client) { client.activeChanged(false); });
}

void QtWindowSurface::closeEvent(QCloseEvent* event)
{
    // Whether the window closes is the client's decision.
    event->ignore();
    call([](WindowClient& client) { client.closeRequested(); });
}

void QtWindowSurface::report(const InputEvent& event)
{
    call([&](WindowClient& client) { client.handleInput(event); });
}

std::vector<std::shared_ptr<AccessibleElement>> QtWindowSurface::accessibleElements() const
{
    std::vector<std::shared_ptr<AccessibleElement>> elements;
    const_cast<QtWindowSurface&>(*this).call([&](WindowClient& client) { elements = client.accessibleElements(); });
    return elements;
}

QAccessibleInterface* QtWindowSurface::accessibleRoot() const
{
    return accessibleOf(const_cast<QtWindowSurface&>(*this));
}

void QtWindowSurface::mousePressEvent(QMouseEvent* event)
{
    report(fromQMouseEvent(*event));
}

void QtWindowSurface::mouseReleaseEvent(QMouseEvent* event)
{
    report(fromQMouseEvent(*event));
}

void QtWindowSurface::mouseMoveEvent(QMouseEvent* event)
{
    report(fromQMouseEvent(*event));
}

void QtWindowSurface::wheelEvent(QWheelEvent* event)
{
    report(fromQWheelEvent(*event));
}

void QtWindowSurface::keyPressEvent(QKeyEvent* event)
{
    report(fromQKeyEvent(*event));
}

void QtWindowSurface::keyReleaseEvent(QKeyEvent* event)
{
    if (!event->isAutoRepeat()) // a key that is held is still down, whatever X11 says in between
        report(fromQKeyEvent(*event));
}

void QtWindowSurface::paintFrame()
{
    if (!m_needsFrame || !isExposed() || !m_store || m_callDepth > 0)
        return;
    QtFrameLog* const log = QtFrameLog::shared();
    const double begin = log ? QtFrameLog::now() : 0;
    call([](WindowClient& client) { client.prepareFrame(); });
    // What preparing asked for is in this frame; what painting asks for is the next one.
    m_needsFrame = false;
    m_frameTimer.stop();
    const double due = m_lastFrame + frameInterval();
    m_lastFrame = now() < due + frameInterval() ? due : now();
    if (!m_client || !isExposed())
        return;
    const std::string title = log ? this->title().toStdString() : std::string();
    paintContent();
    if (log)
        log->add(begin, QtFrameLog::now(), title);
}

void QtWindowSurface::paintContent()
{
    call([&](WindowClient& client) {
        const WindowPixels frame = client.paintPixels(devicePixelRatio());
        showPixels(toQImage(frame.pixels), frame.changed);
    });
}

// The store keeps its pixels from frame to frame unless its size changes.
void QtWindowSurface::showPixels(const QImage& pixels, std::span<const PixelRect> changed)
{
    const CGFloat scale = devicePixelRatio();
    const bool isNew = m_store->size() != size() || m_storeScale != scale || m_isStoreStale;
    m_storeScale = scale;
    m_isStoreStale = false;
    m_store->resize(size());
    const QRect all(QPoint(0, 0), size());
    QRegion points = isNew ? QRegion(all) : QRegion();
    for (const PixelRect& rect : changed)
        points += QRectF(rect.x / scale, rect.y / scale, rect.width / scale, rect.height / scale)
                      .toAlignedRect()
                      .intersected(all);
    if (points.isEmpty())
        return;
    m_store->beginPaint(points);
    {
        QPainter painter(m_store->paintDevice());
        painter.setWorldTransform(painter.deviceTransform().inverted()); // pixels
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        // All of the points, of which the store may have cleared every pixel.
        for (const QRect& part : points) {
            const QRect shown =
                QRectF(part.x() * scale, part.y() * scale, part.width() * scale, part.height() * scale)
                    .toAlignedRect()
                    .intersected(pixels.rect());
            painter.drawImage(shown.topLeft(), pixels, shown);
        }
    }
    m_store->endPaint();
    m_store->flush(points);
}

QtWindow::QtWindow(WindowClient& client, CGSize contentSize)
    : m_surface(new QtWindowSurface(client, toQWindowSize(contentSize)))
{
}

QtWindow::~QtWindow()
{
    if (hasSurface())
        m_surface->abandon();
}

bool QtWindow::hasSurface() const
{
    return m_surface && !hasQtApplicationEnded();
}

void QtWindow::setTitle(const std::string& title)
{
    if (hasSurface())
        m_surface->setTitle(toQString(title));
}

void QtWindow::setContentSize(CGSize size)
{
    requireFinite("WindowBackend.setContentSize", "size", size);
    if (hasSurface())
        m_surface->setContentSize(size);
}

void QtWindow::setMinimumContentSize(CGSize size)
{
    requireFinite("WindowBackend.setMinimumContentSize", "size", size);
    if (hasSurface())
        m_surface->setMinimumContentSize(size);
}

void QtWindow::setMaximumContentSize(CGSize size)
{
    requireFinite("WindowBackend.setMaximumContentSize", "size", size);
    if (hasSurface())
        m_surface->setMaximumContentSize(size);
}

void QtWindow::setStyle(const WindowStyle& style)
{
    if (hasSurface())
        m_surface->setStyle(style);
}

void QtWindow::setOrigin(CGPoint origin)
{
    requireFinite("WindowBackend.setOrigin", "origin", origin);
    if (hasSurface())
        m_surface->setOrigin(origin);
}

WindowPlacement QtWindow::placement() const
{
    return hasSurface() ? m_surface->placement() : WindowPlacement();
}

void QtWindow::order(WindowOrder order)
{
    // Off screen nothing is in front of anything, and Qt complains about being asked.
    if (!hasSurface() || QGuiApplication::platformName() == "offscreen")
        return;
    if (order == WindowOrder::front)
        m_surface->raise();
    else
        m_surface->lower();
}

void QtWindow::activate()
{
    if (hasSurface())
        m_surface->requestActivate();
}

void QtWindow::setMinimized(bool isMinimized)
{
    if (!hasSurface())
        return;
    Qt::WindowStates states = m_surface->windowStates();
    m_surface->setWindowStates(states.setFlag(Qt::WindowMinimized, isMinimized));
}

void QtWindow::setParent(WindowBackend* parent)
{
    const auto* other = dynamic_cast<QtWindow*>(parent);
    if (hasSurface())
        m_surface->setTransientParent(other && other->hasSurface() ? &other->surface() : nullptr);
}

void QtWindow::setVisible(bool visible)
{
    if (hasSurface())
        m_surface->setVisible(visible);
}

bool QtWindow::isExposed() const
{
    return hasSurface() && m_surface->isExposed();
}

void QtWindow::setCursor(CursorShape shape)
{
    if (hasSurface())
        m_surface->setCursor(toQCursorShape(shape));
}

void QtWindow::accessibilityChanged(const std::shared_ptr<AccessibleElement>& element, AccessibleChange change)
{
    if (hasSurface())
        reportAccessibilityChange(*m_surface, element, change);
}

void QtWindow::requestFrame()
{
    if (hasSurface())
        m_surface->requestFrame();
}

void QtWindow::setTextInput(const std::shared_ptr<TextEditor>& editor, CGPoint origin)
{
    if (hasSurface())
        m_surface->setTextInput(std::dynamic_pointer_cast<QtTextEditor>(editor), origin);
}

CGFloat QtWindow::backingScale() const
{
    return hasSurface() ? m_surface->devicePixelRatio() : 1;
}

} // namespace RVCore
