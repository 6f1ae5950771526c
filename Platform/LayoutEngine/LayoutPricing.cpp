#include "LayoutSimplex.h"

#include <cmath>

namespace RVCore::LayoutInternal {

std::vector<double>& Simplex::pricesOf(Index level)
{
    std::vector<double>& prices = m_prices[level];
    if (prices.empty()) {
        prices.assign(m_basis.rows.size(), 0.0);
        m_pricedLevels.push_back(level);
    }
    return prices;
}

void Simplex::resetPrices()
{
    for (const Index level : m_pricedLevels)
        m_prices[level].clear();
    m_pricedLevels.clear();
    for (const Index level : m_changedLevels)
        m_slopeChanges[level].clear();
    m_changedLevels.clear();
    m_priceUpdates = 0;
    m_priceScale = m_slopeScale;
}

void Simplex::addToPrice(Index level, Index position, double amount)
{
    double& price = pricesOf(level)[position];
    price = sum(price, amount, 1e-14);
    m_priceScale[level] = std::max(m_priceScale[level], std::abs(price));
    m_touchedPositions.insert(position);
}

void Simplex::noteSlopeChange(Index level, Index row, double change)
{
    if (m_slopeChanges[level].empty())
        m_changedLevels.push_back(level);
    m_slopeChanges[level].push_back({row, change});
}

// Notes that a row outside the basis charges its slopes of a segment from now on (factor 1) or no longer (-1).
void Simplex::noteSlopes(Index row, Index segment, double factor)
{
    m_system->visitSlopes(row, segment, [&](Index level, double slope) {
        if (level >= m_system->firstFreeLevel())
            return;
        noteSlopeChange(level, row, factor * slope);
        if (level == 0)
            m_suspects.insert(row);
    });
}

void Simplex::applySlopeChanges()
{
    if (m_changedLevels.empty())
        return;
    ++m_priceUpdates;
    for (const Index level : m_changedLevels) {
        for (const Term& change : m_slopeChanges[level]) {
            for (const Term& term : m_system->terms(change.column))
                m_work->byColumn.add(term.column, change.coefficient * term.coefficient);
        }
        m_slopeChanges[level].clear();
        m_factor.solveTransposed(m_work->byColumn, m_work->byPosition);
        for (const Index position : m_work->byPosition.indices()) {
            if (m_work->byPosition[position] != 0.0)
                addToPrice(level, position, m_work->byPosition[position]);
        }
        m_work->byPosition.clear();
    }
    m_changedLevels.clear();
}

Index Simplex::firstLevel(const SparseVector& sums) const
{
    Index first = none;
    for (const Index level : sums.indices()) {
        if (level < first && std::abs(sums[level]) > priceTolerance(level))
            first = level;
    }
    return first;
}

// The prices of a free level are only asked of rows that can move without a loss on all levels above. This adds what
// the step that m_work->rates describes costs there.
void Simplex::addFreePrices(SparseVector& sums)
{
    for (const Index row : m_work->rates.indices()) {
        if (isBasic(row) || !m_system->isOwnRow(row))
            continue;
        m_system->visitSlopes(row, m_spot[row], [&](Index level, double slope) {
            if (level >= m_system->firstFreeLevel())
                sums.addCost(level, m_work->rates[row] * slope);
        });
    }
}

// Of few positions one by one; of more of them, all at once, since each may move as much as there is.
void Simplex::addFreePricesOf(Index position)
{
    constexpr int mostOneByOne = 4;
    if (m_freePricesAsked < mostOneByOne) {
        ++m_freePricesAsked;
        findRates(position, 1);
        addFreePrices(m_work->upSums);
        addFreePrices(m_work->downSums);
        m_work->direction.clear();
        m_work->rates.clear();
        return;
    }
    if (m_freePrices.empty())
        findFreePrices();
    const Index first = m_system->firstFreeLevel();
    for (Index level = first; level < m_system->levelCount(); ++level) {
        m_work->upSums.addCost(level, m_freePrices[level - first][position]);
        m_work->downSums.addCost(level, m_freePrices[level - first][position]);
    }
}

void Simplex::findFreePrices()
{
    for (Index level = m_system->firstFreeLevel(); level < m_system->levelCount(); ++level) {
        for (Index column = 0; column < m_system->columnCount(); ++column) {
            const Index row = m_system->ownRow(column);
            if (isBasic(row))
                continue;
            m_system->visitSlopes(row, m_spot[row], [&](Index its, double slope) {
                if (its == level)
                    m_work->byColumn.add(column, slope);
            });
        }
        m_factor.solveTransposed(m_work->byColumn, m_work->byPosition);
        std::vector<double>& prices = m_freePrices.emplace_back(m_basis.rows.size(), 0.0);
        for (const Index position : m_work->byPosition.indices())
            prices[position] = m_work->byPosition[position];
        m_work->byPosition.clear();
    }
}

// Whether the basic row gains by moving up or down. It cannot gain both ways, the cost being convex.
Simplex::Candidate Simplex::evaluate(Index position)
{
    const Index row = m_basis.rows[position];
    const Index kink = m_spot[row];
    for (const Piece piece : m_system->pieces(row)) {
        m_work->upSums.addCost(piece.level, piece.kink <= kink ? piece.right : piece.left);
        m_work->downSums.addCost(piece.level, piece.kink < kink ? piece.right : piece.left);
    }
    for (const Index level : m_pricedLevels) {
        if (const double price = m_prices[level][position]; price != 0.0) {
            m_work->upSums.addCost(level, price);
            m_work->downSums.addCost(level, price);
        }
    }
    const Index free = m_system->firstFreeLevel();
    if (firstLevel(m_work->upSums) >= free || firstLevel(m_work->downSums) >= free) {
        m_freePositions.insert(position);
        addFreePricesOf(position);
    }
    Candidate result{.position = position};
    if (const Index up = firstLevel(m_work->upSums); up != none && m_work->upSums[up] < 0.0)
        result = {position, 1, up, -m_work->upSums[up]};
    else if (const Index down = firstLevel(m_work->downSums); down != none && m_work->downSums[down] > 0.0)
        result = {position, -1, down, m_work->downSums[down]};
    m_work->upSums.clear();
    m_work->downSums.clear();
    return result;
}

void Simplex::evaluateTouched()
{
    for (const Index position : m_touchedPositions.indices())
        noteCandidate(evaluate(position));
    m_touchedPositions.clear();
    m_freePricesAsked = 0;
    m_freePrices.clear();
}

// Of rows that are free above, since what else they move may have passed 0 meanwhile.
void Simplex::evaluateFree()
{
    for (const Index position : m_freePositions.indices())
        m_touchedPositions.insert(position);
    m_freePositions.clear();
    evaluateTouched();
}

void Simplex::noteCandidate(const Candidate& candidate)
{
    Index& place = m_work->candidateOf[candidate.position];
    if (place != none) {
        m_work->candidates[place] = candidate;
    } else if (candidate.direction != 0) {
        place = Index(m_work->candidates.size());
        m_work->candidates.push_back(candidate);
    }
}

void Simplex::forgetCandidates()
{
    for (const Candidate& candidate : m_work->candidates)
        m_work->candidateOf[candidate.position] = none;
    m_work->candidates.clear();
}

// The gain at the highest level, the largest there; under the least-index rule the lowest row.
const Simplex::Candidate* Simplex::choose() const
{
    const Candidate* best = nullptr;
    for (const Candidate& candidate : m_work->candidates) {
        if (candidate.direction == 0 || m_work->banned.contains(candidate.position))
            continue;
        const auto isBetter = [&] {
            const Index row = m_basis.rows[candidate.position];
            const Index bestRow = m_basis.rows[best->position];
            if (m_takesLeastIndex)
                return row < bestRow;
            if (candidate.level != best->level)
                return candidate.level < best->level;
            if (candidate.gain != best->gain)
                return candidate.gain > best->gain;
            return row < bestRow;
        };
        if (!best || isBetter())
            best = &candidate;
    }
    return best;
}

double Simplex::price(Index position, Index level) const
{
    return m_prices[level].empty() ? 0.0 : m_prices[level][position];
}

std::vector<Index> Simplex::pricedRows(Index level) const
{
    std::vector<Index> result;
    for (Index row = 0; row < m_system->rowCount(); ++row) {
        // Outside the basis both slopes are the one of the segment.
        double up = 0.0;
        double down = 0.0;
        for (const Piece piece : m_system->pieces(row)) {
            if (piece.level != level)
                continue;
            up += piece.kink < m_spot[row] || (isBasic(row) && piece.kink == m_spot[row]) ? piece.right : piece.left;
            down += piece.kink < m_spot[row] ? piece.right : piece.left;
        }
        const double width = priceTolerance(level);
        const bool isPriced = isBasic(row) && std::abs(price(m_basis.places[row], level)) > width;
        if (isPriced || down > width || up < -width)
            result.push_back(row);
    }
    return result;
}

} // namespace RVCore::LayoutInternal
