#pragma once

#include <AppKit/NSLayoutConstraint.h>
#include <CoreGraphics/CGGeometry.h>

#include <array>
#include <limits>
#include <memory>
#include <vector>

namespace RVCore {

class LayoutContext;

// A view's place and size as the layout engine knows them. Positions are those of the top left corner from the top
// left corner of the superview, whichever way the superview's own coordinates run. A root has no position.
struct ViewVariables {
    LayoutVariable x;
    LayoutVariable y;
    LayoutVariable width;
    LayoutVariable height;
};

// What layout keeps for one view: the constraints that it owns, those that refer to it, and, while its tree has an
// engine, its variables and the rows that come from the view itself.
class ViewLayoutState {
public:
    // The rows of a view's own, in the order in which they are installed.
    enum OwnRow : std::size_t {
        widthNotNegative,
        heightNotNegative,
        horizontalPosition, // the next four: from the frame of a root, or of a view whose mask is translated
        horizontalExtent,
        verticalPosition,
        verticalExtent,
        widthHugging,
        widthResistance,
        heightHugging,
        heightResistance,
        ownRowCount
    };

    explicit ViewLayoutState(NSView& view);
    ~ViewLayoutState();
    // Side by side, since a rebuild of a group's constraints walks through those of all its members.
    static void* operator new(std::size_t) { return RecyclingAllocator<ViewLayoutState>().allocate(1); }
    static void operator delete(void* memory)
    {
        RecyclingAllocator<ViewLayoutState>().deallocate(static_cast<ViewLayoutState*>(memory), 1);
    }
    // Takes the view out of every constraint, before it dies.
    void viewWillDie();
    // Ends the engine that the view had as a root.
    void dropContext();

    // The state of a view that has one, else null.
    static ViewLayoutState* of(const NSView& view);
    static ViewLayoutState& make(NSView& view);

    // Constraints that the view owns while they are active; removing one keeps the order of the others.
    void hold(NSLayoutConstraint& constraint);
    [[nodiscard]] std::shared_ptr<NSLayoutConstraint> release(NSLayoutConstraint& constraint); // perhaps the last one
    // In order of installation.
    std::vector<std::shared_ptr<NSLayoutConstraint>> heldConstraints() const;
    template <class Visit> void forEachHeld(const Visit& visit) const
    {
        for (const auto& constraint : m_held) {
            if (constraint)
                visit(*constraint);
        }
    }

    // Constraints, active or not, one of whose items is the view.
    void addReference(NSLayoutConstraint& constraint, int item);
    void removeReference(NSLayoutConstraint& constraint, int item);
    const std::vector<NSLayoutConstraint*>& references() const { return m_references; }

private:
    // What every constraint that comes or goes touches comes first, side by side.
    std::vector<NSLayoutConstraint*> m_references;

public:
    LayoutContext* context = nullptr; // null while the view is in no engine
    ViewVariables variables;
    static constexpr std::uint32_t noPlace = std::numeric_limits<std::uint32_t>::max();
    std::uint32_t placeAmongPending = noPlace; // in the queues of its context
    std::uint32_t placeAmongStale = noPlace;
    std::uint32_t placeAmongMoved = noPlace;
    bool hasIntrinsicRows = false; // the content rows of the size below are in the engine
    bool unsettledWasReported = false;
    CGSize installedIntrinsicSize;
    std::array<LayoutConstraintHandle, ownRowCount> ownRows{};
    std::shared_ptr<LayoutContext> ownedContext; // of a root; a pass under way keeps it, too

private:
    NSView& m_view;
    std::vector<std::shared_ptr<NSLayoutConstraint>> m_held; // removed ones leave a gap until half are gaps
    std::size_t m_heldGaps = 0;
};

} // namespace RVCore
