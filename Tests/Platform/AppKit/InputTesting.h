#pragma once

#include "ViewTesting.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <HeadlessBackend/HeadlessBackend.h>

#include <gtest/gtest.h>

namespace RVCore {

// Writes down the events that reach it, and hands them on unless it is told to keep them.
class ListeningView : public NSView {
public:
    void mouseDown(NSEvent& event) override
    {
        hear("down", event, [&] { NSView::mouseDown(event); });
    }
    void mouseUp(NSEvent& event) override
    {
        hear("up", event, [&] { NSView::mouseUp(event); });
    }
    void mouseMoved(NSEvent& event) override
    {
        hear("moved", event, [&] { NSView::mouseMoved(event); });
    }
    void mouseDragged(NSEvent& event) override
    {
        hear("dragged", event, [&] { NSView::mouseDragged(event); });
    }
    void mouseEntered(NSEvent& event) override
    {
        hear("entered", event, [&] { NSView::mouseEntered(event); });
    }
    void mouseExited(NSEvent& event) override
    {
        hear("exited", event, [&] { NSView::mouseExited(event); });
    }
    void rightMouseDown(NSEvent& event) override
    {
        hear("right down", event, [&] { NSView::rightMouseDown(event); });
    }
    void rightMouseUp(NSEvent& event) override
    {
        hear("right up", event, [&] { NSView::rightMouseUp(event); });
    }
    void rightMouseDragged(NSEvent& event) override
    {
        hear("right dragged", event, [&] { NSView::rightMouseDragged(event); });
    }
    void otherMouseDown(NSEvent& event) override
    {
        hear("other down", event, [&] { NSView::otherMouseDown(event); });
    }
    void otherMouseUp(NSEvent& event) override
    {
        hear("other up", event, [&] { NSView::otherMouseUp(event); });
    }
    void scrollWheel(NSEvent& event) override
    {
        hear("scroll", event, [&] { NSView::scrollWheel(event); });
    }
    void keyDown(NSEvent& event) override
    {
        hear("key down", event, [&] { NSView::keyDown(event); });
    }
    void keyUp(NSEvent& event) override
    {
        hear("key up", event, [&] { NSView::keyUp(event); });
    }
    void flagsChanged(NSEvent& event) override
    {
        hear("flags", event, [&] { NSView::flagsChanged(event); });
    }
    void cursorUpdate(NSEvent& event) override
    {
        hear("cursor", event, [&] { NSView::cursorUpdate(event); });
    }
    bool acceptsFirstResponder() const override { return accepts; }
    bool becomeFirstResponder() override
    {
        ++becomeCount;
        return becomes;
    }
    bool resignFirstResponder() override
    {
        ++resignCount;
        if (onResign)
            onResign();
        return resigns;
    }
    bool performKeyEquivalent(NSEvent& event) override
    {
        if (!shortcut.empty() && event.charactersIgnoringModifiers() == shortcut) {
            log->push_back(identifier() + " shortcut");
            return true;
        }
        return NSView::performKeyEquivalent(event);
    }
    void resetCursorRects() override
    {
        ++cursorRectCount;
        if (cursor)
            addCursorRect(bounds(), cursor);
    }

    std::vector<std::string>* log = nullptr;
    bool keeps = true;
    bool accepts = false;
    bool becomes = true;
    bool resigns = true;
    int becomeCount = 0;
    int resignCount = 0;
    int cursorRectCount = 0;
    std::string shortcut;
    std::shared_ptr<NSCursor> cursor;
    std::shared_ptr<NSEvent> lastEvent;
    std::function<void(const std::string&)> onEvent;
    std::function<void()> onResign;

private:
    void hear(const std::string& name, NSEvent& event, const std::function<void()>& handOn)
    {
        lastEvent = shared(event);
        if (log)
            log->push_back(identifier() + " " + name);
        if (onEvent)
            onEvent(name);
        if (!keeps)
            handOn();
    }
};

// A visible headless window of 200 × 100 whose content is flipped, and a user in front of it. Places are counted from
// the content's top left corner.
class WindowInputTest : public testing::Test {
protected:
    WindowInputTest()
    {
        auto owned = std::make_unique<HeadlessBackend>();
        desktop = owned.get();
        Backend::install(std::move(owned));
        window = make<NSWindow>(CGSize{200, 100});
        window->setContentView(makeHost(200, 100));
        window->makeKeyAndOrderFront();
    }
    ~WindowInputTest() override
    {
        for (const auto& open : std::vector(NSApplication::shared().windows()))
            open->close();
        window.reset();
        Backend::install(nullptr);
    }

    HeadlessWindow& screen() { return *desktop->windows().front(); }
    NSView& content() { return *window->contentView(); }
    std::shared_ptr<ListeningView> listen(const CGRect& frame, const std::string& name, NSView* superview = nullptr)
    {
        auto view = make<ListeningView>(frame);
        view->setIdentifier(name);
        view->log = &log;
        (superview ? *superview : content()).addSubview(view);
        return view;
    }
    void send(InputEvent event)
    {
        event.time = time;
        screen().userInput(event);
    }
    void move(CGFloat x, CGFloat y) { send({.kind = InputKind::pointerMoved, .location = {x, y}}); }
    void leave() { send({.kind = InputKind::pointerLeft}); }
    void press(CGFloat x, CGFloat y, int button = 0)
    {
        send({.kind = InputKind::buttonPressed, .location = {x, y}, .button = button});
    }
    void release(CGFloat x, CGFloat y, int button = 0)
    {
        send({.kind = InputKind::buttonReleased, .location = {x, y}, .button = button});
    }
    void click(CGFloat x, CGFloat y)
    {
        press(x, y);
        release(x, y);
    }
    void type(const std::string& key, std::uint32_t modifiers = 0)
    {
        InputEvent event{.kind = InputKind::keyPressed, .modifiers = modifiers};
        event.characters = key;
        event.charactersIgnoringModifiers = key;
        send(event);
        event.kind = InputKind::keyReleased;
        send(event);
    }
    std::vector<std::string> takeLog() { return std::exchange(log, {}); }

    HeadlessBackend* desktop = nullptr;
    std::shared_ptr<NSWindow> window;
    std::vector<std::string> log;
    double time = 10; // of the next input, in seconds
};

} // namespace RVCore
