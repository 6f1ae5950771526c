#pragma once

#include "LayoutBlocks.h"
#include "LayoutEngine.h"
#include "LayoutInlineList.h"
#include "LayoutPackedForm.h"

#include <span>
#include <unordered_map>
#include <vector>

namespace RVCore::LayoutInternal {

struct Variable {
    std::uint64_t owner = 0;
    double value = 0.0;
    Index part = none;
    Index column = none;         // within the part
    InlineList<Index, 3> classes; // that it occurs in
};
static_assert(sizeof(Variable) == 40, "there are four for each view");

struct [[gnu::packed, gnu::aligned(4)]] Constraint {
    std::uint64_t owner = 0;
    double constant = 0.0;
    std::uint64_t sequence : 48 = 0; // order of installation
    std::uint64_t isAlive : 1 = false;
    std::uint64_t isLeftOut : 1 = false;
    std::uint64_t isInConflict : 1 = false; // named by a standing conflict
    std::uint64_t isScaled : 1 = false;     // by another factor than 1 and -1, which the model knows
    std::uint64_t isNegated : 1 = false;
    LayoutRelation relation = LayoutRelation::equal;
    Index formClass = none; // none for a form without variables
    Index next = none;      // of its class, in order of installation; of the last one, the first
    float priority = 0.0f;

    // Tells constraints apart that had the same number one after another.
    std::uint32_t generation() const { return std::uint32_t(sequence); }
};
static_assert(sizeof(Constraint) == 36, "there are a dozen for each view");

// All constraints over the same linear form, up to scale. They share one row of a System. The largest
// coefficient of the form is 1.
struct alignas(32) FormClass {
    InlineList<std::uint32_t, 3> words; // of the terms, over variables in ascending order
    Index last = none;                  // its newest constraint, the end of a ring; none without any
    Index part = none;
    Index row = none;             // within the part
    std::uint32_t edits : 31 = 0; // since the last solve, without those that were taken back
    bool isNoted : 1 = false;

    PackedTerms terms() const { return {{words.begin(), words.end()}}; }
    bool hasConstraints() const { return last != none; }
};
static_assert(sizeof(FormClass) == 32, "there are half a dozen for each view");

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
    bool isAlive(Index variable) const { return variable < m_areAlive.size() && m_areAlive[variable]; }

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

    // The constraint's form is so many times the form of its class.
    double scale(Index constraint) const;
    // By how much a constraint is violated with the variables' present values, in its own units.
    double violation(Index constraint) const;
    static bool holdsByItself(const Constraint&);

private:
    void normalise(std::span<const LayoutTerm>);
    void sumRepeated();
    Index classOfForm();
    Index findClass() const;
    bool isOfForm(const FormClass&) const;
    void setScale(Index constraint, double scale);
    Index takenOutBefore();
    Index makeConstraint();
    void enter(Index constraint, FormClass&);
    void takeOut(Index constraint, FormClass&);
    bool saysTheSame(Index constraint, LayoutRelation, double constant, float priority) const;
    void noteEdit(Index formClass, int edits);

    Blocks<Variable> m_variables;
    Blocks<Constraint> m_constraints;
    Blocks<FormClass> m_classes;
    std::vector<bool> m_areAlive; // by variable; apart, since every constraint that comes asks
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
