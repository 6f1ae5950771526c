#include <Foundation/KeyPath.h>
#include <Foundation/NSException.h>

#include <QuartzCore/CALayer.h>
#include <QuartzCore/LayerAnimation.h>
#include <QuartzCore/LayerMotion.h>
#include <QuartzCore/LayerPresentation.h>

#include <algorithm>

namespace RVCore {

// What few layers have, kept apart so that the many others stay small.
struct CALayer::Extras {
    std::vector<std::shared_ptr<CALayer>> sublayers;
    CGImageRef contents;
    FilterList filters;
    FilterList backgroundFilters;
    std::vector<CIFilter::Observation> observations; // of the filters
    bool setsFilterInput = false;                    // itself, and tells of it afterwards
    std::vector<LayerAnimation> animations;          // at most one of each property; some may be over
};

namespace {

void requireColor(std::string_view operation, const std::optional<CGColor>& color)
{
    if (!color)
        return;
    for (const double component : {color->red, color->green, color->blue, color->alpha})
        requireFinite(operation, "color", component);
}

// Both ends of the way as values of one kind. An absent colour is the other end's without its alpha; two absent ones
// do not differ.
template <class T> std::pair<AnimatableValue, AnimatableValue> ends(const T& from, const T& to)
{
    return {from, to};
}
std::pair<AnimatableValue, AnimatableValue> ends(const std::optional<CGColor>& from, const std::optional<CGColor>& to)
{
    const auto orClear = [](const std::optional<CGColor>& color, const std::optional<CGColor>& other) {
        CGColor result = color ? *color : other.value_or(CGColor());
        if (!color)
            result.alpha = 0;
        return result;
    };
    return {orClear(from, to), orClear(to, from)};
}

bool isMovement(LayerProperty property)
{
    return property == LayerProperty::position || property == LayerProperty::bounds ||
           property == LayerProperty::affineTransform;
}

std::optional<double> numberOf(const Value& value)
{
    return ValueConversion<double>::unwrap(value);
}

} // namespace

// "backgroundFilters.blur.inputRadius" and its parts.
struct CALayer::FilterInputPath {
    std::string_view whole;
    std::string_view filter; // with its list
    std::string_view input;

    // Nothing for a key path of another kind.
    static std::optional<FilterInputPath> of(std::string_view path)
    {
        const std::size_t first = path.find('.');
        if (first == std::string_view::npos)
            return std::nullopt;
        const std::size_t second = path.find('.', first + 1);
        const std::string_view list = path.substr(0, first);
        if (second == std::string_view::npos || (list != "filters" && list != "backgroundFilters") ||
            path.find('.', second + 1) != std::string_view::npos)
            return std::nullopt;
        return FilterInputPath{path, path.substr(0, second), path.substr(second + 1)};
    }
};

Class& CALayer::staticClass()
{
    static Class& theClass = defineClass<CALayer>("CALayer", NSObject::staticClass(), [](auto& publish) {
        publish.property("position", &CALayer::position, &CALayer::setPosition);
        publish.property("bounds", &CALayer::bounds, &CALayer::setBounds);
        publish.property("anchorPoint", &CALayer::anchorPoint, &CALayer::setAnchorPoint);
        publish.property("affineTransform", &CALayer::affineTransform, &CALayer::setAffineTransform);
        publish.property("zPosition", &CALayer::zPosition, &CALayer::setZPosition);
        publish.property("opacity", &CALayer::opacity, &CALayer::setOpacity);
        publish.readOnlyProperty("isHidden", &CALayer::isHidden);
        publish.method("setHidden:", &CALayer::setHidden);
        publish.property("backgroundColor", &CALayer::backgroundColor, &CALayer::setBackgroundColor);
        publish.property("cornerRadius", &CALayer::cornerRadius, &CALayer::setCornerRadius);
        publish.property("borderWidth", &CALayer::borderWidth, &CALayer::setBorderWidth);
        publish.property("borderColor", &CALayer::borderColor, &CALayer::setBorderColor);
        publish.property("masksToBounds", &CALayer::masksToBounds, &CALayer::setMasksToBounds);
        publish.property("filters", &CALayer::filters, &CALayer::setFilters);
        publish.property("backgroundFilters", &CALayer::backgroundFilters, &CALayer::setBackgroundFilters);
        publish.readOnlyProperty(
            "superlayer", [](CALayer& self) { return self.superlayer() ? shared(*self.superlayer()) : nullptr; });
        publish.readOnlyProperty("sublayers", &CALayer::sublayers);
        publish.method("addSublayer:", &CALayer::addSublayer);
        publish.method("insertSublayer:atIndex:", &CALayer::insertSublayer);
        publish.method("removeFromSuperlayer", &CALayer::removeFromSuperlayer);
        publish.method("setValue:forKeyPath:", &CALayer::setValue);
        publish.readOnlyProperty("animationKeys", &CALayer::animationKeys);
        publish.method("removeAllAnimations", &CALayer::removeAllAnimations);
        publish.readOnlyProperty("needsDisplay", &CALayer::needsDisplay);
        publish.method("setNeedsDisplay", &CALayer::setNeedsDisplay);
    });
    return theClass;
}

CALayer::CALayer() = default;

CALayer::~CALayer()
{
    for (const auto& sublayer : sublayers())
        sublayer->m_superlayer = nullptr; // they may live on
}

CALayer::Extras& CALayer::extras()
{
    if (!m_extras)
        m_extras = std::make_unique<Extras>();
    return *m_extras;
}

void CALayer::changed()
{
    const CALayer* teller = this;
    while (teller && !teller->m_changeHandler)
        teller = teller->m_superlayer;
    if (!teller)
        return;
    const auto handler = teller->m_changeHandler; // it may be replaced meanwhile
    handler();
}

// Stores a new value and tells the handler; an equal one does nothing.
template <class T> void CALayer::store(T& field, const T& value)
{
    if (field == value)
        return;
    field = value;
    changed();
}

// The same for what can move. An equal value moves what is still on its way there, as a motion of its own, or ends
// its way when no motion is in force.
template <class T>
void CALayer::storeMoving(LayerProperty property, T& field, T (LayerPresentation::*shown)() const, const T& value)
{
    bool hasChanged = !(field == value);
    if (LayerMotion* motion = LayerMotion::current()) {
        const DispatchTime now = DispatchTime::now();
        const auto [from, to] = ends((LayerPresentation(*this, now).*shown)(), value);
        hasChanged |= move({property, nullptr, {}, from, to, now, motion->duration, motion->timingFunction}, *motion);
    } else {
        hasChanged |= stop(property);
    }
    field = value;
    if (hasChanged)
        changed();
}

// Takes the place of the property's earlier animation. Returns whether there is something to see of that.
bool CALayer::move(LayerAnimation&& animation, LayerMotion& motion)
{
    motion.begin();
    const bool hasStopped = stop(animation.property, animation.filter.get(), animation.input);
    if (animation.from == animation.to || animation.duration <= 0 ||
        (motion.reducesMovement && isMovement(animation.property)))
        return hasStopped;
    if (!animation.timingFunction)
        animation.timingFunction = CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionDefault);
    auto& animations = extras().animations;
    std::erase_if(animations, [&](const auto& other) { return !other.isRunning(animation.begin); });
    animations.push_back(std::move(animation));
    return true;
}

// Returns whether the property was on its way.
bool CALayer::stop(LayerProperty property, const CIFilter* filter, std::string_view input)
{
    const bool wasMoving = animationOf(property, DispatchTime::now(), filter, input);
    if (m_extras)
        std::erase_if(m_extras->animations, [&](const auto& other) { return other.moves(property, filter, input); });
    return wasMoving;
}

void CALayer::setPosition(CGPoint position)
{
    requireFinite("CALayer.setPosition:", "position", position);
    storeMoving(LayerProperty::position, m_position, &LayerPresentation::position, position);
}

void CALayer::setBounds(const CGRect& bounds)
{
    requireFinite("CALayer.setBounds:", "bounds", bounds);
    storeMoving(LayerProperty::bounds, m_bounds, &LayerPresentation::bounds, bounds);
}

void CALayer::setAnchorPoint(CGPoint anchorPoint)
{
    requireFinite("CALayer.setAnchorPoint:", "anchorPoint", anchorPoint);
    store(m_anchorPoint, anchorPoint);
}

void CALayer::setAffineTransform(const CGAffineTransform& transform)
{
    requireFinite("CALayer.setAffineTransform:", "transform", transform);
    storeMoving(LayerProperty::affineTransform, m_affineTransform, &LayerPresentation::affineTransform, transform);
}

void CALayer::setZPosition(CGFloat zPosition)
{
    requireFinite("CALayer.setZPosition:", "zPosition", zPosition);
    storeMoving(LayerProperty::zPosition, m_zPosition, &LayerPresentation::zPosition, zPosition);
}

void CALayer::setOpacity(CGFloat opacity)
{
    requireFinite("CALayer.setOpacity:", "opacity", opacity);
    storeMoving(LayerProperty::opacity, m_opacity, &LayerPresentation::opacity, std::clamp(opacity, 0.0, 1.0));
}

void CALayer::setHidden(bool hidden)
{
    store(m_isHidden, hidden);
}

void CALayer::setBackgroundColor(std::optional<CGColor> color)
{
    requireColor("CALayer.setBackgroundColor:", color);
    storeMoving(LayerProperty::backgroundColor, m_backgroundColor, &LayerPresentation::backgroundColor, color);
}

void CALayer::setCornerRadius(CGFloat radius)
{
    requireNotNegative("CALayer.setCornerRadius:", "radius", radius);
    storeMoving(LayerProperty::cornerRadius, m_cornerRadius, &LayerPresentation::cornerRadius, radius);
}

void CALayer::setBorderWidth(CGFloat width)
{
    requireNotNegative("CALayer.setBorderWidth:", "width", width);
    storeMoving(LayerProperty::borderWidth, m_borderWidth, &LayerPresentation::borderWidth, width);
}

void CALayer::setBorderColor(std::optional<CGColor> color)
{
    requireColor("CALayer.setBorderColor:", color);
    storeMoving(LayerProperty::borderColor, m_borderColor, &LayerPresentation::borderColor, color);
}

void CALayer::setMasksToBounds(bool masks)
{
    store(m_masksToBounds, masks);
}

CGImageRef CALayer::contents() const
{
    return m_extras ? m_extras->contents : nullptr;
}

void CALayer::setContents(const CGImageRef& contents)
{
    if (contents || m_extras)
        store(extras().contents, contents);
}

const CALayer::FilterList& CALayer::filters() const
{
    static const FilterList none;
    return m_extras ? m_extras->filters : none;
}

void CALayer::setFilters(const FilterList& filters)
{
    storeFilters(&Extras::filters, "CALayer.setFilters:", filters);
}

const CALayer::FilterList& CALayer::backgroundFilters() const
{
    static const FilterList none;
    return m_extras ? m_extras->backgroundFilters : none;
}

void CALayer::setBackgroundFilters(const FilterList& filters)
{
    storeFilters(&Extras::backgroundFilters, "CALayer.setBackgroundFilters:", filters);
}

void CALayer::storeFilters(FilterList Extras::*list, std::string_view operation, const FilterList& filters)
{
    if (std::ranges::count(filters, nullptr) > 0)
        raiseInvalidArgument(operation, "a filter is absent");
    if ((filters.empty() && !m_extras) || extras().*list == filters)
        return;
    extras().*list = filters;
    observeFilters();
    // A filter that left, and comes back some day, is where it was set.
    const auto isGone = [this](const LayerAnimation& animation) {
        return animation.filter && std::ranges::count(m_extras->filters, animation.filter) == 0 &&
               std::ranges::count(m_extras->backgroundFilters, animation.filter) == 0;
    };
    std::erase_if(m_extras->animations, isGone);
    changed();
}

void CALayer::observeFilters()
{
    FilterList all = m_extras->filters;
    for (const auto& filter : m_extras->backgroundFilters) {
        if (std::ranges::count(all, filter) == 0)
            all.push_back(filter);
    }
    m_extras->observations.clear();
    for (const auto& filter : all)
        m_extras->observations.push_back(filter->observe([this, watched = filter.get()] { filterChanged(watched); }));
}

// Somebody set an input of the filter, perhaps one that is on its way to another value.
void CALayer::filterChanged(const CIFilter* filter)
{
    if (m_extras->setsFilterInput)
        return;
    std::erase_if(m_extras->animations, [filter](const LayerAnimation& animation) {
        return animation.filter.get() == filter &&
               numberOf(animation.filter->valueForKey(animation.input)) != std::get<CGFloat>(animation.to);
    });
    changed();
}

const std::vector<std::shared_ptr<CALayer>>& CALayer::sublayers() const
{
    static const std::vector<std::shared_ptr<CALayer>> none;
    return m_extras ? m_extras->sublayers : none;
}

void CALayer::addSublayer(const std::shared_ptr<CALayer>& layer)
{
    insertSublayer(layer, sublayers().size());
}

void CALayer::insertSublayer(const std::shared_ptr<CALayer>& layer, std::size_t index)
{
    if (!layer)
        raiseInvalidArgument("CALayer.addSublayer:", "there is no layer");
    if (isDescendantOf(*layer))
        raiseInvalidArgument("CALayer.addSublayer:",
                             layer->description() + " cannot be put into " +
                                 (layer.get() == this ? "itself" : "its own descendant " + description()));
    const auto kept = layer;         // the argument may be an element of the list that it is taken out of
    const auto self = shared(*this); // who hears of the move may let go of both ends of it
    const auto before = kept->m_superlayer ? shared(*kept->m_superlayer) : nullptr;
    kept->leaveSuperlayer();
    auto& list = extras().sublayers;
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(std::min(index, list.size())), kept);
    kept->m_superlayer = this;
    if (before && before != self)
        before->changed();
    changed();
}

void CALayer::removeFromSuperlayer()
{
    if (!m_superlayer)
        return;
    const auto kept = shared(*this);
    const auto superlayer = shared(*m_superlayer);
    leaveSuperlayer();
    superlayer->changed();
}

void CALayer::leaveSuperlayer()
{
    if (!m_superlayer)
        return;
    std::erase_if(m_superlayer->m_extras->sublayers, [this](const auto& layer) { return layer.get() == this; });
    m_superlayer = nullptr;
}

bool CALayer::isDescendantOf(const CALayer& layer) const
{
    const CALayer* current = this;
    while (current && current != &layer)
        current = current->m_superlayer;
    return current;
}

void CALayer::setValue(const Value& value, std::string_view keyPath)
{
    if (const auto path = FilterInputPath::of(keyPath))
        setFilterInput(value, *path);
    else
        setValueAlongKeyPath(*this, keyPath, value);
}

void CALayer::setFilterInput(const Value& value, const FilterInputPath& path)
{
    const auto filter = valueForKeyPath(*this, path.filter).as<std::shared_ptr<CIFilter>>();
    const Value before = valueForKeyPath(*this, path.whole);
    {
        struct Setting { // also when the filter refuses the value
            bool& flag;
            explicit Setting(bool& isSetting) : flag(isSetting) { flag = true; }
            ~Setting() { flag = false; }
        } setting(m_extras->setsFilterInput);
        setValueAlongKeyPath(*this, path.whole, value);
    }
    const Value after = valueForKeyPath(*this, path.whole); // the filter may have put it into its range
    const auto from = numberOf(before);
    const auto to = numberOf(after);
    bool hasChanged = !(before == after);
    LayerMotion* motion = LayerMotion::current();
    if (motion && from && to) {
        const DispatchTime now = DispatchTime::now();
        const double shown = LayerPresentation(*this, now).filterInput(*filter, path.input).value_or(*from);
        hasChanged |= move({LayerProperty::filterInput, filter, std::string(path.input), shown, *to, now,
                            motion->duration, motion->timingFunction},
                           *motion);
    } else {
        hasChanged |= stop(LayerProperty::filterInput, filter.get(), path.input);
    }
    if (hasChanged)
        changed();
}

std::optional<DispatchTime> CALayer::animationEnd(DispatchTime now) const
{
    if (!m_extras)
        return std::nullopt;
    std::optional<DispatchTime> end;
    const auto include = [&](std::optional<DispatchTime> other) {
        if (other && (!end || *other > *end))
            end = other;
    };
    for (const LayerAnimation& animation : m_extras->animations) {
        if (animation.isRunning(now))
            include(animation.end());
    }
    for (const auto& sublayer : m_extras->sublayers)
        include(sublayer->animationEnd(now));
    return end;
}

bool CALayer::prepareFrame(DispatchTime now)
{
    if (!m_extras)
        return false;
    const auto kept = shared(*this); // who hears of it may let go of the layer
    bool goesOn = false;
    // By index and from the end, as who hears of it may take sublayers away.
    for (std::size_t index = m_extras->sublayers.size(); index-- > 0;) {
        if (index < m_extras->sublayers.size())
            goesOn |= m_extras->sublayers[index]->prepareFrame(now);
    }
    if (std::erase_if(m_extras->animations, [now](const auto& other) { return !other.isRunning(now); }) > 0)
        changed();
    return goesOn || !m_extras->animations.empty();
}

std::vector<std::string> CALayer::animationKeys() const
{
    std::vector<std::string> keys;
    if (!m_extras)
        return keys;
    const DispatchTime now = DispatchTime::now();
    for (const LayerAnimation& animation : m_extras->animations) {
        if (animation.isRunning(now))
            keys.push_back(keyPathOf(animation));
    }
    return keys;
}

std::string CALayer::keyPathOf(const LayerAnimation& animation) const
{
    if (!animation.filter)
        return std::string(keyOf(animation.property));
    const bool isBehind = std::ranges::count(m_extras->backgroundFilters, animation.filter) > 0;
    return std::string(isBehind ? "backgroundFilters." : "filters.") + animation.filter->name() + "." +
           animation.input;
}

void CALayer::removeAllAnimations()
{
    if (!animationKeys().empty()) {
        m_extras->animations.clear();
        changed();
    }
}

const LayerAnimation* CALayer::animationOf(LayerProperty property, DispatchTime now, const CIFilter* filter,
                                           std::string_view input) const
{
    if (!m_extras)
        return nullptr;
    for (const LayerAnimation& animation : m_extras->animations) {
        if (animation.moves(property, filter, input) && animation.isRunning(now))
            return &animation;
    }
    return nullptr;
}

void CALayer::setNeedsDisplay()
{
    m_needsDisplay = true;
    changed();
}

} // namespace RVCore
