#include <AppKit/NSView.h>
#include <ConstraintLibrary/ConstraintCreation.h>
#include <ConstraintLibrary/NSView+ConstraintLibrary.h>
#include <Foundation/InternedString.h>

namespace RVCore {

namespace {

// What each kind of constraint is for, unless a block says otherwise.
struct Roles {
    const ShortName pinEdge{"pin edge"};
    const ShortName pinToSuperview{"pin to superview"};
    const ShortName alignAxis{"align axis"};
    const ShortName center{"center"};
    const ShortName dimension{"dimension"};
    const ShortName size{"size"};
};

const Roles& roles()
{
    static const Roles theRoles;
    return theRoles;
}

// Callers that have only names and values can pass any number, so each is checked before it is used.
[[noreturn]] void raiseUnknown(const char* operation, const char* what, int number)
{
    raiseInvalidArgument(operation, std::string("there is no ") + what + " " + std::to_string(number));
}

NSLayoutAttribute attributeOf(const char* operation, LayoutEdge edge)
{
    switch (edge) {
    case LayoutEdge::left:
    case LayoutEdge::right:
    case LayoutEdge::top:
    case LayoutEdge::bottom:
        return static_cast<NSLayoutAttribute>(edge);
    }
    raiseUnknown(operation, "edge", static_cast<int>(edge));
}

NSLayoutAttribute attributeOf(const char* operation, LayoutAxis axis)
{
    switch (axis) {
    case LayoutAxis::vertical:
    case LayoutAxis::horizontal:
        return static_cast<NSLayoutAttribute>(axis);
    }
    raiseUnknown(operation, "axis", static_cast<int>(axis));
}

NSLayoutAttribute attributeOf(const char* operation, LayoutDimension dimension)
{
    switch (dimension) {
    case LayoutDimension::width:
    case LayoutDimension::height:
        return static_cast<NSLayoutAttribute>(dimension);
    }
    raiseUnknown(operation, "dimension", static_cast<int>(dimension));
}

void requireRelation(const char* operation, NSLayoutRelation relation)
{
    switch (relation) {
    case NSLayoutRelation::lessThanOrEqual:
    case NSLayoutRelation::equal:
    case NSLayoutRelation::greaterThanOrEqual:
        return;
    }
    raiseUnknown(operation, "relation", static_cast<int>(relation));
}

NSView& superviewOf(const char* operation, const NSView& view)
{
    if (!view.superview())
        raiseInvalidArgument(operation, view.description() + " has no superview");
    return *view.superview();
}

bool isHorizontal(LayoutEdge edge)
{
    return edge == LayoutEdge::left || edge == LayoutEdge::right;
}

std::shared_ptr<NSLayoutConstraint> alignAxis(NSView& view, LayoutAxis axis, NSView& otherView, CGFloat offset,
                                              ShortName role)
{
    const char* operation = "autoAlignAxis";
    const NSLayoutAttribute attribute = attributeOf(operation, axis);
    requireLayoutNumber(operation, "offset", offset);
    return createConstraint(view, role,
                            {.attribute = attribute,
                             .relation = NSLayoutRelation::equal,
                             .otherView = &otherView,
                             .otherAttribute = attribute,
                             .constant = offset});
}

std::shared_ptr<NSLayoutConstraint> setDimension(NSView& view, LayoutDimension dimension, CGFloat size,
                                                 NSLayoutRelation relation, ShortName role)
{
    const char* operation = "autoSetDimension";
    const NSLayoutAttribute attribute = attributeOf(operation, dimension);
    requireLayoutNumber(operation, "size", size);
    requireRelation(operation, relation);
    return createConstraint(view, role,
                            {.attribute = attribute,
                             .relation = relation,
                             .otherView = nullptr,
                             .otherAttribute = NSLayoutAttribute::notAnAttribute,
                             .constant = size});
}

} // namespace

std::shared_ptr<NSLayoutConstraint> autoPinEdge(NSView& view, LayoutEdge edge, LayoutEdge otherEdge,
                                                NSView& otherView, CGFloat offset)
{
    const char* operation = "autoPinEdge";
    const NSLayoutAttribute attribute = attributeOf(operation, edge);
    const NSLayoutAttribute otherAttribute = attributeOf(operation, otherEdge);
    requireLayoutNumber(operation, "offset", offset);
    if (isHorizontal(edge) != isHorizontal(otherEdge))
        raiseInvalidArgument(operation, "a left or right edge cannot be pinned to a top or bottom edge");
    return createConstraint(view, roles().pinEdge,
                            {.attribute = attribute,
                             .relation = NSLayoutRelation::equal,
                             .otherView = &otherView,
                             .otherAttribute = otherAttribute,
                             .constant = offset});
}

std::shared_ptr<NSLayoutConstraint> autoPinEdgeToSuperviewEdge(NSView& view, LayoutEdge edge, CGFloat inset,
                                                               NSLayoutRelation relation)
{
    const char* operation = "autoPinEdgeToSuperviewEdge";
    const NSLayoutAttribute attribute = attributeOf(operation, edge);
    requireLayoutNumber(operation, "inset", inset);
    requireRelation(operation, relation);
    NSView& superview = superviewOf(operation, view);
    if (edge == LayoutEdge::right || edge == LayoutEdge::bottom) {
        inset = 0 - inset; // not a bare minus: an inset of 0 stays a positive 0
        relation = static_cast<NSLayoutRelation>(-static_cast<int>(relation));
    }
    return createConstraint(view, roles().pinToSuperview,
                            {.attribute = attribute,
                             .relation = relation,
                             .otherView = &superview,
                             .otherAttribute = attribute,
                             .constant = inset});
}

LayoutConstraints autoPinEdgesToSuperviewEdges(NSView& view)
{
    superviewOf("autoPinEdgesToSuperviewEdges", view);
    LayoutConstraints result;
    for (const LayoutEdge edge : {LayoutEdge::top, LayoutEdge::left, LayoutEdge::bottom, LayoutEdge::right})
        result.push_back(autoPinEdgeToSuperviewEdge(view, edge));
    return result;
}

std::shared_ptr<NSLayoutConstraint> autoAlignAxis(NSView& view, LayoutAxis axis, NSView& otherView, CGFloat offset)
{
    return alignAxis(view, axis, otherView, offset, roles().alignAxis);
}

LayoutConstraints autoCenterInSuperview(NSView& view)
{
    NSView& superview = superviewOf("autoCenterInSuperview", view);
    LayoutConstraints result;
    for (const LayoutAxis axis : {LayoutAxis::horizontal, LayoutAxis::vertical})
        result.push_back(alignAxis(view, axis, superview, 0, roles().center));
    return result;
}

std::shared_ptr<NSLayoutConstraint> autoSetDimension(NSView& view, LayoutDimension dimension, CGFloat size,
                                                     NSLayoutRelation relation)
{
    return setDimension(view, dimension, size, relation, roles().dimension);
}

LayoutConstraints autoSetDimensionsToSize(NSView& view, CGSize size)
{
    requireLayoutNumber("autoSetDimensionsToSize", "size.width", size.width);
    requireLayoutNumber("autoSetDimensionsToSize", "size.height", size.height);
    LayoutConstraints result;
    result.push_back(setDimension(view, LayoutDimension::width, size.width, NSLayoutRelation::equal, roles().size));
    result.push_back(setDimension(view, LayoutDimension::height, size.height, NSLayoutRelation::equal, roles().size));
    return result;
}

void autoSetContentHuggingPriorityForAxis(NSView& view, LayoutAxis axis)
{
    const char* operation = "autoSetContentHuggingPriorityForAxis";
    attributeOf(operation, axis);
    const auto priority = constraintBlockPriority();
    if (!priority)
        raiseInvalidArgument(operation, "needs a block of autoSetPriorityForConstraints around it");
    view.setContentHuggingPriority(*priority, axis == LayoutAxis::horizontal
                                                  ? NSLayoutConstraintOrientation::horizontal
                                                  : NSLayoutConstraintOrientation::vertical);
    view.setTranslatesAutoresizingMaskIntoConstraints(false);
}

bool publishViewConstraintOperations()
{
    return addCategory<NSView>("ConstraintLibrary", [](auto& publish) {
        publish.method("autoPinEdge:toEdge:ofView:",
                       [](NSView& self, LayoutEdge edge, LayoutEdge otherEdge, NSView& otherView) {
                           return autoPinEdge(self, edge, otherEdge, otherView);
                       });
        publish.method("autoPinEdge:toEdge:ofView:withOffset:", &autoPinEdge);
        publish.method("autoPinEdgeToSuperviewEdge:",
                       [](NSView& self, LayoutEdge edge) { return autoPinEdgeToSuperviewEdge(self, edge); });
        publish.method("autoPinEdgeToSuperviewEdge:withInset:relation:", &autoPinEdgeToSuperviewEdge);
        publish.method("autoPinEdgesToSuperviewEdges", &autoPinEdgesToSuperviewEdges);
        publish.method("autoAlignAxis:toSameAxisOfView:", [](NSView& self, LayoutAxis axis, NSView& otherView) {
            return autoAlignAxis(self, axis, otherView);
        });
        publish.method("autoAlignAxis:toSameAxisOfView:withOffset:", &autoAlignAxis);
        publish.method("autoCenterInSuperview", &autoCenterInSuperview);
        publish.method("autoSetDimension:toSize:", [](NSView& self, LayoutDimension dimension, CGFloat size) {
            return autoSetDimension(self, dimension, size);
        });
        publish.method("autoSetDimension:toSize:relation:", &autoSetDimension);
        publish.method("autoSetDimensionsToSize:", &autoSetDimensionsToSize);
        publish.method("autoSetContentHuggingPriorityForAxis:", &autoSetContentHuggingPriorityForAxis);
    });
}

} // namespace RVCore
