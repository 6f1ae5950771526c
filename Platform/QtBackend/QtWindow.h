#pragma once

#include <Backend/Backend.h>

#include <QBackingStore>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <QWindow>

#include <memory>
#include <optional>

namespace RVCore {

class QtTextEditor;

// The QWindow of a QtWindow: paints through the client, once per frame, and only when something asked for it.
class QtWindowSurface : public QWindow {
public:
    QtWindowSurface(WindowClient& client, QSize size);
    ~QtWindowSurface() override;

    void setContentSize(CGSize size);
    void setMinimumContentSize(CGSize size);
    void setMaximumContentSize(CGSize size);
    void setStyle(const WindowStyle& style);
    void setOrigin(CGPoint origin);
    WindowPlacement placement() const;
    void requestFrame();
    // Empty when the client has gone.
    std::vector<std::shared_ptr<AccessibleElement>> accessibleElements() const;
    QAccessibleInterface* accessibleRoot() const override;
    void setTextInput(const std::shared_ptr<QtTextEditor>& editor, CGPoint origin);
    // No call reaches the client from now on. Ends the surface now, or if it is calling its client just now, as soon
    // as Qt is done with it.
    void abandon();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    void call(const std::function<void(WindowClient&)>& closure);
    void reportSize(CGSize size);
    void reportPlacement();
    void reportState();
    void updateLimits(QSize present);
    void report(const InputEvent& event);
    bool handleInputMethod(QEvent& event);
    double now() const { return static_cast<double>(m_clock.nsecsElapsed()) / 1e6; } // in milliseconds
    double frameInterval() const;                                                    // of the screen, in milliseconds
    void scheduleFrame();
    void paintFrame();
    void paintContent();
    void showPixels(const QImage& pixels, std::span<const PixelRect> changed);

    WindowClient* m_client;
    CGSize m_knownSize; // what the client believes the content size to be
    QSize m_minimumSize{1, 1};
    QSize m_maximumSize{static_cast<int>(largestWindowSide), static_cast<int>(largestWindowSide)};
    bool m_isResizable = true;
    std::optional<QPoint> m_askedOrigin;
    WindowPlacement m_knownPlacement; // what the client has been told
    bool m_isMinimized = false;
    CGFloat m_knownScale = 1;
    std::unique_ptr<QBackingStore> m_store;
    CGFloat m_storeScale = 0;
    bool m_isStoreStale = true; // what it holds is not what was painted last
    std::weak_ptr<QtTextEditor> m_textInput;
    QTimer m_frameTimer{this};
    QElapsedTimer m_clock;
    double m_lastFrame = -1e9; // when it was due, in milliseconds on that clock
    bool m_needsFrame = true;
    int m_callDepth = 0;
};

// One window of the desktop, as the rooms above see it. After the end of the application it does nothing.
class QtWindow : public WindowBackend {
public:
    QtWindow(WindowClient& client, CGSize contentSize);
    ~QtWindow() override;
    QtWindow(const QtWindow&) = delete;
    QtWindow& operator=(const QtWindow&) = delete;

    void setTitle(const std::string& title) override;
    void setContentSize(CGSize size) override;
    void setMinimumContentSize(CGSize size) override;
    void setMaximumContentSize(CGSize size) override;
    void setStyle(const WindowStyle& style) override;
    void setOrigin(CGPoint origin) override;
    WindowPlacement placement() const override;
    void setVisible(bool visible) override;
    bool isExposed() const override;
    void order(WindowOrder order) override;
    void activate() override;
    void setMinimized(bool isMinimized) override;
    void setParent(WindowBackend* parent) override;
    void setCursor(CursorShape shape) override;
    void accessibilityChanged(const std::shared_ptr<AccessibleElement>& element, AccessibleChange change) override;
    void requestFrame() override;
    CGFloat backingScale() const override;
    void setTextInput(const std::shared_ptr<TextEditor>& editor, CGPoint origin) override;

    QtWindowSurface& surface() const { return *m_surface; }

private:
    bool hasSurface() const;

    const QPointer<QtWindowSurface> m_surface; // ends itself, see abandon; with the application at the latest
};

} // namespace RVCore
