#include <AppKit/LayoutTag.h>
#include <AppKit/LayoutWords.h>
#include <Foundation/NSException.h>

#include <cmath>

namespace RVCore {

namespace {

const char* relationSign(NSLayoutRelation relation)
{
    switch (relation) {
    case NSLayoutRelation::lessThanOrEqual:
        return " ≤ ";
    case NSLayoutRelation::equal:
        return " = ";
    case NSLayoutRelation::greaterThanOrEqual:
        return " ≥ ";
    }
    return "";
}

const char* ownRowName(ViewLayoutState::OwnRow kind)
{
    switch (kind) {
    case ViewLayoutState::widthNotNegative:
        return "smallest width";
    case ViewLayoutState::heightNotNegative:
        return "smallest height";
    case ViewLayoutState::horizontalPosition:
        return "horizontal position of the frame";
    case ViewLayoutState::horizontalExtent:
        return "width of the frame";
    case ViewLayoutState::verticalPosition:
        return "vertical position of the frame";
    case ViewLayoutState::verticalExtent:
        return "height of the frame";
    case ViewLayoutState::widthHugging:
        return "horizontal content hugging";
    case ViewLayoutState::widthResistance:
        return "horizontal compression resistance";
    case ViewLayoutState::heightHugging:
        return "vertical content hugging";
    case ViewLayoutState::heightResistance:
        return "vertical compression resistance";
    case ViewLayoutState::ownRowCount:
        break;
    }
    return "";
}

bool isFrameRow(ViewLayoutState::OwnRow kind)
{
    return kind >= ViewLayoutState::horizontalPosition && kind <= ViewLayoutState::verticalExtent;
}

bool isVertical(ViewLayoutState::OwnRow kind)
{
    return kind == ViewLayoutState::heightNotNegative || kind == ViewLayoutState::verticalPosition ||
           kind == ViewLayoutState::verticalExtent || kind == ViewLayoutState::heightHugging ||
           kind == ViewLayoutState::heightResistance;
}

NSLayoutRelation relationOf(ViewLayoutState::OwnRow kind)
{
    if (isFrameRow(kind))
        return NSLayoutRelation::equal;
    const bool isHugging = kind == ViewLayoutState::widthHugging || kind == ViewLayoutState::heightHugging;
    return isHugging ? NSLayoutRelation::lessThanOrEqual : NSLayoutRelation::greaterThanOrEqual;
}

std::string lawOf(const NSLayoutConstraint& constraint)
{
    std::string text = attributeName(constraint.firstAttribute());
    text += relationSign(constraint.relation());
    if (!constraint.secondItem())
        return text + pointsText(constraint.constant());
    if (constraint.multiplier() != 1)
        text += numberText(constraint.multiplier()) + " × ";
    text += attributeName(constraint.secondAttribute());
    if (constraint.constant() != 0)
        text += (constraint.constant() > 0 ? " + " : " - ") + pointsText(std::abs(constraint.constant()));
    return text;
}

} // namespace

const char* attributeName(NSLayoutAttribute attribute)
{
    switch (attribute) {
    case NSLayoutAttribute::notAnAttribute:
        break;
    case NSLayoutAttribute::left:
        return "left";
    case NSLayoutAttribute::right:
        return "right";
    case NSLayoutAttribute::top:
        return "top";
    case NSLayoutAttribute::bottom:
        return "bottom";
    case NSLayoutAttribute::width:
        return "width";
    case NSLayoutAttribute::height:
        return "height";
    case NSLayoutAttribute::centerX:
        return "centerX";
    case NSLayoutAttribute::centerY:
        return "centerY";
    }
    return "";
}

std::string pointsText(double points)
{
    return numberText(std::round(points * 1000) / 1000);
}

LayoutConstraintHandle LayoutWords::ownRow(std::uint64_t tag) const
{
    return m_engine.handle(ViewLayoutState::of(LayoutTag::view(tag))->ownRow(LayoutTag::kind(tag)));
}

// A root's frame that gives way to its content, as a window's does.
bool LayoutWords::isStayPut(std::uint64_t tag) const
{
    return isFrameRow(LayoutTag::kind(tag)) && m_engine.priority(ownRow(tag)) < layoutPriorityRequired;
}

std::string LayoutWords::role(std::uint64_t tag) const
{
    const NSLayoutConstraint* constraint = LayoutTag::constraint(tag);
    if (!constraint) {
        const std::string owner = " of " + m_names.nameOf(LayoutTag::view(tag));
        return ownRowName(LayoutTag::kind(tag)) + owner + (isStayPut(tag) ? ", which stays put" : "");
    }
    const std::string identifier = constraint->identifier();
    const NSView* second = constraint->secondItem();
    const std::string first = m_names.nameOf(*constraint->firstItem());
    const bool isBetweenTwo = second && second != constraint->firstItem();
    return (identifier.empty() ? "constraint" : identifier) +
           (isBetweenTwo ? " between " + first + " and " + m_names.nameOf(*second) : " of " + first);
}

std::string LayoutWords::law(std::uint64_t tag) const
{
    if (const NSLayoutConstraint* constraint = LayoutTag::constraint(tag))
        return lawOf(*constraint);
    const ViewLayoutState::OwnRow kind = LayoutTag::kind(tag);
    if (isFrameRow(kind) && LayoutTag::view(tag).superview())
        return "its autoresizing mask is translated";
    return std::string(isVertical(kind) ? "height" : "width") + relationSign(relationOf(kind)) +
           pointsText(m_engine.constant(ownRow(tag)));
}

float LayoutWords::priority(std::uint64_t tag) const
{
    const NSLayoutConstraint* constraint = LayoutTag::constraint(tag);
    return constraint ? constraint->priority() : m_engine.priority(ownRow(tag));
}

} // namespace RVCore
