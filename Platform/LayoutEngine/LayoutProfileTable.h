#pragma once

#include "LayoutPieces.h"

#include <span>
#include <vector>

namespace RVCore::LayoutInternal {

// The costs of a System's rows. Rows with equal ones share them: there are dozens of constraints for each view, and
// most say the same as those of other views (an edge is another's, a size is not below 0, a gap is 8 wide).
class ProfileTable {
public:
    void clear();
    std::span<const StoredPiece> pieces(Index profile) const
    {
        const Profile& record = m_profiles[profile];
        return {m_pieces.data() + record.first, record.count};
    }
    // The profile with these pieces for a row that so far had another one (none for none); none for no pieces.
    Index exchange(Index present, std::span<const StoredPiece>);

private:
    struct Profile {
        Index first = 0, count = 0, capacity = 0;
        Index uses = 0;
        Index next = none; // in its chain
        std::uint32_t hash = 0;
    };

    Index find(std::uint32_t hash, std::span<const StoredPiece>) const;
    Index make();
    void enter(Index profile, std::uint32_t hash, std::span<const StoredPiece>);
    void takeOutOfChain(Index profile);
    void release(Index profile);
    void growChains();
    void compact();

    std::vector<StoredPiece> m_pieces;
    std::vector<Profile> m_profiles;
    std::vector<Index> m_free;
    std::vector<Index> m_chains; // the first profile of each, by hash; as many as a power of two
    std::size_t m_unusedPieces = 0;
};

} // namespace RVCore::LayoutInternal
