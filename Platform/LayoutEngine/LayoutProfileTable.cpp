#include "LayoutProfileTable.h"

#include "LayoutHash.h"

#include <algorithm>
#include <bit>

namespace RVCore::LayoutInternal {

namespace {

std::uint32_t hashOf(std::span<const StoredPiece> pieces)
{
    std::uint64_t hash = 0;
    for (const StoredPiece& piece : pieces) {
        hash = mixed(hash, std::bit_cast<std::uint64_t>(piece.at));
        hash = mixed(hash, std::bit_cast<std::uint64_t>(piece.slope));
        hash = mixed(hash, piece.level);
    }
    return std::uint32_t(hash);
}

} // namespace

void ProfileTable::clear()
{
    m_pieces.clear();
    m_profiles.clear();
    m_free.clear();
    m_chains.clear();
    m_unusedPieces = 0;
}

Index ProfileTable::exchange(Index present, std::span<const StoredPiece> pieces)
{
    const std::uint32_t hash = hashOf(pieces);
    Index profile = none;
    if (!pieces.empty())
        profile = find(hash, pieces);
    if (profile != none) {
        ++m_profiles[profile].uses;
        release(present);
        return profile;
    }
    // What nobody else uses is written over: a resize changes the same few rows again and again.
    const bool isOwn = present != none && m_profiles[present].uses == 1;
    if (isOwn && !pieces.empty() && pieces.size() <= m_profiles[present].capacity) {
        takeOutOfChain(present);
        enter(present, hash, pieces);
        return present;
    }
    release(present);
    if (pieces.empty())
        return none;
    profile = make();
    Profile& made = m_profiles[profile];
    made.first = Index(m_pieces.size());
    made.capacity = Index(pieces.size());
    made.uses = 1;
    makeRoom(m_pieces, pieces.size());
    m_pieces.resize(m_pieces.size() + pieces.size());
    enter(profile, hash, pieces);
    return profile;
}

Index ProfileTable::find(std::uint32_t hash, std::span<const StoredPiece> wanted) const
{
    if (m_chains.empty())
        return none;
    for (Index profile = m_chains[hash & (m_chains.size() - 1)]; profile != none;
         profile = m_profiles[profile].next) {
        const auto its = pieces(profile);
        if (m_profiles[profile].hash == hash && std::equal(its.begin(), its.end(), wanted.begin(), wanted.end()))
            return profile;
    }
    return none;
}

Index ProfileTable::make()
{
    if (!m_free.empty()) {
        const Index profile = m_free.back();
        m_free.pop_back();
        return profile;
    }
    m_profiles.emplace_back();
    if (m_profiles.size() > m_chains.size())
        growChains();
    return Index(m_profiles.size() - 1);
}

void ProfileTable::enter(Index profile, std::uint32_t hash, std::span<const StoredPiece> pieces)
{
    Profile& entered = m_profiles[profile];
    std::copy(pieces.begin(), pieces.end(), m_pieces.begin() + entered.first);
    entered.count = Index(pieces.size());
    entered.hash = hash;
    Index& first = m_chains[hash & (m_chains.size() - 1)];
    entered.next = first;
    first = profile;
}

void ProfileTable::takeOutOfChain(Index profile)
{
    Index* place = &m_chains[m_profiles[profile].hash & (m_chains.size() - 1)];
    while (*place != profile)
        place = &m_profiles[*place].next;
    *place = m_profiles[profile].next;
}

void ProfileTable::release(Index profile)
{
    if (profile == none || --m_profiles[profile].uses > 0)
        return;
    takeOutOfChain(profile);
    m_unusedPieces += m_profiles[profile].capacity;
    m_profiles[profile] = {};
    m_free.push_back(profile);
    if (m_unusedPieces > 1000 && m_unusedPieces > m_pieces.size() / 2)
        compact();
}

void ProfileTable::growChains()
{
    m_chains.assign(std::max<std::size_t>(16, 2 * m_chains.size()), none);
    for (Index profile = 0; profile < m_profiles.size(); ++profile) {
        if (m_profiles[profile].uses == 0)
            continue;
        Index& first = m_chains[m_profiles[profile].hash & (m_chains.size() - 1)];
        m_profiles[profile].next = first;
        first = profile;
    }
}

void ProfileTable::compact()
{
    std::vector<StoredPiece> compact;
    compact.reserve(m_pieces.size() - m_unusedPieces);
    for (Profile& profile : m_profiles) {
        const auto first = m_pieces.begin() + profile.first;
        profile.first = Index(compact.size());
        compact.insert(compact.end(), first, first + profile.capacity);
    }
    m_pieces = std::move(compact);
    m_unusedPieces = 0;
}

} // namespace RVCore::LayoutInternal
