#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <memory>
#include <vector>

namespace RVCore {

// Appends the members of a tree to the list from the lowest to the topmost: by z position, equal ones in order. By
// insertion, which allocates nothing beyond the list and is quick when nearly all are in order, as they are.
template <class Member, class ZPosition>
void appendInPaintingOrder(const std::vector<std::shared_ptr<Member>>& members, const ZPosition& zPosition,
                           std::vector<Member*>& list)
{
    const std::size_t first = list.size();
    for (const auto& member : members) {
        const CGFloat z = zPosition(*member);
        std::size_t at = list.size();
        list.push_back(nullptr);
        for (; at > first && zPosition(*list[at - 1]) > z; --at)
            list[at] = list[at - 1];
        list[at] = member.get();
    }
}

} // namespace RVCore
