#include <Foundation/NSException.h>
#include <HeadlessBackend/HeadlessBackend.h>
#include <HeadlessBackend/HeadlessText.h>

#include <algorithm>
#include <filesystem>

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

std::unique_ptr<WindowBackend> HeadlessBackend::makeWindow(WindowClient& client, CGSize contentSize)
{
    return std::make_unique<HeadlessWindow>(m_windows, client, contentSize);
}

void HeadlessBackend::writePicture(const std::string& path, CGSize, CGFloat, const std::function<void(Canvas&)>&)
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
        m_calls.runTurn(m_isStopped);
        if (m_isStopped)
            break;
        const int frames = flushFrames();
        if (m_isStopped)
            break;
        if (frames > 0)
            m_calls.wait(frameInterval);
        else
            m_calls.wait();
    }
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
    const auto window = std::find_if(m_windows->begin(), m_windows->end(), [&](const HeadlessWindow* candidate) {
        return &candidate->client() == &client;
    });
    return window == m_windows->end() ? nullptr : *window;
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
    const HeadlessWindow::List windows = *m_windows;
    for (HeadlessWindow* window : windows) {
        if (std::find(m_windows->begin(), m_windows->end(), window) != m_windows->end() && window->flushFrame())
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
