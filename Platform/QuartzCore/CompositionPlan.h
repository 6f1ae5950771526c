#pragma once

#include <QuartzCore/Composition.h>
#include <QuartzCore/CompositionGroup.h>

#include <memory>

namespace RVCore {

// Compares the composition of a frame with that of the frame before, and finds what of which surface has to be
// painted again. Items are matched from both ends of the lists; what lies between counts as replaced.
class CompositionPlan {
public:
    // The composition of the frame that is to come, empty; the present one becomes the one before.
    Composition& begin();
    // Makes the plan: `area` is the surface that everything ends in, with its place; its damage becomes what of it
    // changed, all of it when it is new.
    void make(Surface& area, CGFloat scale);

    const Composition& composition() const { return m_now; }
    const CompositionItem& item(std::uint32_t index) const { return m_now.items()[index]; }
    // Where in the area the item is to be seen, at most.
    const PixelRect& place(std::uint32_t index) const { return m_places[index]; }
    CompositionGroup& group(std::uint32_t index) const { return *m_groupOf[index]; }
    // The outline along which a group cuts what it contains, if it clips.
    static ClipOutline outlineOf(const CompositionItem& group);
    // The next frame is planned without a look at this one.
    void forget() { m_startsAnew = true; }
    // Painted: owners may die.
    void letGoOfOwners() { m_now.letGoOfOwners(); }

private:
    void placeItems(const PixelRect& area);
    void matchUp();
    std::uint32_t counterpart(std::uint32_t index) const; // in the frame before, or none
    void planReplaced();
    void planDrawn(std::uint32_t index);
    void planGroup(std::uint32_t index);
    void planBackground(std::uint32_t index, std::uint32_t before);
    bool isBehindInSight(std::uint32_t index, const PixelRect& rect) const;
    const CompositionItem& itemBefore(std::uint32_t index) const { return m_before.items()[index]; }
    void planEnd(std::uint32_t index);
    void collectOutlines(std::uint32_t index, bool withOwn, const PixelRect& around, OutlineMask& mask) const;
    Surface& innermost() const { return *m_open.back(); }
    PixelRect pixelsOf(const CompositionItem& item) const;
    PixelRect insideOf(const CompositionItem& group) const;

    Composition m_now;
    Composition m_before;
    std::vector<PixelRect> m_places; // of each item
    std::vector<PixelRect> m_placesBefore;
    std::vector<CompositionGroup*> m_groupOf; // of each item that is a group
    std::vector<CompositionGroup*> m_groupOfBefore;
    std::vector<std::unique_ptr<CompositionGroup>> m_groups;
    std::vector<PixelRect> m_clips; // while places are found: what is visible of each open group
    std::vector<Surface*> m_open;   // while the plan is made: the surfaces around, outermost first
    std::size_t m_sameAtStart = 0;
    std::size_t m_sameAtEnd = 0;
    CGFloat m_scale = 0;
    bool m_startsAnew = true;
    bool m_isMade = false; // the plan of the present frame
};

} // namespace RVCore
