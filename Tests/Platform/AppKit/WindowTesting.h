#pragma once

#include <AppKit/NSApplication.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <Dispatch/ManualDispatchClock.h>
#include <HeadlessBackend/HeadlessBackend.h>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace RVCore {

// A desktop of the test's own with one screen of 1440 × 900 points, and time in the test's hand.
class WindowTest : public testing::Test {
protected:
    WindowTest()
    {
        auto owned = std::make_unique<HeadlessBackend>();
        desktop = owned.get();
        Backend::install(std::move(owned));
    }
    ~WindowTest() override
    {
        for (const auto& open : std::vector(NSApplication::shared().windows()))
            open->close();
        Backend::install(nullptr);
    }

    // The screen's side of a window that has been shown.
    HeadlessWindow& screenOf(const NSWindow& window) const
    {
        for (HeadlessWindow* candidate : desktop->windows()) {
            // Nobody but a window knows that it is a client.
            if (dynamic_cast<const void*>(&candidate->client()) == dynamic_cast<const void*>(&window))
                return *candidate;
        }
        throw std::logic_error("the window has not been shown");
    }

    static std::shared_ptr<NSWindow> makeAt(const CGRect& frame)
    {
        auto window = make<NSWindow>(CGSize{100, 100});
        window->setFrame(frame);
        return window;
    }

    ManualDispatchClock clock;
    HeadlessBackend* desktop = nullptr;
    NSApplication& application = NSApplication::shared();
};

// Writes down what a window tells.
class RecordingDelegate : public NSWindowDelegate {
public:
    bool windowShouldClose(NSWindow&) override
    {
        calls.emplace_back("should close");
        return agrees;
    }
    void windowWillClose(NSWindow&) override { note("will close"); }
    void windowDidResize(NSWindow&) override { note("resized"); }
    void windowDidMove(NSWindow&) override { note("moved"); }
    void windowDidBecomeKey(NSWindow&) override { note("became key"); }
    void windowDidResignKey(NSWindow&) override { note("resigned key"); }
    void windowDidMiniaturize(NSWindow&) override { note("miniaturized"); }
    void windowDidDeminiaturize(NSWindow&) override { note("deminiaturized"); }
    void windowDidChangeBackingProperties(NSWindow&) override { note("backing"); }

    std::vector<std::string> take() { return std::exchange(calls, {}); }

    bool agrees = true;
    std::vector<std::string> calls;
    std::function<void(const std::string&)> onCall;

private:
    void note(const std::string& call)
    {
        calls.push_back(call);
        if (onCall)
            onCall(call);
    }
};

} // namespace RVCore
