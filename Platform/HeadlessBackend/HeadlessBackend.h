#pragma once

#include <Backend/Backend.h>
#include <Backend/CallQueue.h>
#include <HeadlessBackend/HeadlessClipboard.h>
#include <HeadlessBackend/HeadlessControlLook.h>
#include <HeadlessBackend/HeadlessWindow.h>

#include <chrono>
#include <optional>

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
    bool prefersReducedMotion() override { return m_prefersReducedMotion; }
    void setPrefersReducedMotion(bool prefers) { m_prefersReducedMotion = prefers; } // as its user would
    HeadlessControlLook& controlLook() override { return m_controlLook; }
    // Raises NSInvalidArgumentException when the file exists: pictures take a desktop backend.
    CGImageRef readImage(const std::string& path) override;
    // A HeadlessTextEditor.
    std::shared_ptr<TextEditor> makeTextEditor(TextEditorClient& client, const TextDescription& content,
                                               CGSize size) override;
    Clipboard& clipboard() override { return m_clipboard; }
    std::unique_ptr<WindowBackend> makeWindow(WindowClient& client, CGSize contentSize) override;
    // Always raises NSInvalidArgumentException: pictures take a desktop backend.
    void writePicture(const std::string& path, const Bitmap& picture, CGFloat scale) override;
    using Backend::writePicture;
    // A RecordingCanvas, which leaves the bitmap as it is.
    std::unique_ptr<Canvas> makeCanvas(Bitmap& bitmap, int x, int y, CGFloat scale) override;
    // Runs closures and frames, at most 60 frames a second, and sleeps when there are none.
    void run() override;
    void stop() override;
    void callLater(std::function<void()> closure) override;
    void setWakeUp(double seconds, std::function<void()> closure) override;
    std::vector<ScreenDescription> screens() override { return m_screens; }
    // The desktop's screens; at first one of 1440 × 900 points, of which the uppermost 24 are a panel.
    void setScreens(std::vector<ScreenDescription> screens) { m_screens = std::move(screens); }

    // Whether `run` would wake up by itself at some time.
    bool hasWakeUp() const { return m_wakeUp.closure != nullptr; }
    // The windows that exist, in order of creation.
    const std::vector<HeadlessWindow*>& windows() const { return m_windows->made; }
    // The visible ones, the one in front first.
    std::vector<HeadlessWindow*> visibleWindows() const;
    // The window that stands for this client; null when there is none.
    HeadlessWindow* windowOf(const WindowClient& client) const;

    // One turn of `run`: the closures that wait now, not those that they add. Returns whether there were any.
    bool runPending();
    // One frame of every visible window that asked for one. Returns how many there were.
    int flushFrames();

private:
    using Clock = std::chrono::steady_clock;
    struct WakeUp {
        Clock::time_point time;
        std::function<void()> closure; // empty for none
    };
    void runWakeUp();
    void waitForWork(std::optional<Clock::time_point> nextFrame);

    std::shared_ptr<HeadlessWindow::List> m_windows = std::make_shared<HeadlessWindow::List>();
    HeadlessControlLook m_controlLook;
    std::vector<ScreenDescription> m_screens{{.frame = {0, 0, 1440, 900}, .visibleFrame = {0, 24, 1440, 876}}};
    HeadlessClipboard m_clipboard;
    CallQueue m_calls;
    WakeUp m_wakeUp;
    int m_runDepth = 0;
    bool m_isStopped = false;
    bool m_prefersReducedMotion = false;
};

} // namespace RVCore

// Enters the backend with rank 0; linking RVCore::HeadlessBackend calls it before main.
extern "C" void rvcoreRegisterHeadlessBackend();
