#pragma once

#include <Backend/Backend.h>
#include <Backend/CallQueue.h>
#include <HeadlessBackend/HeadlessControlLook.h>
#include <HeadlessBackend/HeadlessWindow.h>

namespace RVCore {

// A desktop for tests and servers: the text metrics of HeadlessText.h, windows that nobody sees, no painter. Programs
// that link it use it when no other backend is linked; a test can install one of its own:
//
//     auto owned = std::make_unique<HeadlessBackend>();
//     HeadlessBackend& desktop = *owned;
//     Backend::install(std::move(owned));
class HeadlessBackend : public Backend {
public:
    HeadlessBackend();
    ~HeadlessBackend() override;

    bool hasDisplay() const override { return false; }
    TextMetrics measureText(const TextDescription& text, CGFloat maximumWidth) override;
    HeadlessControlLook& controlLook() override { return m_controlLook; }
    // Raises NSInvalidArgumentException when the file exists: pictures take a desktop backend.
    CGImageRef readImage(const std::string& path) override;
    std::unique_ptr<WindowBackend> makeWindow(WindowClient& client, CGSize contentSize) override;
    // Always raises NSInvalidArgumentException: pictures take a desktop backend.
    void writePicture(const std::string& path, CGSize size, CGFloat scale,
                      const std::function<void(Canvas&)>& paint) override;
    // Runs closures and frames, at most 60 frames a second, and sleeps when there are none.
    void run() override;
    void stop() override;
    void callLater(std::function<void()> closure) override;

    // The windows that exist, in order of creation.
    const std::vector<HeadlessWindow*>& windows() const { return *m_windows; }
    // The window that stands for this client; null when there is none.
    HeadlessWindow* windowOf(const WindowClient& client) const;

    // One turn of `run`: the closures that wait now, not those that they add. Returns whether there were any.
    bool runPending();
    // One frame of every visible window that asked for one. Returns how many there were.
    int flushFrames();

private:
    std::shared_ptr<HeadlessWindow::List> m_windows = std::make_shared<HeadlessWindow::List>();
    HeadlessControlLook m_controlLook;
    CallQueue m_calls;
    int m_runDepth = 0;
    bool m_isStopped = false;
};

} // namespace RVCore

// Enters the backend with rank 0; linking RVCore::HeadlessBackend calls it before main.
extern "C" void rvcoreRegisterHeadlessBackend();
