#pragma once

#include <AppKit/ViewLayoutState.h>
#include <CoreGraphics/CGGeometry.h>

#include <functional>
#include <optional>
#include <vector>

namespace RVCore {

// One linear constraint over engine variables: sum(terms) relation constant.
struct LayoutRow {
    std::vector<LayoutTerm> terms;
    LayoutRelation relation = LayoutRelation::equal;
    double constant = 0;
    float priority = NSLayoutPriorityRequired;
};

// Says which engine variables stand for a view.
using VariablesOfView = std::function<const ViewVariables&(const NSView&)>;

// Writes what a constraint between views means in engine variables. The positions of its items are taken from their
// nearest common ancestor `holder` downward.
void makeConstraintRow(const NSLayoutConstraint& constraint, const NSView& holder, const VariablesOfView& variables,
                       LayoutRow& row);

// The row of the view's own; absent where the view has none of that kind. `intrinsicSize` is the view's;
// `isRoot` says that its frame holds it, rather than its superview's layout.
std::optional<LayoutRow> makeOwnRow(const NSView& view, ViewLayoutState::OwnRow kind, CGSize intrinsicSize,
                                    bool isRoot, const VariablesOfView& variables);

// The frame of a view whose superview's size changes from `oldSize` to `newSize`, as its mask says.
CGRect frameAfterAutoresizing(const NSView& view, CGSize oldSize, CGSize newSize);

// What a row of a view's own is for, as reports call it: "width ≥ 0", "frame", "content hugging".
const char* ownRowName(ViewLayoutState::OwnRow kind);

} // namespace RVCore
