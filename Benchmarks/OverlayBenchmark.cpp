#include "Benchmarks.h"
#include "BlurPeers.h"

#include <AppKit/WindowPainter.h>
#include <Dispatch/ManualDispatchClock.h>
#include <RVCore.h>

namespace RVCore {

namespace {

constexpr CGSize area{1280, 800};
constexpr double frameInterval = 1.0 / 60; // seconds
constexpr int repaintsPerSecond = 30;      // of the spinner

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

    // Moves the clock on by the seconds; how many milliseconds the frame then takes.
    double frameAfter(ManualDispatchClock& clock, double seconds)
    {
        clock.advance(seconds);
        return processorMilliseconds([&] { paint(); });
    }
    const Bitmap& pixels() const { return m_painter.pixels(); }

private:
    void paint()
    {
        m_window.layoutIfNeeded();
        keep(m_painter.paint(m_window, 1));
    }

    NSWindow& m_window;
    WindowPainter m_painter;
};

double percentile(std::vector<double> values, double part)
{
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

Bitmap copyOf(const Bitmap& bitmap)
{
    Bitmap copy(bitmap.width(), bitmap.height());
    for (int y = 0; y < bitmap.height(); ++y)
        std::ranges::copy(bitmap.row(y), copy.row(y).begin());
    return copy;
}

void measureFade(NSWindow& window, ManualDispatchClock& clock)
{
    FrameTimer timer(window);
    const auto peer = makeQGraphicsBlurPeer(copyOf(timer.pixels()), 8);
    std::vector<double> frames;
    std::vector<double> peerFrames;
    for (int round = 0; round < 10; ++round) {
        showBlockingView(window, {.title = "Reading", .message = "usr/share/doc"});
        clock.advance(0); // the fade begins on the main queue
        // The first frame paints what is new; the last one before the end has all but the final radius.
        for (double time = frameInterval; time < 0.3; time += frameInterval)
            frames.push_back(timer.frameAfter(clock, frameInterval));
        peerFrames.push_back(processorMilliseconds([&] { peer->blur(); }));
        clock.advance(1);
        hideBlockingView(window);
        clock.advance(1);
    }
    report("overlay.frame_ms", percentile(frames, 0.5));
    report("overlay.frame_ms.p99", percentile(frames, 0.99));
    report("overlay.frame_ms.vs_qgraphicsblur", percentile(frames, 0.5) / percentile(peerFrames, 0.5));
}

// The share of one core that painting takes while only the spinner turns.
void measureStillFrame(NSWindow& window, ManualDispatchClock& clock)
{
    showBlockingView(window, {.title = "Reading"});
    clock.advance(1);
    FrameTimer timer(window);
    constexpr int seconds = 4;
    double taken = 0; // milliseconds
    for (int frame = 0; frame < seconds * repaintsPerSecond; ++frame)
        taken += timer.frameAfter(clock, 1.0 / repaintsPerSecond);
    report("overlay.still_frame.cpu", taken / 1000 / seconds);
    hideBlockingView(window);
    clock.advance(1);
}

} // namespace

void benchmarkOverlay()
{
    ManualDispatchClock clock;
    const auto window = makeFullWindow();
    window->orderFront();
    measureFade(*window, clock);
    measureStillFrame(*window, clock);
    window->close();
}

} // namespace RVCore
