#include "Benchmarks.h"
#include "BlurPeers.h"

#include <AppKit/MainQueueDriver.h>
#include <AppKit/MovingViews.h>
#include <AppKit/WindowPainter.h>
#include <Backend/Backend.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Foundation/Stop.h>
#include <Platform/CoreImage/Pictures.h>
#include <Platform/LayoutEngine/AllocationCounter.h>
#include <RVCore.h>

#include <QApplication>
#include <QtBackend/QtBackend.h>
#include <QuartzCore/LayerPresentation.h>

#include <set>

namespace RVCore {

namespace {

constexpr CGSize area{1280, 800};
constexpr double frameInterval = 1.0 / 60; // seconds
constexpr double fadeDuration = 0.3;       // of an overlay, in seconds

// A window full of things to read: twenty lines of ten labels, every other one on a coloured ground.
std::shared_ptr<NSWindow> makeFullWindow()
{
    auto window = make<NSWindow>(area);
    for (int row = 0; row < 20; ++row) {
        for (int column = 0; column < 10; ++column) {
            const auto label = makeLabel("Entry " + std::to_string(row * 10 + column));
            label->setFrame({column * 128.0 + 4, row * 40.0 + 4, 120, 32});
            if ((row + column) % 2 == 0)
                setBackgroundColor(*label, makeColor(column / 10.0, row / 20.0, 0.6, 1));
            window->contentView()->addSubview(label);
        }
    }
    window->layoutIfNeeded();
    return window;
}

// Frames of a window as its desktop asks for them, on a clock that the benchmark moves.
class FrameTimer {
public:
    explicit FrameTimer(NSWindow& window) : m_window(window) { paint(); }

    // Moves the clock on by the seconds and makes the frame that is due then. Returns how often that has allocated,
    // without the clock, which only tests and benchmarks have.
    std::size_t makeFrame(ManualDispatchClock& clock, double seconds)
    {
        clock.advance(seconds);
        const std::size_t before = allocationCount();
        paint();
        return allocationCount() - before;
    }
    const Bitmap& pixels() const { return m_painter.pixels(); }

private:
    void paint()
    {
        m_window.layoutIfNeeded();
        MovingViews::prepareFrame(m_window);
        keep(m_painter.paint(m_window, 1));
    }

    NSWindow& m_window;
    WindowPainter m_painter;
};

// What is measured has to be a picture: text and spokes come out as many colours.
void requirePicture(const Bitmap& pixels)
{
    std::set<std::uint32_t> colors;
    for (int y = 0; y < pixels.height(); ++y)
        colors.insert(pixels.row(y).begin(), pixels.row(y).end());
    if (colors.size() < 500)
        fatalError("the overlay benchmark's window is not painted");
}

double shownRadius(const RVProgressBlockingView& overlay)
{
    const CIFilter& blur = *overlay.backgroundFilters().at(1);
    return LayerPresentation(*overlay.layer()).filterInput(blur, "inputRadius").value_or(blur.inputs()[0]);
}

// How long a peer's blur takes, without what it has to do besides.
class PeerTimer {
public:
    void add(BlurPeer& peer, double sigma)
    {
        peer.setSigma(sigma);
        m_rests.push_back(nanoseconds(1, [&] { peer.doWithoutBlur(); }) / 1e6);
        m_blurs.push_back(nanoseconds(1, [&] { peer.blur(); }) / 1e6);
    }
    double median() const { return percentile(m_blurs, 0.5) - percentile(m_rests, 0.5); }

private:
    std::vector<double> m_rests; // milliseconds
    std::vector<double> m_blurs;
};

// Beside the peer's blur of what the window showed without the overlay, with the radius that the fade ends at and
// with that of each frame. By the clock, not by the processor's time: that is what people wait for, and ours is
// spread over the cores.
void measureFade(NSWindow& window, ManualDispatchClock& clock)
{
    FrameTimer timer(window);
    const auto peer = makeQGraphicsBlurPeer(copied(timer.pixels()), 8);
    std::vector<double> frames;
    PeerTimer blurs;
    PeerTimer fullBlurs; // with the radius that the fade ends at
    std::size_t allocations = 0;
    std::size_t laterFrames = 0;
    for (int round = 0; round < 5; ++round) {
        showBlockingView(window, {.title = "Reading", .message = "usr/share/doc"});
        clock.advance(0); // the fade begins on the main queue
        for (int frame = 0; (frame + 1) * frameInterval < fadeDuration; ++frame) {
            std::size_t taken = 0;
            frames.push_back(nanoseconds(1, [&] { taken = timer.makeFrame(clock, frameInterval); }) / 1e6);
            if (frame > 0) {
                allocations += taken;
                ++laterFrames;
            }
            blurs.add(*peer, shownRadius(*progressBlockingView(window)));
        }
        requirePicture(timer.pixels());
        fullBlurs.add(*peer, 8);
        clock.advance(1);
        hideBlockingView(window);
        clock.advance(1);
    }
    report("overlay.frame_ms", percentile(frames, 0.5));
    report("overlay.frame_ms.p99", percentile(frames, 0.99));
    report("overlay.frame_ms.vs_qgraphicsblur", percentile(frames, 0.5) / fullBlurs.median());
    report("overlay.frame_ms.vs_qgraphicsblur_of_frames_radius", percentile(frames, 0.5) / blurs.median());
    report("overlay.allocations_per_frame", static_cast<double>(allocations) / static_cast<double>(laterFrames));
}

// A view with something in it fades; each frame after the first is only blended.
void measurePlainFade(NSWindow& window, ManualDispatchClock& clock)
{
    FrameTimer timer(window);
    const auto panel = make<NSView>(CGRect(300, 200, 400, 300));
    setBackgroundColor(*panel, makeColor(0.9, 0.9, 0.2, 1));
    panel->addSubview(makeLabel("A panel"));
    window.contentView()->addSubview(panel);
    timer.makeFrame(clock, 0);
    hideAnimated(*panel);
    timer.makeFrame(clock, frameInterval);
    std::size_t allocations = 0;
    int frames = 0;
    for (double time = 2 * frameInterval; time < fadeDuration; time += frameInterval, ++frames)
        allocations += timer.makeFrame(clock, frameInterval);
    report("fade.allocations_per_frame", static_cast<double>(allocations) / frames);
    panel->removeFromSuperview();
}

// The share of one core that the program takes while the desktop, off screen here, goes on by itself.
double processorShare(double seconds)
{
    DispatchQueue::main().asyncAfter(DispatchTime::now() + seconds, [] { Backend::shared().stop(); });
    return processorMilliseconds([] { Backend::shared().run(); }) / 1000 / seconds;
}

} // namespace

void benchmarkOverlay()
{
    Backend::install(nullptr); // the next to ask gets the one that paints
    connectMainQueue();
    const auto window = makeFullWindow();
    {
        ManualDispatchClock clock;
        measureFade(*window, clock);
        measurePlainFade(*window, clock);
    }
    window->orderFront();
    processorShare(1); // until all is painted
    report("overlay.idle_window.cpu", processorShare(3));
    showBlockingView(*window, {.title = "Reading"});
    processorShare(1); // until the fade is over
    report("overlay.still_frame.cpu", processorShare(5));
    window->close();
}

} // namespace RVCore
