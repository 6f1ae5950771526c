#include <AppKit/ConstraintReferences.h>

namespace RVCore {

std::uint32_t ConstraintReferences::add(NSLayoutConstraint& constraint)
{
    const auto entry = reinterpret_cast<Slot>(&constraint);
    ++m_count;
    if (m_firstFree != none) {
        const std::uint32_t place = m_firstFree;
        m_firstFree = static_cast<std::uint32_t>(slot(place) >> 1);
        slot(place) = entry;
        return place;
    }
    if (m_placeCount >= inlineCount) {
        if (!m_others)
            m_others = std::make_unique<std::vector<Slot>>();
        // What a group is referred to by is a long list, and stays.
        if (m_others->size() == m_others->capacity())
            m_others->reserve(m_others->size() + m_others->size() / 4 + 8);
        m_others->push_back(entry);
    } else {
        m_first[m_placeCount] = entry;
    }
    return m_placeCount++;
}

void ConstraintReferences::remove(std::uint32_t place)
{
    if (--m_count > 0) {
        slot(place) = Slot(m_firstFree) << 1 | 1;
        m_firstFree = place;
        return;
    }
    m_placeCount = 0;
    m_firstFree = none;
    if (m_others)
        m_others->clear();
}

NSLayoutConstraint* ConstraintReferences::at(std::uint32_t place) const
{
    const Slot entry = slot(place);
    return (entry & 1) != 0 ? nullptr : reinterpret_cast<NSLayoutConstraint*>(entry);
}

} // namespace RVCore
