#pragma once

#include "LayoutRecords.h"

#include <span>
#include <unordered_map>
#include <vector>

namespace RVCore::LayoutInternal {

// What the caller has installed, and notes of what changed since the solver last looked.
class Model {
public:
    Index addVariable(std::uint64_t owner);
    void removeVariable(Index);
    bool isAlive(Index variable) const { return variable < m_areAlive.size() && m_areAlive[variable]; }

    Index addConstraint(std::span<const LayoutTerm>, LayoutRelation, double constant, float priority,
                        std::uint64_t owner);
    void removeConstraint(Index);
    // Also after a change of whether it is left out.
    void noteChange(Index constraint);

    Blocks<Variable>& variables() { return m_variables; }
    Blocks<Constraint>& constraints() { return m_constraints; }
    const Blocks<Variable>& variables() const { return m_variables; }
    const Blocks<Constraint>& constraints() const { return m_constraints; }

    // Classes.
    FormTerms terms(Index formClass) const
    {
        return isOwnForm(formClass) ? FormTerms(variableOf(formClass)) : FormTerms(m_classes[formClass].words);
    }
    bool hasConstraints(Index formClass) const { return notes(formClass).hasConstraints(); }
    ConstraintRing constraintsOf(Index formClass) const { return {m_constraints, notes(formClass).last}; }
    Index partOf(Index formClass) const; // none while it is in none
    void setPart(Index formClass, Index part);
    // Within the part; not for own forms.
    Index rowOf(Index formClass) const { return m_classes[formClass].row; }
    void setRow(Index formClass, Index row) { m_classes[formClass].row = row; }
    // Calls visit(class) for those with constraints that a variable is in, its own form the first.
    template <typename Visit> void visitClasses(Index variable, Visit visit) const
    {
        if (m_variables[variable].own.hasConstraints())
            visit(ownForm(variable));
        for (const Index formClass : m_variables[variable].classes) {
            if (hasConstraints(formClass))
                visit(formClass);
        }
    }

    // Notes. Taking them up is the solver's business.
    void takeNotedClasses(std::vector<Index>& taken); // whose memory is used for the next ones
    std::vector<Index>& changedConflictMembers() { return m_changedConflictMembers; }
    std::vector<Index>& conflictsByThemselves() { return m_conflictsByThemselves; }
    bool hasNotes() const
    {
        return !m_notedClasses.empty() || !m_conflictsByThemselves.empty() || !m_changedConflictMembers.empty();
    }
    // Frees classes of longer forms without constraints, which are in no part any more.
    void removeClasses(std::span<const Index>);
    const std::vector<Index>& removedVariables() const { return m_removedVariables; } // that are still in a part
    // Makes the numbers of removed variables that are in no part any more free for use.
    void recycleVariables();

    // The constraint's form is so many times the form of its class.
    double scale(Index constraint) const;
    // By how much a constraint is violated with the variables' present values, in its own units.
    double violation(Index constraint) const;
    static bool holdsByItself(const Constraint&);

private:
    void normalise(std::span<const LayoutTerm>);
    void sumRepeated();
    Index classOfForm();
    const FormNotes& notes(Index formClass) const
    {
        return isOwnForm(formClass) ? m_variables[variableOf(formClass)].own : m_classes[formClass].notes;
    }
    FormNotes& notes(Index formClass)
    {
        return isOwnForm(formClass) ? m_variables[variableOf(formClass)].own : m_classes[formClass].notes;
    }
    Index findClass() const;
    bool isOfForm(Index formClass) const;
    void setScale(Index constraint, double scale);
    Index takenOutBefore();
    Index makeConstraint();
    void enter(Index constraint, FormNotes&);
    void takeOut(Index constraint, FormNotes&);
    bool saysTheSame(Index constraint, LayoutRelation, double constant, float priority) const;
    void noteEdit(Index formClass, int edits);

    Blocks<Variable> m_variables;
    Blocks<Constraint> m_constraints;
    Blocks<FormClass> m_classes;
    std::vector<bool> m_areAlive;               // by variable; apart, since every constraint that comes asks
    std::unordered_map<Index, double> m_scales; // by constraint, of the scaled ones
    std::vector<Index> m_freeVariables, m_freeConstraints, m_freeClasses;
    std::vector<Index> m_removedVariables; // still in a part
    std::vector<Index> m_notedClasses;
    std::vector<Index> m_changedConflictMembers;
    std::vector<Index> m_conflictsByThemselves;
    std::vector<Index> m_takenOut; // removed constraints since the last solve, in order; none once put back
    std::size_t m_nextPutBack = 0; // of these, the one after the last that was put back
    std::uint64_t m_sequence = 0;
    // The form being installed.
    std::vector<Term> m_form;
    std::vector<std::uint32_t> m_words;
    double m_formScale = 1.0;
};

} // namespace RVCore::LayoutInternal
