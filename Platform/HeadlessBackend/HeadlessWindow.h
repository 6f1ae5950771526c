#pragma once

#include <Backend/Backend.h>
#include <HeadlessBackend/RecordingCanvas.h>

#include <memory>
#include <vector>

namespace RVCore {

// A window that nobody sees. What a user or a desktop would do to it is done by calls.
class HeadlessWindow : public WindowBackend {
public:
    // The windows of one backend, in order of creation; a window takes itself off the list.
    using List = std::vector<HeadlessWindow*>;

    HeadlessWindow(std::shared_ptr<List> list, WindowClient& client, CGSize contentSize);
    ~HeadlessWindow() override;
    HeadlessWindow(const HeadlessWindow&) = delete;
    HeadlessWindow& operator=(const HeadlessWindow&) = delete;

    void setTitle(const std::string& title) override { m_title = title; }
    void setContentSize(CGSize size) override;
    void setMinimumContentSize(CGSize size) override;
    void setVisible(bool visible) override;
    void setCursor(CursorShape shape) override { m_cursor = shape; }
    void accessibilityChanged(const std::shared_ptr<AccessibleElement>& element, AccessibleChange change) override;
    void requestFrame() override { m_needsFrame = true; }
    CGFloat backingScale() const override { return m_backingScale; }

    // What the program has set.
    WindowClient& client() const { return m_client; }
    const std::string& title() const { return m_title; }
    CGSize contentSize() const { return m_contentSize; }
    CGSize minimumContentSize() const { return m_minimumContentSize; }
    bool isVisible() const { return m_isVisible; }
    CursorShape cursor() const { return m_cursor; }
    // What assistive technology was told since the last call: the names of elements (of the window: its title).
    std::vector<std::pair<std::string, AccessibleChange>> takeAccessibilityChanges();
    bool needsFrame() const { return m_needsFrame; }

    // As a user would: drags the window's edge, as far as the minimum size lets him; asks to close the window, which
    // may end its life.
    void userResize(CGSize size);
    void userClose() { m_client.closeRequested(); }
    // Moves the pointer, presses, types: sent if the window is visible.
    void userInput(const InputEvent& event);
    // As a desktop would when the window moves to another screen.
    void setBackingScale(CGFloat scale);

    // Prepares and paints the frame that was asked for if the window is visible. Returns whether there was one.
    bool flushFrame();
    // What the latest frame painted.
    const RecordingCanvas& lastFrame() const { return m_lastFrame; }
    std::size_t frameCount() const { return m_frameCount; }

private:
    CGSize allowed(CGSize size) const;
    void resize(CGSize size, CGSize known);

    std::shared_ptr<List> m_list;
    WindowClient& m_client;
    std::string m_title;
    CGSize m_contentSize;
    CGSize m_minimumContentSize{1, 1};
    CGFloat m_backingScale = 1;
    CursorShape m_cursor = CursorShape::arrow;
    bool m_isVisible = false;
    bool m_needsFrame = false;
    std::vector<std::pair<std::string, AccessibleChange>> m_accessibilityChanges;
    RecordingCanvas m_lastFrame;
    std::size_t m_frameCount = 0;
};

} // namespace RVCore
