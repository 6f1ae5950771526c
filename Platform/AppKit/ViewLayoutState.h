#pragma once

#include <AppKit/ConstraintReferences.h>
#include <AppKit/NSLayoutConstraint.h>
#include <CoreGraphics/CGGeometry.h>
#include <LayoutEngine/LayoutEngine.h>

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

    ViewLayoutState();
    ~ViewLayoutState();
    // Side by side, since a rebuild of a group's constraints walks through those of all its members.
    static void* operator new(std::size_t) { return RecyclingAllocator<ViewLayoutState>().allocate(1); }
    static void operator delete(void* memory)
    {
        RecyclingAllocator<ViewLayoutState>().deallocate(static_cast<ViewLayoutState*>(memory), 1);
    }
    // Takes the view out of every constraint, before it dies.
    void viewWillDie(const NSView& view);
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
    const ConstraintReferences& references() const { return m_references; }

    // What every constraint that comes or goes touches comes first, side by side.
    LayoutContext* context = nullptr; // null while the view is in no engine
    ViewVariables variables;

private:
    ConstraintReferences m_references;

public:
    static constexpr std::uint32_t noRow = NSLayoutConstraint::Bookkeeping::noRow;
    static constexpr std::uint32_t noPlace = std::numeric_limits<std::uint32_t>::max();
    std::uint32_t placeAmongPending = noPlace; // in the queues of its context
    std::uint32_t placeAmongStale = noPlace;
    std::uint32_t placeAmongMoved = noPlace;
    bool hasIntrinsicRows = false; // the content rows of the size below are in the engine
    bool unsettledWasReported = false;
    CGSize installedIntrinsicSize;

    // The index of a row in the engine.
    std::uint32_t ownRow(OwnRow kind) const;
    void setOwnRow(OwnRow kind, std::uint32_t row);
    template <class Visit> void forEachOwnRow(const Visit& visit) const
    {
        for (std::size_t kind = 0; kind < ownRowCount; ++kind) {
            if (const std::uint32_t row = ownRow(static_cast<OwnRow>(kind)); row != noRow)
                visit(row);
        }
    }
    void forgetOwnRows();

    // Of a root; a pass under way keeps it, too.
    std::shared_ptr<LayoutContext> ownedContext() const { return m_rare ? m_rare->ownedContext : nullptr; }
    void setOwnedContext(std::shared_ptr<LayoutContext> owned);

private:
    static constexpr std::size_t frameRowCount = verticalExtent - horizontalPosition + 1;
    // What only roots have, and views whose mask is translated.
    struct Rare {
        Rare() { frameRows.fill(noRow); }
        std::shared_ptr<LayoutContext> ownedContext;
        std::array<std::uint32_t, frameRowCount> frameRows;
    };
    static bool isFrameRow(OwnRow kind) { return kind >= horizontalPosition && kind <= verticalExtent; }
    static std::size_t placeOfUsualRow(OwnRow kind)
    {
        return kind < horizontalPosition ? kind : kind - frameRowCount;
    }
    Rare& rare();
    void closeGaps();

    std::array<std::uint32_t, ownRowCount - frameRowCount> m_usualRows;
    std::uint32_t m_heldGaps = 0;
    std::unique_ptr<Rare> m_rare;
    // Removed ones leave gaps, which are closed when the next one comes and most are gaps.
    std::vector<std::shared_ptr<NSLayoutConstraint>> m_held;
};

} // namespace RVCore
