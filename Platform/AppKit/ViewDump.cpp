#include <AppKit/LayoutWords.h>
#include <AppKit/NSTextField.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewDump.h>
#include <Foundation/NSException.h>

namespace RVCore {

namespace {

const char* relationName(NSLayoutRelation relation)
{
    switch (relation) {
    case NSLayoutRelation::lessThanOrEqual:
        return " <= ";
    case NSLayoutRelation::equal:
        return " == ";
    case NSLayoutRelation::greaterThanOrEqual:
        return " >= ";
    }
    return "";
}

std::string inOneLine(std::string text)
{
    for (std::size_t feed = text.find('\n'); feed != std::string::npos; feed = text.find('\n', feed + 2))
        text.replace(feed, 1, "\\n");
    return text;
}

std::string constraintText(const NSLayoutConstraint& constraint, const std::string& firstName,
                           const std::string& secondName)
{
    std::string text = firstName + "." + attributeName(constraint.firstAttribute());
    text += relationName(constraint.relation());
    if (constraint.secondAttribute() == NSLayoutAttribute::notAnAttribute) {
        text += numberText(constraint.constant());
    } else {
        if (constraint.multiplier() != 1)
            text += numberText(constraint.multiplier()) + " × ";
        text += secondName + "." + attributeName(constraint.secondAttribute());
        if (constraint.constant() > 0)
            text += " + " + numberText(constraint.constant());
        else if (constraint.constant() < 0)
            text += " - " + numberText(-constraint.constant());
    }
    text += " @" + numberText(static_cast<double>(constraint.priority()));
    if (!constraint.identifier().empty())
        text += " '" + inOneLine(constraint.identifier()) + "'";
    return text;
}

class TreeDump {
public:
    explicit TreeDump(NSView& root) : m_names(root) { write(root, 0); }

    std::string text;

private:
    // A constraint of a view in the tree refers to views in the tree only.
    std::string numberOf(const NSView* view) const { return "#" + std::to_string(m_names.numberOf(*view)); }

    void write(NSView& view, std::size_t depth)
    {
        const std::string indent(depth * 2, ' ');
        text += indent + numberOf(&view) + " " + view.classObject().name();
        if (!view.identifier().empty())
            text += " \"" + inOneLine(view.identifier()) + "\"";
        text += " " + describe(view.frame());
        if (view.isHidden())
            text += " hidden";
        if (view.alphaValue() != 1)
            text += " alpha " + numberText(view.alphaValue());
        if (const auto* field = dynamic_cast<const NSTextField*>(&view))
            text += " “" + inOneLine(field->stringValue()) + "”";
        text += "\n";
        for (const auto& constraint : view.constraints())
            text += indent + "  | " +
                    constraintText(*constraint, numberOf(constraint->firstItem()),
                                   constraint->secondItem() ? numberOf(constraint->secondItem()) : "") +
                    "\n";
        for (const auto& subview : view.subviews())
            write(*subview, depth + 1);
    }

    ViewNames m_names;
};

} // namespace

std::string describeViewTree(NSView& root)
{
    return TreeDump(root).text;
}

std::string nameOfView(const NSView* view)
{
    if (!view)
        return "(a view that is gone)";
    return view->identifier().empty() ? view->description()
                                      : view->classObject().name() + " \"" + view->identifier() + "\"";
}

std::string describeConstraint(const NSLayoutConstraint& constraint)
{
    return constraintText(constraint, nameOfView(constraint.firstItem()), nameOfView(constraint.secondItem()));
}

} // namespace RVCore
