#include <CoreImage/CIFilter.h>
#include <Foundation/Stop.h>

#include <QuartzCore/Composition.h>

#include <algorithm>

namespace RVCore {

std::span<const FilterStep> CompositionItem::filters(const std::vector<FilterStep>& steps) const
{
    return std::span(steps).subspan(firstStep, filterCount);
}

std::span<const FilterStep> CompositionItem::backgroundFilters(const std::vector<FilterStep>& steps) const
{
    return std::span(steps).subspan(firstStep + filterCount, backgroundFilterCount);
}

void Composition::reserveFor(const Composition& other)
{
    m_items.reserve(other.m_items.capacity());
    m_steps.reserve(other.m_steps.capacity());
    m_owners.reserve(other.m_owners.capacity());
}

void Composition::clear()
{
    m_items.clear();
    m_steps.clear();
    m_owners.clear();
    m_openGroup = CompositionItem::none;
}

CompositionItem& Composition::add(CompositionItem::Kind kind, const std::shared_ptr<NSObject>& owner,
                                  const CGAffineTransform& placement, CGSize size)
{
    if (m_owners.empty() || m_owners.back() != owner)
        m_owners.push_back(owner);
    CompositionItem& item = m_items.emplace_back();
    item.kind = kind;
    item.group = m_openGroup;
    item.owner = owner.get();
    item.placement = placement;
    item.size = size;
    return item;
}

void Composition::beginGroup(const std::shared_ptr<NSObject>& owner, const Group& group)
{
    requireFinite("Composition.beginGroup", "opacity", group.opacity);
    requireNotNegative("Composition.beginGroup", "cornerRadius", group.cornerRadius);
    CompositionItem& item = add(CompositionItem::Kind::group, owner, group.placement, group.size);
    item.cornerRadius = group.cornerRadius;
    item.clips = group.clips;
    item.opacity = std::clamp(group.opacity, 0.0, 1.0);
    item.firstStep = static_cast<std::uint32_t>(m_steps.size());
    m_openGroup = static_cast<std::uint32_t>(m_items.size() - 1);
}

CompositionItem& Composition::justBegun(std::string_view operation)
{
    if (m_items.empty() || m_items.back().kind != CompositionItem::Kind::group)
        fatalError("Composition." + std::string(operation) + ": no group has just begun");
    return m_items.back();
}

void Composition::addFilter(const FilterStep& step)
{
    CompositionItem& group = justBegun("addFilter");
    if (group.backgroundFilterCount > 0)
        fatalError("Composition.addFilter: background filters were added before");
    m_steps.push_back(step);
    ++group.filterCount;
}

void Composition::addBackgroundFilter(const FilterStep& step)
{
    CompositionItem& group = justBegun("addBackgroundFilter");
    m_steps.push_back(step);
    ++group.backgroundFilterCount;
}

void Composition::endGroup()
{
    if (m_openGroup == CompositionItem::none)
        fatalError("Composition.endGroup: no group is open");
    CompositionItem end;
    end.kind = CompositionItem::Kind::end;
    end.group = m_openGroup;
    end.owner = m_items[m_openGroup].owner;
    m_items.push_back(end);
    CompositionItem& group = m_items[m_openGroup];
    group.end = static_cast<std::uint32_t>(m_items.size() - 1);
    m_openGroup = group.group;
}

namespace {

std::string describeSteps(std::string_view title, std::span<const FilterStep> steps)
{
    std::string text;
    for (const FilterStep& step : steps)
        text += (text.empty() ? " " + std::string(title) + " " : ", ") + describe(step);
    return text;
}

std::string describeItem(const CompositionItem& item, const std::vector<FilterStep>& steps)
{
    using Kind = CompositionItem::Kind;
    const CGRect place = item.placement.apply(CGRect({}, item.size));
    std::string text;
    switch (item.kind) {
    case Kind::fill:
        text = "fill";
        break;
    case Kind::image:
        text = "image";
        break;
    case Kind::content:
        text = "content";
        break;
    case Kind::border:
        text = "border " + numberText(item.borderWidth);
        break;
    case Kind::group:
        text = "group";
        break;
    case Kind::end:
        return "end";
    }
    text += " " + describe(place);
    if (item.cornerRadius > 0)
        text += " radius " + numberText(item.cornerRadius);
    if (item.kind == Kind::fill || item.kind == Kind::border)
        text += " " + describe(item.color);
    if (item.kind == Kind::group) {
        text += item.clips ? " clipped" : "";
        text += item.opacity < 1 ? " opacity " + numberText(item.opacity) : "";
        text += describeSteps("filters", item.filters(steps));
        text += describeSteps("behind", item.backgroundFilters(steps));
    }
    return text;
}

} // namespace

std::string Composition::describe() const
{
    std::string text;
    std::size_t depth = 0;
    for (const CompositionItem& item : m_items) {
        if (item.kind == CompositionItem::Kind::end)
            --depth;
        text += std::string(2 * depth, ' ') + describeItem(item, m_steps) + "\n";
        if (item.kind == CompositionItem::Kind::group)
            ++depth;
    }
    return text;
}

bool looksSame(const CompositionItem& a, const Composition& inA, const CompositionItem& b, const Composition& inB)
{
    return a.kind == b.kind && a.owner == b.owner && a.revision == b.revision && a.clips == b.clips &&
           a.placement == b.placement && a.size == b.size && a.cornerRadius == b.cornerRadius &&
           a.borderWidth == b.borderWidth && a.opacity == b.opacity && a.color == b.color && a.image == b.image &&
           std::ranges::equal(a.filters(inA.steps()), b.filters(inB.steps())) &&
           std::ranges::equal(a.backgroundFilters(inA.steps()), b.backgroundFilters(inB.steps()));
}

} // namespace RVCore
