#pragma once

#include <AppKit/LayoutRows.h>
#include <AppKit/ViewLayoutState.h>
#include <AppKit/ViewQueue.h>
#include <CoreGraphics/CGGeometry.h>

#include <string>
#include <vector>

namespace RVCore {

class NSView;

// The layout engine of one view tree, and what keeps the two in step: every view of the tree has variables and rows
// in the engine, every active constraint a row. Made when the root is first laid out; from then on views and
// constraints tell it what changes. Changes are noted, and the engine catches up in `solve`.
//
// Overrides of views run in the middle of a solve or a pass and may do anything: move views to other trees, end their
// lives, put the root itself into another tree. So whoever holds a context over a call of an override asks again
// afterwards whether a view is still its own.
class LayoutContext : public std::enable_shared_from_this<LayoutContext> {
public:
    explicit LayoutContext(NSView& root);
    LayoutContext(const LayoutContext&) = delete;
    LayoutContext& operator=(const LayoutContext&) = delete;

    // The context that the view is part of; null while its tree has none, or has not taken the view in yet.
    static LayoutContext* of(const NSView& view);
    // The context of the view's tree, made if need be, with every view taken in.
    static LayoutContext& ofTree(NSView& view);

    // Lets every view go, for the root dies or is a root no longer. What a pass that is under way still does with
    // the context has no effect.
    void retire();

    // The tree changed. A new subtree is taken in before the next solve, or when a constraint needs it.
    void subtreeAdded(NSView& subtree);
    void subtreeWillBeRemoved(NSView& subtree);

    void constraintActivated(NSLayoutConstraint& constraint);
    void constraintWillBeDeactivated(NSLayoutConstraint& constraint);
    void constraintChanged(NSLayoutConstraint& constraint); // its constant or priority
    void intrinsicSizeInvalidated(NSView& view);
    void contentPriorityChanged(NSView& view, NSLayoutConstraintOrientation orientation);
    void frameGiven(NSView& view); // its frame, mask or mask translation was set by the host

    // Brings the engine up to date and marks every view whose subviews' places changed as needing layout.
    // Contradictions are reported on standard error, each once. Raises NSInvalidArgumentException when a view has an
    // intrinsic size that is no number; that view's turn comes again in the next solve.
    void solve();
    bool needsSolve() const;

    // Where the solved constraints put the view, in its superview's coordinates; for a root, its size at the
    // origin that it has.
    CGRect solvedFrame(const NSView& view);

    // The subviews whose solved frame may be another one than theirs, with that frame. The caller gives it to them;
    // what that changes in turn is for the next round of the pass, or each of many texts that wrap would be solved
    // alone.
    struct Placement {
        std::shared_ptr<NSView> view;
        CGRect frame;
    };
    std::vector<Placement> takePlacements(NSView& view);
    // The view's subviews are placed from the top, in coordinates that count from the bottom, and its height changed.
    void subviewsFollowHeight(NSView& view);

    // Above 0; advances with every change that could change the size that the content needs.
    std::uint64_t revision() const { return m_revision; }

    bool isAmbiguous(const NSView& view);
    // The constraints that hold the view along one axis, in the order in which they do, then those that gave way.
    std::vector<NSLayoutConstraint*> constraintsAffecting(const NSView& view, bool isVertical);
    // Up to date, for reports. Its tags are those of LayoutTag.h.
    LayoutEngine& solvedEngine();

    // The smallest size of the view when asked for with this priority; constraints outside its subtree do not
    // count, and no context is disturbed.
    static CGSize fittingSize(NSView& view, NSLayoutPriority priority);

    int passDepth = 0; // how deep layout passes of this tree are nested

private:
    using Views = std::vector<std::shared_ptr<NSView>>;

    static void sortByActivation(std::vector<NSLayoutConstraint*>& constraints);
    static void markForLayout(const Views& views);
    void takeInPending();
    void takeIn(NSView& subtree);
    std::uint32_t addRow(std::uint64_t tag);
    void install(NSLayoutConstraint& constraint);
    void installOwnRow(NSView& view, ViewLayoutState::OwnRow kind, CGSize intrinsicSize);
    void updateOwnRow(NSView& view, ViewLayoutState::OwnRow kind, CGSize intrinsicSize);
    void updateIntrinsicSizes();
    void removeRows(ViewLayoutState& state);
    void letGo(NSView& view);
    Views noteMovedViews();
    Views movedSubviews(const NSView& view) const;
    void reportConflicts();

    NSView& m_root;
    LayoutEngine m_engine;
    LayoutRow m_row; // kept for its memory
    ViewQueue m_pendingSubtrees{&ViewLayoutState::placeAmongPending};
    ViewQueue m_staleIntrinsicSizes{&ViewLayoutState::placeAmongStale};
    ViewQueue m_movedViews{&ViewLayoutState::placeAmongMoved};
    std::uint64_t m_revision = 1;
};

} // namespace RVCore
