#pragma once

#include "LayoutEngine.h"
#include "LayoutInlineList.h"
#include "LayoutSystem.h"

#include <span>
#include <vector>

namespace RVCore::LayoutInternal {

// Where a variable occurs.
struct ClassUse {
    Index formClass = none;
    std::uint32_t hash = 0; // a part of the class's
};

struct Variable {
    std::uint64_t owner = 0;
    double value = 0.0;
    Index part = none;
    Index column = none; // within the part
    InlineList<ClassUse, 4> classes;
    bool isAlive = false;
    bool isLoose = false; // waits for a part
};

struct Constraint {
    std::uint64_t owner = 0;
    std::uint64_t sequence = 0; // order of installation
    double constant = 0.0;
    double scale = 1.0;     // the constraint's form is scale times the form of its class
    Index formClass = none; // none for a form without variables
    std::uint32_t generation = 0;
    float priority = 0.0f;
    LayoutRelation relation = LayoutRelation::equal;
    bool isAlive = false;
    bool isLeftOut = false;
    bool isInConflict = false; // named by a standing conflict
};

// All constraints over the same linear form, up to scale. They share one row of a System. The largest
// coefficient of the form is 1.
struct FormClass {
    InlineList<Term, 3> terms;        // `column` is the variable; in ascending order
    InlineList<Index, 4> constraints; // in order of installation
    std::uint64_t hash = 0;
    Index part = none;
    Index row = none; // within the part
    bool isNoted = false;
};

// What the caller has installed, and notes of what changed since the solver last looked.
class Model {
public:
    Index addVariable(std::uint64_t owner);
    void removeVariable(Index);

    Index addConstraint(std::span<const LayoutTerm>, LayoutRelation, double constant, float priority,
                        std::uint64_t owner);
    void removeConstraint(Index);
    // Also after a change of whether it is left out.
    void noteChange(Index constraint);

    std::vector<Variable>& variables() { return m_variables; }
    std::vector<Constraint>& constraints() { return m_constraints; }
    std::vector<FormClass>& classes() { return m_classes; }
    const std::vector<Variable>& variables() const { return m_variables; }
    const std::vector<Constraint>& constraints() const { return m_constraints; }
    const std::vector<FormClass>& classes() const { return m_classes; }

    // Notes. Taking them up is the solver's business.
    std::vector<Index>& notedClasses() { return m_notedClasses; }
    std::vector<Index>& changedConflictMembers() { return m_changedConflictMembers; }
    std::vector<Index>& conflictsByThemselves() { return m_conflictsByThemselves; }
    bool hasNotes() const
    {
        return !m_notedClasses.empty() || !m_conflictsByThemselves.empty() || !m_changedConflictMembers.empty();
    }
    // Frees classes without constraints, which are in no part any more.
    void removeClasses(std::span<const Index>);
    // Makes the numbers of removed variables that are in no part any more free for use.
    void recycleVariables();

    // By how much a constraint is violated with the variables' present values, in its own units.
    double violation(Index constraint) const;
    static bool holdsByItself(const Constraint&);

private:
    void normalise(std::span<const LayoutTerm>);
    Index classOfForm();
    Index findClass(std::uint64_t hash) const;
    void noteClass(Index);

    std::vector<Variable> m_variables;
    std::vector<Constraint> m_constraints;
    std::vector<FormClass> m_classes;
    std::vector<Index> m_freeVariables, m_freeConstraints, m_freeClasses;
    std::vector<Index> m_removedVariables; // still in a part
    std::vector<Index> m_notedClasses;
    std::vector<Index> m_changedConflictMembers;
    std::vector<Index> m_conflictsByThemselves;
    std::uint64_t m_sequence = 0;
    // The form being installed.
    std::vector<Term> m_form;
    double m_formScale = 1.0;
};

} // namespace RVCore::LayoutInternal
