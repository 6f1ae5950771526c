#pragma once

#include "LayoutModel.h"
#include "LayoutSimplex.h"

#include <vector>

namespace RVCore::LayoutInternal {

// Constraints and variables that hang together, with their solver. Columns are variables, rows are classes; the
// levels are the priorities that occurred when the part was built, and two below for what they leave free.
class Part {
public:
    void build(Model&, Index number, const std::vector<Index>& variables);
    // Keeps its memory for the next build().
    void clear() { m_variables.clear(); }
    bool isEmpty() const { return m_variables.empty(); }

    // Whether the part has a level for every priority in a class; if not, it must be built again.
    bool coversPriorities(const Model&, Index formClass) const;
    // Takes over the costs of a class, if they are other ones than before.
    void update(const Model&, Index formClass);
    // Empties the own row of a class that is about to go.
    void forgetClass(const Model&, Index formClass);
    // Built and not yet run: it has all costs already.
    bool isNew() const { return m_isNew; }
    bool needsRun() const { return m_needsRun; }
    bool run(Effort&);

    const std::vector<Index>& variables() const { return m_variables; } // by column, ascending
    // By row, none for an own row without constraints.
    Index classOf(Index row) const { return m_classes[row]; }
    Simplex& simplex() { return m_simplex; }
    const System& system() const { return m_system; }

private:
    void addPriority(float);
    Index levelOf(float priority) const;
    void updateRow(const Model&, Index row);
    void collectCosts(const Model&, Index row);

    System m_system;
    Simplex m_simplex;
    std::vector<Index> m_variables;
    std::vector<Index> m_classes;
    std::vector<float> m_priorities; // by level, descending
    std::vector<Piece> m_costs;
    bool m_needsRun = false;
    bool m_isNew = false;
};

} // namespace RVCore::LayoutInternal
