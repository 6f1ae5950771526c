#pragma once

#include "LayoutModel.h"
#include "LayoutSimplex.h"

#include <vector>

namespace RVCore::LayoutInternal {

// Constraints and variables that hang together, with their solver. Columns are variables, rows are classes; the
// levels are the priorities that occurred when the part was built, and two below for what they leave free.
class Part {
public:
    explicit Part(SimplexWork& work) : m_simplex(work) {}
    void build(Model&, Index number, const std::vector<Index>& variables);
    // Keeps its memory for the next build().
    void clear();
    bool isEmpty() const { return m_variables.empty(); }

    // Edits in place. Each counts as wear: when it says so, building anew is the better way.
    void addVariable(Model&, Index variable);
    void removeVariable(Model&, Index variable); // that no class uses
    void addClass(Model&, Index formClass);      // over variables of the part
    void removeClass(const Model&, Index formClass);
    void noteWear() { ++m_wear; }
    bool isWorn() const { return m_wear > 8 + m_classes.size() / 4; }
    std::size_t variableCount() const { return m_variables.size() - m_freeColumns.size(); }
    std::size_t classCount() const { return m_classCount; }

    // Whether the part has a level for every priority in a class; if not, it must be built again.
    bool coversPriorities(const Model&, Index formClass) const;
    // Takes over the costs of a class, if they are other ones than before.
    void update(const Model&, Index formClass);
    // Built and not yet run: it has all costs already.
    bool isNew() const { return m_isNew; }
    bool needsRun() const { return m_needsRun; }
    bool run(Effort&);

    const std::vector<Index>& variables() const { return m_variables; } // by column, none for free ones
    // By row, none for an own row without constraints.
    Index classOf(Index row) const { return m_classes[row]; }
    Simplex& simplex() { return m_simplex; }
    const System& system() const { return m_system; }

private:
    void addPriority(float);
    Index levelOf(float priority) const;
    Index rowOf(const Model&, Index formClass) const;
    void updateRow(const Model&, Index row);
    void collectCosts(const Model&, Index row);
    Index addForm(const Model&, Index formClass);

    Index m_number = none;
    System m_system;
    Simplex m_simplex;
    std::vector<Index> m_variables;
    std::vector<Index> m_freeColumns;
    std::vector<Index> m_classes;
    std::vector<Index> m_goneRows; // that the next run takes out of the system
    std::size_t m_classCount = 0;
    std::size_t m_wear = 0;
    std::vector<float> m_priorities; // by level, descending
    std::vector<Piece> m_costs;
    std::vector<Term> m_form;
    bool m_needsRun = false;
    bool m_isNew = false;
};

} // namespace RVCore::LayoutInternal
