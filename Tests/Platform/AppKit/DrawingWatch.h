#pragma once

#include <AppKit/NSApplication.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/WindowPainter.h>
#include <HeadlessBackend/RecordingCanvas.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <tuple>

namespace RVCore {

// Watches that views say when what they draw is no longer the same: a view that says nothing is not painted again.
class DrawingWatch {
public:
    void check(NSWindow& window)
    {
        const NSApplication& application = NSApplication::shared();
        const Look look{&window, application.effectiveAppearance(), window.isKeyWindow(), application.isActive()};
        if (look != m_look)
            m_drawings.clear(); // which everything may look different for
        m_look = look;
        m_painter.paint(window, 1);
        for (const CompositionItem& item : m_painter.composition().items()) {
            if (item.kind != CompositionItem::Kind::content)
                continue;
            RecordingCanvas canvas;
            drawContentOf(*item.owner, canvas);
            const auto [known, isNew] = m_drawings.try_emplace({item.revision, item.size.width, item.size.height});
            if (isNew)
                known->second = canvas.text();
            ASSERT_EQ(known->second, canvas.text()) << item.owner->description();
        }
    }

private:
    using Look = std::tuple<const NSWindow*, Appearance, bool, bool>;
    using Key = std::tuple<std::uint64_t, CGFloat, CGFloat>; // revision and size

    WindowPainter m_painter;
    Look m_look{};
    std::map<Key, std::string> m_drawings;
};

} // namespace RVCore
