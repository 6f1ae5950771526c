#pragma once

#include <Backend/Backend.h>

#include <QtBackend/QtClipboard.h>

#include <memory>

namespace RVCore {

// The desktop through Qt 6. On screen where there is one; where neither DISPLAY nor WAYLAND_DISPLAY names one, and
// QT_QPA_PLATFORM does not choose either, off screen, so that text can be measured and pictures written all the same.
// A QApplication that the program has made already is used, otherwise one is made. An exception that leaves a
// window's client or a closure while Qt's event loop runs stops the program with its message.
//
// Programs that link RVCore::QtBackend use it without naming it: Backend::shared().
class QtBackend : public Backend {
public:
    QtBackend();
    ~QtBackend() override;

    bool hasDisplay() const override;
    TextMetrics measureText(const TextDescription& text, CGFloat maximumWidth) override;
    // Qt has no word for it; what a desktop tells its styles is how long their animations take, and 0 turns them off.
    bool prefersReducedMotion() override;
    ControlLook& controlLook() override;
    CGImageRef readImage(const std::string& path) override;
    std::shared_ptr<TextEditor> makeTextEditor(TextEditorClient& client, const TextDescription& content,
                                               CGSize size) override;
    Clipboard& clipboard() override { return m_clipboard; }
    std::unique_ptr<WindowBackend> makeWindow(WindowClient& client, CGSize contentSize) override;
    void writePicture(const std::string& path, const Bitmap& picture, CGFloat scale) override;
    using Backend::writePicture;
    std::unique_ptr<Canvas> makeCanvas(Bitmap& bitmap, int x, int y, CGFloat scale) override;
    void run() override;
    void stop() override;
    void callLater(std::function<void()> closure) override;
    void setWakeUp(double seconds, std::function<void()> closure) override;
    std::vector<ScreenDescription> screens() override;

private:
    class EventLoop;
    std::unique_ptr<EventLoop> m_loop;
    std::unique_ptr<ControlLook> m_controlLook;
    QtClipboard m_clipboard;
};

} // namespace RVCore

// Enters the backend with rank 10; linking RVCore::QtBackend calls it before main.
extern "C" void rvcoreRegisterQtBackend();
