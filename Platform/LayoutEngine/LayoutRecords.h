#pragma once

#include "LayoutBlocks.h"
#include "LayoutEngine.h"
#include "LayoutInlineList.h"
#include "LayoutPackedForm.h"

namespace RVCore::LayoutInternal {

// What both kinds of forms have.
struct FormNotes {
    Index last = none;            // its newest constraint, the end of a ring; none without any
    std::uint32_t edits : 30 = 0; // since the last solve, without those that were taken back
    std::uint32_t isNoted : 1 = false;
    std::uint32_t isInPart : 1 = false;

    bool hasConstraints() const { return last != none; }
};

struct Variable {
    std::uint64_t owner = 0;
    double value = 0.0;
    Index part = none;
    Index column = none;          // within the part
    FormNotes own;                // of the form that is the variable by itself
    InlineList<Index, 3> classes; // of longer forms that it occurs in
};
static_assert(sizeof(Variable) == 48, "there are four for each view");

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

// All constraints over the same linear form, up to scale, are a class: they share one row of a System. The largest
// coefficient of the form is 1. A class is named by a number, which for the form that is a variable by itself says
// so: its class needs no more than its notes.
struct alignas(32) FormClass {
    FormNotes notes;
    InlineList<std::uint32_t, 3> words; // of the terms, over variables in ascending order
    Index part = none;                  // while it is in one
    Index row = none;                   // within the part
};
static_assert(sizeof(FormClass) == 32, "there are half a dozen for each view");

constexpr Index ownFormBit = Index(1) << 31; // of variables that many there are not
inline bool isOwnForm(Index formClass)
{
    return (formClass & ownFormBit) != 0;
}
inline Index variableOf(Index ownForm)
{
    return ownForm & ~ownFormBit;
}
inline Index ownForm(Index variable)
{
    return variable | ownFormBit;
}

// The terms of a class's form.
class FormTerms {
public:
    explicit FormTerms(Index variable) : m_own(Packing::word(variable, Packing::codeOf(1.0))) {}
    explicit FormTerms(const InlineList<std::uint32_t, 3>& words) : m_words(&words) {}
    PackedTerms::Iterator begin() const { return PackedTerms::Iterator(m_words ? m_words->begin() : &m_own); }
    PackedTerms::Iterator end() const { return PackedTerms::Iterator(m_words ? m_words->end() : &m_own + 1); }
    Term front() const { return *begin(); }

private:
    const InlineList<std::uint32_t, 3>* m_words = nullptr; // none for an own form
    std::uint32_t m_own = 0;
};

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

} // namespace RVCore::LayoutInternal
