#pragma once

#include <AppKit/NSApplication.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <HeadlessBackend/HeadlessBackend.h>
#include <Platform/AppKit/DrawingWatch.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace RVCore {

// Random input of every kind to the windows of a headless desktop: pointers that move, press, hold and release inside
// and outside, wheels, keys with and without modifiers, resizes. The same seed gives the same storm. Closing is left
// out, so that the storm does not end early.
class EventStorm {
public:
    EventStorm(HeadlessBackend& desktop, unsigned seed) : m_desktop(desktop), m_random(seed) {}

    // Sends the events; every hundredth is followed by the closures that wait, a frame, and a look at what must hold.
    // A window must be on the screen all the while.
    void run(int count)
    {
        for (int i = 0; i < count && !testing::Test::HasFailure(); ++i) {
            ASSERT_FALSE(m_desktop.visibleWindows().empty()) << "closed after " << i << " events";
            HeadlessWindow& screen = *m_desktop.windows()[pick(m_desktop.windows().size())];
            m_time += static_cast<double>(pick(1000)) / 1000;
            blow(screen);
            if (i % 100 != 0)
                continue;
            m_desktop.runPending();
            m_desktop.flushFrames();
            for (const auto& window : std::vector(NSApplication::shared().windows()))
                check(*window);
        }
    }

private:
    std::size_t pick(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random); }
    CGFloat between(CGFloat low, CGFloat high)
    {
        return std::uniform_real_distribution<CGFloat>(low, high)(m_random);
    }

    void blow(HeadlessWindow& screen)
    {
        static const char* const keys[] = {
            NSKey::tab,
            NSKey::backTab,
            NSKey::space,
            NSKey::carriageReturn,
            NSKey::escape,
            NSKey::left,
            NSKey::right,
            NSKey::up,
            NSKey::down,
            NSKey::home,
            NSKey::end,
            NSKey::backspace,
            NSKey::deleteForward,
            "a",
            "z",
            "\xc3\xa4",
            "\xf0\x9f\x98\x80",
            NSKey::pageUp,
            NSKey::f1,
            "v",
            "\xd7\xa9",
            "e\xcc\x81",
        };
        static constexpr std::uint32_t modifiers[] = {
            0, 0, 0, InputModifier::shift, InputModifier::command, InputModifier::option};
        const CGSize size = screen.contentSize();
        InputEvent event;
        event.time = m_time;
        event.modifiers = modifiers[pick(std::size(modifiers))];
        event.location = {between(-20, size.width + 20), between(-20, size.height + 20)};
        event.button = static_cast<int>(pick(4));
        switch (pick(12)) {
        case 0:
        case 1:
        case 2:
            event.kind = InputKind::buttonPressed;
            break;
        case 3:
        case 4:
        case 5:
            event.kind = InputKind::buttonReleased;
            break;
        case 6:
        case 7:
            event.kind = InputKind::pointerMoved;
            break;
        case 8:
            event.kind = pick(2) == 0 ? InputKind::pointerLeft : InputKind::modifiersChanged;
            break;
        case 9:
            event.kind = InputKind::scrolled;
            event.scroll = {between(-50, 50), between(-50, 50)};
            event.isPreciseScroll = pick(2) == 0;
            break;
        case 10:
            event.kind = pick(4) == 0 ? InputKind::keyReleased : InputKind::keyPressed;
            event.characters = event.charactersIgnoringModifiers = keys[pick(std::size(keys))];
            event.isRepeat = pick(2) == 0;
            break;
        default:
            if (pick(50) == 0)
                return screen.userResize({between(1, 1500), between(1, 1000)});
            event.kind = InputKind::pointerMoved;
            break;
        }
        screen.userInput(event);
    }

    // What views draw is what they said; the first responder is in its window and can be seen; a hit is a visible
    // view under the point.
    void check(NSWindow& window)
    {
        m_drawings[&window].check(window);
        const auto* focused = dynamic_cast<const NSView*>(window.firstResponder());
        if (focused) {
            ASSERT_EQ(focused->window(), &window) << focused->description();
            // What covers others keeps the keys from them without wanting any.
            ASSERT_TRUE(focused->acceptsFirstResponder() || focused->isAccessibilityModal())
                << focused->description();
            ASSERT_FALSE(focused->isHiddenOrHasHiddenAncestor()) << focused->description();
        } else {
            ASSERT_EQ(window.firstResponder(), &window);
        }
        const CGPoint point{between(0, window.contentSize().width), between(0, window.contentSize().height)};
        NSView* hit = window.contentView()->hitTest(point);
        if (!hit)
            return;
        ASSERT_EQ(hit->window(), &window);
        ASSERT_FALSE(hit->isHiddenOrHasHiddenAncestor());
        const CGPoint inside = hit->convertPointFrom(point, nullptr);
        ASSERT_TRUE(hit->bounds().insetBy(-1e-6, -1e-6).contains(inside)) << describe(inside);
    }

    HeadlessBackend& m_desktop;
    std::mt19937 m_random;
    std::map<const NSWindow*, DrawingWatch> m_drawings;
    double m_time = 0; // seconds
};

} // namespace RVCore
