#pragma once

#include "WindowTesting.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSToolbar.h>

#include <gtest/gtest.h>

namespace RVCore {

inline std::shared_ptr<NSToolbarItem> makeItem(const std::string& label)
{
    auto item = make<NSToolbarItem>(label);
    item->setLabel(label);
    return item;
}

inline std::vector<std::string> labelsOf(const std::vector<std::shared_ptr<NSToolbarItem>>& items)
{
    std::vector<std::string> labels;
    labels.reserve(items.size());
    for (const auto& item : items)
        labels.push_back(item->isSpace() ? item->itemIdentifier() : item->label());
    return labels;
}

// A window of 300 × 100 with a toolbar, and a user in front of it. A toolbar is 34 points high, an item with a label
// of n letters ceil(6.5 n) + 12 wide, the chevron 19; margins are 6 points, gaps 2.
class ToolbarTest : public WindowTest {
protected:
    static constexpr CGFloat barHeight = 34;

    ToolbarTest() { window->setToolbar(toolbar); }

    std::shared_ptr<NSToolbarItem> add(const std::string& label)
    {
        auto item = makeItem(label);
        toolbar->insertItem(item, toolbar->items().size());
        return item;
    }
    void addSpace(const char* identifier)
    {
        toolbar->insertItem(make<NSToolbarItem>(identifier), toolbar->items().size());
    }
    void input(const NSWindow& where, InputEvent event)
    {
        event.time = ++m_time;
        screenOf(where).userInput(event);
    }
    // Places are counted from the top left corner below the title bar.
    void click(const NSWindow& where, CGPoint location)
    {
        input(where, {.kind = InputKind::buttonPressed, .location = location});
        if (where.isVisible())
            input(where, {.kind = InputKind::buttonReleased, .location = location});
    }
    void type(const NSWindow& where, const std::string& key)
    {
        InputEvent event{.kind = InputKind::keyPressed};
        event.characters = event.charactersIgnoringModifiers = key;
        input(where, event);
    }

    std::shared_ptr<NSWindow> window = make<NSWindow>(CGSize{300, 100});
    std::shared_ptr<NSToolbar> toolbar = make<NSToolbar>("main");

private:
    double m_time = 10; // seconds; no two presses make a double click
};

} // namespace RVCore
