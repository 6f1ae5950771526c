#include "LayoutSimplex.h"

#include <cmath>

namespace RVCore::LayoutInternal {

namespace {

constexpr std::size_t longestStall = 30;       // steps without length before the least-index rule
constexpr std::size_t mostExchanges = 64;      // before the basis is factored again
constexpr double smallestRelativeRate = 1e-11; // below this, a rate is rounding

// The order of a heap whose front is the nearest event; rows break ties so that the order is total.
bool isFarther(double distance, Index row, double otherDistance, Index otherRow)
{
    return distance != otherDistance ? distance > otherDistance : row > otherRow;
}

} // namespace

bool Simplex::optimise(Effort& effort)
{
    m_stalled = 0;
    m_takesLeastIndex = false;
    for (std::size_t iteration = 0; iteration < iterationLimit(); ++iteration) {
        evaluateTouched();
        const Candidate* candidate = choose();
        if (!candidate) {
            evaluateFree();
            candidate = choose();
        }
        if (!candidate) {
            forgetCandidates();
            return true;
        }
        const Candidate chosen = *candidate;
        if (!step(chosen, effort)) {
            // The exchange was not safe. With exchanges in between, that may be their rounding.
            if (m_factor.exchangeCount() > 0)
                refresh(effort);
            else
                m_work->banned.insert(chosen.position);
        } else if (m_factor.exchangeCount() >= mostExchanges || m_factor.hasLongExchanges()) {
            refresh(effort);
        }
        applySlopeChanges();
    }
    ++effort.limitsReached;
    forgetCandidates();
    return false;
}

// How every column and row moves when a basic row is moved.
void Simplex::findRates(Index position, int direction)
{
    m_work->byPosition.add(position, direction);
    m_factor.solve(m_work->byPosition, m_work->direction);
    for (const Index column : m_work->direction.indices()) {
        const double rate = m_work->direction[column];
        if (rate == 0.0)
            continue;
        for (const Cell& cell : m_system->entries(column)) {
            if (!isBasic(cell.row))
                m_work->rates.add(cell.row, cell.coefficient * rate);
        }
    }
    m_smallestRate = smallestRelativeRate * std::max(1.0, m_work->rates.largest());
}

void Simplex::pushNextEvent(Index row, Index spot, bool isBasicRow)
{
    const double rate = m_work->rates[row];
    Index kink = spot;
    if (rate > 0.0) {
        kink = isBasicRow ? spot + 1 : spot;
        if (kink >= m_system->kinkCount(row))
            return;
    } else {
        if (spot == 0)
            return;
        kink = spot - 1;
    }
    const double distance = (m_system->kinkPosition(row, kink) - rowValue(row)) / rate;
    m_work->events.push_back({std::max(0.0, distance), rate, row, kink});
    std::push_heap(m_work->events.begin(), m_work->events.end(),
                   [](const Event& a, const Event& b) { return isFarther(a.distance, a.row, b.distance, b.row); });
}

void Simplex::collectEvents(Index leaving)
{
    m_work->events.clear();
    for (const Index row : m_work->rates.indices()) {
        if (std::abs(m_work->rates[row]) > m_smallestRate)
            pushNextEvent(row, m_spot[row], row == leaving);
    }
}

// Passes kinks in the order in which they are met, until the step gains nothing any more: there a row enters.
bool Simplex::findEntering(const Candidate& candidate, Event& entering)
{
    const Index leaving = m_basis.rows[candidate.position];
    const int direction = candidate.direction;
    m_system->visitSlopes(leaving, m_spot[leaving] + (direction > 0 ? 1 : 0),
                          [&](Index level, double slope) { m_work->upSums.addCost(level, direction * slope); });
    for (const Index level : m_pricedLevels)
        m_work->upSums.addCost(level, direction * m_prices[level][candidate.position]);
    addFreePrices(m_work->upSums);
    m_work->passed.clear();
    bool isFound = false;
    while (!m_work->events.empty() && !isFound) {
        std::pop_heap(m_work->events.begin(), m_work->events.end(),
                      [](const Event& a, const Event& b) { return isFarther(a.distance, a.row, b.distance, b.row); });
        const Event event = m_work->events.back();
        m_work->events.pop_back();
        for (const Piece piece : m_system->piecesOfKink(event.row, event.kink))
            m_work->upSums.addCost(piece.level, (piece.right - piece.left) * std::abs(event.rate));
        const Index level = firstLevel(m_work->upSums);
        isFound = m_takesLeastIndex || level == none || m_work->upSums[level] > 0.0;
        if (isFound) {
            entering = event;
        } else {
            m_work->passed.push_back(event);
            const bool isRising = event.rate > 0.0;
            pushNextEvent(event.row, isRising ? event.kink + 1 : event.kink, false);
        }
    }
    m_work->upSums.clear();
    return isFound;
}

void Simplex::advance(double distance)
{
    for (const Index column : m_work->direction.indices()) {
        m_values[column] += distance * m_work->direction[column];
        m_moved.insert(column);
        widenScale(column);
    }
}

bool Simplex::step(const Candidate& candidate, Effort& effort)
{
    const Index leaving = m_basis.rows[candidate.position];
    findRates(candidate.position, candidate.direction);
    m_work->rates.set(leaving, candidate.direction);
    collectEvents(leaving);
    Event entering{};
    bool isDone = findEntering(candidate, entering);
    if (isDone) {
        if (m_takesLeastIndex) {
            // Among the rows met within rounding of the first one, the lowest.
            for (const Event& event : m_work->events) {
                const double width = tolerance() / std::abs(event.rate);
                if (event.distance <= entering.distance + width && event.row < entering.row)
                    entering = event;
            }
        }
        const double length = entering.distance;
        isDone = exchange(candidate, entering, effort);
        if (isDone) {
            const bool isStalled = length * m_work->rates.largest() <= tolerance();
            m_stalled = isStalled ? m_stalled + 1 : 0;
            m_takesLeastIndex = m_stalled > longestStall;
        }
    }
    m_work->direction.clear();
    m_work->rates.clear();
    return isDone;
}

void Simplex::holdAt(Index position, Index kink)
{
    const Index row = m_basis.rows[position];
    m_spot[row] = kink;
    m_touchedPositions.insert(position);
    m_suspects.insert(row);
}

bool Simplex::exchange(const Candidate& candidate, const Event& entering, Effort& effort)
{
    const Index position = candidate.position;
    const Index leaving = m_basis.rows[position];
    const bool isRising = candidate.direction > 0;
    const auto segmentBeyond = [](const Event& event) { return event.rate > 0.0 ? event.kink + 1 : event.kink; };

    // 1. The entering row in terms of the basis; its share of the leaving row is the pivot.
    if (entering.row != leaving) {
        for (const Term& term : m_system->terms(entering.row))
            m_work->byColumn.add(term.column, term.coefficient);
        m_work->alpha.clear();
        m_factor.solveTransposed(m_work->byColumn, m_work->alpha);
        const double pivot = m_work->alpha[position];
        const bool isAsSeen = std::abs(pivot * candidate.direction - entering.rate) <= 1e-6 * std::abs(pivot);
        if (!isAsSeen || std::abs(pivot) < 1e-9 * m_work->alpha.largest())
            return false;
    }

    // 2. The rows that were passed charge their next slope.
    Index ownSegment = isRising && m_system->kinkCount(leaving) > 0 ? m_spot[leaving] + 1 : m_spot[leaving];
    const Index enteringBefore = m_spot[entering.row];
    for (const Event& event : m_work->passed) {
        if (event.row == leaving) {
            ownSegment = segmentBeyond(event);
        } else if (event.row != entering.row) {
            noteSlopes(event.row, m_spot[event.row], -1.0);
            m_spot[event.row] = segmentBeyond(event);
            noteSlopes(event.row, m_spot[event.row], 1.0);
        }
    }
    applySlopeChanges();
    if (entering.row == leaving) {
        // The row stops at another of its own kinks: the basis stays.
        ++effort.kinkMoves;
        holdAt(position, entering.kink);
        if (m_factor.exchangeCount() > 0) {
            advance(entering.distance);
        } else {
            m_affected.push_back(position);
            moveBasis(); // without the rounding of advance()
        }
        return true;
    }
    advance(entering.distance);

    // 3. The leaving row charges from outside, prices are told in terms of the new basis, the entering row
    //    charges no longer.
    const auto addSlopes = [&](Index row, Index segment, double factor) {
        m_system->visitSlopes(row, segment, [&](Index level, double slope) {
            if (level < m_system->firstFreeLevel())
                addToPrice(level, position, factor * slope);
        });
    };
    addSlopes(leaving, ownSegment, 1.0);
    for (const Index level : m_pricedLevels) {
        const double quotient = m_prices[level][position] / m_work->alpha[position];
        if (quotient == 0.0)
            continue;
        for (const Index other : m_work->alpha.indices()) {
            if (other != position && m_work->alpha[other] != 0.0)
                addToPrice(level, other, -m_work->alpha[other] * quotient);
        }
        m_prices[level][position] = quotient;
        m_priceScale[level] = std::max(m_priceScale[level], std::abs(quotient));
    }
    addSlopes(entering.row, enteringBefore, -1.0);

    // 4. The basis itself.
    m_factor.exchange(position, m_work->alpha);
    m_basis.places[leaving] = none;
    m_spot[leaving] = ownSegment;
    m_basis.rows[position] = entering.row;
    m_basis.places[entering.row] = position;
    holdAt(position, entering.kink);
    m_suspects.insert(leaving);
    ++effort.pivots;
    return true;
}

} // namespace RVCore::LayoutInternal
