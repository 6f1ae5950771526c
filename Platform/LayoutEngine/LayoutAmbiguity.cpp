#include "LayoutAmbiguity.h"

#include "LayoutProfile.h"

namespace RVCore::LayoutInternal {

namespace {

// A copy of a system and its solution in which columns can be pulled from where they are.
class Probe {
public:
    Probe(const System& system, const Simplex& simplex) : m_settled(system), m_system(system), m_simplex(simplex)
    {
        m_simplex.moveTo(m_system);
    }
    // Pulls a column to a value, as hard as its first free level otherwise keeps it from falling below 0.
    void pull(Index column, double from, double to);
    void release(Index column) { setPull(column, {}); }
    bool run(Effort& effort) { return m_simplex.run(effort); }
    double value(Index column) const { return m_simplex.value(column); }

private:
    void setPull(Index column, const Piece&);

    const System& m_settled;
    System m_system;
    Simplex m_simplex;
    std::vector<Piece> m_costs;
};

void Probe::pull(Index column, double from, double to)
{
    double weight = 0.0;
    for (const Piece piece : m_settled.pieces(m_settled.ownRow(column))) {
        if (piece.level == m_settled.firstFreeLevel())
            weight = -piece.left;
    }
    setPull(column, {to, to > from ? -weight : 0.0, to < from ? weight : 0.0, 0, m_settled.firstFreeLevel()});
}

void Probe::setPull(Index column, const Piece& pull)
{
    const Index row = m_settled.ownRow(column);
    m_costs.clear();
    for (const Piece piece : m_settled.pieces(row)) {
        if (piece.level != m_settled.firstFreeLevel())
            m_costs.push_back(piece);
    }
    if (pull.left != pull.right)
        m_costs.push_back(pull);
    makeProfile(m_costs);
    m_simplex.setPieces(row, m_costs);
}

} // namespace

// Where kinks meet, a column may only be able to move together with others, in a way that no single basic row shows.
// So all columns in question are pulled at once, first up and then down, at a level that nothing above gives way to.
// Their weights are scattered: a way in which some of them can move does not by accident gain nothing both ways. So
// when none moves, none can.
std::vector<Index> ambiguousColumns(const System& system, Simplex& simplex, Effort& effort)
{
    std::vector<Index> result;
    std::vector<Index> open = simplex.movableColumns();
    if (open.empty())
        return result;
    const double width = 100.0 * simplex.tolerance();
    const double distance = 1e10 * simplex.tolerance();
    const auto settled = [&](Index column) { return simplex.value(column); };
    Probe probe(system, simplex);
    for (bool isAnyFound = true; isAnyFound && !open.empty();) {
        isAnyFound = false;
        for (const double direction : {1.0, -1.0}) {
            for (const Index column : open)
                probe.pull(column, settled(column), settled(column) + direction * distance);
            if (!probe.run(effort))
                return result;
            const auto moved = std::partition(open.begin(), open.end(), [&](Index column) {
                return std::abs(probe.value(column) - settled(column)) <= width;
            });
            isAnyFound = isAnyFound || moved != open.end();
            std::for_each(moved, open.end(), [&](Index column) { probe.release(column); });
            result.insert(result.end(), moved, open.end());
            open.erase(moved, open.end());
        }
    }
    std::sort(result.begin(), result.end());
    return result;
}

} // namespace RVCore::LayoutInternal
