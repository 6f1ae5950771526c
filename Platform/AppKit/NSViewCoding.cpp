#include <AppKit/NSView.h>
#include <Foundation/NSCoder.h>

#include <QuartzCore/CALayer.h>

#include <algorithm>
#include <unordered_map>

namespace RVCore {

namespace {

// Finds where views lie below an ancestor.
class Places {
public:
    // The index of the subview to take at each step down from the ancestor.
    Value::Array pathTo(const NSView& view, const NSView& ancestor)
    {
        Value::Array path;
        for (const NSView* current = &view; current != &ancestor; current = current->superview())
            path.emplace_back(indexOf(*current));
        std::reverse(path.begin(), path.end());
        return path;
    }

private:
    std::size_t indexOf(const NSView& view)
    {
        const auto& siblings = view.superview()->subviews();
        if (!m_indices.contains(&view)) {
            for (std::size_t index = 0; index < siblings.size(); ++index)
                m_indices[siblings[index].get()] = index;
        }
        return m_indices.at(&view);
    }

    std::unordered_map<const NSView*, std::size_t> m_indices; // of all siblings of a view once asked for
};

NSView& viewAt(NSView& ancestor, const Value& path)
{
    NSView* view = &ancestor;
    for (const std::size_t index : path.as<std::vector<std::size_t>>()) {
        if (index >= view->subviews().size())
            raiseInvalidArgument("NSView.initWithCoder:", "a constraint refers to a subview that is not there");
        view = view->subviews()[index].get();
    }
    return *view;
}

Value encodedConstraint(const NSLayoutConstraint& constraint, const NSView& holder, Places& places)
{
    Value::Dictionary fields{
        {"first", places.pathTo(*constraint.firstItem(), holder)},
        {"firstAttribute", static_cast<int>(constraint.firstAttribute())},
        {"relation", static_cast<int>(constraint.relation())},
        {"secondAttribute", static_cast<int>(constraint.secondAttribute())},
        {"multiplier", constraint.multiplier()},
        {"constant", constraint.constant()},
        {"priority", constraint.priority()},
        {"identifier", constraint.identifier()},
    };
    if (constraint.secondItem())
        fields["second"] = places.pathTo(*constraint.secondItem(), holder);
    return fields;
}

void decodeConstraint(NSView& holder, const Value::Dictionary& fields)
{
    const auto field = [&](const char* key) {
        const auto found = fields.find(key);
        if (found == fields.end())
            raiseInvalidArgument("NSView.initWithCoder:", "a constraint has no " + std::string(key));
        return found->second;
    };
    NSView* second = fields.contains("second") ? &viewAt(holder, field("second")) : nullptr;
    auto constraint = make<NSLayoutConstraint>(
        viewAt(holder, field("first")), field("firstAttribute").as<NSLayoutAttribute>(),
        field("relation").as<NSLayoutRelation>(), second, field("secondAttribute").as<NSLayoutAttribute>(),
        field("multiplier").as<double>(), field("constant").as<double>());
    constraint->setPriority(field("priority").as<NSLayoutPriority>());
    constraint->setIdentifier(field("identifier").as<std::string>());
    constraint->setActive(true);
}

} // namespace

void NSView::encode(NSCoder& coder) const
{
    coder.encode("frame", m_frame);
    coder.encode("boundsOrigin", m_boundsOrigin);
    coder.encode("hidden", m_isHidden);
    coder.encode("alphaValue", alphaValue());
    coder.encode("wantsLayer", wantsLayer());
    coder.encode("autoresizingMask", static_cast<int>(m_autoresizingMask));
    coder.encode("translatesAutoresizingMask", m_translatesMask);
    coder.encode("huggingPriorities", Value::Array{m_huggingPriorities[0], m_huggingPriorities[1]});
    coder.encode("compressionResistancePriorities",
                 Value::Array{m_compressionResistancePriorities[0], m_compressionResistancePriorities[1]});
    coder.encode("identifier", identifier());
    coder.encode("subviews", ValueConversion<std::vector<std::shared_ptr<NSView>>>::wrap(m_subviews));
    Places places;
    Value::Array encodedConstraints;
    for (const auto& constraint : constraints())
        encodedConstraints.push_back(encodedConstraint(*constraint, *this, places));
    coder.encode("constraints", encodedConstraints);
}

void NSView::init(NSCoder& coder)
{
    NSView::init(coder.decode<CGRect>("frame"));
    setBoundsOrigin(coder.decode<CGPoint>("boundsOrigin"));
    setHidden(coder.decode<bool>("hidden"));
    setAlphaValue(coder.decode<CGFloat>("alphaValue"));
    setWantsLayer(coder.decode<bool>("wantsLayer"));
    setAutoresizingMask(coder.decode<NSAutoresizingMask>("autoresizingMask"));
    setTranslatesAutoresizingMaskIntoConstraints(coder.decode<bool>("translatesAutoresizingMask"));
    const auto hugging = coder.decode<std::vector<NSLayoutPriority>>("huggingPriorities");
    const auto resistance = coder.decode<std::vector<NSLayoutPriority>>("compressionResistancePriorities");
    if (hugging.size() != 2 || resistance.size() != 2)
        raiseInvalidArgument("NSView.initWithCoder:", "there must be two priorities of each kind");
    for (int axis = 0; axis < 2; ++axis) {
        const auto orientation = static_cast<NSLayoutConstraintOrientation>(axis);
        setContentHuggingPriority(hugging[static_cast<std::size_t>(axis)], orientation);
        setContentCompressionResistancePriority(resistance[static_cast<std::size_t>(axis)], orientation);
    }
    setIdentifier(coder.decode<std::string>("identifier"));
    for (const auto& subview : coder.decode<std::vector<std::shared_ptr<NSView>>>("subviews"))
        addSubview(subview);
    for (const Value& constraint : coder.decode<Value::Array>("constraints"))
        decodeConstraint(*this, constraint.as<Value::Dictionary>());
}

} // namespace RVCore
