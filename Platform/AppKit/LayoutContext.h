#pragma once

#include <AppKit/LayoutRows.h>
#include <AppKit/ViewLayoutState.h>
#include <CoreGraphics/CGGeometry.h>

#include <string>
#include <vector>

namespace RVCore {

class NSView;

// The layout engine of one view tree, and what keeps the two in step: every view of the tree has variables and rows
// in the engine, every active constraint a row. Made when the root is first laid out; from then on views and
// constraints tell it what changes. Changes are noted, and the engine catches up in `solve`.
class LayoutContext {
public:
    explicit LayoutContext(NSView& root);
    ~LayoutContext();
    LayoutContext(const LayoutContext&) = delete;
    LayoutContext& operator=(const LayoutContext&) = delete;

    // The context that the view is part of; null while its tree has none, or has not taken the view in yet.
    static LayoutContext* of(const NSView& view);
    // The context of the view's tree, made if need be, with every view taken in.
    static LayoutContext& ofTree(NSView& view);

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
    // Contradictions are reported on standard error, each once.
    void solve();
    bool needsSolve() const;

    // Where the solved constraints put the view, in its superview's coordinates; for a root, its size at the
    // origin that it has.
    CGRect solvedFrame(const NSView& view);

    // Advances with every change that could change the size that the content needs.
    std::uint64_t revision() const { return m_revision; }

    bool isAmbiguous(const NSView& view);
    // The constraints that hold the view along one axis, in the order in which they do, then those that gave way.
    std::vector<NSLayoutConstraint*> constraintsAffecting(const NSView& view, bool isVertical);

    // The smallest size of the view when asked for with this priority; constraints outside its subtree do not
    // count, and no context is disturbed.
    static CGSize fittingSize(NSView& view, NSLayoutPriority priority);

    // How deep layout passes of this tree are nested, and whether one was already reported as never settling.
    int passDepth = 0;
    bool unsettledWasReported = false;

private:
    void takeInPending();
    void takeIn(NSView& subtree);
    void install(NSLayoutConstraint& constraint);
    void installOwnRow(NSView& view, ViewLayoutState::OwnRow kind, CGSize intrinsicSize);
    void updateOwnRow(NSView& view, ViewLayoutState::OwnRow kind, CGSize intrinsicSize);
    void updateIntrinsicSizes();
    void letGo(NSView& view);
    void markChangedPlaces();
    void reportConflicts();
    std::string describeTag(std::uint64_t tag) const;

    NSView& m_root;
    LayoutEngine m_engine;
    LayoutRow m_row; // kept for its memory
    std::vector<NSView*> m_pendingSubtrees;
    std::vector<NSView*> m_staleIntrinsicSizes;
    std::uint64_t m_revision = 0;
};

} // namespace RVCore
