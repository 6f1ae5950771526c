#pragma once

#include <AppKit/ViewLayoutState.h>
#include <CoreGraphics/CGGeometry.h>

#include <vector>

namespace RVCore {

// One linear constraint over engine variables: sum(terms) relation constant.
struct LayoutRow {
    std::vector<LayoutTerm> terms;
    LayoutRelation relation = LayoutRelation::equal;
    double constant = 0;
    float priority = NSLayoutPriorityRequired;
};

// Says which engine variables stand for a view. Refers to a function object that outlives it.
class VariablesOfView {
public:
    template <class Function>
    VariablesOfView(const Function& function)
        : m_function(&function), m_call([](const void* object, const NSView& view) -> const ViewVariables& {
              return (*static_cast<const Function*>(object))(view);
          })
    {
    }
    const ViewVariables& operator()(const NSView& view) const { return m_call(m_function, view); }

private:
    const void* m_function;
    const ViewVariables& (*m_call)(const void*, const NSView&);
};

// Writes what a constraint between views means in engine variables. The positions of its items are taken from their
// nearest common ancestor `holder` downward.
void makeConstraintRow(const NSLayoutConstraint& constraint, const NSView& holder, const VariablesOfView& variables,
                       LayoutRow& row);

// Writes a row of the view's own; false where the view has none of that kind. `intrinsicSize` is the view's; `isRoot`
// says that its frame holds it, rather than its superview's layout.
bool makeOwnRow(const NSView& view, ViewLayoutState::OwnRow kind, CGSize intrinsicSize, bool isRoot,
                const VariablesOfView& variables, LayoutRow& row);

// The frame of a view whose superview's size changes from `oldSize` to `newSize`, as its mask says.
CGRect frameAfterAutoresizing(const NSView& view, CGSize oldSize, CGSize newSize);

} // namespace RVCore
