#pragma once

#include <Backend/Accessibility.h>
#include <Backend/Clipboard.h>
#include <Backend/ControlLook.h>
#include <Backend/InputEvent.h>
#include <Backend/TextEditor.h>
#include <Backend/WindowPlacement.h>
#include <CoreGraphics/Bitmap.h>
#include <CoreGraphics/Canvas.h>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace RVCore {

class WindowBackend;

// What a window shows, and what of it is not as in the frame before, in pixels from the top left. Valid until the
// next frame.
struct WindowPixels {
    const Bitmap& pixels;
    std::span<const PixelRect> changed;
    std::shared_ptr<const void> owner = nullptr; // holds the pixels when painting ends the window
};

// What a window's backend tells the window that it stands for. Sizes are of the content, in points.
class WindowClient {
public:
    virtual ~WindowClient() = default;
    // The desktop or the user gave the content another size.
    virtual void contentSizeChanged(CGSize size) = 0;
    // The desktop or the user moved the window, or gave it another frame: `placement` has changed.
    virtual void placementChanged() = 0;
    // The window was moved to a screen with another backing scale.
    virtual void backingScaleChanged() = 0;
    // Keys go to this window from now on, or no longer.
    virtual void activeChanged(bool isActive) = 0;
    virtual void minimizedChanged(bool isMinimized) = 0;
    // The user asks to close the window; the client closes it (or does not).
    virtual void closeRequested() = 0;
    // Once before the window is painted: the time to bring layout up to date.
    virtual void prepareFrame() = 0;
    // Paints the frame, `scale` pixels to a point. A size that falls between pixels is rounded up.
    virtual WindowPixels paintPixels(CGFloat scale) = 0;
    // The same for a backend that has no pixels: everything, on a canvas.
    virtual void paint(Canvas& canvas) = 0;
    // The user moved, pressed, scrolled or typed something.
    virtual void handleInput(const InputEvent& event) = 0;
    // What assistive technology finds in the content, outermost first.
    virtual std::vector<std::shared_ptr<AccessibleElement>> accessibleElements() = 0;
};

// One window of the desktop. It ends (and leaves the screen) with this object.
class WindowBackend {
public:
    virtual ~WindowBackend() = default;
    virtual void setTitle(const std::string& title) = 0;
    // Sides are rounded up to whole points and to 1 to 32,767 of them. The client hears of it when the desktop gives
    // the content another size than the one asked for.
    virtual void setContentSize(CGSize size) = 0;
    // The desktop does not let the content be smaller than this; content that is smaller now grows to it.
    virtual void setMinimumContentSize(CGSize size) = 0;
    // The user does not get it larger than this. Sides as above; at first there is no limit.
    virtual void setMaximumContentSize(CGSize size) = 0;
    // Before the window is first visible.
    virtual void setStyle(const WindowStyle& style) = 0;
    // Puts the window's top left corner there, rounded to whole points and clipped to what the desktop can count. A
    // desktop that does not let programs place their windows (Wayland) ignores it; before this has been called, the
    // desktop chooses a place.
    virtual void setOrigin(CGPoint origin) = 0;
    // As far as the desktop tells: one that does not let programs place their windows leaves the place asked for.
    virtual WindowPlacement placement() const = 0;
    // In front of all other windows of the desktop that are not above by their kind, or behind them.
    virtual void order(WindowOrder order) = 0;
    // Asks for the keys. The client hears of it when the desktop agrees, which may be later or never.
    virtual void activate() = 0;
    virtual void setMinimized(bool isMinimized) = 0;
    // The window stays in front of this one, of the same backend, until one of them ends; null for none. A desktop
    // may see it only when the window is next made visible.
    virtual void setParent(WindowBackend* parent) = 0;
    virtual void setVisible(bool visible) = 0;
    // Whether anything of it can be seen, as far as the desktop tells; a visible window may be on another workspace.
    // When that begins, the window gets a frame.
    virtual bool isExposed() const = 0;
    // What the pointer looks like over the content. The arrow at first.
    virtual void setCursor(CursorShape shape) = 0;
    // Tells assistive technology, if there is any. A null element stands for the window.
    virtual void accessibilityChanged(const std::shared_ptr<AccessibleElement>& element, AccessibleChange change) = 0;
    // Asks for one prepareFrame and paint, soon; asking again before the paint adds nothing. A window that is not
    // visible gets its frame when it becomes so.
    virtual void requestFrame() = 0;
    // Device pixels per point.
    virtual CGFloat backingScale() const = 0;
    // The editor that input methods compose into while the window has the keyboard, and where in the content its
    // rectangle begins, in points from the top left; null for none. An editor that ends is none. To be called again
    // when something of it moved, the caret included.
    virtual void setTextInput(const std::shared_ptr<TextEditor>& editor, CGPoint origin) = 0;
};

// What a desktop must supply. Exactly one backend serves a program: it registers itself by being linked, and the one
// of the highest rank is made when it is first asked for.
class Backend {
public:
    virtual ~Backend() = default;

    // The program's backend. Stops the program when none is linked.
    static Backend& shared();

    using Factory = std::unique_ptr<Backend> (*)();
    // Called by each backend's registration, before main. The higher rank is preferred.
    static void registerFactory(int rank, Factory factory);
    // Replaces the program's backend, or with null goes back to the registered one; for tests.
    static void install(std::unique_ptr<Backend> backend);

    // Whether windows can be seen by anybody.
    virtual bool hasDisplay() const = 0;

    // The size of the text when set no wider than `maximumWidth` points (0 or less: without limit); lines break
    // only if the text wraps. Rounded up to whole points. Empty text is one line high. Raises
    // NSInvalidArgumentException unless the font's size is finite and above 0.
    virtual TextMetrics measureText(const TextDescription& text, CGFloat maximumWidth) = 0;

    // Whether the desktop says that its user wants things to move less.
    virtual bool prefersReducedMotion() = 0;

    // The style of controls.
    virtual ControlLook& controlLook() = 0;

    // The picture in a PNG file; null when there is no such file or it holds none.
    virtual CGImageRef readImage(const std::string& path) = 0;

    // An editor of this size, with the caret at the start of the text. Raises NSInvalidArgumentException unless the
    // font's size is finite and above 0. The client outlives it, or detaches it.
    virtual std::shared_ptr<TextEditor> makeTextEditor(TextEditorClient& client, const TextDescription& content,
                                                       CGSize size) = 0;
    virtual Clipboard& clipboard() = 0;

    // A canvas in points, `scale` pixels each, above 0, on a bitmap that is a part of a larger area: its first pixel
    // is this one of the area. The bitmap outlives the canvas. A backend without pixels has canvases on which nothing
    // is drawn.
    virtual std::unique_ptr<Canvas> makeCanvas(Bitmap& bitmap, int x, int y, CGFloat scale) = 0;

    virtual std::unique_ptr<WindowBackend> makeWindow(WindowClient& client, CGSize contentSize) = 0;

    // The first one is the main one; never empty.
    virtual std::vector<ScreenDescription> screens() = 0;

    // Paints a picture of this many points, `scale` pixels to a point, on a transparent ground, and writes it as a
    // PNG file. Raises NSInvalidArgumentException when the size is empty or of more pixels than bitmaps have, or
    // when the file cannot be written (the reason says why); a file that was there before stays whole then.
    void writePicture(const std::string& path, CGSize size, CGFloat scale, const std::function<void(Canvas&)>& paint);
    // Writes a picture that is there already, in the same way. An empty one raises, too.
    virtual void writePicture(const std::string& path, const Bitmap& picture, CGFloat scale) = 0;

    // Serves windows and input until `stop` is called; may be nested. On the main thread.
    virtual void run() = 0;
    // Ends the innermost `run`; without effect when none is under way. Closures that still wait are kept for the
    // next one.
    virtual void stop() = 0;
    // Runs the closure on the main thread at the next turn of `run`. Safe from any thread. An exception that leaves
    // the closure stops the program where a desktop's event loop calls it.
    virtual void callLater(std::function<void()> closure) = 0;
    // Runs the closure once, this many seconds from now or a little later, while `run` is under way. There is one
    // wake-up; another call takes its place, and an absent closure is none. On the main thread.
    virtual void setWakeUp(double seconds, std::function<void()> closure) = 0;
};

} // namespace RVCore
