#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace RVCore {

class NSLayoutConstraint;

// Constraints that refer to one view, as often as they do. Each keeps its place until it is removed, so whoever
// removes it touches no other constraint; places that have become free are used again. The first few live in the list
// itself: nearly all views have no more.
class ConstraintReferences {
public:
    std::uint32_t add(NSLayoutConstraint& constraint); // its place
    void remove(std::uint32_t place);

    bool isEmpty() const { return m_count == 0; }
    // Places are below this.
    std::uint32_t placeCount() const { return m_placeCount; }
    NSLayoutConstraint* at(std::uint32_t place) const; // null for a free one
    template <class Visit> void forEach(const Visit& visit) const
    {
        for (std::uint32_t place = 0; place < m_placeCount; ++place) {
            if (NSLayoutConstraint* constraint = at(place))
                visit(*constraint);
        }
    }

private:
    // A constraint's address, or, marked by the lowest bit, the place of the next free one.
    using Slot = std::uintptr_t;
    static constexpr std::uint32_t inlineCount = 7;
    static constexpr std::uint32_t none = 0x7fffffff;

    Slot& slot(std::uint32_t place)
    {
        return place < inlineCount ? m_first[place] : (*m_others)[place - inlineCount];
    }
    const Slot& slot(std::uint32_t place) const
    {
        return place < inlineCount ? m_first[place] : (*m_others)[place - inlineCount];
    }

    std::uint32_t m_count = 0;
    std::uint32_t m_placeCount = 0;
    std::uint32_t m_firstFree = none;
    std::array<Slot, inlineCount> m_first{};
    std::unique_ptr<std::vector<Slot>> m_others;
};

} // namespace RVCore
