#include <QuartzCore/DamageRegion.h>

#include <algorithm>
#include <cstdint>

namespace RVCore {

namespace {

std::int64_t area(const PixelRect& rect)
{
    return std::int64_t{rect.width} * rect.height;
}

} // namespace

PixelRect DamageRegion::bounds() const
{
    PixelRect all;
    for (const PixelRect& rect : rects())
        all = all.unionWith(rect);
    return all;
}

void DamageRegion::add(PixelRect rect)
{
    if (rect.isEmpty())
        return;
    // What it overlaps it swallows, and with that may overlap another one.
    for (std::size_t i = 0; i < m_count;) {
        if (m_rects[i].contains(rect))
            return;
        if (m_rects[i].intersection(rect).isEmpty()) {
            ++i;
            continue;
        }
        rect = rect.unionWith(m_rects[i]);
        m_rects[i] = m_rects[--m_count];
        i = 0;
    }
    if (m_count < largestCount) {
        m_rects[m_count++] = rect;
        return;
    }
    // There is no room: it joins the one that grows least by it, as one rectangle that may swallow others in turn.
    const auto growth = [&](const PixelRect& own) { return area(own.unionWith(rect)) - area(own); };
    const auto best = std::ranges::min_element(m_rects, {}, growth);
    const PixelRect joined = best->unionWith(rect);
    *best = m_rects[--m_count];
    add(joined);
}

void DamageRegion::add(const DamageRegion& other)
{
    for (const PixelRect& rect : other.rects())
        add(rect);
}

void DamageRegion::clip(const PixelRect& rect)
{
    std::size_t count = 0;
    for (const PixelRect& own : rects()) {
        const PixelRect common = own.intersection(rect);
        if (!common.isEmpty())
            m_rects[count++] = common;
    }
    m_count = count;
}

DamageRegion DamageRegion::grownBy(int pixels) const
{
    DamageRegion grown;
    for (const PixelRect& rect : rects())
        grown.add(rect.insetBy(-pixels, -pixels));
    return grown;
}

} // namespace RVCore
