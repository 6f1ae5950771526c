#pragma once

#include "LayoutModel.h"
#include "LayoutPart.h"

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace RVCore::LayoutInternal {

// Keeps the parts in step with the model, settles contradictions, and answers questions about the result.
//
// Passes of solve():
//  1. let go of conflicts of which a member changed (LayoutConflicts.cpp);
//  2. let rows come and go in the parts, or take parts apart and build new ones from what hangs together now;
//  3. hand the changed costs to the other parts;
//  4. run the parts that have something to do, and settle the contradictions they show;
//  5. collect the values that changed.
class Solver {
public:
    Model& model() { return m_model; }
    const Model& model() const { return m_model; }

    bool needsSolve() const { return m_model.hasNotes(); }
    void solve();
    const std::vector<LayoutVariable>& changedVariables() const { return m_changedVariables; }
    void forgetChangedVariables();
    std::vector<LayoutConflict> takeConflicts() { return std::exchange(m_newConflicts, {}); }

    const std::vector<Index>& ambiguousVariables();
    // A variable came or went, which alone is nothing to solve.
    void forgetAmbiguousVariables() { m_isAmbiguousKnown = false; }
    LayoutExplanation explain(Index variable);
    std::string description(const LayoutNaming&);
    LayoutConstraintHandle handle(Index constraint) const
    {
        return {constraint, m_model.constraints()[constraint].generation()};
    }
    const LayoutStatistics& statistics() const { return m_statistics; }

private:
    struct Conflict {
        std::vector<Index> members; // in order of installation; the last one is left out
        std::uint64_t cause = 0;    // the same for equal members
        bool isNew = true;
    };

    // LayoutSolver.cpp
    void editParts();
    void tieTogether(Index formClass);
    bool absorb(Index formClass, Part&);
    void editInPlace(Index formClass);
    void letGoOfRemovedVariables();
    void takeApart(Index part);
    void freePart(Index part);
    void buildParts(const std::vector<Index>& loose);
    void updateCosts();
    void runParts();
    void collectChanges(Part&);
    void releaseBuffers();
    void countEffort(const Effort&);
    Index takePart();

    // LayoutConflicts.cpp
    void dropChangedConflicts();
    void dropConflict(Conflict&);
    void settleConflicts(Part&, Effort&);
    void letAllBackIn(Part&);
    void letBackIn(Conflict&, Part&);
    std::vector<Index> requiredConstraints(Part&, const std::vector<Index>& rows) const;
    void leaveOut(std::vector<Index> members, Part&);
    void settleConflictsByThemselves();
    std::uint64_t causeOf(const std::vector<Index>& members) const;
    void reportConflicts();

    Model m_model;
    SimplexWork m_work;
    std::vector<std::unique_ptr<Part>> m_parts;
    std::vector<Index> m_freeParts;
    IndexSet m_touchedParts;    // that were edited in place or built
    std::vector<Index> m_loose; // variables whose part is to be built
    std::vector<Index> m_absorbedClasses;
    std::vector<Index> m_indexBuffer;
    std::vector<LayoutVariable> m_variableBuffer;
    std::vector<Index> m_notedClasses; // taken over from the model for one solve
    std::vector<Conflict> m_conflicts;
    std::set<std::uint64_t> m_knownCauses;
    std::vector<LayoutConflict> m_newConflicts;
    std::vector<LayoutVariable> m_changedVariables;
    std::vector<Index> m_ambiguous;
    bool m_isAmbiguousKnown = false;
    LayoutStatistics m_statistics;
};

} // namespace RVCore::LayoutInternal
