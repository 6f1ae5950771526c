#include <Foundation/NSException.h>
#include <HeadlessBackend/HeadlessBackend.h>
#include <HeadlessBackend/HeadlessText.h>
#include <HeadlessBackend/HeadlessTextEditor.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

namespace RVCore {

HeadlessBackend::HeadlessBackend() = default;

HeadlessBackend::~HeadlessBackend() = default;

TextMetrics HeadlessBackend::measureText(const TextDescription& text, CGFloat maximumWidth)
{
    return headlessTextMetrics(text, maximumWidth);
}

CGImageRef HeadlessBackend::readImage(const std::string& path)
{
    if (std::filesystem::exists(path))
        raiseInvalidArgument("Backend.readImage",
                             "cannot read " + path +
                                 ": there is no decoder without a desktop backend; link RVCore::QtBackend");
    return nullptr;
}

std::shared_ptr<TextEditor> HeadlessBackend::makeTextEditor(TextEditorClient& client, const TextDescription& content,
                                                            CGSize size)
{
    return std::make_shared<HeadlessTextEditor>(client, m_clipboard, content, size);
}

std::unique_ptr<WindowBackend> HeadlessBackend::makeWindow(WindowClient& client, CGSize contentSize)
{
    return std::make_unique<HeadlessWindow>(m_windows, client, contentSize);
}

std::unique_ptr<Canvas> HeadlessBackend::makeCanvas(Bitmap&, int, int, CGFloat)
{
    return std::make_unique<RecordingCanvas>();
}

void HeadlessBackend::writePicture(const std::string& path, const Bitmap&, CGFloat)
{
    raiseInvalidArgument("Backend.writePicture",
                         "cannot write " + path +
                             ": there is no painter without a desktop backend; link RVCore::QtBackend");
}

namespace {

// An exception that leaves a closure ends the run as `stop` does.
class RunScope {
public:
    RunScope(int& depth, bool& isStopped) : m_depth(depth), m_isStopped(isStopped) { ++m_depth; }
    ~RunScope()
    {
        --m_depth;
        m_isStopped = false;
    }
    RunScope(const RunScope&) = delete;
    RunScope& operator=(const RunScope&) = delete;

private:
    int& m_depth;
    bool& m_isStopped;
};

} // namespace

void HeadlessBackend::run()
{
    // As often as a screen would show a frame.
    constexpr std::chrono::milliseconds frameInterval(16);

    const RunScope scope(m_runDepth, m_isStopped);
    while (true) {
        runWakeUp();
        if (m_isStopped)
            break;
        m_calls.runTurn(m_isStopped);
        if (m_isStopped)
            break;
        const int frames = flushFrames();
        if (m_isStopped)
            break;
        waitForWork(frames > 0 ? std::optional(Clock::now() + frameInterval) : std::nullopt);
    }
}

void HeadlessBackend::runWakeUp()
{
    if (!m_wakeUp.closure || Clock::now() < m_wakeUp.time)
        return;
    // Taken out first: it may ask for the next one.
    const std::function<void()> closure = std::exchange(m_wakeUp.closure, nullptr);
    closure();
}

// Until a closure waits, the wake-up is due, or it is time to look for frames.
void HeadlessBackend::waitForWork(std::optional<Clock::time_point> nextFrame)
{
    if (m_wakeUp.closure)
        nextFrame = nextFrame ? std::min(*nextFrame, m_wakeUp.time) : m_wakeUp.time;
    if (nextFrame)
        m_calls.wait(std::max(std::chrono::ceil<std::chrono::milliseconds>(*nextFrame - Clock::now()),
                              std::chrono::milliseconds(0)));
    else
        m_calls.wait();
}

void HeadlessBackend::setWakeUp(double seconds, std::function<void()> closure)
{
    requireFinite("Backend.setWakeUp", "seconds", seconds);
    // A wake-up in years is as good as none.
    const std::chrono::duration<double> delay(std::clamp(seconds, 0.0, 1e8));
    m_wakeUp = {Clock::now() + std::chrono::ceil<Clock::duration>(delay), std::move(closure)};
}

void HeadlessBackend::stop()
{
    m_isStopped = m_runDepth > 0;
}

void HeadlessBackend::callLater(std::function<void()> closure)
{
    m_calls.add(std::move(closure));
}

HeadlessWindow* HeadlessBackend::windowOf(const WindowClient& client) const
{
    const auto window = std::find_if(windows().begin(), windows().end(), [&](const HeadlessWindow* candidate) {
        return &candidate->client() == &client;
    });
    return window == windows().end() ? nullptr : *window;
}

std::vector<HeadlessWindow*> HeadlessBackend::visibleWindows() const
{
    std::vector<HeadlessWindow*> visible;
    std::copy_if(m_windows->ordered.rbegin(), m_windows->ordered.rend(), std::back_inserter(visible),
                 [](const HeadlessWindow* window) { return window->isVisible() && !window->isMinimized(); });
    return visible;
}

bool HeadlessBackend::runPending()
{
    if (m_calls.isEmpty())
        return false;
    m_calls.runTurn(m_isStopped);
    return true;
}

int HeadlessBackend::flushFrames()
{
    int count = 0;
    // A frame may open and close windows.
    const std::vector<HeadlessWindow*> present = windows();
    for (HeadlessWindow* window : present) {
        if (std::find(windows().begin(), windows().end(), window) != windows().end() && window->flushFrame())
            ++count;
    }
    return count;
}

namespace {

// Linking is enough: the symbol below is named on the linker's command line, which brings in this file.
[[maybe_unused]] const bool isRegistered = (rvcoreRegisterHeadlessBackend(), true);

} // namespace

} // namespace RVCore

extern "C" void rvcoreRegisterHeadlessBackend()
{
    RVCore::Backend::registerFactory(
        0, []() -> std::unique_ptr<RVCore::Backend> { return std::make_unique<RVCore::HeadlessBackend>(); });
}
