#include <CoreGraphics/PixelGrid.h>
#include <CoreImage/FilterStep.h>

#include <QuartzCore/CompositionPlan.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

using Kind = CompositionItem::Kind;

bool isUpright(const CGAffineTransform& placement)
{
    return placement.b == 0 && placement.c == 0;
}

// Nothing where an edge is not a number, as those of what is infinitely far away may be.
PixelRect between(CGFloat left, CGFloat top, CGFloat right, CGFloat bottom)
{
    for (const CGFloat edge : {left, top, right, bottom}) {
        if (std::isnan(edge))
            return {};
    }
    const auto whole = [](CGFloat edge) {
        constexpr CGFloat furthest = 1 << 24; // beyond any area
        return static_cast<int>(std::clamp(edge, -furthest, furthest));
    };
    return {whole(left), whole(top), whole(right) - whole(left), whole(bottom) - whole(top)};
}

} // namespace

Composition& CompositionPlan::begin()
{
    std::swap(m_now, m_before);
    std::swap(m_places, m_placesBefore);
    std::swap(m_groupOf, m_groupOfBefore);
    m_startsAnew = m_startsAnew || !m_isMade; // a frame that came to nothing cannot be compared with
    m_isMade = false;
    m_now.clear();
    return m_now;
}

ClipOutline CompositionPlan::outlineOf(const CompositionItem& group)
{
    return {group.placement, group.size, group.cornerRadius};
}

void CompositionPlan::make(Surface& area, CGFloat scale)
{
    if (scale != m_scale || m_startsAnew) {
        m_scale = scale;
        m_startsAnew = false;
        area.damageAll();
        m_before.clear();
    }
    placeItems(area.place);
    matchUp();
    m_groupOf.assign(m_now.items().size(), nullptr);
    for (const auto& group : m_groups)
        group->isUsed = false;
    m_open.assign(1, &area);
    const auto count = static_cast<std::uint32_t>(m_now.items().size());
    for (std::uint32_t index = 0; index < count; ++index) {
        if (index == m_sameAtStart)
            planReplaced();
        switch (item(index).kind) {
        case Kind::group:
            planGroup(index);
            break;
        case Kind::end:
            planEnd(index);
            break;
        default:
            planDrawn(index);
        }
    }
    if (m_sameAtStart == count)
        planReplaced();
    std::erase_if(m_groups, [](const auto& group) { return !group->isUsed; });
    // The next frame uses what the one before had.
    m_before.reserveFor(m_now);
    m_placesBefore.reserve(m_places.capacity());
    m_groupOfBefore.reserve(m_groupOf.capacity());
    area.damage.clip(area.place);
    m_isMade = true;
}

// Every pixel that the item may touch: turned edges blend into the pixels next to them, and what is thinner than a
// pixel takes a whole one.
PixelRect CompositionPlan::pixelsOf(const CompositionItem& item) const
{
    const CGRect rect = item.placement.apply(CGRect({}, item.size));
    const CGFloat margin = isUpright(item.placement) ? 0 : 1;
    const auto low = [&](CGFloat edge) { return std::floor(edge * m_scale) - margin; };
    const auto high = [&](CGFloat start, CGFloat end) {
        return std::max(std::ceil(end * m_scale) + margin, nearestPixel(start * m_scale) + 1);
    };
    return between(low(rect.minX()), low(rect.minY()), high(rect.minX(), rect.maxX()),
                   high(rect.minY(), rect.maxY()));
}

// What is inside the outline: straight edges cut at the nearest pixel's.
PixelRect CompositionPlan::insideOf(const CompositionItem& group) const
{
    if (!isUpright(group.placement))
        return pixelsOf(group);
    const CGRect rect = group.placement.apply(CGRect({}, group.size));
    return between(nearestPixel(rect.minX() * m_scale), nearestPixel(rect.minY() * m_scale),
                   nearestPixel(rect.maxX() * m_scale), nearestPixel(rect.maxY() * m_scale));
}

// A group's place is around those of what it contains, and around its outline where its background is filtered.
void CompositionPlan::placeItems(const PixelRect& area)
{
    const auto& items = m_now.items();
    m_places.assign(items.size(), PixelRect());
    m_clips.assign(1, area);
    for (std::size_t i = 0; i < items.size(); ++i) {
        const CompositionItem& item = items[i];
        if (item.kind == Kind::group) {
            const PixelRect outline = pixelsOf(item).intersection(m_clips.back());
            if (item.backgroundFilterCount > 0)
                m_places[i] = outline;
            m_clips.push_back(item.clips ? outline : m_clips.back());
            continue;
        }
        if (item.kind == Kind::end) {
            m_clips.pop_back();
            const CompositionItem& group = items[item.group];
            PixelRect& place = m_places[item.group];
            const int reach = place.isEmpty() ? 0 : reachOf(group.filters(m_now.steps()), m_scale);
            place = place.insetBy(-reach, -reach).intersection(m_clips.back());
            m_places[i] = m_places[item.group];
        } else {
            m_places[i] = pixelsOf(item).intersection(m_clips.back());
        }
        const std::uint32_t outer = item.kind == Kind::end ? items[item.group].group : item.group;
        if (outer != CompositionItem::none)
            m_places[outer] = m_places[outer].unionWith(m_places[i]);
    }
}

void CompositionPlan::matchUp()
{
    const auto& now = m_now.items();
    const auto& before = m_before.items();
    const std::size_t shorter = std::min(now.size(), before.size());
    m_sameAtStart = 0;
    while (m_sameAtStart < shorter && now[m_sameAtStart].isSameAs(before[m_sameAtStart]))
        ++m_sameAtStart;
    m_sameAtEnd = 0;
    while (m_sameAtEnd < shorter - m_sameAtStart &&
           now[now.size() - 1 - m_sameAtEnd].isSameAs(before[before.size() - 1 - m_sameAtEnd]))
        ++m_sameAtEnd;
}

std::uint32_t CompositionPlan::counterpart(std::uint32_t index) const
{
    const std::size_t count = m_now.items().size();
    if (index < m_sameAtStart)
        return index;
    if (index >= count - m_sameAtEnd)
        return static_cast<std::uint32_t>(index + m_before.items().size() - count);
    return CompositionItem::none;
}

// What stood between the matched ends in the frame before.
void CompositionPlan::planReplaced()
{
    for (std::size_t i = m_sameAtStart; i < m_before.items().size() - m_sameAtEnd; ++i)
        innermost().damage.add(m_placesBefore[i]);
}

void CompositionPlan::planDrawn(std::uint32_t index)
{
    const std::uint32_t before = counterpart(index);
    if (before == CompositionItem::none) {
        innermost().damage.add(m_places[index]);
    } else if (!looksSame(item(index), m_now, itemBefore(before), m_before) ||
               m_places[index] != m_placesBefore[before]) {
        innermost().damage.add(m_placesBefore[before]);
        innermost().damage.add(m_places[index]);
    }
}

void CompositionPlan::planGroup(std::uint32_t index)
{
    const std::uint32_t before = counterpart(index);
    CompositionGroup* known = before == CompositionItem::none ? nullptr : m_groupOfBefore[before];
    if (!known)
        known = m_groups.emplace_back(std::make_unique<CompositionGroup>()).get();
    m_groupOf[index] = known;
    CompositionGroup& group = *known;
    group.isUsed = true;

    const CompositionItem& item = this->item(index);
    const bool looksNew = before == CompositionItem::none || !looksSame(item, m_now, itemBefore(before), m_before) ||
                          m_places[index] != m_placesBefore[before];
    planBackground(index, before);
    Surface& around = innermost();
    if (looksNew) {
        if (before != CompositionItem::none)
            around.damage.add(m_placesBefore[before]);
        around.damage.add(m_places[index]);
    }
    const bool hadSurface = group.hasSurface;
    group.hasSurface = item.opacity < 1 || !areNeutral(item.filters(m_now.steps()));
    if (!group.hasSurface) {
        if (hadSurface)
            group.releaseContent(); // of no use until the next fade
        return;
    }
    group.content.damage.clear();
    group.content.setPlace(m_places[index]);
    group.isContentFilterNew =
        !hadSurface || !std::ranges::equal(item.filters(m_now.steps()), itemBefore(before).filters(m_before.steps()));
    if (!hadSurface)
        group.content.damageAll();
    collectOutlines(index, false, around.place, group.contentMask);
    m_open.push_back(&group.content);
}

void CompositionPlan::planBackground(std::uint32_t index, std::uint32_t before)
{
    const CompositionItem& item = this->item(index);
    CompositionGroup& group = *m_groupOf[index];
    const auto steps = item.backgroundFilters(m_now.steps());
    const bool keptBackground = group.keepsBackground;
    const bool filteredBackground = group.filtersBackground;
    // A translucent group that is new has most likely begun to fade, and filters that are neutral will not stay so.
    const bool isFading = item.opacity != (before == CompositionItem::none ? 1 : itemBefore(before).opacity);
    group.filtersBackground = !areNeutral(steps);
    group.keepsBackground = !steps.empty() || isFading;
    if (!group.keepsBackground) {
        if (keptBackground)
            group.releaseBackground();
        return;
    }
    Surface& around = innermost();
    if (!steps.empty())
        collectOutlines(index, true, around.place, group.backgroundMask);
    // What is faded may reach beyond the outline.
    const PixelRect visible =
        steps.empty() ? m_places[index].intersection(around.place) : group.backgroundMask.visible;
    const bool isNew = !keptBackground || visible != group.background.place;
    group.background.setPlace(visible);
    if (isNew && isBehindInSight(index, visible))
        copyPixels(around.placed(), group.background.target(), visible);
    else if (isNew)
        around.damage.add(visible);
    // What was damaged so far is what stands behind the group.
    group.background.damage = around.damage;
    group.background.damage.clip(visible);
    if (!group.filtersBackground)
        return;
    if (isNew || !filteredBackground ||
        !std::ranges::equal(steps, itemBefore(before).backgroundFilters(m_before.steps()))) {
        group.backgroundReach.clear();
        group.backgroundReach.add(visible);
    } else {
        group.backgroundReach = group.background.damage.grownBy(reachOf(steps, m_scale));
        group.backgroundReach.clip(visible);
    }
    around.damage.add(group.backgroundReach);
}

// Whether what stands behind the item, which is new, was to be seen there in the frame before, but for what is
// damaged: nothing that stays was painted over it.
bool CompositionPlan::isBehindInSight(std::uint32_t index, const PixelRect& rect) const
{
    const auto& before = m_before.items();
    if (before.empty() || index != m_sameAtStart)
        return false;
    for (std::size_t i = before.size() - m_sameAtEnd; i < before.size(); ++i) {
        if (before[i].kind != Kind::end && !m_placesBefore[i].intersection(rect).isEmpty())
            return false;
    }
    return true;
}

void CompositionPlan::planEnd(std::uint32_t index)
{
    const std::uint32_t begin = item(index).group;
    CompositionGroup& group = *m_groupOf[begin];
    if (!group.hasSurface)
        return;
    m_open.pop_back();
    const int reach = reachOf(item(begin).filters(m_now.steps()), m_scale);
    innermost().damage.add(group.content.damage.grownBy(reach));
    group.content.damage.clip(group.content.place);
}

// The outlines that cut the group between itself and the surface around it.
void CompositionPlan::collectOutlines(std::uint32_t index, bool withOwn, const PixelRect& around,
                                      OutlineMask& mask) const
{
    mask.outlines.clear();
    mask.visible = around;
    const auto cut = [&](const CompositionItem& group) {
        mask.visible = mask.visible.intersection(insideOf(group));
        if (group.cornerRadius > 0 || !isUpright(group.placement))
            mask.outlines.push_back(outlineOf(group));
    };
    if (withOwn)
        cut(item(index));
    for (std::uint32_t outer = item(index).group; outer != CompositionItem::none; outer = item(outer).group) {
        if (item(outer).clips)
            cut(item(outer));
        if (m_groupOf[outer]->hasSurface)
            break;
    }
}

} // namespace RVCore
