#include "LayoutConflictSearch.h"

#include "LayoutProfile.h"

#include <cmath>
#include <unordered_map>

namespace RVCore::LayoutInternal {

namespace {

class Search {
public:
    Search(const Model& model, const std::vector<Index>& constraints);
    std::vector<std::vector<Index>> run(Effort&);

private:
    Piece cost(Index level) const;
    void setCosts(Index row);
    bool isViolated(Index level) const;
    Index firstViolated() const;
    bool findHolding(Index level, std::vector<Index>& result) const;
    std::vector<Index> contradicted(Index level, Effort&);
    std::vector<Index> chargingUpTo(Index level) const;
    std::vector<Index> reduced(const std::vector<Index>& levels, Effort&) const;
    std::vector<Index> droppingOneByOne(Effort&);
    std::vector<Index> allUpTo(Index level) const;
    void setOut(Index level, bool isOut);
    Index blocker(Index row, bool isUpward, Index level) const;

    const Model& m_model;
    const std::vector<Index>& m_constraints;    // by level
    std::vector<Index> m_rowOf;                 // by level
    std::vector<std::uint8_t> m_isOut;          // by level
    std::vector<std::vector<Index>> m_levelsOf; // by row
    std::vector<Piece> m_costs;
    System m_system;
    SimplexWork m_work;
    Simplex m_simplex{m_work};
};

Search::Search(const Model& model, const std::vector<Index>& constraints)
    : m_model(model), m_constraints(constraints), m_rowOf(constraints.size()), m_isOut(constraints.size(), 0)
{
    std::unordered_map<Index, Index> columns, rows;
    for (const Index constraint : constraints) {
        for (const Term& term : model.terms(model.constraints()[constraint].formClass))
            columns.try_emplace(term.column, Index(columns.size()));
    }
    m_system.clear(Index(constraints.size()) + 1, 1);
    for (Index column = 0; column < columns.size(); ++column)
        m_system.addColumn();
    std::vector<Term> form;
    for (Index level = 0; level < constraints.size(); ++level) {
        const Index index = model.constraints()[constraints[level]].formClass;
        const auto [place, isNew] = rows.try_emplace(index, none);
        if (isNew) {
            form.clear();
            for (const Term& term : model.terms(index))
                form.push_back({columns[term.column], term.coefficient});
            place->second = form.size() == 1 ? m_system.ownRow(form.front().column) : m_system.addRow(form);
        }
        m_rowOf[level] = place->second;
    }
    m_system.finish();
    m_levelsOf.resize(m_system.rowCount());
    for (Index level = 0; level < constraints.size(); ++level)
        m_levelsOf[m_rowOf[level]].push_back(level);
    for (Index row = 0; row < m_system.rowCount(); ++row) {
        setCosts(row);
        m_system.setPieces(row, m_costs);
    }
    m_simplex.start(m_system);
}

Piece Search::cost(Index level) const
{
    const Index index = m_constraints[level];
    return costOf(m_model.constraints()[index], m_model.scale(index), level);
}

void Search::setCosts(Index row)
{
    m_costs.clear();
    for (const Index level : m_levelsOf[row]) {
        if (!m_isOut[level])
            m_costs.push_back(cost(level));
    }
    if (m_system.isOwnRow(row))
        m_costs.push_back({0.0, -1.0, 1.0, 0, Index(m_constraints.size())});
    makeProfile(m_costs);
}

void Search::setOut(Index level, bool isOut)
{
    if (bool(m_isOut[level]) == isOut)
        return;
    m_isOut[level] = isOut;
    setCosts(m_rowOf[level]);
    m_simplex.setPieces(m_rowOf[level], m_costs);
}

bool Search::isViolated(Index level) const
{
    const double width = 100.0 * m_simplex.tolerance();
    const Piece charged = cost(level);
    const double distance = m_simplex.rowValue(m_rowOf[level]) - charged.at;
    return !m_isOut[level] &&
           ((distance > width && charged.right > 0.0) || (distance < -width && charged.left < 0.0));
}

Index Search::firstViolated() const
{
    for (Index level = 0; level < m_constraints.size(); ++level) {
        if (isViolated(level))
            return level;
    }
    return none;
}

// The oldest constraint that keeps a basic row from being moved off its kink.
Index Search::blocker(Index row, bool isUpward, Index level) const
{
    for (const Piece piece : m_system.piecesOfKink(row, m_simplex.spot(row))) {
        if (piece.level < level && (isUpward ? piece.right > 0.0 : piece.left < 0.0))
            return piece.level;
    }
    return none;
}

// The rows that hold back a violated constraint, and itself. False when one of them is not to be seen from the basis.
bool Search::findHolding(Index level, std::vector<Index>& result) const
{
    result.clear();
    const double scale = std::abs(m_model.scale(m_constraints[level]));
    for (Index row = 0; row < m_system.rowCount(); ++row) {
        if (!m_simplex.isBasic(row))
            continue;
        double price = m_simplex.price(m_simplex.positionOf(row), level);
        if (row == m_rowOf[level])
            m_system.visitSlopes(row, m_simplex.spot(row),
                                 [&](Index its, double slope) { price += its == level ? slope : 0.0; });
        if (std::abs(price) <= 1e-9 * scale)
            continue;
        const Index found = blocker(row, price < 0.0, level);
        if (found == none)
            return false;
        result.push_back(found);
    }
    result.push_back(level);
    std::sort(result.begin(), result.end());
    return true;
}

std::vector<Index> Search::contradicted(Index level, Effort& effort)
{
    std::vector<Index> result;
    if (findHolding(level, result))
        return result;
    result = reduced(chargingUpTo(level), effort);
    if (result.empty())
        result = reduced(allUpTo(level), effort); // they were too few after all
    if (result.empty())
        result.push_back(level); // rounding; the constraint cannot be met all the same
    return result;
}

std::vector<Index> Search::allUpTo(Index level) const
{
    std::vector<Index> result;
    for (Index its = 0; its <= level; ++its) {
        if (!m_isOut[its])
            result.push_back(its);
    }
    return result;
}

// Where rows outside the basis stand at a kink, one of them may be what keeps a basic row in its place. Those that
// charge or have a price at any level hold the contradiction then, with others.
std::vector<Index> Search::chargingUpTo(Index level) const
{
    std::vector<Index> result;
    for (Index row = 0; row < m_system.rowCount(); ++row) {
        bool isCharging = false;
        for (Index higher = 0; higher <= level && !isCharging && m_simplex.isBasic(row); ++higher)
            isCharging = m_simplex.price(m_simplex.positionOf(row), higher) != 0.0;
        m_system.visitSlopes(row, m_simplex.spot(row), [&](Index its, double) { isCharging |= its <= level; });
        for (const Index its : m_levelsOf[row]) {
            if (isCharging && its < level && !m_isOut[its])
                result.push_back(its);
        }
    }
    std::sort(result.begin(), result.end());
    result.push_back(level);
    return result;
}

// The contradiction among some of the constraints, the last of which is contradicted, in a system of their own: that
// is small however large this one is.
std::vector<Index> Search::reduced(const std::vector<Index>& levels, Effort& effort) const
{
    std::vector<Index> constraints;
    constraints.reserve(levels.size());
    for (const Index level : levels)
        constraints.push_back(m_constraints[level]);
    const std::vector<Index> kept = Search(m_model, constraints).droppingOneByOne(effort);
    std::vector<Index> result;
    result.reserve(kept.size());
    for (const Index level : kept)
        result.push_back(levels[level]);
    return result;
}

// Drops constraints, the newest first, without which the last one is violated still, until what is left is minimal:
// at the latest when all were tried. None are kept when the last one is not violated at all.
std::vector<Index> Search::droppingOneByOne(Effort& effort)
{
    const auto last = Index(m_constraints.size() - 1);
    std::vector<Index> kept;
    m_simplex.run(effort);
    if (!isViolated(last))
        return kept;
    for (Index level = last; level-- > 0;) {
        std::vector<Index> holding;
        if (findHolding(last, holding))
            return holding;
        setOut(level, true);
        m_simplex.run(effort);
        if (!isViolated(last)) {
            setOut(level, false);
            kept.push_back(level);
            m_simplex.run(effort);
        }
    }
    std::reverse(kept.begin(), kept.end());
    kept.push_back(last);
    return kept;
}

std::vector<std::vector<Index>> Search::run(Effort& effort)
{
    std::vector<std::vector<Index>> result;
    for (;;) {
        m_simplex.run(effort);
        m_simplex.forgetSuspects();
        const Index level = firstViolated();
        if (level == none)
            return result;
        std::vector<Index>& members = result.emplace_back();
        for (const Index member : contradicted(level, effort))
            members.push_back(m_constraints[member]);
        setOut(level, true);
    }
}

} // namespace

std::vector<std::vector<Index>> findConflicts(const Model& model, const std::vector<Index>& constraints,
                                              Effort& effort)
{
    return Search(model, constraints).run(effort);
}

} // namespace RVCore::LayoutInternal
