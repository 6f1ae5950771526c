#pragma once

#include <AppKit/NSLayoutConstraint.h>
#include <ConstraintLibrary/Forward.h>
#include <ConstraintLibrary/LayoutAttributes.h>
#include <CoreGraphics/CGGeometry.h>

namespace RVCore {

// Constraint-building operations on views, also published by name (autoPinEdge:toEdge:ofView:withOffset: and so on).
//
// Each creates constraints and installs them at once, at priority 1000, unless a block around it says otherwise (see
// ConstraintBlocks.h), and marks its receiver, and only that, as not translating its autoresizing mask. Bad input
// raises NSInvalidArgumentException and changes nothing: a number that is not finite or above 1e15, a value that is
// no edge, axis, dimension or relation, edges of different directions, no superview where one is needed, and, when
// the constraint is to be installed, views without a common ancestor.

// view.edge = otherView.otherEdge + offset. Offsets grow to the right and downward on every edge.
std::shared_ptr<NSLayoutConstraint> autoPinEdge(NSView& view, LayoutEdge edge, LayoutEdge otherEdge,
                                                NSView& otherView, CGFloat offset = 0);

// Keeps the edge `inset` points inside the superview's same edge: exactly (equal), at least (greaterThanOrEqual) or
// at most (lessThanOrEqual). Insets point inward on every edge: for right and bottom, the constraint has the negated
// constant and the reversed relation.
std::shared_ptr<NSLayoutConstraint> autoPinEdgeToSuperviewEdge(NSView& view, LayoutEdge edge, CGFloat inset = 0,
                                                               NSLayoutRelation relation = NSLayoutRelation::equal);

// The four edges to the superview's, in the order top, left, bottom, right.
LayoutConstraints autoPinEdgesToSuperviewEdges(NSView& view);

// The view's axis lies `offset` points below (horizontal) or to the right of (vertical) the other view's.
std::shared_ptr<NSLayoutConstraint> autoAlignAxis(NSView& view, LayoutAxis axis, NSView& otherView,
                                                  CGFloat offset = 0);

// Both axes to the superview's, the horizontal one first.
LayoutConstraints autoCenterInSuperview(NSView& view);

std::shared_ptr<NSLayoutConstraint> autoSetDimension(NSView& view, LayoutDimension dimension, CGFloat size,
                                                     NSLayoutRelation relation = NSLayoutRelation::equal);

// Width, then height.
LayoutConstraints autoSetDimensionsToSize(NSView& view, CGSize size);

// Gives the view's content the hugging priority of the innermost priority block, in the orientation that the axis
// stands for. Raises NSInvalidArgumentException outside a priority block. Creates no constraint.
void autoSetContentHuggingPriorityForAxis(NSView& view, LayoutAxis axis);

// Publishes these operations; runs once, before main.
bool publishViewConstraintOperations();
inline const bool viewConstraintOperationsPublished = publishViewConstraintOperations();

} // namespace RVCore
