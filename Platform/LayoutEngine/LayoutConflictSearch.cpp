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
    void setCosts(Index row);
    Index firstViolated() const;
    std::vector<Index> contradicted(Index level) const;
    Index blocker(Index row, bool isUpward, Index level) const;

    const Model& m_model;
    const std::vector<Index>& m_constraints;    // by level
    std::vector<Index> m_rowOf;                 // by level
    std::vector<std::uint8_t> m_isOut;          // by level
    std::vector<std::vector<Index>> m_levelsOf; // by row
    std::vector<Piece> m_costs;
    System m_system;
    Simplex m_simplex;
};

Search::Search(const Model& model, const std::vector<Index>& constraints)
    : m_model(model), m_constraints(constraints), m_rowOf(constraints.size()), m_isOut(constraints.size(), 0)
{
    std::unordered_map<Index, Index> columns, rows;
    for (const Index constraint : constraints) {
        for (const Term& term : model.classes()[model.constraints()[constraint].formClass].terms)
            columns.try_emplace(term.column, Index(columns.size()));
    }
    m_system.clear(Index(columns.size()), Index(constraints.size()) + 1);
    for (Index column = 0; column < columns.size(); ++column)
        m_system.addRow({{{column, 1.0}}});
    std::vector<Term> form;
    for (Index level = 0; level < constraints.size(); ++level) {
        const Index index = model.constraints()[constraints[level]].formClass;
        const auto [place, isNew] = rows.try_emplace(index, none);
        if (isNew) {
            form.clear();
            for (const Term& term : model.classes()[index].terms)
                form.push_back({columns[term.column], term.coefficient});
            place->second = form.size() == 1 ? form.front().column : m_system.addRow(form);
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

void Search::setCosts(Index row)
{
    m_costs.clear();
    for (const Index level : m_levelsOf[row]) {
        if (!m_isOut[level])
            m_costs.push_back(costOf(m_model.constraints()[m_constraints[level]], level));
    }
    if (row < m_system.columnCount())
        m_costs.push_back({0.0, -1.0, 1.0, 0, Index(m_constraints.size())});
    makeProfile(m_costs);
}

Index Search::firstViolated() const
{
    const double width = 100.0 * m_simplex.tolerance();
    for (Index level = 0; level < m_constraints.size(); ++level) {
        if (m_isOut[level])
            continue;
        const Piece cost = costOf(m_model.constraints()[m_constraints[level]], level);
        const double distance = m_simplex.rowValue(m_rowOf[level]) - cost.at;
        if ((distance > width && cost.right > 0.0) || (distance < -width && cost.left < 0.0))
            return level;
    }
    return none;
}

// The oldest constraint that keeps a basic row from being moved off its kink.
Index Search::blocker(Index row, bool isUpward, Index level) const
{
    for (const Piece& piece : m_system.piecesOfKink(row, m_simplex.spot(row))) {
        if (piece.level < level && (isUpward ? piece.right > 0.0 : piece.left < 0.0))
            return piece.level;
    }
    return none;
}

std::vector<Index> Search::contradicted(Index level) const
{
    std::vector<Index> result;
    const double scale = std::abs(m_model.constraints()[m_constraints[level]].scale);
    for (Index row = 0; row < m_system.rowCount(); ++row) {
        if (!m_simplex.isBasic(row))
            continue;
        double price = m_simplex.price(m_simplex.positionOf(row), level);
        if (row == m_rowOf[level])
            m_system.visitSlopes(row, m_simplex.spot(row),
                                 [&](Index its, double slope) { price += its == level ? slope : 0.0; });
        if (std::abs(price) <= 1e-9 * scale)
            continue;
        if (const Index found = blocker(row, price < 0.0, level); found != none)
            result.push_back(found);
    }
    result.push_back(level);
    std::sort(result.begin(), result.end());
    return result;
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
        for (const Index member : contradicted(level))
            members.push_back(m_constraints[member]);
        m_isOut[level] = 1;
        setCosts(m_rowOf[level]);
        m_simplex.setPieces(m_rowOf[level], m_costs);
    }
}

} // namespace

std::vector<std::vector<Index>> findConflicts(const Model& model, const std::vector<Index>& constraints,
                                              Effort& effort)
{
    return Search(model, constraints).run(effort);
}

} // namespace RVCore::LayoutInternal
