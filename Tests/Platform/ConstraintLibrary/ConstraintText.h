#pragma once

#include <AppKit/LayoutWords.h>
#include <AppKit/NSView.h>
#include <ConstraintLibrary/ConstraintLibrary.h>

#include <string>

namespace RVCore {

// A constraint as one short line, its views by their identifiers: "a.left == b.right + 8 @1000".
inline std::string constraintText(const NSLayoutConstraint& constraint)
{
    std::string text = constraint.firstItem()->identifier() + "." + attributeName(constraint.firstAttribute());
    text += constraint.relation() == NSLayoutRelation::equal             ? " == "
            : constraint.relation() == NSLayoutRelation::lessThanOrEqual ? " <= "
                                                                         : " >= ";
    if (constraint.multiplier() != 1)
        text += numberText(constraint.multiplier()) + " * ";
    if (constraint.secondItem()) {
        text += constraint.secondItem()->identifier() + "." + attributeName(constraint.secondAttribute());
        if (constraint.constant() != 0)
            text += (constraint.constant() > 0 ? " + " : " - ") + numberText(std::abs(constraint.constant()));
    } else {
        text += numberText(constraint.constant());
    }
    return text + " @" + numberText(static_cast<double>(constraint.priority()));
}

// A line per constraint.
inline std::string constraintTexts(const LayoutConstraints& constraints)
{
    std::string text;
    for (const auto& constraint : constraints)
        text += constraintText(*constraint) + "\n";
    return text;
}

inline std::shared_ptr<NSView> namedView(const std::string& name, NSView* superview = nullptr)
{
    auto view = make<NSView>();
    view->setIdentifier(name);
    if (superview)
        superview->addSubview(view);
    return view;
}

} // namespace RVCore
