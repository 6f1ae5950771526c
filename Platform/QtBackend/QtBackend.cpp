#include <Backend/CallQueue.h>
#include <Foundation/NSException.h>

#include <QApplication>
#include <QEventLoop>
#include <QScreen>
#include <QStyle>
#include <QTimer>
#include <QtBackend/QtApplication.h>
#include <QtBackend/QtBackend.h>
#include <QtBackend/QtBitmap.h>
#include <QtBackend/QtControlLook.h>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtImage.h>
#include <QtBackend/QtPicture.h>
#include <QtBackend/QtText.h>
#include <QtBackend/QtTextEditor.h>
#include <QtBackend/QtWindow.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace RVCore {

// Closures reach the main thread as one event per turn, posted by whoever finds the queue empty.
class QtBackend::EventLoop : public QObject {
public:
    EventLoop();
    void run();
    void stop();
    void callLater(std::function<void()> closure);
    void setWakeUp(double seconds, std::function<void()> closure);

private:
    void postTurn();
    void postTurnIfNeeded();
    void runTurn();

    CallQueue m_calls;
    QTimer m_wakeUp{this};
    std::function<void()> m_wakeUpClosure;
    QEventLoop* m_innermost = nullptr;
    bool m_isStopped = false;
};

QtBackend::EventLoop::EventLoop()
{
    m_wakeUp.setSingleShot(true);
    m_wakeUp.setTimerType(Qt::PreciseTimer);
    // The closure may ask for the next wake-up.
    m_wakeUp.callOnTimeout(this, [this] { callGuarded(std::exchange(m_wakeUpClosure, nullptr)); });
}

void QtBackend::EventLoop::run()
{
    QEventLoop loop;
    QEventLoop* const outer = std::exchange(m_innermost, &loop);
    // What a turn around this run has still to call waits for nothing that Qt knows of; nor does what a stop leaves.
    postTurnIfNeeded();
    loop.exec();
    m_innermost = outer;
    m_isStopped = false;
    postTurnIfNeeded();
}

void QtBackend::EventLoop::stop()
{
    if (!m_innermost)
        return;
    m_isStopped = true;
    m_innermost->quit();
}

void QtBackend::EventLoop::callLater(std::function<void()> closure)
{
    if (m_calls.add(std::move(closure)))
        postTurn();
}

void QtBackend::EventLoop::setWakeUp(double seconds, std::function<void()> closure)
{
    m_wakeUp.stop();
    m_wakeUpClosure = std::move(closure);
    if (!m_wakeUpClosure)
        return;
    constexpr double longest = 2e6; // seconds: Qt counts milliseconds in an int
    m_wakeUp.start(static_cast<int>(std::ceil(std::clamp(seconds, 0.0, longest) * 1000)));
}

void QtBackend::EventLoop::postTurn()
{
    QMetaObject::invokeMethod(
        this, [this] { callGuarded([this] { runTurn(); }); }, Qt::QueuedConnection);
}

void QtBackend::EventLoop::postTurnIfNeeded()
{
    if (!m_isStopped && !m_calls.isEmpty())
        postTurn();
}

void QtBackend::EventLoop::runTurn()
{
    m_calls.runTurn(m_isStopped);
    // Those that the turn added may have found the queue not empty.
    postTurnIfNeeded();
}

QtBackend::QtBackend()
{
    requireQtApplication();
    m_loop = std::make_unique<EventLoop>();
    m_controlLook = std::make_unique<QtControlLook>();
}

QtBackend::~QtBackend() = default;

bool QtBackend::hasDisplay() const
{
    const QString platform = QGuiApplication::platformName();
    return platform != "offscreen" && platform != "minimal";
}

TextMetrics QtBackend::measureText(const TextDescription& text, CGFloat maximumWidth)
{
    return RVCore::measureText(text, maximumWidth);
}

bool QtBackend::prefersReducedMotion()
{
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0;
}

ControlLook& QtBackend::controlLook()
{
    return *m_controlLook;
}

CGImageRef QtBackend::readImage(const std::string& path)
{
    return RVCore::readImage(path);
}

std::shared_ptr<TextEditor> QtBackend::makeTextEditor(TextEditorClient& client, const TextDescription& content,
                                                      CGSize size)
{
    return std::make_shared<QtTextEditor>(client, content, size);
}

std::unique_ptr<WindowBackend> QtBackend::makeWindow(WindowClient& client, CGSize contentSize)
{
    requireFinite("Backend.makeWindow", "contentSize", contentSize);
    return std::make_unique<QtWindow>(client, contentSize);
}

void QtBackend::writePicture(const std::string& path, const Bitmap& picture, CGFloat scale)
{
    RVCore::writePicture(path, picture, scale);
}

std::unique_ptr<Canvas> QtBackend::makeCanvas(Bitmap& bitmap, int x, int y, CGFloat scale)
{
    return makeBitmapCanvas(bitmap, x, y, scale);
}

void QtBackend::run()
{
    m_loop->run();
}

void QtBackend::stop()
{
    m_loop->stop();
}

void QtBackend::callLater(std::function<void()> closure)
{
    m_loop->callLater(std::move(closure));
}

void QtBackend::setWakeUp(double seconds, std::function<void()> closure)
{
    requireFinite("Backend.setWakeUp", "seconds", seconds);
    m_loop->setWakeUp(seconds, std::move(closure));
}

std::vector<ScreenDescription> QtBackend::screens()
{
    std::vector<ScreenDescription> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens.push_back(
            {fromQRect(screen->geometry()), fromQRect(screen->availableGeometry()), screen->devicePixelRatio()});
    // Between the loss of the last screen and the arrival of the next one there is none.
    if (screens.empty())
        screens.push_back({.frame = {0, 0, 1024, 768}, .visibleFrame = {0, 0, 1024, 768}});
    return screens;
}

namespace {

// Linking is enough: the symbol below is named on the linker's command line, which brings in this file.
[[maybe_unused]] const bool isRegistered = (rvcoreRegisterQtBackend(), true);

} // namespace

} // namespace RVCore

extern "C" void rvcoreRegisterQtBackend()
{
    RVCore::Backend::registerFactory(
        10, []() -> std::unique_ptr<RVCore::Backend> { return std::make_unique<RVCore::QtBackend>(); });
}
