#include <AppKit/LayoutContext.h>
#include <AppKit/NSLayoutConstraint.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewDump.h>
#include <AppKit/ViewLayoutState.h>
#include <Foundation/AssociatedObjects.h>
#include <Foundation/NSException.h>

#include <array>
#include <cmath>

namespace RVCore {

namespace {

enum class AttributeKind { none, horizontalPosition, verticalPosition, extent, unknown };

AttributeKind kindOf(NSLayoutAttribute attribute)
{
    switch (attribute) {
    case NSLayoutAttribute::notAnAttribute:
        return AttributeKind::none;
    case NSLayoutAttribute::left:
    case NSLayoutAttribute::right:
    case NSLayoutAttribute::centerX:
        return AttributeKind::horizontalPosition;
    case NSLayoutAttribute::top:
    case NSLayoutAttribute::bottom:
    case NSLayoutAttribute::centerY:
        return AttributeKind::verticalPosition;
    case NSLayoutAttribute::width:
    case NSLayoutAttribute::height:
        return AttributeKind::extent;
    }
    return AttributeKind::unknown;
}

// The nearest view that both are descendants of (a view is one of itself); null when there is none.
NSView* commonAncestor(NSView& first, NSView& second)
{
    if (&first == &second || second.superview() == &first)
        return &first;
    if (first.superview() == &second || (first.superview() && first.superview() == second.superview()))
        return first.superview();
    const auto depth = [](const NSView& view) {
        std::size_t count = 0;
        for (const NSView* current = view.superview(); current; current = current->superview())
            ++count;
        return count;
    };
    NSView* deep = &first;
    NSView* shallow = &second;
    std::size_t deepDepth = depth(first), shallowDepth = depth(second);
    if (deepDepth < shallowDepth) {
        std::swap(deep, shallow);
        std::swap(deepDepth, shallowDepth);
    }
    for (; deepDepth > shallowDepth; --deepDepth)
        deep = deep->superview();
    while (deep != shallow) {
        deep = deep->superview();
        shallow = shallow->superview();
    }
    return deep;
}

constexpr AssociationKey multiplierKey{"multiplier"};

std::uint64_t nextActivation()
{
    static std::uint64_t count = 0; // main thread only
    return ++count;
}

} // namespace

void requirePriority(std::string_view operation, NSLayoutPriority priority)
{
    if (!(priority > 0 && priority <= NSLayoutPriorityRequired))
        raiseInvalidArgument(operation, "priority must be above 0 and at most 1000, got " +
                                            numberText(static_cast<double>(priority)));
}

void raiseNoLayoutNumber(std::string_view operation, std::string_view name, double value)
{
    requireFinite(operation, name, value);
    raiseInvalidArgument(operation,
                         std::string(name) + " is beyond what layout can tell apart: " + numberText(value));
}

Class& NSLayoutConstraint::staticClass()
{
    static Class& theClass =
        defineClass<NSLayoutConstraint>("NSLayoutConstraint", NSObject::staticClass(), [](auto& publish) {
            using Self = NSLayoutConstraint;
            publish.initializer("initWithItem:attribute:relatedBy:toItem:attribute:multiplier:constant:",
                                [](Self& self, NSView& first, NSLayoutAttribute firstAttribute,
                                   NSLayoutRelation relation, const std::shared_ptr<NSView>& second,
                                   NSLayoutAttribute secondAttribute, double multiplier, double constant) {
                                    self.init(first, firstAttribute, relation, second.get(), secondAttribute,
                                              multiplier, constant);
                                });
            const auto item = [](NSView* view) { return view ? shared(*view) : nullptr; };
            publish.readOnlyProperty("firstItem", [item](Self& self) { return item(self.firstItem()); });
            publish.readOnlyProperty("secondItem", [item](Self& self) { return item(self.secondItem()); });
            publish.readOnlyProperty("firstAttribute", &Self::firstAttribute);
            publish.readOnlyProperty("secondAttribute", &Self::secondAttribute);
            publish.readOnlyProperty("relation", &Self::relation);
            publish.readOnlyProperty("multiplier", &Self::multiplier);
            publish.property("constant", &Self::constant, &Self::setConstant);
            publish.property("priority", &Self::priority, &Self::setPriority);
            publish.property("identifier", &Self::identifier,
                             [](Self& self, const std::string& identifier) { self.setIdentifier(identifier); });
            publish.readOnlyProperty("isActive", &Self::isActive);
            publish.method("setActive:", &Self::setActive);
        });
    return theClass;
}

NSLayoutConstraint::~NSLayoutConstraint()
{
    for (int item = 0; item < 2; ++item) {
        if (m_items[item])
            ViewLayoutState::of(*m_items[item])->removeReference(*this, item);
        m_items[item] = nullptr;
    }
}

void NSLayoutConstraint::init(NSView& firstItem, NSLayoutAttribute firstAttribute, NSLayoutRelation relation,
                              NSView* secondItem, NSLayoutAttribute secondAttribute, double multiplier,
                              double constant)
{
    constexpr std::string_view operation = "NSLayoutConstraint.init";
    if (m_firstAttribute != 0)
        raiseInvalidArgument(operation, description() + " has been initialised before");
    const AttributeKind firstKind = kindOf(firstAttribute), secondKind = kindOf(secondAttribute);
    if (firstKind == AttributeKind::unknown || secondKind == AttributeKind::unknown)
        raiseInvalidArgument(operation,
                             "there is no layout attribute " +
                                 std::to_string(static_cast<int>(
                                     firstKind == AttributeKind::unknown ? firstAttribute : secondAttribute)));
    if (firstKind == AttributeKind::none)
        raiseInvalidArgument(operation, "the first attribute is missing");
    if ((secondItem != nullptr) != (secondKind != AttributeKind::none))
        raiseInvalidArgument(operation, "a second item and a second attribute go together");
    if (secondItem && firstKind != secondKind)
        raiseInvalidArgument(operation, "the attributes " + std::to_string(static_cast<int>(firstAttribute)) +
                                            " and " + std::to_string(static_cast<int>(secondAttribute)) +
                                            " cannot be compared");
    if (!secondItem && firstKind != AttributeKind::extent)
        raiseInvalidArgument(operation, "a position needs a second item to be measured from");
    if (relation != NSLayoutRelation::equal && relation != NSLayoutRelation::lessThanOrEqual &&
        relation != NSLayoutRelation::greaterThanOrEqual)
        raiseInvalidArgument(operation, "there is no layout relation " + std::to_string(static_cast<int>(relation)));
    requireLayoutNumber(operation, "multiplier", multiplier);
    requireLayoutNumber(operation, "constant", constant);

    m_items[0] = &firstItem;
    m_items[1] = secondItem;
    m_firstAttribute = static_cast<std::uint64_t>(firstAttribute) & 15;
    m_secondAttribute = static_cast<std::uint64_t>(secondAttribute) & 15;
    m_relation = relation == NSLayoutRelation::equal ? 0 : relation == NSLayoutRelation::lessThanOrEqual ? -1 : 1;
    m_hasMultiplier = multiplier != 1;
    if (m_hasMultiplier)
        setAssociatedObject(*this, multiplierKey, Value(multiplier));
    m_constant = constant;
    for (int item = 0; item < 2; ++item) {
        if (m_items[item])
            ViewLayoutState::make(*m_items[item]).addReference(*this, item);
    }
}

void NSLayoutConstraint::setConstant(double constant)
{
    requireLayoutNumber("NSLayoutConstraint.setConstant:", "constant", constant);
    if (m_constant == constant)
        return;
    m_constant = constant;
    rowChanged();
}

void NSLayoutConstraint::setPriority(NSLayoutPriority priority)
{
    requirePriority("NSLayoutConstraint.setPriority:", priority);
    if (m_priority == priority)
        return;
    m_priority = priority;
    rowChanged();
}

void NSLayoutConstraint::rowChanged()
{
    if (!isActive())
        return;
    NSView& present = *holder();
    if (LayoutContext* context = LayoutContext::of(present))
        context->constraintChanged(*this);
    present.setNeedsDisplay(true);
}

double NSLayoutConstraint::multiplier() const
{
    return m_hasMultiplier ? associatedObject(*this, multiplierKey).as<double>() : 1;
}

NSView* NSLayoutConstraint::holder() const
{
    switch (m_holder) {
    case Holder::none:
        return nullptr;
    case Holder::first:
        return m_items[0];
    case Holder::second:
        return m_items[1];
    default:
        return commonAncestor(*m_items[0], *m_items[1]);
    }
}

std::string NSLayoutConstraint::identifier() const
{
    return ShortName::numbered(m_identifier).text();
}

void NSLayoutConstraint::setIdentifier(const std::string& identifier)
{
    setIdentifier(ShortName(identifier));
}

void NSLayoutConstraint::setActive(bool active)
{
    if (active == isActive())
        return;
    if (!active) {
        NSView& oldHolder = *holder();
        if (LayoutContext* context = LayoutContext::of(oldHolder))
            context->constraintWillBeDeactivated(*this);
        m_holder = Holder::none;
        const auto alive = ViewLayoutState::of(oldHolder)->release(*this);
        oldHolder.setNeedsDisplay(true);
        return;
    }
    const bool hasSecondItem = secondAttribute() != NSLayoutAttribute::notAnAttribute;
    if (!m_items[0] || (hasSecondItem && !m_items[1]))
        raiseInvalidArgument("NSLayoutConstraint.setActive:", "a view of the constraint no longer exists");
    NSView* newHolder = hasSecondItem ? commonAncestor(*m_items[0], *m_items[1]) : m_items[0];
    if (!newHolder)
        raiseInvalidArgument("NSLayoutConstraint.setActive:", m_items[0]->description() + " and " +
                                                                  m_items[1]->description() +
                                                                  " have no common ancestor");
    m_activation = nextActivation() & 0xffff'ffff'ffff; // as many bits as it has, never used up
    m_holder = newHolder == m_items[0] ? Holder::first : newHolder == m_items[1] ? Holder::second : Holder::ancestor;
    ViewLayoutState::make(*newHolder).hold(*this);
    if (LayoutContext* context = LayoutContext::of(*newHolder))
        context->constraintActivated(*this);
    newHolder->setNeedsDisplay(true);
}

std::string NSLayoutConstraint::description() const
{
    std::string text = NSObject::description();
    text.back() = ' ';
    return text + describeConstraint(*this) + ">";
}

} // namespace RVCore
