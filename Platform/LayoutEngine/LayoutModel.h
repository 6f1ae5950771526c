#pragma once

#include "LayoutBlocks.h"
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

struct alignas(64) Variable {
    std::uint64_t owner = 0;
    double value = 0.0;
    Index part = none;
    Index column = none; // within the part
    InlineList<ClassUse, 4> classes;
};
static_assert(sizeof(Variable) == 64, "there are four for each view: one line of the cache each");

struct Constraint {
    std::uint64_t owner = 0;
    std::uint64_t sequence : 48 = 0; // order of installation
    bool isAlive : 1 = false;
    bool isLeftOut : 1 = false;
    bool isInConflict : 1 = false; // named by a standing conflict
    LayoutRelation relation = LayoutRelation::equal;
    double constant = 0.0;
    double scale = 1.0;     // the constraint's form is scale times the form of its class
    Index formClass = none; // none for a form without variables
    Index next = none;      // of its class, in order of installation; of the last one, the first
    std::uint32_t generation = 0;
    float priority = 0.0f;
};
static_assert(sizeof(Constraint) == 48, "there are a dozen for each view");

// All constraints over the same linear form, up to scale. They share one row of a System. The largest
// coefficient of the form is 1.
struct alignas(64) FormClass {
    InlineList<Term, 3> terms; // `column` is the variable; in ascending order
    Index last = none;         // its newest constraint, the end of a ring; none without any
    Index part = none;
    Index row = none;             // within the part
    std::uint32_t edits : 31 = 0; // since the last solve, without those that were taken back
    bool isNoted : 1 = false;

    bool hasConstraints() const { return last != none; }
};
static_assert(sizeof(FormClass) == 64, "there are half a dozen for each view: one line of the cache each");

// The numbers of a class's constraints, in order of installation.
class ConstraintRing {
public:
    class Iterator {
    public:
        Iterator(const Blocks<Constraint>& constraints, Index index, Index last)
            : m_constraints(&constraints), m_index(index), m_last(last)
        {
        }
        Index operator*() const { return m_index; }
        Iterator& operator++()
        {
            m_index = m_index == m_last ? none : (*m_constraints)[m_index].next;
            return *this;
        }
        bool operator==(const Iterator& other) const { return m_index == other.m_index; }

    private:
        const Blocks<Constraint>* m_constraints;
        Index m_index;
        Index m_last;
    };

    ConstraintRing(const Blocks<Constraint>& constraints, Index last) : m_constraints(constraints), m_last(last) {}
    Iterator begin() const { return {m_constraints, m_last == none ? none : m_constraints[m_last].next, m_last}; }
    Iterator end() const { return {m_constraints, none, m_last}; }

private:
    const Blocks<Constraint>& m_constraints;
    Index m_last;
};

// What the caller has installed, and notes of what changed since the solver last looked.
class Model {
public:
    Index addVariable(std::uint64_t owner);
    void removeVariable(Index);
    bool isAlive(Index variable) const { return variable < m_areAlive.size() && m_areAlive[variable] != 0; }

    Index addConstraint(std::span<const LayoutTerm>, LayoutRelation, double constant, float priority,
                        std::uint64_t owner);
    void removeConstraint(Index);
    // Also after a change of whether it is left out.
    void noteChange(Index constraint);

    Blocks<Variable>& variables() { return m_variables; }
    Blocks<Constraint>& constraints() { return m_constraints; }
    Blocks<FormClass>& classes() { return m_classes; }
    const Blocks<Variable>& variables() const { return m_variables; }
    const Blocks<Constraint>& constraints() const { return m_constraints; }
    const Blocks<FormClass>& classes() const { return m_classes; }
    ConstraintRing constraintsOf(Index formClass) const { return {m_constraints, m_classes[formClass].last}; }

    // Notes. Taking them up is the solver's business.
    void takeNotedClasses(std::vector<Index>& taken); // whose memory is used for the next ones
    std::vector<Index>& changedConflictMembers() { return m_changedConflictMembers; }
    std::vector<Index>& conflictsByThemselves() { return m_conflictsByThemselves; }
    bool hasNotes() const
    {
        return !m_notedClasses.empty() || !m_conflictsByThemselves.empty() || !m_changedConflictMembers.empty();
    }
    // Frees classes without constraints, which are in no part any more.
    void removeClasses(std::span<const Index>);
    const std::vector<Index>& removedVariables() const { return m_removedVariables; } // that are still in a part
    // Makes the numbers of removed variables that are in no part any more free for use.
    void recycleVariables();

    // The same for equal forms, up to scale.
    static std::uint64_t hashOf(std::span<const Term> form);
    // By how much a constraint is violated with the variables' present values, in its own units.
    double violation(Index constraint) const;
    static bool holdsByItself(const Constraint&);

private:
    void normalise(std::span<const LayoutTerm>);
    void sumRepeated();
    Index classOfForm();
    Index findClass(std::uint64_t hash) const;
    Index takenOutBefore();
    Index makeConstraint();
    void enter(Index constraint, FormClass&);
    void takeOut(Index constraint, FormClass&);
    bool saysTheSame(const Constraint&, LayoutRelation, double constant, float priority) const;
    void noteEdit(Index formClass, int edits);

    Blocks<Variable> m_variables;
    Blocks<Constraint> m_constraints;
    Blocks<FormClass> m_classes;
    std::vector<std::uint8_t> m_areAlive; // by variable; apart, since every constraint that comes asks
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
    double m_formScale = 1.0;
};

} // namespace RVCore::LayoutInternal
