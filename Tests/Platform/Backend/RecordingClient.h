#pragma once

#include <Backend/Backend.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace RVCore {

// A window's client that writes down what it is told and fills its content with one colour.
class RecordingClient : public WindowClient {
public:
    void contentSizeChanged(CGSize size) override
    {
        m_size = size;
        note("size " + describe(size));
        if (onSizeChanged)
            onSizeChanged();
    }
    void placementChanged() override { noteState("placement"); }
    void backingScaleChanged() override { noteState("scale"); }
    void activeChanged(bool isActive) override { noteState(isActive ? "active" : "inactive"); }
    void minimizedChanged(bool isMinimized) override { noteState(isMinimized ? "minimized" : "restored"); }
    void closeRequested() override
    {
        note("close");
        if (onClose)
            onClose();
    }
    void prepareFrame() override
    {
        note("prepare");
        if (onPrepare)
            onPrepare();
    }
    WindowPixels paintPixels(CGFloat scale) override
    {
        const auto side = [&](CGFloat points) { return static_cast<int>(std::ceil(points * scale)); };
        m_pixels = Bitmap(side(m_size.width), side(m_size.height));
        m_changed = m_pixels.bounds();
        paint(*Backend::shared().makeCanvas(m_pixels, 0, 0, scale));
        return {m_pixels, {&m_changed, 1}};
    }
    void paint(Canvas& canvas) override
    {
        note("paint");
        canvas.fill({{{0, 0}, m_size}, 0}, color);
        if (onPaint)
            onPaint();
    }
    void handleInput(const InputEvent& event) override
    {
        note("input");
        inputs.push_back(event);
        if (onInput)
            onInput();
    }
    std::vector<std::shared_ptr<AccessibleElement>> accessibleElements() override
    {
        if (onElements)
            onElements();
        return elements;
    }

    // What has been told since the last call.
    std::vector<std::string> takeCalls() { return std::exchange(m_calls, {}); }
    const std::vector<std::string>& calls() const { return m_calls; }
    // What it fills: the size that it was made with, or was told last.
    CGSize size() const { return m_size; }
    void setSize(CGSize size) { m_size = size; }

    std::vector<InputEvent> inputs;
    std::vector<std::shared_ptr<AccessibleElement>> elements;
    CGColor color{1, 0, 0, 1};
    std::function<void()> onSizeChanged;
    std::function<void()> onClose;
    // What desktops tell when they please is kept apart from the calls.
    std::vector<std::string> states;
    std::function<void()> onState;
    std::function<void()> onPrepare;
    std::function<void()> onPaint;
    std::function<void()> onInput;
    std::function<void()> onElements;

private:
    void noteState(std::string state)
    {
        states.push_back(std::move(state));
        if (onState)
            onState();
    }
    void note(std::string call) { m_calls.push_back(std::move(call)); }

    std::vector<std::string> m_calls;
    CGSize m_size{100, 50};
    Bitmap m_pixels;
    PixelRect m_changed;
};

} // namespace RVCore
