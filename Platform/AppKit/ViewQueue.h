#pragma once

#include <AppKit/ViewLayoutState.h>

namespace RVCore {

// Views that wait for something, in the order in which they came. Each knows its place (`place` is the field of its
// state that keeps it), so that a view that leaves the tree needs no search.
class ViewQueue {
public:
    using Place = std::uint32_t ViewLayoutState::*;

    explicit ViewQueue(Place place) : m_place(place) {}

    std::size_t count() const { return m_count; }
    // The view that has waited longest; null when none does.
    NSView* front();
    bool contains(const NSView& view) const;
    // In the order in which they came; null for those that left. Valid until a view is added.
    const std::vector<NSView*>& places() const { return m_views; }
    void add(NSView& view);    // nothing happens when it waits already
    void remove(NSView& view); // nothing happens when it does not wait

private:
    void closeGaps();

    Place m_place;
    std::vector<NSView*> m_views; // those that left are null
    std::size_t m_first = 0;
    std::size_t m_count = 0;
};

} // namespace RVCore
