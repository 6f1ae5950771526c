#pragma once

#include <Backend/Backend.h>
#include <HeadlessBackend/RecordingCanvas.h>

#include <memory>
#include <optional>
#include <vector>

namespace RVCore {

// A window that nobody sees. What a user or a desktop would do to it is done by calls.
class HeadlessWindow : public WindowBackend {
public:
    // The windows of one backend, in order of creation and from back to front; a window takes itself off the list.
    struct List {
        std::vector<HeadlessWindow*> made;
        std::vector<HeadlessWindow*> ordered;
    };

    HeadlessWindow(std::shared_ptr<List> list, WindowClient& client, CGSize contentSize);
    ~HeadlessWindow() override;
    HeadlessWindow(const HeadlessWindow&) = delete;
    HeadlessWindow& operator=(const HeadlessWindow&) = delete;

    void setTitle(const std::string& title) override { m_title = title; }
    void setContentSize(CGSize size) override;
    void setMinimumContentSize(CGSize size) override;
    void setMaximumContentSize(CGSize size) override;
    void setStyle(const WindowStyle& style) override { m_style = style; }
    void setOrigin(CGPoint origin) override;
    WindowPlacement placement() const override;
    void setVisible(bool visible) override;
    bool isExposed() const override { return m_isVisible && !m_isElsewhere; }
    void order(WindowOrder order) override;
    void activate() override;
    void setMinimized(bool isMinimized) override { m_isMinimized = isMinimized; }
    void setParent(WindowBackend* parent) override { m_parent = parent; }
    void setCursor(CursorShape shape) override { m_cursor = shape; }
    void accessibilityChanged(const std::shared_ptr<AccessibleElement>& element, AccessibleChange change) override;
    void requestFrame() override { m_needsFrame = true; }
    CGFloat backingScale() const override { return m_backingScale; }
    void setTextInput(const std::shared_ptr<TextEditor>& editor, CGPoint origin) override;

    // What the program has set.
    WindowClient& client() const { return m_client; }
    const std::string& title() const { return m_title; }
    CGSize contentSize() const { return m_contentSize; }
    CGSize minimumContentSize() const { return m_minimumContentSize; }
    CGSize maximumContentSize() const { return m_maximumContentSize; }
    const WindowStyle& style() const { return m_style; }
    bool isVisible() const { return m_isVisible; }
    bool isMinimized() const { return m_isMinimized; }
    WindowBackend* parent() const { return m_parent; }
    CursorShape cursor() const { return m_cursor; }
    // What assistive technology was told since the last call: the names of elements (of the window: its title).
    std::vector<std::pair<std::string, AccessibleChange>> takeAccessibilityChanges();
    bool needsFrame() const { return m_needsFrame; }
    // What an input method would compose into, and where; null for none.
    std::shared_ptr<TextEditor> textInput() const { return m_textInput.lock(); }
    CGPoint textInputOrigin() const { return m_textInputOrigin; }

    // Whether it has the keys: the visible window that asked for them last.
    bool isActive() const { return m_isActive; }

    // As a user would: drags the window's lower right corner, as far as its style and limits let him, or its title
    // bar; turns to it, or away from the program; minimises it or brings it back; asks to close it, which may end its
    // life.
    void userResize(CGSize size);
    void userMove(CGPoint origin);
    void userActivate() { activate(); }
    void userDeactivate() { setActive(false); }
    void userMinimize(bool isMinimized);
    void userClose() { m_client.closeRequested(); }
    // Moves the pointer, presses, types: sent if the window is visible.
    void userInput(const InputEvent& event);
    // As a desktop would when the window moves to another screen.
    void setBackingScale(CGFloat scale);
    // As a desktop would that puts this around the content.
    void setMargins(const EdgeInsets& margins);

    // Puts the window out of sight without the program's doing, as the choice of another workspace does, or back.
    void setElsewhere(bool isElsewhere);

    // Prepares and paints the frame that was asked for if the window is exposed. Returns whether there was one.
    bool flushFrame();
    // What the latest frame painted.
    const RecordingCanvas& lastFrame() const { return m_lastFrame; }
    std::size_t frameCount() const { return m_frameCount; }

private:
    static bool isAlive(const HeadlessWindow* window, const List& list);
    void setActive(bool isActive);
    CGSize allowed(CGSize size) const;
    void resize(CGSize size, CGSize known);

    std::shared_ptr<List> m_list;
    WindowClient& m_client;
    std::string m_title;
    CGSize m_contentSize;
    CGSize m_minimumContentSize{1, 1};
    CGSize m_maximumContentSize{largestWindowSide, largestWindowSide};
    WindowStyle m_style;
    CGPoint m_origin;
    std::optional<EdgeInsets> m_margins; // unless they follow from the style
    WindowBackend* m_parent = nullptr;
    CGFloat m_backingScale = 1;
    CursorShape m_cursor = CursorShape::arrow;
    std::weak_ptr<TextEditor> m_textInput;
    CGPoint m_textInputOrigin;
    bool m_isVisible = false;
    bool m_isMinimized = false;
    bool m_isElsewhere = false; // on another workspace
    bool m_isActive = false;
    bool m_needsFrame = false;
    std::vector<std::pair<std::string, AccessibleChange>> m_accessibilityChanges;
    RecordingCanvas m_lastFrame;
    std::size_t m_frameCount = 0;
};

} // namespace RVCore
